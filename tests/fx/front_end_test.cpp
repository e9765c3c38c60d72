#include "fx/frames.h"
#include "platform/injection.h"
#include "zrdraw/v210.h"

#include <stdexcept>
#include <string>

namespace {

using Byte = unsigned char;

void expandPairs(const Byte* line, Byte* plane, unsigned int width) {
    for (unsigned int x = 0; x < width; x += 4, line += 8, plane += 12) {
        const Byte* b = line;
        const Byte pixels[] = {b[1], b[0], b[3], b[2], b[0], b[3],
                               b[5], b[4], b[7], b[6], b[4], b[7]};
        std::memcpy(plane, pixels, sizeof pixels);
    }
}

void packPairs(const Byte* e, Byte* line, unsigned int width) {
    for (unsigned int x = 0; x < width; x += 2, line += 4, e += 6) {
        const Byte bytes[] = {e[1], e[0], e[3], e[2]};
        std::memcpy(line, bytes, sizeof bytes);
    }
}

// The upper eight bits of each sample of ten.
void expandBlocks(const Byte* line, Byte* plane, unsigned int width) {
    for (unsigned int i = 0; i < (width + 5) / 6 * 18; ++i) {
        const auto [word, bit] = zrV210::placeOf(i / 3 % 6, i % 3);
        unsigned int value;
        std::memcpy(&value, line + i / 18 * 16 + 4 * word, sizeof value);
        plane[i] = static_cast<Byte>(value >> (bit + 2));
    }
}

// Of a pair the chroma of the even pixel.
void packBlocks(const Byte* plane, Byte* line, unsigned int width) {
    for (unsigned int x = 0; x < width; x += 6, line += 16, plane += 18) {
        unsigned int words[4] = {};
        for (unsigned int i = 0; i < 18; ++i)
            if (const auto [word, bit] = zrV210::placeOf(i / 3, i % 3);
                i % 3 == 0 || i / 3 % 2 == 0)
                words[word] |= static_cast<unsigned int>(plane[i]) << (bit + 2);
        std::memcpy(line, words, sizeof words);
    }
}

unsigned int blockLine(unsigned int width) {
    return width % 48 == 0 ? width * 8 / 3 : (width / 48 + 1) * 128;
}

struct FrontEnd {
    const char* name;
    decltype(ZRDraw_DisplayWipe)* function;
    void (*expand)(const Byte* line, Byte* plane, unsigned int width);
    void (*pack)(const Byte* plane, Byte* line, unsigned int width);
    unsigned int (*leastPitch)(unsigned int width);
};

const FrontEnd ycbcr{"YCbCr", ZRDraw_DisplayWipeYCbCr, expandPairs, packPairs,
                     [](unsigned int) { return 0U; }};
const FrontEnd v210{"V210", ZRDraw_DisplayWipeV210, expandBlocks, packBlocks, blockLine};

std::uintptr_t roundedUp(std::uintptr_t value) {
    return (value + 511) / 512 * 512;
}

// What the platform is asked for; the scratch memory is the test's, filled alike.
class FrontEnds : public ::testing::Test {
protected:
    static constexpr int before = 3;

    FrontEnds() {
        injection().alloc = [this](unsigned int bytes) -> void* {
            m_asked.push_back(bytes);
            m_scratch.assign(bytes + 64, fill);
            return m_scratch.data() + 16;
        };
        injection().free = [this](void* memory) { m_freed.push_back(memory); };
        injection().log = [this](const std::string& message) { m_log.push_back(message); };
        zrOSSetThreadPriority(zrOSGetCurrentThread(), before);
    }
    ~FrontEnds() override { zrOSSetThreadPriority(zrOSGetCurrentThread(), 0); }

    // Runs what would be a thread in the caller's.
    void recordThreads() {
        injection().createThread = [this](void*, unsigned long, zrOSThreadRoutine* routine,
                                          void* argument, unsigned int, unsigned int*,
                                          const char*) -> void* {
            m_records.push_back(*static_cast<zrfxFXArgs*>(argument));
            EXPECT_EQ(priority(), 15);
            routine(argument);
            return nullptr;
        };
    }

    static int priority() { return zrOSGetThreadPriority(zrOSGetCurrentThread()); }

