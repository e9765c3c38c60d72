// Sound that is encoded again, cross-faded by `wipe`, and chosen by `mux`.
#include "tool/tool_fixture.h"

#include <fmt/format.h>

#include <cmath>

namespace {

using Samples = std::vector<std::int16_t>;

class SoundTest : public ToolTest {
protected:
    // A clip of 3 s in v210, with sound by a source of FFmpeg's that begins `late` seconds after
    // the picture.
    void makeClip(const std::string& name, const std::string& sound,
                  const std::string& options = "-c:a pcm_s16le", const std::string& rate = "25",
                  double late = 0) const {
        run(fmt::format("$F -f lavfi -i testsrc2=s=64x48:r={}:d=3 -itsoffset {} -f lavfi -i '{}' "
                        "-c:v v210 {} -movie_timescale 240000 {}",
                        rate, late, sound, options, name));
    }

    // The first sound of a file from time 0 on, silent where there is none.
    Samples samplesOf(const std::string& name, int channels = 2) const {
        run(fmt::format("$F -i {} -map 0:a:0 -af aresample=async=1:first_pts=0 -c:a pcm_s16le -ac "
                        "{} -f s16le out.raw",
                        name, channels));
        const std::string bytes = readFile(at("out.raw"));
        Samples samples(bytes.size() / 2);
        std::memcpy(samples.data(), bytes.data(), samples.size() * 2);
        return samples;
    }

