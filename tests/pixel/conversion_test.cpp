// The colour model: matrices in every mode, and hue, saturation and value.
#include "zrdraw/zrpixel.h"

#include <gtest/gtest.h>

#include <array>

namespace {

using Triple = std::array<double, 3>;

void expectNear(const Triple& actual, const Triple& expected, double error = 1e-15) {
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_NEAR(actual[i], expected[i], error);
}

constexpr double sentinel = -77.0;
constexpr Triple untouched{sentinel, sentinel, sentinel};

struct Converter : ZRPixel {
    explicit Converter(unsigned int mode) { SetYCbCrMode(static_cast<cmYCbCr>(mode)); }
    Triple convert(decltype(&ZRPixel::RGBToHSV) form, const Triple& in) {
        Triple out = untouched;
        EXPECT_EQ((this->*form)(in[0], in[1], in[2], 0.3, out[0], out[1], out[2], alpha), 0);
        return out;
    }
    Triple toYCbCr(const Triple& in) { return convert(&ZRPixel::RGBToYCbCr, in); }
    Triple toRgb(const Triple& in) { return convert(&ZRPixel::YCbCrToRGB, in); }
    double alpha = sentinel;
};

TEST(Matrices, OneColourInEveryMode) {
    // Worked out by hand for R = 1, G = 0.5, B = 0.25, and for Y = 0.5, Cb = 0.6, Cr = 0.45.
    struct Case {
        unsigned int mode;
        Triple yCbCr, rgb;
    };
    const Triple rec601Forward{0.596, 0.31625, 0.73725};
    const Triple rec601Back{0.42945, 0.5108, 0.71095};
    const Triple clForward{0.616525, -0.1888914657, 0.3859450483};
    const Triple rec2020FullBack{0.42627, 0.51211, 0.68815};
    const Triple uncentred{1.16357, 0.1441592168, 1.62884};
    const Case cases[] = {
        {0, rec601Forward, rec601Back},
        {1, rec601Forward, rec601Back},
        {2, {0.621, 0.28625, 0.77625}, {0.43145, 0.5013, 0.6732}},
        {3, {0.568, 0.33975, 0.7295}, {0.42142055, 0.51674910, 0.72347305}},
        {4, {0.58824125, 0.3135525, 0.7674335}, {0.42126, 0.5046738, 0.68556}},
        {5, {0.591975, 0.3289, 0.728425}, {0.42532, 0.52304, 0.72342}},
        {6, {0.616525, -0.1948, 0.26005}, rec2020FullBack},
        {7, clForward, rec2020FullBack},
        {8, clForward, {1.0, uncentred[1], 1.0}},
        {1006, {0.616525, -0.1948, 0.26005}, rec2020FullBack},
        {1007, clForward, uncentred},
        {1008, clForward, uncentred},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.mode);
        Converter converter(c.mode);
        expectNear(converter.toYCbCr({1, 0.5, 0.25}), c.yCbCr, 1e-9);
        EXPECT_EQ(converter.alpha, sentinel) << "towards YCbCr the alpha is not written";
        expectNear(converter.toRgb({0.5, 0.6, 0.45}), c.rgb, 1e-9);
        EXPECT_EQ(converter.alpha, 0.0) << "towards RGB it is 0 always";
    }
    // Constant luminance has a second slope for differences above 0.
    expectNear(Converter(7).toYCbCr({0, 0, 1}), {0.0593, 0.5947774406, -0.0345088454}, 1e-9);
}

TEST(YCbCrToRgb, OnlyModesBelow1000Clamp) {
    for (unsigned int mode = 0; mode <= 6; ++mode) {
        Converter clamping(mode), raw(mode + 1000);
        expectNear(clamping.toRgb({1.5, 0.5, 0.5}), {1.0, 1.0, 1.0});
        expectNear(clamping.toRgb({-1.0, 0.5, 0.5}), {0.0, 0.0, 0.0});
        EXPECT_GT(raw.toRgb({1.5, 0.5, 0.5})[0], 1.4) << mode;
        EXPECT_LT(raw.toRgb({-1.0, 0.5, 0.5})[2], -0.9) << mode;
    }
}

