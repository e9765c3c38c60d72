// The span kernels: fills and copies against the C library's, blends beside those of others.
#include "peers.h"
#include "subsystems.h"
#include "zrdraw/platform/memory.h"
#include "zrdraw/span.h"

namespace {

// The entry that chooses by processor, and the portable one.
template <typename Function>
struct Body {
    const char* suffix;
    Function* function;
    bool measured; // against the wanted ratio
};

constexpr Body<decltype(zrdraw_fill_pattern)> fillBodies[] = {{"", zrdraw_fill_pattern, true},
                                                              {"_c", zrdraw_fill_pattern_c, false}};
constexpr Body<decltype(zrdraw_blend_bgra_over)> blendBodies[] = {
    {"", zrdraw_blend_bgra_over, true}, {"_c", zrdraw_blend_bgra_over_c, false}};

struct PatternWidth {
    unsigned int bytes;
    double wantedOnFrame;
};
constexpr PatternWidth patternWidths[] = {{3, 0.8}, {4, 0.9}, {6, 0.8}, {8, 0.9}};

struct ShortRun {
    std::size_t patterns;
    double wanted;
};
constexpr ShortRun shortRuns[] = {{16, 0.5}, {1000, 0.8}};

Job setBytes(std::size_t bytes) {
    return repeated([at = target().bytes(), bytes] { std::memset(at, 0x5A, bytes); });
}

void addFills(const PatternWidth& width) {
    static constexpr unsigned char pattern[8] = {1, 2, 3, 4, 5, 6, 7, 8};
    for (const auto& body : fillBodies) {
        const auto fill = [&](std::size_t count) {
            return repeated([=, function = body.function, bytes = width.bytes,
                             at = target().bytes()] { function(at, pattern, bytes, count); });
        };
        const std::string name =
            "fill" + std::string(body.suffix) + "/" + std::to_string(width.bytes) + " bytes/";
        addComparison(
            {name + "frame",
             microseconds,
             fill(frameBytes / width.bytes),
             {{"memset", setBytes(frameBytes), body.measured ? width.wantedOnFrame : 0}}});
        for (const ShortRun& run : shortRuns)
            addComparison({name + "run of " + std::to_string(run.patterns),
                           nanoseconds,
                           fill(run.patterns),
                           {{"memset", setBytes(run.patterns * width.bytes),
                             body.measured ? run.wanted : 0}}});
    }
}

void addPlatformMemory(Frame& source) {
    addComparison({"SetMemoryFast/frame",
                   microseconds,
                   repeated([at = target().bytes()] { SetMemoryFast(at, 0x01020304, frameBytes); }),
                   {{"memset", setBytes(frameBytes)}}});
    const auto copy = [&](auto* function) {
        return repeated([function, to = target().bytes(), from = source.bytes()] {
            function(to, from, frameBytes);
        });
    };
    addComparison({"CopyMemoryFast/frame",
                   microseconds,
                   copy(CopyMemoryFast),
                   {{"memcpy", copy(std::memcpy)}}});
}

void addBlends(const std::string& picture, Frame& source, double wanted) {
    for (const auto& body : blendBodies) {
        const Job ours = repeated([function = body.function, to = target().bytes(),
                                   from = source.bytes()] { function(to, from, framePixels); });
        Comparison comparison{
            "blend" + std::string(body.suffix) + "/" + picture, microseconds, ours, {}};
        for (const BlendPeer& peer : peers<BlendPeer>())
            comparison.rivals.push_back(
                {peer.name, peer.over(target(), source), body.measured ? wanted : 0});
        addComparison(comparison);
    }
}

} // namespace

void addSpanComparisons() {
    for (const PatternWidth& width : patternWidths)
        addFills(width);

    static Frame random;
    paintRandom(random, frameWidth, frameHeight);
    addPlatformMemory(random);
    addBlends("random alpha", random, 1.0);

    static Frame logo;
    paintRandom(logo, frameWidth / 4, frameHeight * 4 / 10);
    addBlends("nine tenths empty", logo, 1.0);

    static Frame opaque;
    paintRandom(opaque, frameWidth, frameHeight);
    for (std::size_t i = 0; i < framePixels; ++i)
        opaque.bytes()[i * 4 + 3] = 0xFF;
    addBlends("opaque", opaque, 0);
}
