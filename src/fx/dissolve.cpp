// The dissolve.
#include "fx/kernel_args.h"
#include "fx/mix.h"
#include "fx/mix_fraction.h"
#include "fx/pixel_groups.h"

namespace {

// How samples of a type are mixed, found out once a call.
class Mixer {
public:
    Mixer(SampleType type, double t)
        : m_type(type), m_weights{t, 1.0 - t},
          m_hasStep(type != SampleType::Float && isWholeStep(m_weights, m_step)),
          m_hasFraction(type == SampleType::Byte && !m_hasStep &&
                        hasFraction(m_weights, m_fraction)) {}

    void mix(unsigned char* to, const unsigned char* first, const unsigned char* second,
             std::size_t bytes, const MixNext& next) const {
        if (m_hasFraction)
            mixBytesByFraction(to, first, second, bytes, m_fraction, next);
        else if (m_type == SampleType::Byte)
            mixIntegers(mixBytesByStep, mixBytes, to, first, second, bytes, next);
        else if (m_type == SampleType::Word)
            mixIntegers(mixWordsByStep, mixWords, to, first, second, bytes, next);
        else
            mixFloats(reinterpret_cast<float*>(to), reinterpret_cast<const float*>(first),
                      reinterpret_cast<const float*>(second), bytes / sizeof(float), m_weights);
    }

private:
    template <typename Sample>
    using ByStep = void(Sample*, const Sample*, const Sample*, std::size_t, MixStep,
                        const MixNext&);
    template <typename Sample>
    using ByWeights = void(Sample*, const Sample*, const Sample*, std::size_t, const MixWeights&);

    template <typename Sample>
    void mixIntegers(ByStep<Sample>* byStep, ByWeights<Sample>* byWeights, unsigned char* to,
                     const unsigned char* first, const unsigned char* second, std::size_t bytes,
                     const MixNext& next) const {
        auto* const out = reinterpret_cast<Sample*>(to);
        const auto* const a = reinterpret_cast<const Sample*>(first);
        const auto* const b = reinterpret_cast<const Sample*>(second);
        if (m_hasStep)
            byStep(out, a, b, bytes / sizeof(Sample), m_step, next);
        else
            byWeights(out, a, b, bytes / sizeof(Sample), m_weights);
    }

    SampleType m_type;
    MixWeights m_weights;
    MixStep m_step = 0;
    MixFraction m_fraction{};
    bool m_hasStep;
    bool m_hasFraction;
};

unsigned int dissolve(const KernelArgs& args) {
    const PixelGroup group = pixelGroup(args.pixelType);
    if (!group.isKnown() || args.xEnd <= args.xStart)
        return 0;
    const Mixer mixer(group.type, static_cast<double>(args.position) / args.scale());
    const std::size_t start = std::size_t{args.xStart} * group.bytes;
    const std::size_t bytes = std::size_t{args.xEnd - args.xStart} * group.bytes;
    for (unsigned int y = args.yStart; y < args.yEnd; ++y) {
        const FrameLines line(args, y), next(args, y + 1);
        mixer.mix(line.destination + start, line.incoming + start, line.outgoing + start, bytes,
                  {next.destination + start, next.incoming + start, next.outgoing + start});
    }
    return 0;
}

} // namespace

unsigned int zrfxDISSOLVE2(ZRFX_PARAMETERS) {
    return dissolve(ZRFX_ARGUMENTS);
}

unsigned int zrfxDISSOLVE(ZRFX_PARAMETERS) {
    return pixelGroup(pixelType).isKnown() ? zrfxDISSOLVE2(ZRFX_VALUES) : 0;
}
