// Half floats against plain arithmetic, and against the processor where it converts them.
#include <gtest/gtest.h>

#include <cmath>
#include <immintrin.h>
#include <random>

#include "zrdraw/half_float.h"

namespace {

constexpr float infinity = std::numeric_limits<float>::infinity();

std::uint32_t bitsOf(float value) {
    return std::bit_cast<std::uint32_t>(value);
}

__attribute__((target("f16c"))) std::uint16_t processorHalf(float value) {
    return static_cast<std::uint16_t>(_cvtss_sh(value, _MM_FROUND_TO_NEAREST_INT));
}

__attribute__((target("f16c"))) float processorFloat(std::uint16_t half) {
    return _cvtsh_ss(half);
}

} // namespace

TEST(HalfFloat, EveryHalfIsExactAndReturns) {
    for (unsigned int bits = 0; bits <= 0xFFFF; ++bits) {
        const auto half = static_cast<std::uint16_t>(bits);
        const float value = zrHalfToFloat(half);
        const int exponent = static_cast<int>(bits >> 10 & 31), mantissa = bits & 0x3FF;
        ASSERT_EQ(std::signbit(value), bits > 0x7FFF) << bits;
        if (exponent == 31 && mantissa != 0) {
            ASSERT_EQ(bitsOf(value) & 0x7FFFFFFF, 0x7F800000U | (bits & 0x3FF) << 13) << bits;
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
        {0.0F, 0x0000, "zero"},
        {1.0F, 0x3C00, "one"},
        {infinity, 0x7C00, "infinity"},
        {65504.0F, 0x7BFF, "the largest"},
        {65519.996F, 0x7BFF, "the last that rounds down to it"},
        {65520.0F, 0x7C00, "a tie carries into infinity"},
        {65536.0F, 0x7C00, "overflow"},
        {3.0e38F, 0x7C00, "far overflow"},
        {0x1.002p0F, 0x3C00, "a tie down to even"},
        {0x1.006p0F, 0x3C02, "a tie up to even"},
        {0x1.002002p0F, 0x3C01, "just above a tie"},
        {0x1.005FFEp0F, 0x3C01, "just below a tie"},
        {0x1.FFEp0F, 0x4000, "a tie carries into the exponent"},
        {0x1.FFDFFEp0F, 0x3FFF, "below that carry"},
        {0x1p-14F, 0x0400, "the smallest normal"},
        {0x1.FF8p-15F, 0x03FF, "the largest subnormal"},
        {0x1.FFCp-15F, 0x0400, "a subnormal tie carries into the normals"},
        {0x1.FFBFFEp-15F, 0x03FF, "below that carry"},
        {0x1.8p-23F, 0x0003, "an exact subnormal"},
        {0x1.4p-23F, 0x0002, "a subnormal tie down to even"},
        {0x1.Cp-23F, 0x0004, "a subnormal tie up to even"},
        {0x1p-24F, 0x0001, "the smallest"},
        {0x1.8p-24F, 0x0002, "a tie between the two smallest"},
        {0x1.000002p-25F, 0x0001, "just above half of the smallest"},
        {0x1p-25F, 0x0000, "half of the smallest ties to zero"},
        {0x1.FFFFFEp-26F, 0x0000, "just below"},
        {0x1p-149F, 0x0000, "a float subnormal"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(zrFloatToHalf(c.value), c.half) << c.why;
        EXPECT_EQ(zrFloatToHalf(-c.value), c.half | 0x8000) << "negative: " << c.why;
    }
}

TEST(HalfFloat, NaNsBecomeQuietAndLoseTheirPayload) {
    for (const std::uint32_t payload :
         {0x1U, 0x2000U, 0x3FFFFFU, 0x400000U, 0x400001U, 0x7FFFFFU}) {
        for (const std::uint32_t sign : {0U, 0x80000000U})
            EXPECT_EQ(zrFloatToHalf(std::bit_cast<float>(sign | 0x7F800000U | payload)),
                      sign >> 16 | 0x7E00)
                << payload;
    }
}

// NaNs differ: the processor keeps the upper payload bits of a float and sets the quiet bit of a
// half, where ours drops the one and leaves the other.
TEST(HalfFloat, ConvertsAsTheProcessorDoes) {
    if (!__builtin_cpu_supports("f16c"))
        GTEST_SKIP() << "the processor converts no half floats";
    for (unsigned int bits = 0; bits <= 0xFFFF; ++bits) {
        const auto half = static_cast<std::uint16_t>(bits);
        const std::uint32_t quiet = std::isnan(zrHalfToFloat(half)) ? 0x400000 : 0;
        ASSERT_EQ(bitsOf(zrHalfToFloat(half)) | quiet, bitsOf(processorFloat(half))) << bits;
    }
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
