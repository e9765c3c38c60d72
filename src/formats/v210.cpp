// The v210 layout: three 10-bit samples in each 32-bit word, six pixels in four words.
#include "zrdraw/v210.h"

#include "formats/pens.h"
#include "formats/readers.h"
#include "pixel/truncate.h"

#include <array>

namespace {

using zrV210::Place;
using zrV210::sampleMask;

constexpr unsigned int groupPixels = zrV210::groupPixels;
constexpr int groupBytes = zrV210::groupBytes;
constexpr double per1024 = 1.0 / 1024;

struct PixelPlaces {
    Place y, cb, cr;
};

constexpr PixelPlaces placesOf(unsigned int pixel) {
    return {zrV210::luma[pixel], zrV210::cb[pixel / 2], zrV210::cr[pixel / 2]};
}

// By contract: the last pixel of a group reads the luma of the third.
constexpr PixelPlaces read[groupPixels] = {
    placesOf(0), placesOf(1), placesOf(2),
    placesOf(3), placesOf(4), {zrV210::luma[2], zrV210::cb[2], zrV210::cr[2]}};

// The samples of a pixel never lie more than a word apart, so that one load and one store of two
// words write them. All but the samples themselves is kept, bits 30 and 31 of a word too.
struct Window {
    unsigned int byte; // where the two words begin in the group
    unsigned int y, cb, cr;
    unsigned long kept;
};

constexpr auto windows = [] {
    std::array<Window, groupPixels> all{};
    for (unsigned int i = 0; i < all.size(); ++i) {
        const PixelPlaces places = placesOf(i);
        const unsigned int first = std::min({places.y.word, places.cb.word, places.cr.word, 2U});
        const auto bitOf = [first](Place place) { return 32 * (place.word - first) + place.bit; };
        Window& window = all[i];
        window = {zrV210::wordBytes * first, bitOf(places.y), bitOf(places.cb), bitOf(places.cr),
                  0};
        for (const unsigned int bit : {window.y, window.cb, window.cr})
            window.kept |= static_cast<unsigned long>(sampleMask) << bit;
        window.kept = ~window.kept;
    }
    return all;
}();

unsigned int sampleAt(const char* group, Place place) {
    return loadWord(group + zrV210::wordBytes * place.word) >> place.bit & sampleMask;
}

struct Samples {
    unsigned int y, cb, cr;
};

// By contract: the position in the group is that of x as given, so one past the edge reads by the
// row behind that of the last pixel.
Samples readGroup(const char* group, int x) {
    const PixelPlaces& places = read[static_cast<unsigned int>(x) % groupPixels];
    return {sampleAt(group, places.y), sampleAt(group, places.cb), sampleAt(group, places.cr)};
}

using Group = V210Pen::Group;

// The bits that the pixels of a group from one to another write.
constexpr auto written = [] {
    std::array<std::array<Group, groupPixels>, groupPixels> all{};
    for (unsigned int first = 0; first < groupPixels; ++first)
        for (unsigned int pixel = first; pixel < groupPixels; ++pixel) {
            Group& bits = all[first][pixel];
            bits = pixel == first ? Group{} : all[first][pixel - 1];
            const PixelPlaces places = placesOf(pixel);
            for (const Place place : {places.y, places.cb, places.cr})
                bits[place.word / 2] |= static_cast<unsigned long>(sampleMask)
                                        << (32 * (place.word % 2) + place.bit);
        }
    return all;
}();

// A group of six pixels of one colour.
Group wholeGroup(unsigned long color) {
    const unsigned long y = color & sampleMask;
    const unsigned long cb = color >> 10 & sampleMask;
    const unsigned long cr = color >> 20 & sampleMask;
    const unsigned long luma = y << 10;                 // a word with luma in the middle
    const unsigned long chroma = cb << 10;              // the two kinds around it
    const unsigned long word0 = cb | luma | cr << 20;   // Cb Y Cr
    const unsigned long word1 = y | chroma | y << 20;   // Y Cb Y
    const unsigned long word2 = cr | luma | cb << 20;   // Cr Y Cb
    const unsigned long word3 = y | cr << 10 | y << 20; // Y Cr Y
    return {word0 | word1 << 32, word2 | word3 << 32};
}

// The groups of a run, each with the bits that it writes there.
template <typename Write>
void byGroups(char* group, int x, int count, Write writeGroup) {
    auto first = static_cast<unsigned int>(x) % groupPixels;
    for (auto left = static_cast<unsigned int>(count); left != 0; group += groupBytes, first = 0) {
        const unsigned int here = std::min(left, groupPixels - first);
        writeGroup(group, written[first][first + here - 1]);
        left -= here;
    }
}

} // namespace

void V210Pen::put(int x, int y) const {
    const Window& window = windows[static_cast<unsigned int>(x) % groupPixels];
    char* const words = address(pixel, x, y) + window.byte;
    const auto value = (loadAs<unsigned long>(words) & window.kept) |
                       (color & sampleMask) << window.y | (color >> 10 & sampleMask) << window.cb |
                       (color >> 20 & sampleMask) << window.cr;
    storeAs(words, value);
}

