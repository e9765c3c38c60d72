// Half floats against plain arithmetic, and against the processor where it converts them.
#include "zrdraw/half_float.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include <immintrin.h>

namespace {

[[gnu::target("f16c")]] std::uint16_t processorHalf(float value) {
    return static_cast<std::uint16_t>(_cvtss_sh(value, _MM_FROUND_TO_NEAREST_INT));
}

TEST(HalfFloat, EveryHalfIsExactAndReturns) {
    for (unsigned int bits = 0; bits <= 0xFFFF; ++bits) {
        const auto half = static_cast<std::uint16_t>(bits);
        const float value = zrHalfToFloat(half);
        const int exponent = static_cast<int>(bits >> 10 & 31), mantissa = bits & 0x3FF;
        ASSERT_EQ(std::signbit(value), bits > 0x7FFF) << bits;
        if (exponent == 31 && mantissa != 0) {
            ASSERT_EQ(std::bit_cast<std::uint32_t>(value) & 0x7FFFFFFF, 0x7F800000U | (bits & 0x3FF)
                                                                                          << 13)
                << bits;
            ASSERT_EQ(zrFloatToHalf(value), (bits & 0x8000) | 0x7E00) << bits;
            continue;
        }
        const double magnitude = exponent == 31  ? HUGE_VAL
                                 : exponent == 0 ? std::ldexp(mantissa, -24)
                                                 : std::ldexp(1024 + mantissa, exponent - 25);
        ASSERT_EQ(std::fabs(double{value}), magnitude) << bits;
        ASSERT_EQ(zrFloatToHalf(value), bits);
    }
}

TEST(HalfFloat, RoundsToNearestTiesToEven) {
    struct Case {
        float value;
        unsigned int half;
        const char* why;
    };
    const Case cases[] = {
        {65519.996F, 0x7BFF, "the last that rounds down to it"},
        {65520.0F, 0x7C00, "a tie carries into infinity"},
        {0x1.002p0F, 0x3C00, "a tie down to even"},
        {0x1.006p0F, 0x3C02, "a tie up to even"},
        {std::bit_cast<float>(0x7F800001U), 0x7E00, "a NaN that only its last bit makes one"},
        {std::bit_cast<float>(0x7FFFFFFFU), 0x7E00, "a NaN loses its payload"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(zrFloatToHalf(c.value), c.half) << c.why;
        EXPECT_EQ(zrFloatToHalf(-c.value), c.half | 0x8000) << "negative: " << c.why;
    }
}

// NaNs differ: the processor keeps the upper payload bits, which ours drops.
TEST(HalfFloat, ConvertsAsTheProcessorDoes) {
    if (!__builtin_cpu_supports("f16c"))
        GTEST_SKIP() << "the processor converts no half floats";
    constexpr unsigned int seed = 20240607;
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    // Exponents around those of halves, where all the rounding happens, and any bits at all.
    for (int i = 0; i < 4'000'000; ++i) {
        const std::uint32_t any = static_cast<std::uint32_t>(random());
        const std::uint32_t near = (any & 0x807FFFFF) | (98 + (any >> 23 & 0xFF) % 50) << 23;
        const float value = std::bit_cast<float>(i % 2 != 0 ? any : near);
        if (std::isnan(value))
            ASSERT_EQ(zrFloatToHalf(value), processorHalf(value) & 0xFE00) << any;
        else
            ASSERT_EQ(zrFloatToHalf(value), processorHalf(value)) << std::hexfloat << value;
    }
}

} // namespace
