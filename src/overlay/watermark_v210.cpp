// Writing a line of the watermark into v210. By contract: its pixels are opaque, and alpha only
// decides whether one is drawn.
#include "formats/pens.h"
#include "overlay/watermark.h"

namespace {

using zrV210::Place;

constexpr unsigned int faintest = 10;
constexpr unsigned int groupPairs = zrV210::groupPixels / 2;

// The color that SetColorYCbCr10 makes. By contract: added without masks, so that a sample above
// 1023 runs into the next.
unsigned int colorOf(unsigned int luma, const unsigned int* entry) {
    return luma + (entry[1] << 10) + (entry[3] << 20);
}

constexpr void addSample(V210Pen::Group& group, Place place, unsigned long sample) {
    group[place.word / 2] |= (sample & zrV210::sampleMask) << (32 * (place.word % 2) + place.bit);
}

// The samples of one of the three pairs of a group: each luma, and the chroma.
struct Pair {
    unsigned long even, odd, cb, cr;
};

template <unsigned int pair>
constexpr void addPair(V210Pen::Group& group, const Pair& samples) {
    addSample(group, zrV210::luma[2 * pair], samples.even);
    addSample(group, zrV210::luma[2 * pair + 1], samples.odd);
    addSample(group, zrV210::cb[pair], samples.cb);
    addSample(group, zrV210::cr[pair], samples.cr);
}

// The odd pixel is written last, and so its chroma stands.
Pair samplesOf(const unsigned int* entry) {
    const unsigned int odd = colorOf(entry[2], entry);
    return {entry[0], odd, odd >> 10, odd >> 20};
}

template <unsigned int pair>
constexpr V210Pen::Group bitsOfPair() {
    V210Pen::Group bits{};
    addPair<pair>(bits, {~0UL, ~0UL, ~0UL, ~0UL});
    return bits;
}

template <unsigned int pair>
void addBits(V210Pen::Group& bits, const unsigned int* entry) {
    constexpr V210Pen::Group own = bitsOfPair<pair>();
    for (unsigned int i = 0; i < bits.size(); ++i)
        bits[i] |= entry[4] > faintest ? own[i] : 0;
}

// Six pixels.
void writeGroup(char* at, const unsigned int* first) {
    const unsigned int* const second = first + watermarkPairEntries;
    const unsigned int* const third = second + watermarkPairEntries;
    V210Pen::Group group{}, bits{};
    addPair<0>(group, samplesOf(first));
    addPair<1>(group, samplesOf(second));
    addPair<2>(group, samplesOf(third));
    addBits<0>(bits, first);
    addBits<1>(bits, second);
    addBits<2>(bits, third);
    V210Pen::write(at, group, bits);
}

void writePixel(const ZRPixel& target, int x, int y, unsigned int luma, const unsigned int* entry) {
    if (entry[4] > faintest)
        V210Pen{target, colorOf(luma, entry)}.put(x, y);
}

} // namespace

void writeWatermarkV210(const ZRPixel& target, int x, int y, const unsigned int* entries,
                        unsigned int count) {
    constexpr unsigned int groupPixels = zrV210::groupPixels;
    for (unsigned int done = 0; done < count;) {
        const int column = x + static_cast<int>(done);
        const unsigned int* entry = entries + watermarkPairEntries * (done / 2);
        if (done % 2 == 0 && static_cast<unsigned int>(column) % groupPixels == 0 &&
            count - done >= groupPixels) {
            writeGroup(V210Pen::address(target, column, y), entry);
            done += groupPixels;
        } else {
            writePixel(target, column, y, entry[done % 2 * 2], entry);
            ++done;
        }
    }
}
