#include "fx/frames.h"

namespace {

// A position, and the scale that it is on.
constexpr std::pair<unsigned int, unsigned int> progresses[] = {
    {0, 65536},      {1, 65536},     {2, 65536},     {255, 65536},    {256, 65536},
    {21845, 65536},  {32767, 65536}, {32768, 65536}, {32769, 65536},  {65535, 65536},
    {65536, 65536},  {65537, 65536}, {98304, 65536}, {200000, 65536}, {1, 16},
    {5, 16},         {15, 16},       {16, 16},       {1, 131072},     {3, 1U << 20},
    {0, 25},         {1, 25},        {7, 25},        {24, 25},        {25, 25},
    {26, 25},        {75, 25},       {1, 3},         {2, 3},          {999, 1000},
    {7, 0xFFFFFFFF}, {0xFFFFFFF0, 1}};

// A number that 32 bits do not hold becomes the one that has its low bits clear.
int truncated(double value) {
    return value > -2147483649.0 && value < 2147483648.0 ? static_cast<int>(value) : 0;
}

template <typename Sample>
Sample mixed(Sample first, Sample second, double t) {
    const double u = 1.0 - t;
    if constexpr (std::is_same_v<Sample, float>) {
        const double a = static_cast<int>(first) * t, b = static_cast<double>(second) * u;
        return static_cast<float>(a + b);
    } else {
        const double a = first * t, b = second * u;
        return static_cast<Sample>(truncated(a + b));
    }
}

template <typename Sample>
void reference(const zrfxFXArgs& a, unsigned int samples, unsigned char* dst) {
    const double t = static_cast<double>(a.position) / (a.rangeEnd - a.rangeStart);
    for (unsigned int y = 0; y < a.height; ++y)
        for (unsigned int i = a.xStart * samples; i < a.xEnd * samples; ++i) {
            Sample ofA, ofB;
            std::memcpy(&ofA, a.srcA + y * a.pitchA + i * sizeof(Sample), sizeof(Sample));
            std::memcpy(&ofB, a.srcB + y * a.pitchB + i * sizeof(Sample), sizeof(Sample));
            const bool swapped = (a.wipeCode & zrWipeSwap) != 0;
            const Sample out = swapped ? mixed(ofA, ofB, t) : mixed(ofB, ofA, t);
            std::memcpy(dst + y * a.pitchB + i * sizeof(Sample), &out, sizeof(Sample));
        }
}

// The whole frame in its bands, against the rule for one sample.
template <typename Sample>
void compareAll(Frame& frameA, Frame& frameB, unsigned int width, unsigned int height,
                unsigned int pitchA, unsigned int pitchB, std::size_t bytes) {
    for (const Group& group : groups) {
        if (group.bytes / group.samples != sizeof(Sample))
            continue;
        for (const auto& [position, scale] : progresses)
            for (const unsigned int code : {0U, 5U, zrWipeSwap | 77, zrWipeSwap}) {
                Frame dst(bytes), expected(bytes);
                zrfxFXArgs a =
                    argsOf(frameA, frameB, dst, pitchB, code, group.pixelType, width, height);
                a.pitchA = pitchA;
                a.xEnd = width;
                a.rangeStart = 11;
                a.rangeEnd = scale + 11;
                a.position = position;
                reference<Sample>(a, group.samples, expected.data());
                EXPECT_TRUE(runBands(code % 2 == 0 ? zrfxDISSOLVE : zrfxDISSOLVE2, a));
                ASSERT_EQ(dst, expected)
                    << "width " << width << ", type " << group.pixelType << ", " << position
                    << " of " << scale << ", code " << code << ", seed " << seed;
            }
    }
}

TEST(Dissolve, EveryPairOfBytes) {
    constexpr std::size_t bytes = 256 * 256;
    Frame a(bytes), b(bytes);
    for (std::size_t i = 0; i < bytes; ++i) {
        a.data()[i] = static_cast<unsigned char>(i);
        b.data()[i] = static_cast<unsigned char>(i >> 8);
    }
    // 64 pixels of four samples a line, so that three samples leave the last 64 bytes alone
    compareAll<unsigned char>(a, b, 64, 256, 256, 256, bytes);
}

TEST(Dissolve, Words) {
    Random random(seed);
    constexpr unsigned int width = 37, height = 20, pitch = width * 8 + 6;
    Frame a(pitch * height, random), b(pitch * height, random);
    constexpr unsigned short ends[] = {0, 1, 32767, 32768, 65534, 65535};
    for (unsigned int i = 0; i < 36; ++i) {
        std::memcpy(a.data() + 2 * i, &ends[i / 6], 2);
        std::memcpy(b.data() + 2 * i, &ends[i % 6], 2);
    }
    compareAll<unsigned short>(a, b, width, height, pitch, pitch, pitch * height);
}

TEST(Dissolve, FloatsOfTheIncomingFrameAreTruncated) {
    Random random(seed);
    std::uniform_real_distribution<float> values(-3.0F, 5.0F);
    constexpr unsigned int width = 19, height = 6, pitch = width * 16 + 4;
    Frame a(pitch * height), b(pitch * height);
    for (unsigned int i = 0; i < pitch * height / 4; ++i) {
        const float pair[] = {i % 7 == 0 ? 1.0F : values(random), values(random)};
        std::memcpy(a.data() + 4 * i, &pair[0], 4);
        std::memcpy(b.data() + 4 * i, &pair[1], 4);
    }
    compareAll<float>(a, b, width, height, pitch, pitch, pitch * height);
}

TEST(Dissolve, EveryLengthAndPitch) {
    Random random(seed);
    for (unsigned int width = 0; width <= 70 && !HasFatalFailure(); ++width) {
        const unsigned int pitchA = width * 4 + 5, pitchB = width * 4 + 3;
        Frame a(pitchA * 5, random), b(pitchA * 5, random);
        compareAll<unsigned char>(a, b, width, 5, pitchA, pitchB, pitchA * 5);
    }
}

TEST(Dissolve, WithoutAScaleStaysInItsFrame) {
    Random random(seed);
    for (const Group& group : groups)
        for (const unsigned int position : {0U, 5U}) {
            Frame a(256, random), b(256, random), dst(256), untouched(256);
            zrfxFXArgs args{a.data(), 96, b.data(), 96, dst.data(), 96, 0, group.pixelType, 6, 2};
            args.rangeStart = args.rangeEnd = 9;
            args.position = position;
            EXPECT_TRUE(runBands(zrfxDISSOLVE, args));
            for (unsigned int y = 0; y < 2; ++y)
                std::memcpy(untouched.data() + 96 * y, dst.data() + 96 * y, 6 * group.bytes);
            EXPECT_EQ(dst, untouched) << group.pixelType;
        }
}

} // namespace