    std::string streamsOf(const std::string& name) const {
        std::string text = run("ffprobe -v error -show_entries stream=codec_name:stream_tags="
                               "language -of csv=p=0 " +
                               name);
        std::replace(text.begin(), text.end(), '\n', ' ');
        return text;
    }
};

std::string noise(int seed) {
    return fmt::format("anoisesrc=r=48000:d=3:seed={}:a=0.3,aformat=channel_layouts=stereo", seed);
}

double loudness(const Samples& samples, std::size_t first, std::size_t end) {
    double sum = 0;
    for (std::size_t i = first; i < end; ++i)
        sum += std::pow(samples.at(i), 2);
    return std::sqrt(sum / static_cast<double>(end - first));
}

// The number of the first sample that does not stand before a frame.
std::size_t sampleAt(int frame, int rate, int scale) {
    return static_cast<std::size_t>((48000LL * frame * scale + rate - 1) / rate);
}

TEST_F(SoundTest, OutsideATransitionSamplesStayAsTheyAre) {
    const struct {
        int rate, scale;
        int holdA, frames, holdB;
        int fromA, fromB; // in frames
    } rows[] = {{25, 1, 10, 20, 15, 0, 0},
                {25, 1, 7, 12, 5, 25, 13},
                {30000, 1001, 13, 10, 7, 15, 30},
                {30000, 1001, 0, 11, 20, 21, 33}};
    for (const auto& row : rows) {
        SCOPED_TRACE(
            fmt::format("{}/{} from {} and {}", row.rate, row.scale, row.fromA, row.fromB));
        const std::string rate = fmt::format("{}/{}", row.rate, row.scale);
        makeClip("a.mov", noise(1), "-c:a pcm_s16le", rate);
        makeClip("b.mov", noise(2), "-c:a pcm_s16le", rate);
        const auto seconds = [&](int frame) { return double(frame) * row.scale / row.rate; };
        run(fmt::format("$Z wipe a.mov b.mov out.mov --force --frames {} --hold-a {} --hold-b {} "
                        "--from-a {:.4f} --from-b {:.4f}",
                        row.frames, row.holdA, row.holdB, seconds(row.fromA), seconds(row.fromB)));
        const Samples a = samplesOf("a.mov"), b = samplesOf("b.mov"), out = samplesOf("out.mov");
        const auto nearest = [&](int frame) {
            return static_cast<std::size_t>(std::lround(seconds(frame) * 48000));
        };
        const std::size_t begin = nearest(row.holdA), end = nearest(row.holdA + row.frames);
        ASSERT_EQ(out.size(), 2 * nearest(row.holdA + row.frames + row.holdB));
        const std::size_t firstA = sampleAt(row.fromA, row.rate, row.scale);
        const std::size_t firstB = sampleAt(row.fromB, row.rate, row.scale) - begin;
        std::size_t wrong = 0, asInA = 0, asInB = 0;
        for (std::size_t i = 0; i < out.size(); ++i) {
            const bool isA = out[i] == a.at(i + 2 * firstA);
            const bool isB = i >= 2 * begin && out[i] == b.at(i + 2 * firstB);
            wrong += (i < 2 * begin && !isA) || (i >= 2 * end && !isB);
            asInA += i >= 2 * begin && i < 2 * end && isA;
            asInB += i >= 2 * begin && i < 2 * end && isB;
        }
        EXPECT_EQ(wrong, 0U);
        EXPECT_LT(asInA, end - begin);
        EXPECT_LT(asInB, end - begin);
    }
}

TEST_F(SoundTest, ATransitionIsAsLoudAsItsClips) {
    makeClip("a.mov", "sine=f=1000:r=48000:d=3");
    makeClip("b.mov", "sine=f=1700:r=48000:d=3");
    run("$Z wipe a.mov b.mov out.mov --frames 40 --hold 10");
    const Samples out = samplesOf("out.mov", 1);
    const double usual = loudness(out, 0, 4800);
    ASSERT_EQ(out.size(), 60 * 1920U);
    for (std::size_t i = 0; i + 4800 <= out.size(); i += 4800)
        EXPECT_NEAR(20 * std::log10(loudness(out, i, i + 4800) / usual), 0.0, 1.0) << i;
}

// Sound that is not there is silent, and what there is stands at its place.
TEST_F(SoundTest, WipeFillsUpWithSilence) {
    makeClip("whole.mov", "sine=f=1000:r=48000:d=3");
    makeClip("late.mov", "sine=f=1000:r=48000:d=2", "-c:a pcm_s16le", "25", 0.6);
    makeClip("early.mov", "sine=f=1000:r=48000:d=0.6");
    makeClip("other.mov", "sine=f=1000:r=44100:d=3,aformat=channel_layouts=5.1", "-c:a aac");
    run("$F -i whole.mov -an -c copy mute.mov; $F -i whole.mov -frames:v 1 still.png");
    // The result lasts 2.2 s, its transition from 0.6 to 1.6 s.
    const struct {
        const char* clips;
        std::string heard; // in each 0.2 s; ? is either
    } rows[] = {{"whole.mov other.mov", "###########"}, {"other.mov whole.mov", "###########"},
                {"late.mov whole.mov", "...########"},  {"whole.mov late.mov", "###########"},
                {"early.mov late.mov", "###...#####"},  {"early.mov whole.mov", "###########"},
                {"whole.mov early.mov", "#######?..."}, {"mute.mov whole.mov", "...########"},
                {"whole.mov still.png", "#######?..."}, {"still.png whole.mov", "...########"}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.clips);
        run(fmt::format("$Z wipe {} out.mov --force --frames 25 --hold 15 --scale "
                        "--audio-codec pcm_s16le --codec mpeg4 --layout bgra",
                        row.clips));
        run("$F -i out.mov -ar 48000 same.wav");
        const Samples out = samplesOf("same.wav", 1);
        ASSERT_NEAR(static_cast<double>(out.size()), 55 * 1920, 1);
        for (std::size_t i = 0; i < row.heard.size(); ++i)
            if (row.heard[i] != '?')
                EXPECT_EQ(loudness(out, i * 9600 + 10, i * 9600 + 9590) > 1, row.heard[i] == '#')
                    << i;
    }
    run("$Z wipe whole.mov whole.mov v.mov --streams v; $Z wipe mute.mov mute.mov none.mov; "
        "$Z wipe whole.mov whole.mov one.png --position 0.5");
    EXPECT_EQ(streamsOf("v.mov"), "v210 ");
    EXPECT_EQ(streamsOf("none.mov"), "v210 ");
    EXPECT_NE(shell("$Z wipe whole.mov mute.mov out.y4m").err.find("besides: sound"),
              std::string::npos);
}

// One sample that is not silent tells where the sound stands beside the picture.
TEST_F(SoundTest, EncodingAgainKeepsTheOffset) {
    constexpr std::size_t place = 14417 + 9601;
    makeClip("in.mov", "aevalsrc=0.9*eq(n\\,9601):s=48000:d=2,aformat=channel_layouts=mono",
             "-c:a pcm_s24le -metadata:s:a language=ger", "25", 14417 / 48000.0);
    const struct {
        const char* name;
        const char* encoder;
        const char* streams;
        std::size_t off;
    } rows[] = {{"a.mov", "pcm_s32le", "v210 pcm_s32le,ger ", 0},
                {"b.mov", "aac", "v210 aac,ger ", 0},
                {"c.mov", "alac", "v210 alac,ger ", 0},
                {"d.mkv", "flac", "v210 flac,ger ", 24}, // half a millisecond, in which it counts
                {"e.mkv", "libopus", "v210 opus,ger ", 24},
                {"f.mkv", "ac3", "v210 ac3,ger ", 24}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        run(fmt::format("$Z draw in.mov {} -e 'color 1 0 0' --audio-codec {}", row.name,
                        row.encoder));
        EXPECT_EQ(streamsOf(row.name), row.streams);
        const Samples out = samplesOf(row.name, 1);
        const auto loudest = std::max_element(
            out.begin(), out.end(), [](int a, int b) { return std::abs(a) < std::abs(b); });
        EXPECT_NEAR(static_cast<double>(loudest - out.begin()), place, double(row.off));
    }
}