    // The planes by the rules, in memory of the same content.
    void reference(const FrontEnd& end, zrfxFXArgs a, Byte* dst) {
        const unsigned int least = end.leastPitch(a.width), pixels = a.width * a.height;
        for (unsigned int* pitch : {&a.pitchA, &a.pitchB, &a.pitchDst})
            *pitch = std::max(*pitch, least);
        std::vector<Byte> planes(9 * pixels + 3072 + 512, fill);
        const std::size_t offset = static_cast<std::size_t>(roundedUp(3 * pixels));
        Byte* const plane[] = {planes.data(), planes.data() + offset, planes.data() + 2 * offset};
        const unsigned int line = a.width * 3;
        for (unsigned int y = 0; y < a.height; ++y)
            end.expand(a.srcA + y * a.pitchA, plane[0] + y * line, a.width);
        for (unsigned int y = 0; y < a.height; ++y)
            end.expand(a.srcB + y * a.pitchB, plane[1] + y * line, a.width);
        zrfxFXArgs inner = a;
        inner.srcA = plane[0];
        inner.srcB = plane[1];
        inner.dst = plane[2];
        inner.pitchA = inner.pitchB = inner.pitchDst = line;
        inner.pixelType = zrWipeByte3;
        callWith(ZRDraw_DisplayWipe, inner);
        for (unsigned int y = 0; y < a.height; ++y)
            end.pack(plane[2] + y * line, dst + y * a.pitchDst, a.width);
    }

    void compare(const FrontEnd& end, unsigned int width, unsigned int height,
                 const unsigned int (&pitches)[3], unsigned int wipeCode) {
        const std::size_t bytes =
            (height + 1) * std::size_t{std::max({pitches[0], pitches[1], pitches[2],
                                                 end.leastPitch(width), width * 2 + 16})};
        Random random(seed + width);
        Frame a(bytes, random), b(bytes, random), dst(bytes), expected(bytes);
        zrfxFXArgs args = argsOf(a, b, dst, pitches[2], wipeCode, 99, width, height);
        args.pitchA = pitches[0];
        args.pitchB = pitches[1];
        args.rangeEnd = 16;
        args.position = 6;
        reference(end, args, expected.data());
        EXPECT_EQ(callWith(end.function, args), 0U);
        ASSERT_EQ(dst, expected) << end.name << ' ' << width << 'x' << height << ", code "
                                 << wipeCode << ", pitch " << pitches[0] << ", seed "
                                 << seed + width;
    }

    // Ends without a byte written.
    unsigned int call(const FrontEnd& end, unsigned int width, unsigned int height) {
        Frame a(512), dst(512);
        m_log.clear();
        m_freed.clear();
        zrfxFXArgs args = argsOf(a, a, dst, 128, zrWipeHorizontal, 1, width, height);
        args.rangeEnd = 16;
        const unsigned int result = callWith(end.function, args);
        EXPECT_EQ(dst, Frame(512)) << end.name;
        return result;
    }

