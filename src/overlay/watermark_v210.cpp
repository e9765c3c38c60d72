// Writing a line of the watermark into v210. By contract: its pixels are opaque, and alpha only
// decides whether one is drawn.
#include "formats/pens.h"
#include "overlay/watermark.h"

namespace {

using zrV210::Place;

constexpr unsigned int faintest = 10;

// The color that SetColorYCbCr10 makes. By contract: added without masks, so that a sample above
// 1023 runs into the next.
unsigned int colorOf(unsigned int luma, const unsigned int* entry) {
    return luma + (entry[1] << 10) + (entry[3] << 20);
}

// One of the three pairs of a group, and the bits that it writes; none where it is faint. The odd
// pixel is written last, and so its chroma stands.
template <unsigned int pair>
void addPair(const unsigned int* entry, V210Pen::Group& group, V210Pen::Group& bits) {
    const unsigned long mask = entry[4] > faintest ? zrV210::sampleMask : 0;
    const unsigned int odd = colorOf(entry[2], entry);
    const auto add = [&](Place place, unsigned long sample) {
        const unsigned int bit = 32 * (place.word % 2) + place.bit;
        group[place.word / 2] |= (sample & mask) << bit;
        bits[place.word / 2] |= mask << bit;
    };
    add(zrV210::luma[2 * pair], entry[0]);
    add(zrV210::luma[2 * pair + 1], odd);
    add(zrV210::cb[pair], odd >> 10);
    add(zrV210::cr[pair], odd >> 20);
}

// Six pixels.
void writeGroup(char* at, const unsigned int* entries) {
    V210Pen::Group group{}, bits{};
    addPair<0>(entries, group, bits);
    addPair<1>(entries + watermarkPairEntries, group, bits);
    addPair<2>(entries + 2 * watermarkPairEntries, group, bits);
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
