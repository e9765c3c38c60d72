// RGB to YCbCr and back in every matrix mode of BT.601, BT.709 and BT.2020.
#include "pixel/rgba.h"
#include "zrdraw/zrpixel.h"

#include <array>

namespace {

constexpr unsigned int rawOffset = 1000;

// A mode and its raw twin share their rows; -1 for a mode that has none.
int rowOf(cmYCbCr mode) {
    const unsigned int value = static_cast<unsigned int>(mode);
    const unsigned int row = value >= rawOffset ? value - rawOffset : value;
    return row <= cmRec2020CLUncentred ? static_cast<int>(row) : -1;
}

// A plain sum: r * R + g * G + b * B + offset, in this order.
struct Sum {
    double r, g, b, offset;
    double of(double red, double green, double blue) const {
        return r * red + g * green + b * blue + offset;
    }
};

struct Forward {
    Sum y, cb, cr;
};

constexpr Forward rec601{
    {0.257, 0.504, 0.098, 0.0625}, {-0.148, -0.291, 0.439, 0.5}, {0.439, -0.368, -0.071, 0.5}};
// By contract: chroma of the full-range BT.2020 modes is centred on 0.0, that of all others on 0.5.
constexpr Forward rec2020Full{
    {0.2627, 0.678, 0.0593, 0.0}, {-0.1396, -0.3604, 0.5, 0.0}, {0.5, -0.4598, -0.0402, 0.0}};

// Of modes 0 to 6; 7 and 8 have the luma of 6 and chroma of their own.
constexpr Forward forwardRows[] = {
    rec601,
    rec601,
    {{0.299, 0.587, 0.114, 0.0}, {-0.172, -0.339, 0.511, 0.5}, {0.511, -0.428, -0.083, 0.5}},
    {{0.183, 0.614, 0.062, 0.0625}, {-0.101, -0.338, 0.439, 0.5}, {0.439, -0.399, -0.04, 0.5}},
    {{0.212585, 0.71521, 0.072205, 0.0},
     {-0.117188, -0.394226, 0.511414, 0.5},
     {0.511414, -0.464508, -0.046906, 0.5}},
    {{0.2256, 0.5823, 0.0509, 0.0625},
     {-0.1226, -0.3166, 0.4392, 0.5},
     {0.4392, -0.4039, -0.0353, 0.5}},
    rec2020Full,
};

// Constant luminance: a chroma difference is scaled by its sign.
double scaledDifference(double difference, double ifNegative, double ifPositive) {
    return difference <= 0 ? difference / ifNegative : difference / ifPositive;
}

// With c and d the chroma less its zero: R = Y' + rd * d, G = Y' - gd * d - gc * c,
// B = Y' + bc * c, where Y' = (Y - yZero) * yScale.
struct Backward {
    double yZero, yScale, rd, gd, gc, bc;
};

constexpr Backward rec601Back{0.0625, 1.164, 1.596, 0.813, 0.391, 2.017};
constexpr Backward rec2020FullBack{0.0, 1.0, 1.4746, 0.5714, 0.1646, 1.8815};

// Of modes 0 to 7.
constexpr Backward backwardRows[] = {
    rec601Back,
    rec601Back,
    {0.0, 1.0, 1.371, 0.698, 0.336, 1.732},
    {0.0625, 1.168932, 1.799744, 0.534991, 0.214082, 2.120653},
    {0.0, 1.0, 1.5748, 0.468124, 0.187324, 1.8556},
    {0.0625, 1.164, 1.6786, 0.6504, 0.1873, 2.1417},
    rec2020FullBack,
    rec2020FullBack,
};

using Rgb = std::array<double, 3>;

Rgb toRgb(const Backward& row, double y, double cb, double cr) {
    const double luma = (y - row.yZero) * row.yScale;
    const double c = cb - 0.5;
    const double d = cr - 0.5;
    return {luma + row.rd * d, luma - row.gd * d - row.gc * c, luma + row.bc * c};
}

// By contract: mode 8 takes chroma without the 0.5.
Rgb toRgbUncentred(double y, double cb, double cr) {
    return {y + 1.4746 * cr, y - 0.16455312684366 * cb - 0.57135312684366 * cr, y + 1.8814 * cb};
}

// Fixed-point rows in units of 1/16384; the offset is added after the division.
constexpr double fixedUnit = 16384;

double fixedSum(const Sum& sum, double r, double g, double b) {
    return (sum.r * r + sum.g * g + sum.b * b) / fixedUnit + sum.offset;
}

// By contract: the plus signs in the Cr of the first row stand as they are.
constexpr Forward studio10{
    {11914, 40095, 4050, 64}, {-6388, -21595, 28073, 512}, {28017, 25349, 2566, 512}};
constexpr Forward rec2020In10{
    {13954, 44416, 3840, 64}, {-4584, -19992, 24576, 512}, {24576, -30144, -2624, 512}};

} // namespace