    using Messages = std::vector<std::string>;
    static constexpr Byte fill = 0xA7;
    const InjectionGuard m_guard;
    std::vector<Byte> m_scratch;
    std::vector<unsigned int> m_asked;
    std::vector<zrfxFXArgs> m_records;
    std::vector<void*> m_freed;
    Messages m_log;
};

TEST_F(FrontEnds, DrawThroughPlanesOfThreeBytes) {
    constexpr unsigned int swapped = zrWipeSwap | zrWipeHorizontal;
    constexpr unsigned int codes[] = {
        zrWipeDissolve, zrWipeHorizontal, zrWipeTopLeft, swapped, zrSlideUp, zrSlideLeft, 508};
    for (unsigned int width = 1; width <= 100 && !HasFatalFailure(); ++width)
        for (const unsigned int height : {1U, 2U, 5U}) {
            // On a size of 1 two threads do the same slide, by contract but for a race detector.
            const bool mayRace = width == 1 || height == 1;
            const unsigned int code = codes[(width + height) % (mayRace ? 4 : std::size(codes))];
            compare(ycbcr, width, height, {width * 2, width * 2 + 6, width * 2 + 11}, code);
            compare(v210, width, height, {0, blockLine(width) + 32, 16}, code);
            compare(v210, width, height, {blockLine(width), 0, blockLine(width) + 128}, code);
        }
    EXPECT_EQ(m_asked.size(), m_freed.size());
    EXPECT_EQ(priority(), before);
}

TEST_F(FrontEnds, HandOnTheirArgumentsWithAlignedPlanes) {
    recordThreads();
    for (const FrontEnd* end : {&ycbcr, &v210}) {
        m_records.clear();
        m_asked.clear();
        m_freed.clear();
        Frame a(1024), b(1024), dst(1024);
        const zrfxFXArgs args{
            a.data(), 128, b.data(), 128, dst.data(), 128, zrWipeSwap | zrWipeHorizontal,
            ptV210,   20,  7,        21,  22,         23,  24,
            25,       3,   19,       5};
        EXPECT_EQ(callWith(end->function, args), 0U);
        ASSERT_EQ(m_records.size(), 4U);
        zrfxFXArgs expected = args;
        expected.srcA = reinterpret_cast<Byte*>(
            roundedUp(reinterpret_cast<std::uintptr_t>(m_scratch.data() + 16)));
        expected.srcB = expected.srcA + 512; // 3 * 20 * 7 bytes, rounded up
        expected.dst = expected.srcB + 512;
        expected.pitchA = expected.pitchB = expected.pitchDst = 60;
        expected.pixelType = zrWipeByte3;
        EXPECT_EQ(std::memcmp(&m_records[0], &expected, offsetof(zrfxFXArgs, xStart)), 0)
            << end->name;
        EXPECT_EQ(m_asked, std::vector<unsigned int>{9 * 20 * 7 + 3072});
        EXPECT_EQ(m_freed, std::vector<void*>{m_scratch.data() + 16});
        EXPECT_EQ(priority(), before);
    }
}

TEST_F(FrontEnds, WithoutWidthOrHeightStillCall) {
    recordThreads();
    for (const FrontEnd* end : {&ycbcr, &v210})
        for (const auto& [width, height] : {std::pair{0U, 4U}, {8U, 0U}, {0U, 0U}}) {
            m_records.clear();
            EXPECT_EQ(call(*end, width, height), 0U);
            EXPECT_EQ(m_records.size(), 4U) << end->name;
            EXPECT_EQ(m_asked.back(), 3072U);
        }
}

TEST_F(FrontEnds, WithoutMemoryTheySaySoAndOnlyAThrowLeavesThePriorityRaised) {
    injection().alloc = [this](unsigned int bytes) -> void* {
        m_asked.push_back(bytes);
        EXPECT_EQ(priority(), 15);
        return nullptr;
    };
    for (const FrontEnd* end : {&ycbcr, &v210}) {
        EXPECT_EQ(call(*end, 1920, 1080), 0xFFFFFFFFU);
        EXPECT_EQ(m_asked.back(), 18665472U);
        EXPECT_EQ(m_log, Messages{"No Memory ZRDraw_DisplayWipeYCbCr"});
        EXPECT_EQ(priority(), before);
    }
    injection().alloc = [](unsigned int) -> void* { throw std::bad_alloc(); };
    for (const FrontEnd* end : {&ycbcr, &v210}) {
        zrOSSetThreadPriority(zrOSGetCurrentThread(), before);
        EXPECT_EQ(call(*end, 8, 2), 0xFFFFFFFFU);
        EXPECT_EQ(m_log, Messages{});
        EXPECT_EQ(priority(), 15);
    }
}

// Addresses are numbers that wrap. There is no memory there: whatever is touched ends the test.
TEST_F(FrontEnds, APlaneAtNullIsNoMemory) {
    constexpr unsigned int width = 40, height = 10, planeBytes = 1536; // 3 * 400 rounded up
    for (const FrontEnd* end : {&ycbcr, &v210})
        for (const std::uintptr_t behind :
             {std::uintptr_t{1}, std::uintptr_t{planeBytes}, std::uintptr_t{2 * planeBytes}}) {
            void* const memory = reinterpret_cast<void*>(-behind);
            injection().alloc = [memory](unsigned int) { return memory; };
            EXPECT_EQ(call(*end, width, height), 0xFFFFFFFFU) << end->name << ' ' << behind;
            EXPECT_EQ(m_log, Messages{"No Memory ZRDraw_DisplayWipeYCbCr"});
            EXPECT_EQ(m_freed, std::vector<void*>{memory});
            EXPECT_EQ(priority(), before);
        }
}

TEST_F(FrontEnds, AnExceptionOfTheTransition) {
    injection().createThread = [](auto...) -> void* { throw std::runtime_error("no thread"); };
    EXPECT_EQ(call(ycbcr, 8, 2), 0U);
    EXPECT_EQ(m_log, Messages{"Exception Error ZRDraw_DisplayWipeYCbCr"});
    EXPECT_EQ(m_freed, std::vector<void*>{m_scratch.data() + 16});
    EXPECT_EQ(priority(), before);
    EXPECT_THROW(call(v210, 8, 2), std::runtime_error);
    EXPECT_EQ(m_log, Messages{});
}

} // namespace
