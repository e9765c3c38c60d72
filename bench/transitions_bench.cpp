// Transitions, front ends and the mux, each beside what only moves the same bytes.
#include "buffers.h"
#include "common/v210_words.h"
#include "peers.h"
#include "subsystems.h"
#include "zrdraw/mux.h"
#include "zrdraw/wipes.h"

#include <array>
#include <functional>
#include <thread>

#include <immintrin.h>

namespace {

constexpr unsigned int scale = 65536;

// Two sources and a destination.
struct Pictures {
    explicit Pictures(std::size_t bytes) : a(bytes), b(bytes), out(bytes) {}
    Buffer a, b, out;
};

using Shared = std::shared_ptr<Pictures>;

// One picture is copied by four new threads, in bands.
Job copyOnFourThreads(const Shared& pictures) {
    return repeated([pictures] {
        std::array<std::thread, 4> threads;
        const std::size_t quarter = pictures->a.size() / threads.size();
        for (std::size_t i = 0; i < threads.size(); ++i)
            threads[i] = std::thread([&pictures, quarter, i] {
                std::memcpy(pictures->out.bytes() + i * quarter, pictures->a.bytes() + i * quarter,
                            quarter);
            });
        for (std::thread& thread : threads)
            thread.join();
    });
}

// Two reads and one write for each byte, on one thread.
[[gnu::target("avx2")]] void mixBytewise(unsigned char* to, const unsigned char* a,
                                         const unsigned char* b, std::size_t bytes) {
    for (std::size_t i = 0; i + 32 <= bytes; i += 32) {
        const __m256i x = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(a + i));
        const __m256i y = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(b + i));
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(to + i), _mm256_xor_si256(x, y));
    }
}

Job twoReadsOneWrite(const Shared& pictures) {
    return repeated([pictures] {
        mixBytewise(pictures->out.bytes(), pictures->a.bytes(), pictures->b.bytes(),
                    pictures->a.size());
    });
}

Job wipe(const Shared& pictures, const FrameSize& size, unsigned int code, unsigned int range,
         unsigned int position) {
    const auto width = static_cast<unsigned int>(size.width);
    const auto height = static_cast<unsigned int>(size.height);
    return repeated([=] {
        ZRDraw_DisplayWipe(pictures->a.bytes(), width * 4, pictures->b.bytes(), width * 4,
                           pictures->out.bytes(), width * 4, code, ptBGRA32, width, height, 1, 1, 0,
                           0, 0, 0, range, position);
    });
}

void addWipes(const FrameSize& size, const Shared& pictures) {
    for (const zrWipe& row : zrWipes)
        if (row.name != nullptr && row.kernel != zrfxDISSOLVE)
            addComparison({std::string("wipe ") + row.name + "/" + size.name,
                           microseconds,
                           wipe(pictures, size, row.first, scale, scale * 2 / 5),
                           {{"memcpy, 4 threads", copyOnFourThreads(pictures), 1 / 1.25}},
                           true});
}

void addDissolves(const FrameSize& size, const Shared& pictures) {
    const auto width = static_cast<unsigned int>(size.width);
    const auto height = static_cast<unsigned int>(size.height);
    const auto oneThread = repeated([=] {
        zrfxDISSOLVE(pictures->a.bytes(), width * 4, pictures->b.bytes(), width * 4,
                     pictures->out.bytes(), width * 4, 0, ptBGRA32, width, height, 1, 1, 0, 0, 0, 0,
                     scale, 20000, 0, width, 0, height);
    });
    addComparison({std::string("dissolve, power of two, 1 thread/") + size.name,
                   microseconds,
                   oneThread,
                   {{"two reads, one write", twoReadsOneWrite(pictures), 1 / 1.4}}});
    Comparison whole{std::string("dissolve, power of two, 4 threads/") + size.name,
                     microseconds,
                     wipe(pictures, size, 0, scale, 20000),
                     {},
                     true};
    Comparison odd{std::string("dissolve, 7 of 25, 4 threads/") + size.name,
                   microseconds,
                   wipe(pictures, size, 0, 25, 7),
                   {},
                   true};
    for (const MixPeer& peer : peers<MixPeer>()) {
        const Job job = peer.mix(pictures->out.bytes(), pictures->a.bytes(), pictures->b.bytes(),
                                 size.width, size.height, 0.3);
        whole.rivals.push_back({peer.name, job, 1.0});
        odd.rivals.push_back({peer.name, job, peer.isExact ? 1.0 : 0.0});
    }
    addComparison(whole);
    addComparison(odd);
}

void addThreads() {
    static unsigned char byte[4];
    const Job idleTransition = repeated([] {
        ZRDraw_FXMultiThread(byte, 0, byte, 0, byte, 0, 0, 10, 2, 2, 0, 0, 0, 0, 0, 0, 1, 0, 0, 2,
                             0, 2, zrfxDISSOLVE);
    });
    const Job idleThreads = repeated([] {
        std::array<std::thread, 4> threads;
        for (std::thread& thread : threads)
            thread = std::thread([] {});
        for (std::thread& thread : threads)
            thread.join();
    });
    addComparison({"start and end of four threads",
                   microseconds,
                   idleTransition,
                   {{"four std::thread", idleThreads}},
                   true});
}