int ZRPixel::RGBToYCbCr(double r, double g, double b, double, double& y, double& cb, double& cr,
                        double&) {
    const int row = rowOf(yCbCrMode);
    if (row < 0)
        return 0;
    if (row >= static_cast<int>(cmRec2020CL)) {
        y = rec2020Full.y.of(r, g, b);
        cb = scaledDifference(b - y, 1.9404, 1.5816);
        cr = scaledDifference(r - y, 1.7184, 0.9936);
        return 0;
    }
    const Forward& forward = forwardRows[row];
    y = forward.y.of(r, g, b);
    cb = forward.cb.of(r, g, b);
    cr = forward.cr.of(r, g, b);
    return 0;
}

int ZRPixel::RGBToYCbCr10(double r, double g, double b, double, double& y, double& cb, double& cr,
                          double&) {
    const int row = rowOf(yCbCrMode);
    const bool studio = row == cmRec601Default || row == cmRec601 || row == cmRec709;
    const bool rec2020 = row == cmRec2020 || row == cmRec2020Full;
    if (!studio && !rec2020)
        return 0;
    const Forward& forward = studio ? studio10 : rec2020In10;
    y = fixedSum(forward.y, r, g, b);
    cb = fixedSum(forward.cb, r, g, b);
    cr = fixedSum(forward.cr, r, g, b);
    return 0;
}

int ZRPixel::YCbCrToRGB(double y, double cb, double cr, double, double& r, double& g, double& b,
                        double& aOut) {
    // The raw constant luminance modes are both mode 8 without the clamp.
    const bool raw = static_cast<unsigned int>(yCbCrMode) >= rawOffset;
    const int row = rowOf(yCbCrMode);
    if (row < 0)
        return 0;
    const bool uncentred = row == cmRec2020CLUncentred || (raw && row == cmRec2020CL);
    const Rgb rgb = uncentred ? toRgbUncentred(y, cb, cr) : toRgb(backwardRows[row], y, cb, cr);
    r = raw ? rgb[0] : clampToUnit(rgb[0]);
    g = raw ? rgb[1] : clampToUnit(rgb[1]);
    b = raw ? rgb[2] : clampToUnit(rgb[2]);
    aOut = 0.0;
    return 0;
}

int ZRPixel::YCbCrToHSV(double y, double cb, double cr, double a, double& h, double& s, double& v,
                        double& aOut) {
    if (rowOf(yCbCrMode) < 0)
        return 0;
    double r = 0.0, g = 0.0, b = 0.0, alpha = 0.0;
    YCbCrToRGB(y, cb, cr, a, r, g, b, alpha);
    return RGBToHSV(r, g, b, alpha, h, s, v, aOut);
}

int ZRPixel::SetYCbCrMode(cmYCbCr mode) {
    yCbCrMode = mode;
    return 0;
}

int ZRPixel::GetYCbCrMode(cmYCbCr& mode) {
    mode = yCbCrMode;
    return 0;
}