TEST(ColourModes, UnknownOnesLeaveOutputsAlone) {
    for (const unsigned int mode : {9U, 500U, 999U, 1009U, 2001U, 0xFFFFFFFFU}) {
        Converter converter(mode);
        expectNear(converter.toRgb({0.5, 0.5, 0.5}), untouched);
        expectNear(converter.toYCbCr({0.5, 0.5, 0.5}), untouched);
        expectNear(converter.convert(&ZRPixel::YCbCrToHSV, {0.5, 0.5, 0.5}), untouched);
        EXPECT_EQ(converter.alpha, sentinel);
        cmYCbCr stored{};
        EXPECT_EQ(converter.GetYCbCrMode(stored), 0);
        EXPECT_EQ(static_cast<unsigned int>(stored), mode);
    }
}

TEST(RgbToYCbCr10, SharesRowsBetweenModes) {
    // Of R = 100, G = 50, B = 200.
    const Triple studio{308.5159912109, 749.7960205078, 791.6844482422};
    const Triple rec2020{331.5903320312, 723.0107421875, 537.9765625};
    const auto convert = [](unsigned int mode) {
        Triple out = untouched;
        Converter converter(mode);
        EXPECT_EQ(
            converter.RGBToYCbCr10(100, 50, 200, 255, out[0], out[1], out[2], converter.alpha), 0);
        EXPECT_EQ(converter.alpha, sentinel);
        return out;
    };
    for (const unsigned int mode : {0U, 1U, 3U, 1000U, 1001U, 1003U})
        expectNear(convert(mode), studio, 1e-9);
    for (const unsigned int mode : {5U, 6U, 1005U, 1006U})
        expectNear(convert(mode), rec2020, 1e-9);
    for (const unsigned int mode : {2U, 4U, 7U, 8U, 9U, 1002U})
        expectNear(convert(mode), untouched);
}

TEST(Hsv, FromRgb) {
    struct Case {
        Triple rgb, hsv;
        bool alphaPassed;
    };
    const Case cases[] = {
        {{1, 0, 0}, {0, 1, 1}, true},       {{0, 1, 0}, {120, 1, 1}, true},
        {{0, 0, 1}, {240, 1, 1}, true},     {{1, 0, 0.5}, {330, 1, 1}, true},
        {{0.5, 1, 1}, {180, 0.5, 1}, true}, {{0.5, 0.5, 0.5}, {-1, 0, 0.5}, false},
        {{0, 0, 0}, {-1, 0, 0}, false},     {{0.25, 0.25, 0}, {60, 1, 0.25}, true},
    };
    for (const Case& c : cases) {
        Converter converter(1);
        SCOPED_TRACE(testing::Message() << c.rgb[0] << " " << c.rgb[1] << " " << c.rgb[2]);
        expectNear(converter.convert(&ZRPixel::RGBToHSV, c.rgb), c.hsv);
        EXPECT_EQ(converter.alpha, c.alphaPassed ? 0.3 : sentinel);
    }
}

TEST(Hsv, FromYCbCrLosesTheAlpha) {
    Converter converter(2);
    const Triple out = converter.convert(&ZRPixel::YCbCrToHSV, {0.5, 0.5, 0.7});
    EXPECT_EQ(converter.alpha, 0.0);
    const Triple rgb = converter.toRgb({0.5, 0.5, 0.7});
    EXPECT_EQ(out[2], rgb[0]) << "red is the largest";
    EXPECT_EQ(out[1], (rgb[0] - rgb[1]) / rgb[0]);
}

TEST(BlendPixel, IsNotClamped) {
    ZRPixel pixel;
    double r = 1.0, g = 0.5, b = 0.0;
    pixel.BlendPixel(r, g, b, 0.0, 0.5, 1.0, 25);
    expectNear({r, g, b}, {0.75, 0.5, 0.25});
    pixel.BlendPixel(r, g, b, 0.0, 0.5, 1.0, 300);
    expectNear({r, g, b}, {-1.5, 0.5, 2.5});
}

} // namespace