// v210 as the tool takes it through words of 16 bits, over the first source.
void addFullPrecision(const FrameSize& size) {
    const auto width = static_cast<unsigned int>(size.width);
    const auto height = static_cast<unsigned int>(size.height);
    const std::size_t bytes = GetDrawSize(ptV210, size.width, size.height, 0);
    const unsigned int pitch = width * wordPixelBytes;
    const auto frames = std::make_shared<Pictures>(bytes);
    const auto words = std::make_shared<Pictures>(std::size_t{pitch} * height + wordOverhang);
    addComparison({std::string("v210 at full precision/") + size.name,
                   microseconds,
                   repeated([=] {
                       const auto expand = [&](Buffer& frame, Buffer& to) {
                           for (unsigned int y = 0; y < height; ++y)
                               expandV210Line(frame.bytes() + bytes / height * y,
                                              to.bytes() + std::size_t{pitch} * y, size.width);
                       };
                       expand(frames->a, words->a);
                       expand(frames->b, words->b);
                       ZRDraw_DisplayWipe(words->a.bytes(), pitch, words->b.bytes(), pitch,
                                          words->a.bytes(), pitch, zrWipeRectangle, zrWipeWord3,
                                          width, height, 1, 1, 0, 0, 0, 0, scale, scale / 2);
                       for (unsigned int y = 0; y < height; ++y)
                           packV210Line(words->a.bytes() + std::size_t{pitch} * y,
                                        frames->out.bytes() + bytes / height * y, size.width);
                   }),
                   {},
                   true});
}

void addFrontEnds(const FrameSize& size) {
    const auto width = static_cast<unsigned int>(size.width);
    const auto height = static_cast<unsigned int>(size.height);
    const struct {
        const char* name;
        decltype(ZRDraw_DisplayWipeV210)* door;
        unsigned int code;
    } doors[] = {{"4:2:2 front end", ZRDraw_DisplayWipeYCbCr, ptUYVY},
                 {"v210 front end", ZRDraw_DisplayWipeV210, ptV210}};
    for (const auto& [name, door, code] : doors) {
        const std::size_t bytes = GetDrawSize(code, size.width, size.height, 0);
        const auto pitch = static_cast<unsigned int>(bytes / height);
        const auto pictures = std::make_shared<Pictures>(bytes);
        addComparison({std::string(name) + "/" + size.name,
                       microseconds,
                       repeated([=, door = door] {
                           door(pictures->a.bytes(), pitch, pictures->b.bytes(), pitch,
                                pictures->out.bytes(), pitch, zrWipeRectangle, 0, width, height, 1,
                                1, 0, 0, 0, 0, scale, scale / 2);
                       }),
                       {{"memcpy of the three", repeated([pictures, bytes] {
                             std::memcpy(pictures->out.bytes(), pictures->a.bytes(), bytes);
                             std::memcpy(pictures->a.bytes(), pictures->b.bytes(), bytes);
                             std::memcpy(pictures->b.bytes(), pictures->out.bytes(), bytes);
                         }),
                         0.3}},
                       true});
    }
    addFullPrecision(size);
}

void addMux(const FrameSize& size, const Shared& pictures) {
    const struct {
        const char* name;
        unsigned int flags;
        double wanted;
    } modes[] = {{"A", zrMuxA, 0.6},
                 {"anaglyph", zrMuxAnaglyph, 0.6},
                 {"byte0", zrMuxByte0B, 0.6},
                 {"lines", zrMuxInterleave, 0.6},
                 {"columns", unsigned{zrMuxInterleave} | zrMuxSecondForm, 0.6},
                 {"average", zrMuxAverage, 0.6},
                 {"difference", zrMuxDifference, 0.6},
                 {"fields", zrMuxFields, 0.6},
                 {"squeeze", zrMuxSqueeze, 0.5},
                 {"split", zrMuxSplit, 0.6},
                 {"mirror", zrMuxMirror, 0.6},
                 {"key", zrMuxKey, 0.8},
                 {"mix", zrMuxMix, 0.6},
                 {"checker", zrMuxChecker, 0.6},
                 {"blocks", zrMuxBlocks, 0.6},
                 {"two-up", zrMuxTwoUp, 0.6},
                 {"windows", zrMuxWindows, 0.6},
                 {"channel", zrMuxChannel, 0.6}};
    const auto width = static_cast<unsigned int>(size.width);
    const auto height = static_cast<unsigned int>(size.height);
    for (const auto& mode : modes)
        addComparison({std::string("mux ") + mode.name + "/" + size.name,
                       microseconds,
                       repeated([=, flags = mode.flags] {
                           ZRDraw_DisplayMuxRGBA(
                               pictures->a.bytes(), width * height * 4, pictures->b.bytes(),
                               width * height * 4, pictures->out.bytes(), 0, flags, 1, 0x2000, 4,
                               width / 2, height / 2, 0, 0, 0, width, height, width * 4);
                       }),
                       {{"two reads, one write", twoReadsOneWrite(pictures), mode.wanted}}});
}

} // namespace

void addTransitionComparisons() {
    addThreads();
    for (const FrameSize& size : frameSizes) {
        const auto pixels =
            static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height);
        const auto pictures = std::make_shared<Pictures>(pixels * 4);
        addWipes(size, pictures);
        addDissolves(size, pictures);
        addFrontEnds(size);
        addMux(size, pictures);
    }
}
