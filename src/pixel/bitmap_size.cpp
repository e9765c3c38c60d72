// From a bitmap header to a layout and a size: one decision on biCompression.
#include "zrdraw/zrdraw.h"

#include <algorithm>
#include <cstring>
#include <string_view>

namespace {

enum class Code { Fixed, ByDepth, ByDepth48AsRgb, Hcpa, Ocpa, HalfFloat };

// How the size comes to its end.
enum class Finish {
    Keep,  // the larger of computed size and biSizeImage; fills an empty biSizeImage
    Force, // the computed size, also into biSizeImage
    Pass   // biSizeImage as it stands
};

// A size of `multiply` * width * height / `divide`, in signed 32-bit steps.
struct Size {
    int multiply;
    int divide;
};

struct Format {
    std::string_view names; // of four characters each, a space between
    Code rule;
    unsigned int code;       // for Code::Fixed
    unsigned short bitCount; // what biBitCount becomes; 0 leaves it
    Size size;
    Finish finish;
};

constexpr Size noSize{0, 1};

constexpr Format formats[] = {
    {"BW10 BT20 CC12 YC12 V422 RGB2 AUR2 V655 YUV8 RGBA CPLA IUVA 84GB 46GB 84GR 46GR RGBT BTCV "
     "IRAW 84YX 46YX CYUY VDTZ",
     Code::ByDepth, 0, 0, noSize, Finish::Keep},
    {"h4pa", Code::ByDepth48AsRgb, 0, 0, noSize, Finish::Keep},
    {"23d3", Code::Fixed, ptBGRA32, 32, {4, 1}, Finish::Keep},
    {"YUY2 YUNV", Code::Fixed, ptYUYV, 16, {2, 1}, Finish::Keep},
    {"dv50 yuV2 auv2 yuv2 80d3 dv25 MMES UYNV UYVY 1cva dvhd dvsd n1vd p1vd n5vd p5vd  cvd pcvd "
     "nfvd pfvd 2hvd 3hvd 5hvd 6hvd phvd qhvd npvd ppvd mpeg dvcp 52dv 05dv cyuv ctrw 2Vuy 2vuy",
     Code::Fixed,
     ptUYVY,
     16,
     {2, 1},
     Finish::Keep},
    {"YVYU", Code::Fixed, ptYVYU, 16, {2, 1}, Finish::Keep},
    {"21ia 31ia 51ia 61ia p1ia q1ia 25ia 35ia 55ia 65ia p5ia q5ia",
     Code::Fixed,
     ptV210,
     16,
     {2, 1},
     Finish::Keep},
    // By contract: the whole-frame ratio of v210, which knows no 128-byte blocks, so the two forms
    // of GetDrawSize disagree for widths that are no multiple of 48.
    {"v210 01d3 012v a12v", Code::Fixed, ptV210, 16, {16, 6}, Finish::Keep},
    {"hcpa ncpa", Code::Hcpa, 0, 16, {16, 6}, Finish::Keep},
    {"ocpa scpa", Code::Ocpa, 0, 16, {2, 1}, Finish::Keep},
    {"03d3 R01L RF1L R04L RF4L L10R L40R g01R k01R L1FR L4FR", Code::Fixed, ptRGB30DPX, 30, noSize,
     Finish::Pass},
    {"si2k bggr", Code::Fixed, ptBayerBGGR, 12, {3, 2}, Finish::Force},
    {"CBYR DBYR PBYR rggb", Code::Fixed, ptBayerRGGB, 12, {3, 2}, Finish::Force},
    {"RYBP", Code::Fixed, ptBayerRGGB, 10, {4, 3}, Finish::Force},
    {"gbrg", Code::Fixed, ptBayerGBRG, 12, {3, 2}, Finish::Force},
    {"Vcva grbg", Code::Fixed, ptBayerGRBG, 12, {3, 2}, Finish::Force},
    {"BGGR BGGc", Code::Fixed, ptBayerBGGRc, 12, {3, 2}, Finish::Force},
    {"RGGB RGGc", Code::Fixed, ptBayerRGGBc, 12, {3, 2}, Finish::Force},
    {"GBRG GBRc", Code::Fixed, ptBayerGBRGc, 12, {3, 2}, Finish::Force},
    {"GRBG GRBc", Code::Fixed, ptBayerGRBGc, 12, {3, 2}, Finish::Force},
    {"1SCA 2SCA ccCA gcCA tcCA xpCA 61lf", Code::HalfFloat, 0, 0, noSize, Finish::Force},
    {"I420 Y211 YV12 YUV4 IF09 YVU9 CLPL Y41P CLJR Y41T Y42T IYUV r84b a46b 612v 803v 014v 024y "
     "4vuy",
     Code::Fixed, ptNone, 0, noSize, Finish::Pass},
};

// What is found out about one picture.
struct Verdict {
    unsigned int code;
    int size;
    Finish finish;
};

int computeSize(const tagBITMAPINFO& info, Size size) {
    const int lines = info.biHeight < 0 ? -info.biHeight : info.biHeight;
    return size.multiply * info.biWidth * lines / size.divide;
}

// By contract: 16 bits get a 32-bit code at two bytes a pixel, and 48 bits get the code of the
// 64-bit layout at six bytes a pixel.
Verdict judgeByDepth(const tagBITMAPINFO& info, unsigned int codeOf48) {
    switch (info.biBitCount) {
    case 8:
        return {ptNone, 0, Finish::Pass};
    case 15:
    case 16:
        return {ptRGBA32, computeSize(info, {2, 1}), Finish::Keep};
    case 24:
        return {ptBGR24, computeSize(info, {3, 1}), Finish::Keep};
    case 48:
        return {codeOf48, computeSize(info, {6, 1}), Finish::Keep};
    case 64:
        return {ptARGB64, computeSize(info, {8, 1}), Finish::Keep};
    default:
        return {ptBGRA32, computeSize(info, {4, 1}), Finish::Keep};
    }
}

// The place of the red mask's first byte in use tells the byte order.
Verdict judgeByMask(const tagBITMAPINFO& info) {
    const auto& mask = info.biMask;
    if (info.biBitCount == 24) {
        const bool redLow = mask[0] != 0 || mask[1] != 0;
        return {redLow ? ptRGB24 : ptBGR24, computeSize(info, {3, 1}), Finish::Keep};
    }
    const bool twoBytes = info.biBitCount == 15 || info.biBitCount == 16;
    const int bytes = twoBytes ? 2 : 4;
    constexpr unsigned int codeOfByte[] = {ptRGBA32, ptARGB32, ptBGRA32, ptABGR32};
    unsigned int code = twoBytes ? ptNone : static_cast<unsigned int>(ptARGB32);
    for (unsigned int i = 0; i < 4; ++i) {
        if (mask[i] != 0) {
            code = codeOfByte[i];
            break;
        }
    }
    return {code, computeSize(info, {bytes, 1}), Finish::Keep};
}

Verdict judge(const Format& format, const tagBITMAPINFO& info) {
    const auto sized = [&](unsigned int code) {
        return Verdict{code, computeSize(info, format.size), format.finish};
    };
    switch (format.rule) {
    case Code::ByDepth:
        return judgeByDepth(info, ptARGB64);
    case Code::ByDepth48AsRgb:
        return judgeByDepth(info, ptRGB48);
    case Code::Hcpa:
        return sized(info.biBitCount == 8 ? ptUYVY : ptV210);
    case Code::Ocpa:
        return sized(info.biBitCount == 10 ? ptV210 : ptUYVY);
    case Code::HalfFloat:
        // By contract: the size of one line, not of a frame.
        return info.biBitCount == 48 ? Verdict{ptRGBHalf48, 6 * info.biWidth, format.finish}
                                     : Verdict{ptRGBAHalf, 8 * info.biWidth, format.finish};
    case Code::Fixed:
        break;
    }
    return sized(format.code);
}

const Format* findFormat(unsigned int compression) {
    char name[4];
    std::memcpy(name, &compression, 4);
    for (const Format& format : formats) {
        for (std::size_t at = 0; at < format.names.size(); at += 5)
            if (format.names.compare(at, 4, name, 4) == 0)
                return &format;
    }
    return nullptr;
}

unsigned int finish(tagBITMAPINFO& info, const Verdict& verdict) {
    const unsigned int size = static_cast<unsigned int>(verdict.size);
    switch (verdict.finish) {
    case Finish::Keep:
        if (info.biSizeImage == 0)
            info.biSizeImage = size;
        return std::max(size, info.biSizeImage);
    case Finish::Force:
        info.biSizeImage = size;
        return size;
    case Finish::Pass:
        break;
    }
    return info.biSizeImage;
}

constexpr unsigned int plainBitmap = 0;
constexpr unsigned int maskedBitmap = 3;

} // namespace

unsigned int GetDrawSize(tagBITMAPINFO* info, unsigned int* pixelType) {
    Verdict verdict{};
    if (info->biCompression == plainBitmap) {
        verdict = judgeByDepth(*info, ptARGB64);
    } else if (info->biCompression == maskedBitmap) {
        verdict = judgeByMask(*info);
    } else {
        const Format* format = findFormat(info->biCompression);
        if (format == nullptr)
            return info->biSizeImage;
        verdict = judge(*format, *info);
        if (format->bitCount != 0)
            info->biBitCount = format->bitCount;
    }
    if (pixelType != nullptr)
        *pixelType = verdict.code;
    return finish(*info, verdict);
}

unsigned int GetDrawSize(tagBITMAPINFO* info) {
    return GetDrawSize(info, nullptr);
}
