// 12-bit Bayer mosaics, two samples in three bytes: bits 11 to 4 of the first, its bits 3 to 0
// above bits 11 to 8 of the second, and bits 7 to 0 of the second.
#include "formats/pens.h"
#include "formats/readers.h"
#include "pixel/byte_order.h"
#include "pixel/truncate.h"

#include <array>
#include <string_view>

namespace {

enum Channel { red, green, blue, alpha };

// The channels of a cell by line and column.
struct Cell {
    Channel at[2][2];

    // By contract: the second green of a cell is not read.
    bool greenComesFirst() const { return at[0][0] == green; }
};

constexpr Channel channelOf(char letter) {
    return letter == 'R' ? red : letter == 'G' ? green : blue;
}

constexpr Cell cellOf(std::string_view mosaic) {
    return {{{channelOf(mosaic[0]), channelOf(mosaic[1])},
             {channelOf(mosaic[2]), channelOf(mosaic[3])}}};
}

// By code, from 21 on.
constexpr auto cells = [] {
    constexpr unsigned int first = ptBayerBGGR;
    std::array<Cell, ptBayerGRBGc - first + 1> all{};
    for (unsigned int i = 0; i < all.size(); ++i)
        all[i] = cellOf(zrFindLayout(first + i)->mosaic);
    return all;
}();

// Any code without a mosaic counts as the first.
const Cell& cellFor(unsigned int pixelType) {
    const unsigned int row = pixelType - ptBayerBGGR;
    return cells[row < cells.size() ? row : 0];
}

unsigned int byteAt(const char* address) {
    return static_cast<unsigned char>(*address);
}

// The high eight bits of the second sample of three bytes.
unsigned int secondSample(const char* bytes) {
    return (byteAt(bytes + 1) << 4 | byteAt(bytes + 2) >> 4) & 0xFF;
}

// The bytes of a pair of pixels on a line.
unsigned int pairOn(const CDrawBayer& draw, int y, bool selector) {
    const unsigned char* color = selector ? draw.bayerForeground : draw.bayerBackground;
    const Channel(&line)[2] = cellFor(draw.pixelType).at[y % 2];
    const unsigned int even = color[line[0]], odd = color[line[1]];
    return even | (odd >> 4) << 8 | (even << 4 & 0xFF) << 16;
}

} // namespace

CDrawBayer::CDrawBayer(unsigned int code)
    : ZRDraw(code), bayerForeground{255, 255, 255, 255}, bayerBackground{} {
    pixelType = code;
}

CDrawBayer::~CDrawBayer() = default;

unsigned int CDrawBayer::GetPitch() {
    return naturalLine(*this, ptBayerBGGR);
}

char* CDrawBayer::GetPixel(int x, int y) {
    return pullOntoCanvas(*this, x, y) ? MosaicPen::address(*this, x, y) : nullptr;
}

MosaicPen penOf(const CDrawBayer& draw, bool selector) {
    return {draw, {pairOn(draw, 0, selector), pairOn(draw, 1, selector)}};
}

int CDrawBayer::PutPixel(int x, int y, bool selector) {
    if (!pullOntoCanvas(*this, x, y))
        return -1;
    MosaicPen::write(MosaicPen::address(*this, x, y), x, pairOn(*this, y, selector));
    return 0;
}

int CDrawBayer::SetColorRGBA(double r, double g, double b, double a, bool selector) {
    unsigned char* const color = selector ? bayerForeground : bayerBackground;
    color[red] = truncateToByte(r * 255.0);
    color[green] = truncateToByte(g * 255.0);
    color[blue] = truncateToByte(b * 255.0);
    color[alpha] = truncateToByte(a * 255.0);
    return 0;
}

int CDrawBayer::GetPixelYCbCr(int x, int y, double& cy, double& cb, double& cr, double& a) {
    return ZRPixel::GetPixelYCbCr(x, y, cy, cb, cr, a);
}

int CDrawBayer::GetPixelHSV(int x, int y, double& h, double& s, double& v, double& a) {
    return readHsv(*this, x, y, h, s, v, a, noHue);
}

// By contract: the address is not tested.
int CDrawBayer::GetPixelRGBA(int x, int y, double& r, double& g, double& b, double& a) {
    const char* upper = GetPixel(x & ~1, y & ~1);
    const char* lower = upper + pitch;
    const Cell& cell = cellFor(pixelType);
    double values[3];
    // The upper line last, so that its green counts.
    values[cell.at[1][0]] = unitValues[byteAt(lower)];
    values[cell.at[1][1]] = unitValues[secondSample(lower)];
    values[cell.at[0][0]] = unitValues[byteAt(upper)];
    values[cell.at[0][1]] = unitValues[secondSample(upper)];
    r = values[red];
    g = values[green];
    b = values[blue];
    a = 1.0;
    return 0;
}

// By contract: the line is that of y as given, the bytes are raw ones, and the mean has no weights.
double CDrawBayer::GetLuma(int x, int y) {
    const char* bytes = GetPixel(x & ~1, y);
    const char* below = bytes + pitch + (cellFor(pixelType).greenComesFirst() ? 0 : 1);
    return (unitValues[byteAt(bytes)] + unitValues[byteAt(bytes + 1)] + unitValues[byteAt(below)]) /
           3;
}
