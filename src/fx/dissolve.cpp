// The dissolve.
#include "fx/kernel_args.h"
#include "fx/mix.h"
#include "fx/pixel_groups.h"

namespace {

struct Run {
    unsigned char* to;
    const unsigned char* first;
    const unsigned char* second;
    std::size_t samples;
};

void mixRun(const Run& run, SampleType type, const MixWeights& weights) {
    const auto words = [](auto* bytes) { return reinterpret_cast<const unsigned short*>(bytes); };
    const auto floats = [](auto* bytes) { return reinterpret_cast<const float*>(bytes); };
    MixStep step = 0;
    const bool whole = type != SampleType::Float && isWholeStep(weights, step);
    if (type == SampleType::Byte && whole)
        mixBytesByStep(run.to, run.first, run.second, run.samples, step);
    else if (type == SampleType::Byte)
        mixBytes(run.to, run.first, run.second, run.samples, weights);
    else if (type == SampleType::Word && whole)
        mixWordsByStep(reinterpret_cast<unsigned short*>(run.to), words(run.first),
                       words(run.second), run.samples, step);
    else if (type == SampleType::Word)
        mixWords(reinterpret_cast<unsigned short*>(run.to), words(run.first), words(run.second),
                 run.samples, weights);
    else
        mixFloats(reinterpret_cast<float*>(run.to), floats(run.first), floats(run.second),
                  run.samples, weights);
}

unsigned int dissolve(const KernelArgs& args) {
    const PixelGroup group = pixelGroup(args.pixelType);
    if (!group.isKnown() || args.xEnd <= args.xStart)
        return 0;
    const double t = static_cast<double>(args.position) / static_cast<double>(args.scale());
    const MixWeights weights{t, 1.0 - t};
    const std::size_t start = static_cast<std::size_t>(args.xStart) * group.bytes;
    const std::size_t samples = static_cast<std::size_t>(args.xEnd - args.xStart) * group.samples;
    for (unsigned int y = args.yStart; y < args.yEnd; ++y) {
        const FrameLines line(args, y);
        mixRun({line.destination + start, line.incoming + start, line.outgoing + start, samples},
               group.type, weights);
    }
    return 0;
}

} // namespace

extern "C" unsigned int zrfxDISSOLVE2(ZRFX_PARAMETERS) {
    return dissolve(ZRFX_ARGUMENTS);
}

extern "C" unsigned int zrfxDISSOLVE(ZRFX_PARAMETERS) {
    const bool integers = pixelType >= ptRGBA32 && pixelType <= ptBGR24;
    const bool deep = pixelType >= fxFloat4 && pixelType <= fxWord4;
    return integers || deep ? zrfxDISSOLVE2(ZRFX_VALUES) : 0;
}
