// The bodies of the dissolve against each other and against exact integers, which is chosen, and
// the weighing of planes.
#include "fx/frames.h"
#include "fx/mix.h"
#include "zrdraw/span.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>

namespace {

constexpr unsigned int wholeUnits = 65536;

template <typename Sample>
using Samples = std::vector<Sample>;
using Bytes = Samples<unsigned char>;

template <typename Sample>
unsigned char* bytesOf(Samples<Sample>& samples) {
    return reinterpret_cast<unsigned char*>(samples.data());
}

// `body` by the weights of `mix`, to a place of its own in a line of the cache.
template <typename Sample>
Samples<Sample> mixed(Mix mix, MixBody* body, Samples<Sample> a, Samples<Sample> b,
                      std::size_t place = 0) {
    Samples<Sample> out(place + a.size());
    unsigned char* const to = bytesOf(out) + place * sizeof(Sample);
    mix.body = body;
    mix(to, bytesOf(a), bytesOf(b), a.size() * sizeof(Sample), {to, bytesOf(a), bytesOf(b)});
    return {out.begin() + static_cast<std::ptrdiff_t>(place), out.end()};
}

std::vector<unsigned int> someUnits(unsigned int stride) {
    std::vector<unsigned int> units{1, 2, 32767, 32768, 32769, 65534, 65535};
    for (unsigned int unit = 1; unit < wholeUnits; unit += stride)
        units.push_back(unit);
    return units;
}

// By weights of whole 65536ths; the bodies do not depend on what is chosen.
template <typename Sample>
void compareWhole(SampleType type, const Samples<Sample>& a, const Samples<Sample>& b,
                  unsigned int stride, const std::vector<MixBody*>& bodies) {
    Samples<Sample> expected(a.size());
    for (const unsigned int units : someUnits(stride)) {
        const Mix mix = chooseMix(type, static_cast<double>(units) / wholeUnits);
        for (std::size_t i = 0; i < a.size(); ++i)
            expected[i] = static_cast<Sample>(
                (std::uint64_t{a[i]} * units + std::uint64_t{b[i]} * (wholeUnits - units)) >> 16);
        for (std::size_t i = 0; i < bodies.size(); ++i)
            ASSERT_EQ(mixed(mix, bodies[i], a, b, units % 64), expected)
                << "body " << i << ", " << units << " units, seed " << seed;
    }
}

std::vector<MixBody*> withAvx2(std::vector<MixBody*> bodies, MixBody* wide) {
    if (zrdraw_avx2_available() != 0)
        bodies.push_back(wide);
    return bodies;
}

// Every byte with every byte, and a few more.
struct AllPairs {
    Bytes a, b;
    AllPairs() {
        for (unsigned int i = 0; i < 65536 + 3; ++i) {
            a.push_back(static_cast<unsigned char>(i));
            b.push_back(static_cast<unsigned char>(i >> 8));
        }
    }
};

TEST(Mix, BytesByWholeUnits) {
    const auto [a, b] = AllPairs();
    compareWhole(SampleType::Byte, a, b, 197,
                 withAvx2({mixBytes, mixWholeBytes}, mixWholeBytesAvx2));
}

TEST(Mix, WordsByWholeUnits) {
    Random random(seed);
    Samples<unsigned short> a{0, 65535, 0, 65535, 1}, b{0, 65535, 65535, 0, 65534};
    for (int i = 0; i < 1000; ++i) {
        a.push_back(static_cast<unsigned short>(random()));
        b.push_back(static_cast<unsigned short>(random()));
    }
    compareWhole(SampleType::Word, a, b, 37,
                 withAvx2({mixWords, mixWholeWords}, mixWholeWordsAvx2));
}

TEST(Mix, BytesByAnyWeightWithinTheScale) {
    if (zrdraw_avx2_available() == 0)
        GTEST_SKIP() << "needs AVX2";
    const auto [a, b] = AllPairs();
    std::vector<double> weights{1.0000001 / 65536, 0.5 - 1e-16,  0.5 + 1e-15, 1.0 / 257,
                                256.0 / 257,       77.0 / 65537, 0.2 + 1e-12};
    for (const double scale : {3, 7, 10, 25, 30, 50, 60, 100, 255, 1000})
        for (double position = 1; position < scale; position += 1 + static_cast<int>(scale / 40))
            weights.push_back(position / scale);
    for (const double weight : weights) {
        const Mix mix = chooseMix(SampleType::Byte, weight);
        if (mix.body != mixRoundedBytesAvx2) {
            EXPECT_EQ(weight * wholeUnits, std::floor(weight * wholeUnits)) << weight;
            continue;
        }
        const Bytes expected = mixed(mix, mixBytes, a, b);
        ASSERT_EQ(mixed(mix, mixRoundedBytesAvx2, a, b), expected) << weight;
        Bytes over = a;
        Bytes second = b;
        mix(over.data(), over.data(), second.data(), a.size(),
            {over.data(), over.data(), second.data()});
        ASSERT_EQ(over, expected) << weight << ", over the first";
    }
}

TEST(Mix, IsChosenByTypeAndWeight) {
    const bool wide = zrdraw_avx2_available() != 0;
    MixBody* const wholeBytes = wide ? mixWholeBytesAvx2 : mixWholeBytes;
    MixBody* const wholeWords = wide ? mixWholeWordsAvx2 : mixWholeWords;
    MixBody* const anyBytes = wide ? mixRoundedBytesAvx2 : mixBytes;
    const struct {
        std::vector<double> weights;
        MixBody *bytes, *words;
    } rows[] = {
        {{0.0}, copySecond, copySecond},
        {{1.0}, copyFirst, copyFirst},
        {{0.25, 1.0 / 65536, 65535.0 / 65536}, wholeBytes, wholeWords},
        {{1.0 / 3, 1.5 / 65536}, anyBytes, mixWords},
        // Too near to an end for integers, or off the scale.
        {{1.0 / 131072, 1.0 - 1.0 / 131072, 1.0 / 3e9, 1.0 - 1e-12}, mixBytes, mixWords},
        {{-0.5, 1.0 + 1.0 / 65536, 2.0, 0.0 / 0.0, 1.0 / 0.0}, mixBytes, mixWords},
    };
    for (const auto& row : rows)
        for (const double weight : row.weights) {
            EXPECT_EQ(chooseMix(SampleType::Byte, weight).body, row.bytes) << weight;
            EXPECT_EQ(chooseMix(SampleType::Word, weight).body, row.words) << weight;
            EXPECT_EQ(chooseMix(SampleType::Float, weight).body, mixFloats) << weight;
        }
}

struct Weights {
    int second, first;
};

constexpr Weights weightTable[] = {
    {0, 65536},       {65536, 0}, {32768, 32768}, {20000, 45536},      {65536, 65536},
    {-65536, 131072}, {-1, 3},    {40000, -7000}, {0x7FFFFFFF, 12345}, {-0x7FFFFFFF, 1}};

void reference(unsigned char* first, const unsigned char* second, int pitchFirst, int pitchSecond,
               int width, int lines, const Weights& w) {
    for (int y = 0; y < lines; ++y)
        for (int x = 0; x < width; ++x) {
            unsigned char& to = first[y * pitchFirst + x];
            const std::uint32_t sum =
                second[y * pitchSecond + x] * static_cast<std::uint32_t>(w.second) +
                to * static_cast<std::uint32_t>(w.first) + 32768U;
            to = static_cast<unsigned char>(sum >> 16);
        }
}

// `shift`: where the first plane starts behind the second one, in the same memory.
void compare(int shift, int width, int lines, int pitchFirst, int pitchSecond, const Weights& w) {
    Random random(seed);
    Frame memory(4096, random), expected = memory;
    unsigned char* const first = memory.data() + 1024 + shift;
    reference(expected.data() + 1024 + shift, expected.data() + 1024, pitchFirst, pitchSecond,
              width, lines, w);
    EXPECT_EQ(weigh_plane(first, memory.data() + 1024, pitchFirst, pitchSecond, width, lines,
                          w.second, w.first),
              first + lines * pitchFirst);
    ASSERT_EQ(memory, expected) << "shift " << shift << ", width " << width << ", weights "
                                << w.second << ' ' << w.first << ", seed " << seed;
}

TEST(WeighPlane, EveryWidth) {
    for (const Weights& weights : weightTable)
        for (int width = 1; width <= 70; ++width)
            compare(2000, width, 3, 77, 70, weights);
}

TEST(WeighPlane, OverlappingPlanesGoByteByByte) {
    for (const Weights& weights : weightTable)
        for (int shift = -40; shift <= 40; ++shift)
            for (const int width : {15, 16, 17, 33, 64}) {
                compare(shift, width, 1, 64, 64, weights);
                compare(shift, width, 3, 64, 64, weights);
                compare(shift, width, 4, -50, -50, weights);
                compare(shift, width, 4, 64, 61, weights);
            }
}

TEST(WeighPlane, WithoutWidthOrLinesDoesNothing) {
    for (const auto& [width, lines] : {std::pair{0, 5}, {5, 0}, {-3, 5}, {5, -1}}) {
        unsigned char first[8] = {9, 9, 9}, second[8] = {};
        EXPECT_EQ(weigh_plane(first, second, 4, 4, width, lines, 65536, 0), first);
        EXPECT_EQ(first[0], 9);
    }
}

} // namespace