// Sound that was compressed is decoded from before its range on, and cut to the sample.
TEST_F(SoundTest, ARangeOfCompressedSoundIsThatOfTheWhole) {
    makeClip("in.mov", noise(3), "-c:a aac -b:a 256k");
    const Samples all = samplesOf("in.mov");
    for (const auto& [first, end] : {std::pair{10, 30}, {0, 20}, {50, 51}}) {
        run(fmt::format("$Z draw in.mov out.mov --force -e 'color 1 0 0' --frames {}:{} "
                        "--audio-codec pcm_s16le",
                        first, end));
        EXPECT_TRUE(samplesOf("out.mov") ==
                    Samples(all.begin() + first * 3840, all.begin() + end * 3840))
            << first;
    }
}

TEST_F(SoundTest, MuxPassesTheSoundThatIsChosen) {
    makeClip("a.mov", noise(1), "-c:a pcm_s16le -metadata:s:a language=eng");
    makeClip("b.mov", noise(2), "-c:a pcm_s24le -metadata:s:a language=ger", "25", 14417 / 48000.0);
    run("$F -i a.mov -frames:v 1 still.png");
    const struct {
        const char* options;
        const char* streams; // behind the pictures
    } rows[] = {{"a.mov b.mov", "pcm_s16le,eng "},
                {"a.mov b.mov --sound a", "pcm_s16le,eng "},
                {"a.mov b.mov --sound b", "pcm_s24le,ger "},
                {"a.mov b.mov --sound both", "pcm_s16le,eng pcm_s24le,ger "},
                {"a.mov b.mov --sound both --audio-codec aac", "aac,eng aac,ger "},
                {"a.mov b.mov --sound both --streams v", ""},
                {"a.mov b.mov --sound none", ""},
                {"still.png b.mov", "pcm_s24le,ger "},
                {"still.png b.mov --sound a", ""},
                {"a.mov still.png --sound both", "pcm_s16le,eng "}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.options);
        run(fmt::format("$Z mux {} out.mov --codec mpeg4 --force", row.options));
        EXPECT_EQ(streamsOf("out.mov"), fmt::format("mpeg4 {}", row.streams));
    }
    for (const std::string clip : {"a", "b"}) {
        run(fmt::format("$Z mux a.mov b.mov out.mov --codec mpeg4 --force --sound {}", clip));
        EXPECT_TRUE(samplesOf("out.mov") == samplesOf(clip + ".mov")) << clip;
    }
}

TEST_F(SoundTest, WhatCannotBeIsRefusedWithItsMend) {
    makeClip("in.mov", noise(1));
    makeClip("six.mov", "anoisesrc=d=3,aformat=channel_layouts=5.1");
    run("$F -i in.mov -c:v copy -c:a flac in.mkv");
    const std::string draw = "$Z draw in.mov -e 'color 1 0 0' --codec mpeg4 ";
    expectRefused({
        {draw + "out.mp4", 1, "'mp4' cannot hold the sound, which is pcm_s16le: use --audio-codec"},
        {"$Z draw in.mkv -e 'color 1 0 0' out.mov", 1,
         "'mov' cannot hold the sound, which is flac"},
        {draw + "out.mov --audio-codec aacc", 2, "did you mean aac"},
        {draw + "out.mov --audio-codec nothing-near", 2, "such as aac"},
        {draw + "out.mov --audio-codec mpeg4", 2, "unknown sound encoder"},
        {draw + "out.mp4 --audio-codec pcm_s16le", 2, "'mp4' cannot hold the sound codec"},
        {"$Z wipe in.mov in.mov out.mp4 --codec mpeg4 --audio-codec pcm_s16le", 2,
         "another --audio-codec"},
        {"$Z draw six.mov out.mp4 -e 'color 1 0 0' --codec mpeg4 --audio-codec libmp3lame", 1,
         "refuses sound of 48000 Hz, 5.1"},
        {"$Z mux in.mov in.mov out.mov --sound c", 2, "expected a, b, both or none"},
    });
}

} // namespace
