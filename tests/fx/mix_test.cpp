// The bodies of the dissolve against each other, and the weighing of planes.
#include "fx/frames.h"
#include "fx/mix.h"
#include "zrdraw/span.h"

#include <cmath>
#include <tuple>

namespace {

constexpr unsigned int wholeUnits = 65536;

template <typename Sample>
using Samples = std::vector<Sample>;
using Bytes = Samples<unsigned char>;

template <typename Sample>
unsigned char* bytesOf(Samples<Sample>& samples) {
    return reinterpret_cast<unsigned char*>(samples.data());
}

// By a weight and a body of the choice, to a place of its own in a line of the cache.
template <typename Sample>
Samples<Sample> mixed(Mix mix, MixBody* body, Samples<Sample> a, Samples<Sample> b,
                      std::size_t place = 0) {
    Samples<Sample> out(place + a.size());
    unsigned char* const to = bytesOf(out) + place * sizeof(Sample);
    mix.body = body;
    mix(to, bytesOf(a), bytesOf(b), a.size() * sizeof(Sample), {to, bytesOf(a), bytesOf(b)});
    return {out.begin() + static_cast<std::ptrdiff_t>(place), out.end()};
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

// Those in doubles are compared with the rule where whole frames are dissolved.
TEST(Mix, WholeUnitsInIntegersAsInDoubles) {
    const bool wide = zrdraw_avx2_available() != 0;
    const auto [bytesA, bytesB] = AllPairs();
    Random random(seed);
    Samples<unsigned short> wordsA{0, 65535, 0, 65535, 1}, wordsB{0, 65535, 65535, 0, 65534};
    for (int i = 0; i < 1000; ++i) {
        wordsA.push_back(static_cast<unsigned short>(random()));
        wordsB.push_back(static_cast<unsigned short>(random()));
    }
    std::vector<unsigned int> someUnits{2, 32767, 32768, 32769, 65534, 65535};
    for (unsigned int units = 1; units < wholeUnits; units += 197)
        someUnits.push_back(units);
    for (const unsigned int units : someUnits) {
        const auto expectSame = [&](SampleType type, MixBody* plain, MixBody* body, const auto& a,
                                    const auto& b) {
            const Mix mix = chooseMix(type, static_cast<double>(units) / wholeUnits);
            ASSERT_EQ(mixed(mix, body, a, b, units % 64), mixed(mix, plain, a, b))
                << units << " units, seed " << seed;
        };
        for (MixBody* body : {mixWholeBytes, wide ? mixWholeBytesAvx2 : mixWholeBytes})
            expectSame(SampleType::Byte, mixBytes, body, bytesA, bytesB);
        for (MixBody* body : {mixWholeWords, wide ? mixWholeWordsAvx2 : mixWholeWords})
            expectSame(SampleType::Word, mixWords, body, wordsA, wordsB);
    }
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
    for (const double nearAnEnd : {1.0 / 131072, 1 - 1.0 / 131072, 1.0 / 3e9, 1 - 1e-12})
        EXPECT_EQ(chooseMix(SampleType::Byte, nearAnEnd).body, mixBytes) << nearAnEnd;
    for (const double weight : weights) {
        const Mix mix = chooseMix(SampleType::Byte, weight);
        if (weight * wholeUnits == std::floor(weight * wholeUnits))
            continue;
        const Bytes expected = mixed(mix, mixBytes, a, b);
        ASSERT_EQ(mixed(mix, mixRoundedBytesAvx2, a, b), expected) << weight;
        Bytes over = a, second = b;
        mix(over.data(), over.data(), second.data(), a.size(),
            {over.data(), over.data(), second.data()});
        ASSERT_EQ(over, expected) << weight << ", over the first";
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

// Planes that overlap go byte by byte.
TEST(WeighPlane, EveryWidthAndOverlap) {
    for (const Weights& weights : weightTable) {
        for (int width = 1; width <= 70; ++width)
            compare(2000, width, 3, 77, 70, weights);
        for (int shift = -40; shift <= 40; ++shift)
            for (const int width : {15, 16, 17, 33, 64})
                for (const auto& [lines, pitchFirst, pitchSecond] :
                     {std::tuple{1, 64, 64}, {3, 64, 64}, {4, -50, -50}, {4, 64, 61}})
                    compare(shift, width, lines, pitchFirst, pitchSecond, weights);
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
