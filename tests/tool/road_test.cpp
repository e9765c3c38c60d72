// What goes in comes out: times, streams, codecs, colours and damage, as FFmpeg's own tools see
// them.
#include "common/layout_names.h"
#include "media/road.h"
#include "tool/tool_fixture.h"

#include <fmt/format.h>

#include <sstream>

namespace {

// $P asks about the streams of a file, a value a line.
class RoadTest : public ToolTest {
protected:
    void SetUp() override {
        ToolTest::SetUp();
        setenv("P", "ffprobe -v error -of csv=p=0", 1);
    }

    // The times of the pictures, in the order in which they are shown.
    std::string times(const std::string& file) const {
        return run("$P -select_streams v:0 -show_entries packet=pts_time " + file +
                   " | tr -d , | grep . | sort -n");
    }

    // The pixels of the right lower quarter, which nothing draws on.
    std::string quarter(const std::string& file) const {
        return run("$F -i " + file +
                   " -map 0:v:0 -vf crop=iw/2:ih/2:iw/2:ih/2:exact=1 -c:v rawvideo -f framemd5 - | "
                   "grep -v '^#' | awk '{print $NF}'");
    }
};

constexpr const char* video = "$F -f lavfi -i testsrc2=s=320x240:r=25:d=1 ";
constexpr const char* videoAndSound =
    "$F -f lavfi -i testsrc2=s=320x240:r=25:d=1 -f lavfi -i sine=f=500:r=48000:d=1 ";
constexpr const char* mark = " -e 'color 1 0 0; fillrect 0 0 39 19' ";

TEST_F(RoadTest, FramesKeepTheirTimes) {
    const std::string uneven =
        "$F -f lavfi -i testsrc2=s=320x240:r=30:d=2 -f lavfi -i sine=r=48000:d=2 -vf "
        "'select=not(mod(n\\,3))+gt(n\\,40)' -vsync vfr ";
    run(uneven + "-c:v libx264 -bf 2 -c:a aac a.mp4 && " + uneven +
        "-c:v ffv1 -c:a flac a.mkv && "
        "$F -itsoffset 0.5 -i a.mp4 -i a.mp4 -map 0:v -map 1:a -c copy late.mkv && "
        "$F -i a.mp4 -c copy a.ts");
    for (const std::string file : {"a.mp4", "a.mkv", "late.mkv"}) {
        run("$Z draw " + file + " out-" + file + mark + "&& $Z overlay " + file + " over-" + file +
            " --quiet");
        EXPECT_EQ(times("out-" + file), times(file)) << file;
        EXPECT_EQ(times("over-" + file), times(file)) << file;
        const std::string sound = "$P -select_streams a -show_entries packet=pts_time,size ";
        EXPECT_EQ(run(sound + "out-" + file), run(sound + file)) << file;
    }
    expectRefused({{"$Z draw a.mp4 o.y4m -e 'point 0 0'", 1, "use --rate 30 to repeat"},
                   {"$Z draw a.mkv o.y4m --quiet -e 'point 0 0'", 1, "off the even spacing"},
                   {"$Z draw a.mp4 o.y4m --rate fast -e 'point 0 0'", 2, "--rate: expected"}});
    const Result even = shell("$Z draw a.mp4 o.y4m --rate 25 -e 'point 0 0'");
    EXPECT_EQ(even.status, 0);
    EXPECT_NE(even.err.find("frames were repeated and"), std::string::npos) << even.err;
    EXPECT_EQ(run("$P -count_packets -show_entries stream=nb_read_packets o.y4m"), "50\n");
}

TEST_F(RoadTest, TheSourcesCodecStays) {
    const struct {
        std::string name, make;
    } rows[] = {
        {"a.mov", "-pix_fmt yuv422p10 -c:v v210"},
        {"b.mov", "-pix_fmt uyvy422 -c:v rawvideo -tag:v 2vuy"},
        {"y.mov", "-pix_fmt yuyv422 -c:v rawvideo -tag:v yuv2"}, // its chroma is signed
        {"c.mov", "-c:v prores_ks -profile:v lt -pix_fmt yuv422p10"},
        {"d.mov", "-vf scale=1280:720 -pix_fmt yuv422p -c:v dnxhd -b:v 75M"},
        {"e.mkv", "-pix_fmt yuv444p12 -c:v ffv1"},
        {"f.mp4", "-c:v libx264 -profile:v main -b:v 800k"},
        {"g.mp4", "-pix_fmt yuv420p10 -c:v libx265 -x265-params log-level=none -tag:v hvc1"},
        {"h.mov", "-pix_fmt yuvj422p -c:v mjpeg -q:v 2"},
        {"i.mov", "-c:v png -pix_fmt rgba"},
    };
    const std::string ask =
        "$P -select_streams v -show_entries "
        "stream=codec_name,profile,codec_tag_string,pix_fmt,color_range,nb_frames ";
    for (const auto& row : rows) {
        run(video + row.make + " " + row.name + " && $Z draw " + row.name + " out-" + row.name +
            mark);
        EXPECT_EQ(run(ask + "out-" + row.name), run(ask + row.name));
    }
    const Result other = shell("$Z draw a.mov a.mp4" + std::string(mark));
    EXPECT_EQ(other.err, "zrdraw: warning: the format 'mp4' cannot hold v210 as it is in the "
                         "source; libx264 is written\n");
    expectRefused({
        {"$Z draw a.mov o.mkv --codec ffv1 --crf 20 -e 'point 0 0'", 2, "has no option 'crf'"},
        {"$Z draw f.mp4 o.mkv --encoder-option presett=x -e 'point 0 0'", 2, "did you mean preset"},
        {"$Z draw f.mp4 o.mkv --preset quickly -e 'point 0 0'", 1, "quickly"},
        {"$Z draw f.mp4 o.mkv --streams some -e 'point 0 0'", 2, "all, av or v"},
    });
}

TEST_F(RoadTest, WhatIsNotDrawnOnComesBack) {
    const struct {
        std::string name, make;
    } rows[] = {
        {"a.mov", "-pix_fmt yuv422p10 -c:v v210"},
        {"u.mov", "-pix_fmt uyvy422 -c:v rawvideo"},
        {"y.mov", "-pix_fmt yuyv422 -c:v rawvideo -tag:v yuv2"},
        {"r.mov", "-vf scale=322:240 -pix_fmt rgb24 -c:v rawvideo"},
        {"b.png", "-pix_fmt rgb48be -frames:v 1"},
        {"c.tif", "-pix_fmt rgb48le -frames:v 1"},
        {"d.dpx", "-pix_fmt gbrp10be -frames:v 1"},
        {"e.mkv", "-vf scale=321:239 -pix_fmt yuv420p -c:v ffv1"},
        {"f.mkv", "-pix_fmt yuva444p12 -c:v ffv1"},
    };
    for (const auto& row : rows) {
        run(video + row.make + " " + row.name + " && $Z draw " + row.name + " out-" + row.name +
            mark);
        EXPECT_EQ(quarter("out-" + row.name), quarter(row.name)) << row.name;
        EXPECT_NE(readFile(at("out-" + row.name)), readFile(at(row.name)));
    }
}

// A red rectangle is red, whatever the range.
TEST_F(RoadTest, FullRangeStaysAndIsDrawnOnRight) {
    run(std::string(video) + "-pix_fmt yuv420p -color_range pc -colorspace bt709 -c:v ffv1 a.mkv");
    for (const std::string layout : {"uyvy", "v210", "bgra", "rgb48"}) {
        run("$Z draw a.mkv o.mkv --force --layout " + layout + mark);
        const std::string rgb = run("$F -i o.mkv -frames:v 1 -vf crop=8:8:8:4,scale=1:1 -pix_fmt "
                                    "rgb24 -f rawvideo - | od -An -tu1");
        int red = 0, green = 0, blue = 0;
        std::istringstream(rgb) >> red >> green >> blue;
        EXPECT_GT(red, 248) << layout << rgb;
        EXPECT_LT(green, 8) << layout << rgb;
        EXPECT_LT(blue, 8) << layout << rgb;
        EXPECT_EQ(run("$P -show_entries stream=color_range,color_space o.mkv"), "pc,bt709\n");
    }
}

TEST_F(RoadTest, AllThatTheFileHoldsComesAlong) {
    writeFile(at("s.srt"), "1\n00:00:00,100 --> 00:00:00,700\nA line\n");
    writeFile(at("t.txt"), ";FFMETADATA1\ntitle=A film\n[CHAPTER]\nTIMEBASE=1/10\nSTART=0\nEND=5\n"
                           "title=One\n[CHAPTER]\nTIMEBASE=1/10\nSTART=5\nEND=10\ntitle=Two\n");
    writeFile(at("f.ttf"), "letters");
    run(std::string(videoAndSound) +
        "-i s.srt -i t.txt -map 0 -map 1 -map 1 -map 2 -map_metadata 3 -map_chapters 3 -c:v ffv1 "
        "-c:a pcm_s16le -c:s srt -metadata:s:a:0 language=deu -metadata:s:s:0 language=fra "
        "-disposition:a:1 default -attach f.ttf -metadata:s:t mimetype=font/ttf a.mkv");
    const std::string ask =
        "$P -show_entries stream=codec_name:stream_tags=language,filename:stream_disposition="
        "default:chapter=start_time,end_time:chapter_tags=title:format_tags=title ";
    run("$Z draw a.mkv o.mkv" + std::string(mark) + "&& $Z overlay a.mkv v.mkv --quiet");
    EXPECT_EQ(run(ask + "o.mkv"), run(ask + "a.mkv"));
    EXPECT_EQ(run(ask + "v.mkv"), run(ask + "a.mkv"));
    EXPECT_EQ(shell("$Z draw a.mkv o.mov --codec png" + std::string(mark)).err,
              "zrdraw: warning: the format 'mov' cannot hold what the source has besides: "
              "subtitles (subrip), attachments\n");
    EXPECT_EQ(run("$Z draw a.mkv p.mkv --streams v" + std::string(mark) +
                  "&& $P -show_entries stream=codec_name p.mkv"),
              "ffv1\n");
    run(std::string(video) +
        "-c:v libx264 -metadata:s:v rotate=90 -timecode 01:02:03:04 r.mp4 && "
        "$Z draw r.mp4 o.mp4" +
        mark);
    EXPECT_EQ(run("$P -show_entries stream_side_data=rotation:stream_tags=timecode o.mp4"),
              run("$P -show_entries stream_side_data=rotation:stream_tags=timecode r.mp4"));
}

TEST_F(RoadTest, BoxesOnTransparentPicturesAreOpaque) {
    run(std::string(video) +
        "-vf 'format=yuva444p10,geq=lum=lum(X\\,Y):cb=cb(X\\,Y):cr=cr(X\\,Y):"
        "a=X' -c:v ffv1 a.mkv && $Z overlay a.mkv o.mkv --text 0=box --set CustomTextX0=0 "
        "--set CustomTextY0=0 --quiet");
    EXPECT_EQ(quarter("o.mkv"), quarter("a.mkv"));
    const std::string alpha = run("$F -i o.mkv -frames:v 1 -vf extractplanes=a,crop=16:8:1:1 -f "
                                  "rawvideo -pix_fmt gray10le - | od -An -tu2 -v");
    std::istringstream samples(alpha);
    int count = 0;
    for (int sample = 0; samples >> sample; ++count)
        EXPECT_EQ(sample, 1023);
    EXPECT_EQ(count, 128);
}

TEST_F(RoadTest, OddWidthsWorkInEveryLayout) {
    run(std::string(video) + "-vf format=rgb24,scale=321:239,format=yuv420p -c:v ffv1 a.mkv");
    run("$Z overlay a.mkv o.mkv --set TimeCodeX=0 --set TimeCodeY=0");
    EXPECT_EQ(quarter("o.mkv"), quarter("a.mkv"));
    for (const zrLayout& layout : zrLayouts)
        if (!layout.isMosaic())
            run("$Z draw a.mkv o.png --force --frames 0 --layout " + layoutName(layout) + mark);
}

TEST_F(RoadTest, SequencesGoInAndOut) {
    run(std::string(video) +
        "-pix_fmt yuv422p10 -c:v v210 -timecode 01:00:00:20 a.mov && mkdir f && "
        "$Z draw a.mov f/i%03d.dpx --start-number 7" +
        mark);
    EXPECT_EQ(run("ls f | head -n 1; ls -A f | wc -l"), "i007.dpx\n25\n");
    run("$Z overlay f/i%03d.dpx b.mov --rate 25 --codec v210 --quiet");
    EXPECT_EQ(run("$P -select_streams v -show_entries stream=nb_frames:stream_tags=timecode b.mov"),
              "25,01:00:00:20\n");
    run("$Z draw a.mov one.png --frames 3" + std::string(mark));
    EXPECT_NE(
        shell("$Z draw a.mov two.png" + std::string(mark)).err.find("f%04d.png takes them all"),
        std::string::npos);
    fs::remove(at("f/i010.dpx"));
    expectRefused({
        {"$Z draw f/i%03d.dpx o.mov -e 'point 0 0'", 1, "lacks picture 10"},
        {"$Z draw f/j%03d.dpx o.mov -e 'point 0 0'", 1, "no picture is named"},
        {"$Z draw a.mov f/i%03d.dpx --start-number 20 -e 'point 0 0'", 2, "i020.dpx' exists"},
        {"$Z draw a.mov f/i%03d.dpx --start-number 1 -e 'point 0 0'", 2, "i007.dpx' exists"},
    });
    EXPECT_EQ(run("ls -A f | wc -l"), "24\n") << "all of a result or none";
}

TEST_F(RoadTest, PiecesJoinToTheWhole) {
    run("$F -f lavfi -i testsrc2=s=96x64:r=30000/1001:d=3 -f lavfi -i sine=f=500:r=48000:d=3 "
        "-pix_fmt "
        "yuv422p10 -c:v v210 -c:a pcm_s16le -timecode '00:00:58;20' a.mov && "
        "$Z overlay a.mov whole.mov --set TimeCodeX=0 --set TimeCodeY=0");
    const char* const ranges[] = {"0:31", "31:60", "60:61", "61:"};
    for (const char* range : ranges)
        run(fmt::format(
            "$Z overlay a.mov p{0}.mov --frames {1} --set TimeCodeX=0 --set TimeCodeY=0 "
            "&& echo file p{0}.mov >>list.txt",
            range[0] + range[1], range));
    run("$F -f concat -safe 0 -i list.txt -c copy joined.mov");
    for (const std::string what : {"-map 0:v -f rawvideo", "-map 0:a -f s16le"})
        EXPECT_EQ(run("$F -i joined.mov " + what + " - | md5sum"),
                  run("$F -i whole.mov " + what + " - | md5sum"));
    run("$F -f lavfi -i testsrc2=s=96x64:r=30:d=2 -vf 'select=not(mod(n\\,3))+gt(n\\,30)' -vsync "
        "vfr "
        "-c:v ffv1 v.mkv && rm list.txt");
    for (const char* range : {"0:7", "7:20", "20:"})
        run(fmt::format("$Z draw v.mkv v{0}.mkv --frames {1} -e 'point 0 0' && "
                        "echo file v{0}.mkv >>list.txt",
                        range[0] + range[1], range));
    run("$F -f concat -safe 0 -i list.txt -c copy joined.mkv");
    EXPECT_EQ(times("joined.mkv"), times("v.mkv"));
}

TEST_F(RoadTest, DamageIsSkippedOnRequest) {
    run("$F -f lavfi -i testsrc2=s=320x240:r=25:d=2 -c:v mpeg4 -g 5 a.mkv");
    std::string bytes = readFile(at("a.mkv"));
    writeFile(at("cut.mkv"), bytes.substr(0, bytes.size() * 2 / 3));
    for (std::size_t i = 0; i < 60; ++i)
        bytes[bytes.size() / 3 + i] = static_cast<char>(~bytes[bytes.size() / 3 + i]);
    writeFile(at("bad.mkv"), bytes);
    expectRefused({{"$Z draw cut.mkv o.mkv -e 'point 0 0'", 1, "is cut off"},
                   {"$Z draw bad.mkv o.mkv -e 'point 0 0'", 1, "cannot read frame"}});
    const Result bad = shell("$Z draw bad.mkv o.mkv --keep-going" + std::string(mark));
    EXPECT_EQ(bad.status, 0) << bad.err;
    EXPECT_NE(bad.err.find("the last good frame stands in"), std::string::npos) << bad.err;
    EXPECT_EQ(times("o.mkv"), times("a.mkv"));
    const Result cut = shell("$Z draw cut.mkv p.mkv --keep-going" + std::string(mark));
    EXPECT_EQ(cut.status, 0) << cut.err;
    const std::string whole = times("a.mkv"), part = times("p.mkv");
    EXPECT_EQ(whole.compare(0, part.size(), part), 0);
    EXPECT_GT(part.size(), whole.size() / 3);
}

TEST_F(RoadTest, AFailureInAnyStageEndsAll) {
    writeNoise(at("a.mkv"), infoOf(AV_PIX_FMT_BGRA), 40, writeAs("png"));
    const std::string whole = readFile(at("a.mkv"));
    std::string broken = whole;
    broken.replace(whole.size() * 3 / 4, 500, 500, '\0');
    writeFile(at("broken.mkv"), broken);
    const auto drive = [&](const std::string& in, const std::string& out, int failAt) {
        return errorOf([&] {
            Reader reader(in, {always(bgra)});
            WriteOptions options = writeAs("rawvideo", "nut");
            options.path = out;
            options.force = true;
            Writer writer(options, reader, reader.info());
            int drawn = 0;
            runRoad(reader, writer, [&](Frame&) {
                if (drawn++ == failAt)
                    throw Failure("drawing fails");
            });
        });
    };
    for (const int failAt : {0, 1, 20, 39})
        EXPECT_EQ(drive(at("a.mkv"), at("o.nut"), failAt), "drawing fails");
    EXPECT_NE(drive(at("broken.mkv"), at("o.nut"), -1).find("cannot read frame"),
              std::string::npos);
    EXPECT_NE(drive(at("a.mkv"), "/dev/full", -1).find("No space left"), std::string::npos);
    EXPECT_EQ(left(), (std::set<std::string>{"a.mkv", "broken.mkv"}));
    EXPECT_EQ(drive(at("a.mkv"), at("o.nut"), -1), "no error");
}

} // namespace