void V210Pen::run(int x, int y, int count) const {
    const Group whole = wholeGroup(color);
    byGroups(address(pixel, x, y), x, count,
             [&](char* group, const Group& bits) { V210Pen::write(group, whole, bits); });
}

void V210Pen::copy(int x, int from, int to, int count) const {
    const char* const source = address(pixel, x, from);
    char* const first = address(pixel, x, to);
    byGroups(first, x, count, [&](char* group, const Group& bits) {
        V210Pen::write(group, loadAs<Group>(source + (group - first)), bits);
    });
}

CDrawYCbCr10::CDrawYCbCr10(unsigned int code)
    : ZRDraw(code), yOffset(64.0), yScale(940.0), cbOffset(64.0), cbScale(876.0), crOffset(64.0),
      crScale(876.0), foreWord(0x3AC1F63AC1F6), backWord(0x401F60401F6), reservedWord(0) {
    constexpr unsigned int sibling1 = 15, sibling2 = 16;
    pixelType = code == sibling1 || code == sibling2 ? code : ptV210;
}

CDrawYCbCr10::~CDrawYCbCr10() = default;

int CDrawYCbCr10::SetCanvas(char* newCanvas, int newHeight, int newWidth, int newPitch) {
    constexpr int leastHighDefinition = 721;
    ZRPixel::SetCanvas(newCanvas, newHeight, newWidth, newPitch);
    flipped = false;
    // By contract: a negative pitch is above any line as an unsigned number, and so is not raised.
    const unsigned int natural = naturalLine(*this, ptV210);
    if (static_cast<unsigned int>(newPitch) < natural)
        pitch = natural;
    yCbCrMode = newWidth < leastHighDefinition ? cmRec601 : cmRec709;
    return 0;
}

unsigned int CDrawYCbCr10::GetPitch() {
    return naturalLine(*this, ptV210);
}

char* CDrawYCbCr10::GetPixel(int x, int y) {
    return pullOntoCanvas(*this, x, y) ? V210Pen::address(*this, x, y) : nullptr;
}

int CDrawYCbCr10::PutPixel(int x, int y, bool selector) {
    return putBy(*this, x, y, selector);
}

int CDrawYCbCr10::GetPixelRGBA(int x, int y, double& r, double& g, double& b, double& a) {
    const char* group = GetPixel(x, y);
    if (group == nullptr)
        return 0;
    const Samples samples = readGroup(group, x);
    a = 0.0;
    return YCbCrToRGB(samples.y * per1024, samples.cb * per1024, samples.cr * per1024, 0.0, r, g, b,
                      a);
}

// By contract: this form and the two below answer 0 off the canvas too, and write nothing there.
int CDrawYCbCr10::GetPixelYCbCr(int x, int y, double& cy, double& cb, double& cr, double& a) {
    const char* group = GetPixel(x, y);
    if (group == nullptr)
        return 0;
    const Samples samples = readGroup(group, x);
    cy = samples.y * per1024;
    cb = samples.cb * per1024;
    cr = samples.cr * per1024;
    a = 1.0;
    return 0;
}

int CDrawYCbCr10::GetPixelYCbCr8(int x, int y, unsigned char& cy, unsigned char& cb,
                                 unsigned char& cr, unsigned char& a) {
    const char* group = GetPixel(x, y);
    if (group == nullptr)
        return 0;
    const Samples samples = readGroup(group, x);
    cy = static_cast<unsigned char>(samples.y >> 2);
    cb = static_cast<unsigned char>(samples.cb >> 2);
    // By contract: the first pixel of a group gives the low eight bits of its Cr.
    cr = static_cast<unsigned char>(
        static_cast<unsigned int>(x) % groupPixels == 0 ? samples.cr : samples.cr >> 2);
    a = 1; // by contract, not full scale
    return 0;
}

int CDrawYCbCr10::GetPixelYCbCr10(int x, int y, unsigned int& cy, unsigned int& cb,
                                  unsigned int& cr, unsigned int& a) {
    const char* group = GetPixel(x, y);
    if (group == nullptr)
        return 0;
    const Samples samples = readGroup(group, x);
    cy = samples.y;
    cb = samples.cb;
    cr = samples.cr;
    a = 1;
    return 0;
}

int CDrawYCbCr10::GetPixelHSV(int, int, double&, double&, double&, double&) {
    return -1;
}

double CDrawYCbCr10::GetLuma(int x, int y) {
    return readGroup(GetPixel(x, y), x).y * per1024;
}

int CDrawYCbCr10::SetColorYCbCr(double y, double cb, double cr, double, bool selector) {
    constexpr double full = 1023.0;
    return CDrawYCbCr10::SetColorYCbCr10(truncateToWord(y * full), truncateToWord(cb * full),
                                         truncateToWord(cr * full), 0, selector);
}

int CDrawYCbCr10::SetColorRGBA(double r, double g, double b, double, bool selector) {
    return setColorByMatrix(*this, r, g, b, selector);
}

// By contract: added without masks, so that a sample above 1023 runs into the next.
int CDrawYCbCr10::SetColorYCbCr10(unsigned int y, unsigned int cb, unsigned int cr, unsigned int,
                                  bool selector) {
    (selector ? foreWord : backWord) = y + (cb << 10) + (cr << 20);
    return 0;
}
