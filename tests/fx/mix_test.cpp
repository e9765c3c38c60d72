// The bodies of the dissolve against each other and against exact integers.
#include "fx/frames.h"
#include "fx/mix.h"
#include "fx/mix_fraction.h"
#include "fx/mix_step_avx2.h"
#include "fx/mix_step_loops.h"
#include "zrdraw/span.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

MixWeights weightsOf(MixStep step) {
    const double t = step / 65536.0;
    return {t, 1.0 - t};
}

template <typename Sample>
MixNext nextOf(Sample* to, const Sample* first, const Sample* second) {
    const auto bytes = [](auto* samples) {
        return reinterpret_cast<const unsigned char*>(samples);
    };
    return {bytes(to), bytes(first), bytes(second)};
}

std::vector<MixStep> someSteps(MixStep stride) {
    std::vector<MixStep> steps{1, 2, 32767, 32768, 32769, 65534, 65535, 65536};
    for (MixStep step = 0; step <= 65536; step += stride)
        steps.push_back(step);
    return steps;
}

template <typename Sample>
using Body = void (*)(Sample*, const Sample*, const Sample*, std::size_t, MixStep);

template <typename Sample>
void compare(const std::vector<Sample>& a, const std::vector<Sample>& b,
             const std::vector<MixStep>& steps, const std::vector<Body<Sample>>& bodies) {
    std::vector<Sample> expected(a.size()), out(a.size());
    for (const MixStep step : steps) {
        for (std::size_t i = 0; i < a.size(); ++i)
            expected[i] = static_cast<Sample>(
                (std::uint64_t{a[i]} * step + std::uint64_t{b[i]} * (65536 - step)) >> 16);
        for (std::size_t i = 0; i < bodies.size(); ++i) {
            bodies[i](out.data(), a.data(), b.data(), a.size(), step);
            ASSERT_EQ(out, expected) << "body " << i << ", step " << step << ", seed " << seed;
        }
    }
}

// Every byte with every byte, and a few more.
struct AllPairs {
    std::vector<unsigned char> a, b;
    AllPairs() {
        for (unsigned int i = 0; i < 65536 + 3; ++i) {
            a.push_back(static_cast<unsigned char>(i));
            b.push_back(static_cast<unsigned char>(i >> 8));
        }
    }
};

TEST(Mix, BytesOfAllBodies) {
    const auto [a, b] = AllPairs();
    compare<unsigned char>(
        a, b, someSteps(331),
        {[](auto* to, auto* first, auto* second, std::size_t count, MixStep step) {
             mixBytes(to, first, second, count, weightsOf(step));
         },
         [](auto* to, auto* first, auto* second, std::size_t count, MixStep step) {
             mixBytesByStep(to, first, second, count, step, nextOf(to, first, second));
         }});
    // The bodies below are not asked for whole copies.
    std::vector<MixStep> steps;
    for (MixStep step = 1; step < 65536; step += 97)
        steps.push_back(step);
    std::vector<Body<unsigned char>> bodies{mixBytesLoop};
    if (zrdraw_avx2_available() != 0)
        bodies.emplace_back(
            [](auto* to, auto* first, auto* second, std::size_t count, MixStep step) {
                const std::size_t place = step % 64; // in a line of the cache
                std::vector<unsigned char> out(place + count);
                mixBytesByStepAvx2(out.data() + place, first, second, count, step,
                                   nextOf(out.data(), first, second));
                std::copy_n(out.data() + place, count, to);
            });
    compare<unsigned char>(a, b, steps, bodies);
}

TEST(Mix, WordsOfAllBodies) {
    Random random(seed);
    std::vector<unsigned short> a{0, 65535, 0, 65535, 1}, b{0, 65535, 65535, 0, 65534};
    for (int i = 0; i < 1000; ++i) {
        a.push_back(static_cast<unsigned short>(random()));
        b.push_back(static_cast<unsigned short>(random()));
    }
    std::vector<Body<unsigned short>> bodies{
        [](auto* to, auto* first, auto* second, std::size_t count, MixStep step) {
            mixWords(to, first, second, count, weightsOf(step));
        },
        [](auto* to, auto* first, auto* second, std::size_t count, MixStep step) {
            mixWordsByStep(to, first, second, count, step, nextOf(to, first, second));
        },
        mixWordsLoop};
    if (zrdraw_avx2_available() != 0)
        bodies.emplace_back(
            [](auto* to, auto* first, auto* second, std::size_t count, MixStep step) {
                mixWordsByStepAvx2(to, first, second, count, step, nextOf(to, first, second));
            });
    compare<unsigned short>(a, b, someSteps(37), bodies);
}

TEST(Mix, BytesByFractions) {
    if (zrdraw_avx2_available() == 0)
        GTEST_SKIP() << "needs AVX2";
    const auto [a, b] = AllPairs();
    std::vector<double> weights{1.0 / 65536, 65535.0 / 65536, 1.0000001 / 65536, 0.5 - 1e-16,
                                0.5 + 1e-15, 1.0 / 257,       256.0 / 257,       77.0 / 65537,
                                1.0 / 3e9,   1.0 - 1e-12,     0.2 + 1e-12};
    for (const double scale : {2, 3, 7, 10, 25, 30, 50, 60, 100, 255, 256, 1000})
        for (double position = 1; position < scale; position += 1 + static_cast<int>(scale / 40))
            weights.push_back(position / scale);
    std::size_t used = 0;
    std::vector<unsigned char> expected(a.size()), out(a.size());
    for (const double t : weights) {
        MixFraction fraction;
        if (!hasFraction({t, 1.0 - t}, fraction))
            continue;
        ++used;
        mixBytes(expected.data(), a.data(), b.data(), a.size(), {t, 1.0 - t});
        mixBytesByFraction(out.data(), a.data(), b.data(), a.size(), fraction,
                           nextOf(out.data(), a.data(), b.data()));
        ASSERT_EQ(out, expected) << t;
        out = a;
        mixBytesByFraction(out.data(), out.data(), b.data(), a.size(), fraction,
                           nextOf(out.data(), a.data(), b.data()));
        ASSERT_EQ(out, expected) << t << ", over the first";
    }
    EXPECT_EQ(used, weights.size() - 2) << "the two that are nearest to 0 and 1 are too near";
    for (const double t : {0.0, 1.0, -0.5, 1.5, 0.0 / 0.0, 1.0 / 0.0}) {
        MixFraction fraction;
        EXPECT_FALSE(hasFraction({t, 1.0 - t}, fraction)) << t;
    }
}

TEST(Mix, OnlyWholeStepsOfTheRangeAreSteps) {
    MixStep step = 0;
    EXPECT_TRUE(isWholeStep({0.25, 0.75}, step));
    EXPECT_EQ(step, 16384U);
    for (const double t :
         {1.0 / 131072, 1.0 / 3, -0.5, 1.0 + 1.0 / 65536, 2.0, 0.0 / 0.0, 1.0 / 0.0})
        EXPECT_FALSE(isWholeStep({t, 1.0 - t}, step)) << t;
}

} // namespace
