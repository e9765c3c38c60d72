#include "fx/mix_step_avx2.h"
#include "fx/mix_step_loops.h"
#include "zrdraw/span.h"

#include <cstring>

namespace {

constexpr MixStep wholeStep = 65536;

// At either end the result is one of the runs as it is.
template <typename Sample>
bool isCopied(Sample* to, const Sample* first, const Sample* second, std::size_t count,
              MixStep step) {
    if (step != 0 && step != wholeStep)
        return false;
    std::memmove(to, step == 0 ? second : first, count * sizeof(Sample));
    return true;
}

} // namespace

bool isWholeStep(const MixWeights& weights, MixStep& step) {
    const double steps = weights.t * wholeStep;
    if (!(steps >= 0.0 && steps <= wholeStep))
        return false;
    step = static_cast<MixStep>(steps);
    return steps == step;
}

void mixBytesByStep(unsigned char* to, const unsigned char* first, const unsigned char* second,
                    std::size_t count, MixStep step, const MixNext& next) {
    if (isCopied(to, first, second, count, step))
        return;
    if (zrdraw_avx2_available() != 0)
        mixBytesByStepAvx2(to, first, second, count, step, next);
    else
        mixBytesLoop(to, first, second, count, step);
}

void mixWordsByStep(unsigned short* to, const unsigned short* first, const unsigned short* second,
                    std::size_t count, MixStep step, const MixNext& next) {
    if (isCopied(to, first, second, count, step))
        return;
    if (zrdraw_avx2_available() != 0)
        mixWordsByStepAvx2(to, first, second, count, step, next);
    else
        mixWordsLoop(to, first, second, count, step);
}
