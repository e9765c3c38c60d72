// The four threads of a transition, and which kernel a code takes.
#include "fx/frames.h"
#include "platform/injection.h"
#include "zrdraw/wipes.h"

#include <array>
#include <atomic>
#include <chrono>
#include <string>
#include <thread>
#include <utility>

#include <dlfcn.h>

namespace {

constexpr unsigned int size = 8, pitch = size * 4;

// How often the caller has slept, and what the worker of the last band waits for.
std::atomic<int> sleeps = 0, sleepsBeforeLastBand = 0;

// What stands behind an injected operation.
template <typename Function>
Function* platform(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

// Marks its pixels, of one byte, with the number of its band.
unsigned int markBand(unsigned char*, unsigned int, unsigned char*, unsigned int pitchB,
                      unsigned char* dst, unsigned int, unsigned int, unsigned int, unsigned int,
                      unsigned int, unsigned int, unsigned int, unsigned int, unsigned int,
                      unsigned int, unsigned int, unsigned int, unsigned int, unsigned int xStart,
                      unsigned int xEnd, unsigned int yStart, unsigned int yEnd) {
    const auto mark = static_cast<unsigned char>((xStart != 0) + 2 * (yStart != 0) + 1);
    // Not for ever, so that a caller that does not wait fails the test.
    for (int turn = 0; turn < 2000 && mark == 4 && sleeps < sleepsBeforeLastBand; ++turn)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    for (unsigned int y = yStart; y < yEnd; ++y)
        std::memset(dst + y * pitchB + xStart, mark, xEnd - xStart);
    return 77;
}

// Transitions through the library, with all operations noted by the caller's thread. Frames are
// of one byte a pixel, `size` square where nothing else is said, and marked by band.
class Threads : public ::testing::Test {
protected:
    Threads() {
        sleepsBeforeLastBand = 0;
        injection().increment = [this](int* count) {
            m_log += "increment ";
            return platform<decltype(zrOSInterlockedIncrement)>("zrOSInterlockedIncrement")(count);
        };
        injection().createThread = [this](void* attributes, unsigned long stack,
                                          zrOSThreadRoutine* routine, void* argument,
                                          unsigned int flags, unsigned int* id,
                                          const char* name) -> void* {
            m_log += "create ";
            auto& record = *static_cast<zrfxFXArgs*>(argument);
            EXPECT_EQ(attributes, nullptr);
            EXPECT_EQ(stack + flags, 0U);
            EXPECT_EQ(routine, zrfxFXThread);
            EXPECT_EQ(id, &record.threadId);
            EXPECT_STREQ(name, "dffx");
            const bool refused = static_cast<int>(m_records.size()) == m_refused;
            m_records.push_back(record);
            m_handles.push_back(refused
                                    ? nullptr
                                    : platform<decltype(zrOSCreateThread)>("zrOSCreateThread")(
                                          attributes, stack, routine, argument, flags, id, name));
            return m_handles.back();
        };
        injection().setThreadPriority = [this](void* thread, int priority) {
            m_log += "priority ";
            EXPECT_EQ(thread, m_handles.back());
            EXPECT_EQ(priority, 15);
            return 1;
        };
        injection().closeThread = [this](void* thread, const char* name) {
            EXPECT_EQ(thread, m_handles.at(m_closed++));
            EXPECT_STREQ(name, "dffx");
            m_log += "close ";
            return m_closesLate
                       ? 0
                       : platform<decltype(zrOSCloseThread)>("zrOSCloseThread")(thread, name);
        };
        injection().sleep = [this](unsigned int microseconds) {
            EXPECT_EQ(microseconds, 2000U);
            ++sleeps;
            return m_closesLate ? platform<int(unsigned int)>("usleep")(microseconds) : 0;
        };
    }

    void run(const zrfxFXArgs& args) {
        m_log.clear();
        m_records.clear();
        m_handles.clear();
        m_closed = 0;
        sleeps = 0;
        EXPECT_EQ(callWith(ZRDraw_FXMultiThread, args, 91U, 92U, 93U, 94U, markBand), 0U);
    }
    // A square, compared with one without a band; -1 is none.
    void runSquare(int without) {
        Frame dst(pitch * size), marked = dst;
        run({nullptr, 0, nullptr, pitch, dst.data(), 0, 0, 1, size, size});
        for (unsigned int i = 0; i < size * size; ++i) {
            const unsigned int band = (i % size >= size / 2) + 2 * (i / size >= size / 2);
            if (static_cast<int>(band) != without)
                marked.data()[i / size * pitch + i % size] = static_cast<unsigned char>(band + 1);
        }
        EXPECT_EQ(dst, marked) << "without " << without;
    }

    const InjectionGuard m_guard;
    std::string m_log;
    std::vector<zrfxFXArgs> m_records;
    std::vector<void*> m_handles;
    int m_refused = -1;
    std::size_t m_closed = 0;
    bool m_closesLate = false;
};

TEST_F(Threads, GetTheFourBandsAndAllArguments) {
    using Edges = std::array<unsigned int, 4>;
    struct Size {
        unsigned int width, height;
        Edges bands[4];
    };
    const Size sizes[] = {
        {16, 12, {{0, 8, 0, 6}, {8, 16, 0, 6}, {0, 8, 6, 12}, {8, 16, 6, 12}}},
        {7, 5, {{0, 3, 0, 2}, {3, 7, 0, 2}, {0, 3, 2, 5}, {3, 7, 2, 5}}},
        {1, 3, {{0, 0, 0, 1}, {0, 1, 0, 1}, {0, 0, 1, 3}, {0, 1, 1, 3}}},
        {3, 1, {{0, 1, 0, 0}, {1, 3, 0, 0}, {0, 1, 0, 1}, {1, 3, 0, 1}}},
        {0, 0, {{0, 0, 0, 0}, {0, 0, 0, 0}, {0, 0, 0, 0}, {0, 0, 0, 0}}},
    };
    for (const Size& s : sizes) {
        Frame a(64), b(64), dst(16 * 12);
        const zrfxFXArgs args{a.data(), 1, b.data(), 16, dst.data(), 3,  4,  5,  s.width,
                              s.height, 8, 9,        10, 11,         12, 13, 14, 15};
        run(args);
        ASSERT_EQ(m_records.size(), 4U);
        for (std::size_t i = 0; i < 4; ++i) {
            const zrfxFXArgs& record = m_records[i];
            EXPECT_EQ((Edges{record.xStart, record.xEnd, record.yStart, record.yEnd}), s.bands[i])
                << s.width << 'x' << s.height << ' ' << i;
            EXPECT_EQ(record.kernel, markBand);
            EXPECT_EQ(record.pending, m_records[0].pending);
            EXPECT_EQ(std::memcmp(&record, &args, offsetof(zrfxFXArgs, xStart)), 0);
        }
    }
}

TEST_F(Threads, CountStartRaiseAndThenClose) {
    for (m_refused = -1; m_refused < 4; ++m_refused) {
        runSquare(m_refused);
        EXPECT_EQ(m_log, "increment create priority increment create priority increment create "
                         "priority increment create priority close close close close ");
        // Closing has waited for the threads, but not for one that does not start.
        EXPECT_EQ(sleeps, m_refused == -1 ? 0 : 50);
    }
}

TEST_F(Threads, LateOnesAreWaitedFor) {
#ifdef __SANITIZE_THREAD__
    GTEST_SKIP() << "the count is read by a plain load, which only closed threads order";
#endif
    m_closesLate = true;
    sleepsBeforeLastBand = 3;
    runSquare(-1);
    EXPECT_GE(sleeps, 3);
    EXPECT_LE(sleeps, 50);
    for (void* handle : m_handles)
        platform<decltype(zrOSCloseThread)>("zrOSCloseThread")(handle, "dffx");
}

TEST_F(Threads, EndWithTheKernelsResult) {
    int pending = 5;
    Frame dst(16);
    zrfxFXArgs args{nullptr, 0, nullptr, 4, dst.data(), 0, 0, 1, 4, 4};
    args.xEnd = args.yEnd = 2;
    args.kernel = markBand;
    args.pending = &pending;
    EXPECT_EQ(zrfxFXThread(&args), 77U);
    EXPECT_EQ(pending, 4);
}

TEST(Transitions, AThousandAtOnce) {
    constexpr unsigned int codes[] = {zrWipeDissolve,  zrWipeHorizontal,  zrWipeVertical,
                                      zrWipeTopLeft,   zrWipeFourCorners, zrWipeBarnDoorHorizontal,
                                      zrWipeRectangle, zrSlideLeft};
    Random random(seed);
    Frame a(pitch * size, random), b(pitch * size, random);
    std::atomic<int> wrong = 0;
    const auto work = [&](unsigned int first) {
        for (unsigned int i = first; i < first + 125; ++i) {
            Frame dst(pitch * size), expected(pitch * size);
            zrfxFXArgs args{a.data(), pitch,        b.data(), pitch, dst.data(),
                            pitch,    codes[i % 8], ptRGBA32, size,  size};
            args.rangeEnd = 16;
            args.position = i % 17;
            callWith(ZRDraw_DisplayWipe, args);
            args.dst = expected.data();
            runBands(zrWipeOf(codes[i % 8]).kernel, args);
            wrong += dst != expected;
        }
    };
    std::vector<std::jthread> callers;
    for (unsigned int i = 0; i < 8; ++i)
        callers.emplace_back(work, i * 125);
    callers.clear(); // waits for all
    EXPECT_EQ(wrong, 0) << "seed " << seed;
}

struct Codes {
    zrfxKernel* kernel;
    std::vector<unsigned int> ends; // the first and the last code of each range
};

const std::vector<Codes> table = {
    {zrfxSMPTE_Horizontal,
     {1,   1,   102, 114, 119, 125, 127, 131, 201, 207, 211, 214, 221, 228, 231, 236, 241,
      246, 251, 254, 261, 264, 301, 306, 310, 317, 320, 329, 340, 345, 350, 353, 409, 409}},
    {zrfxSMPTE_Vertical, {2, 2}},
    {zrfxSMPTE_TopLeft, {3, 3}},
    {zrfxSMPTE_TopRight, {4, 4}},
    {zrfxSMPTE_BottomRight, {5, 5}},
    {zrfxSMPTE_BottomLeft, {6, 6}},
    {zrfxSMPTE_FourCorners, {7, 7}},
    {zrfxSMPTE_FourSquare, {8, 8}},
    {zrfxSMPTE_BarnDoorVertical, {21, 21}},
    {zrfxSMPTE_BarnDoorHorizontal, {22, 22}},
    {zrfxSMPTE_TopCenter, {23, 23}},
    {zrfxSMPTE_RightCenter, {24, 24}},
    {zrfxSMPTE_BottomCenter, {25, 25}},
    {zrfxSMPTE_LeftCenter, {26, 26}},
    {zrfxSMPTE_Rectangle, {41, 48, 61, 68, 71, 74, 101, 101}},
    {zrfxSLIDE_Basic, {500, 515}},
};

zrfxKernel* kernelOf(unsigned int code) {
    for (const Codes& codes : table)
        for (std::size_t i = 0; i < codes.ends.size(); i += 2)
            if (code >= codes.ends[i] && code <= codes.ends[i + 1])
                return codes.kernel;
    return zrfxDISSOLVE;
}

class Selection : public ::testing::Test {
protected:
    static constexpr unsigned int width = 12, height = 10, pitch = width * 4;

    Frame draw(zrfxKernel* kernel, unsigned int code) {
        Frame dst(pitch * height);
        zrfxFXArgs args = argsOf(m_a, m_b, dst, pitch, code, ptRGBA32, width, height);
        args.rangeEnd = 16;
        args.position = 8;
        if (kernel == nullptr)
            EXPECT_EQ(callWith(ZRDraw_DisplayWipe, args), 0U);
        else
            EXPECT_TRUE(runBands(kernel, args));
        return dst;
    }

    Random m_random{seed};
    Frame m_a{pitch * height, m_random}, m_b{pitch * height, m_random};
};

TEST_F(Selection, NamedRowsShowPicturesThatAllDiffer) {
    std::vector<Frame> shown{Frame(pitch * height)};
    for (const zrWipe& row : zrWipes) {
        EXPECT_EQ(row.help != nullptr, row.name != nullptr) << row.first;
        if (row.name == nullptr)
            continue;
        const Frame picture = draw(nullptr, row.last);
        EXPECT_EQ(std::count(shown.begin(), shown.end(), picture), 0) << row.name;
        shown.push_back(picture);
    }
    EXPECT_EQ(shown.size(), 21U) << "nothing, fifteen wipes, four slides, the dissolve";
}

TEST_F(Selection, EveryCodeHasItsKernel) {
    std::vector<unsigned int> codes{1000, 0x8000, 0x10001, 0x1000001, 0x40000001, 0x7FFFFFFF};
    for (unsigned int code = 0; code <= 600; ++code)
        codes.push_back(code);
    for (const unsigned int code : codes)
        for (const unsigned int full : {code, code | zrWipeSwap})
            ASSERT_EQ(draw(nullptr, full), draw(kernelOf(code), full)) << std::hex << full;
}

// The slide knows them all, as of four bytes a pixel.
TEST(Kernels, OfUnknownLayoutsOrEmptyBandsWriteNothing) {
    std::vector<zrfxKernel*> kernels{zrfxDISSOLVE, zrfxDISSOLVE2};
    for (const Codes& codes : table)
        if (codes.kernel != zrfxSLIDE_Basic)
            kernels.push_back(codes.kernel);
    Frame a(256, 1), b(256, 2), dst(256);
    zrfxFXArgs args{a.data(), 64, b.data(), 64, dst.data(), 64, zrWipeHorizontal, 0, 4, 4};
    args.rangeEnd = 4;
    args.position = 2;
    for (std::size_t i = 0; i < kernels.size(); ++i) {
        for (const unsigned int type : {0U, 7U, 10U, 28U, 37U, unsigned{ptV210},
                                        unsigned{ptRGBHalf48}, 10000U, 0xFFFFFFFFU}) {
            args.pixelType = type;
            EXPECT_TRUE(runBands(kernels[i], args));
        }
        args.pixelType = ptRGBA32;
        EXPECT_EQ(callWith(kernels[i], args, 0U, 4U, 2U, 2U), 0U);
        EXPECT_EQ(callWith(kernels[i], args, 0U, 4U, 3U, 2U), 0U);
        EXPECT_EQ(callWith(kernels[i], args, 2U, 2U, 0U, 4U), 0U);
        ASSERT_EQ(dst, Frame(256)) << "kernel " << i;
    }
}

} // namespace
