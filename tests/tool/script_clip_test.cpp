// Scripts and programs on real clips: time codes, times, sound, pieces, pictures and where files
// are, and that nothing is written where one is wrong.
#include "tool/tool_fixture.h"

#include <fmt/format.h>

#include <cstdlib>

namespace {

class ScriptClipTest : public ToolTest {
protected:
    // Black frames as a source of FFmpeg's has them.
    void makeClip(const std::string& name, const std::string& options,
                  const std::string& rate = "25", const std::string& sound = "") const {
        run(fmt::format("$F -f lavfi -i color=black:s=96x48:r={},format=rgb24 {} {} -c:v qtrle {}",
                        rate, sound, options, name));
    }

    std::vector<Bytes> drawn(const std::string& clip, const std::string& options) const {
        run(fmt::format("$Z draw {} out.mov --force {}", clip, options));
        return readAll(at("out.mov"));
    }

    // Frames with these labels, one each.
    std::vector<Bytes> labelled(const std::string& clip,
                                const std::vector<std::string>& labels) const {
        std::vector<Bytes> frames;
        for (std::size_t i = 0; i < labels.size(); ++i)
            frames.push_back(
                drawn(clip, fmt::format("-e 'color 1 1 1; label 1 1 \"{}\"'", labels[i])).at(i));
        return frames;
    }

    void writeProgram(const std::string& name, const std::string& text) const {
        writeFile(at(name), text);
    }
};

TEST_F(ScriptClipTest, FieldsTellOfEachFrame) {
    makeClip("drop.mov", "-frames:v 4 -timecode '00:00:59;28'", "30000/1001");
    makeClip("slow.mov",
             "-frames:v 3 -vf 'setpts=(N*0.1+gte(N\\,2)*0.4)/TB' -fps_mode vfr "
             "-video_track_timescale 1000",
             "10");
    makeClip("sound.mov", "-t 0.2 -c:a pcm_s16le", "25",
             "-f lavfi -i \"aevalsrc=0|if(gte(t\\,0.12)\\,0.5\\,0):s=48000:d=0.3\"");
    const struct {
        const char* clip;
        const char* text;
        std::vector<std::string> labels;
    } cases[] = {
        {"drop.mov", "{tc}", {"00:00:59;28", "00:00:59;29", "00:01:00;02", "00:01:00;03"}},
        {"slow.mov", "{n} {t}", {"0 0.000", "1 0.100", "2 0.600"}},
        {"sound.mov",
         "{expr:peak1:.2} {expr:peak2:.2}",
         {"0.00 0.00", "0.00 0.00", "0.00 0.00", "0.00 0.50", "0.00 0.50"}},
        {"sound.mov", "{file}", {"sound.mov"}},
    };
    for (const auto& [clip, text, labels] : cases) {
        SCOPED_TRACE(text);
        std::vector<Bytes> frames =
            drawn(clip, fmt::format("-e 'color 1 1 1; label 1 1 \"{}\"'", text));
        frames.resize(labels.size());
        EXPECT_TRUE(frames == labelled(clip, labels));
    }
    writeProgram("p.lua", "function frame(d) d:color(1, 1, 1) d:label(1, 1, string.format('%.2f "
                          "%.2f', d.levels[1], d.levels[2])) end");
    EXPECT_TRUE(drawn("sound.mov", "--lua p.lua") == labelled("sound.mov", cases[2].labels));
}

TEST_F(ScriptClipTest, PiecesAreTheWhole) {
    makeClip("clip.mov", "-frames:v 8 -timecode 10:00:00:20");
    writeProgram("p.lua", "function frame(d) d:point(d.n, math.floor(d.t * 25 + 0.5)) end");
    const std::string script =
        "-e 'color 1 1 1; label n t*25 \"{tc} {n} {t}\"; let x = n*n; circle x 30 n; "
        "from 10:00:00:22 to 10:00:01:01; rect 60 20 70 n+30; end' --lua p.lua";
    const std::vector<Bytes> whole = drawn("clip.mov", script);
    ASSERT_EQ(whole.size(), 8U);
    EXPECT_NE(whole[2], whole[3]);
    std::vector<Bytes> pieces;
    for (const char* range : {"0:3", "3:4", "4:8"})
        for (const Bytes& frame : drawn("clip.mov", fmt::format("{} --frames {}", script, range)))
            pieces.push_back(frame);
    EXPECT_TRUE(pieces == whole);
}

TEST_F(ScriptClipTest, WhatIsWrongNamesItsFrameAndWritesNothing) {
    makeClip("clip.mov", "-frames:v 9");
    writeProgram("late.lua", "function frame(d)\n  if d.n == 7 then d:point(1) end\nend\n");
    writeProgram("loop.lua", "function frame(d) while d.n == 2 do end end");
    writeProgram("top.lua", "frame = 3");
    expectRefused({
        {"$Z draw clip.mov out.mov -e \"point 0 '0/(n-3)'\"", 2,
         "-e:1:9: point: y is no number in frame 3"},
        {"$Z draw clip.mov out.mov -e 'label 0 0 \"{expr:1/(n-4)}\"'", 2,
         "-e:1:18: label: the expression gives no number in frame 4"},
        {"$Z draw clip.mov out.mov -e 'from 00:00:00:00 to 00:00:00:25; end'", 2,
         "-e:1:21: from: the time code 00:00:00:25 cannot be at 25 frames a second"},
        {"$Z draw clip.mov out.mov -e 'image 0 0 none.png'", 1, "cannot read 'none.png'"},
        {"$Z draw clip.mov out.mov --lua late.lua", 1,
         "late.lua:2: point: y is missing; write point X Y [back] (in frame 7)"},
        {"$Z draw clip.mov out.mov --lua loop.lua --lua-limit 5000", 1,
         "loop.lua:1: more than 5000 instructions, which is the limit (in frame 2)"},
        {"$Z draw clip.mov out.mov --lua top.lua", 2, "top.lua: there is no function frame(d)"},
        {"$Z draw clip.mov out.mov --lua none.lua", 1, "none.lua"},
    });
    const Result held = shell("$Z draw clip.mov out.mov -e 'color n 0 0'");
    EXPECT_EQ(held.status, 0);
    EXPECT_EQ(held.err, "zrdraw: warning: -e:1:7: color: expected a number from 0 to 1 for r, got "
                        "2 in frame 2: it is held at 1\n");
}

TEST_F(ScriptClipTest, PicturesBlendWhereTheLayoutCan) {
    makeClip("clip.mov", "-frames:v 2");
    run("$F -f lavfi -i color=red@0.502:s=20x10,format=rgba -frames:v 1 p.png");
    const auto redAt = [](const std::vector<Bytes>& frames, int x, int y) {
        return int{frames.at(1)[static_cast<std::size_t>((y * 96 + x) * 4 + 2)]};
    };
    for (const char* layout : {"bgra", "uyvy", "v210"}) {
        const std::vector<Bytes> frames =
            drawn("clip.mov", fmt::format("-e 'image 40 20 p.png' --layout {}", layout));
        EXPECT_NEAR(redAt(frames, 50, 25), 128, 6) << layout;
        EXPECT_NEAR(redAt(frames, 30, 25), 0, 3) << layout;
    }
    for (const auto& [options, red] : {std::pair("", 255), std::pair("0.5", 0)}) {
        const Result result = shell(fmt::format(
            "$Z draw clip.mov out.mov --force -e 'image 40 20 p.png {}' --layout rgb48", options));
        EXPECT_EQ(result.err,
                  "zrdraw: warning: 'p.png' is opaque where its alpha is at least one half: only 8 "
                  "bits of RGB with alpha, 4:2:2 and v210 blend pictures\n");
        EXPECT_NEAR(redAt(readAll(at("out.mov")), 50, 25), red, 1) << options;
    }
}

TEST_F(ScriptClipTest, FilesAreBesideTheScript) {
    makeClip("clip.mov", "-frames:v 1");
    fs::create_directory(at("sub"));
    run("$F -f lavfi -i color=lime:s=20x10,format=rgba -frames:v 1 sub/p.png");
    writeFile(at("sub/s.zrd"), "image 5 5 p.png");
    writeFile(at("sub/p.lua"), "local part = require('part')\nfunction frame(d) part(d) end");
    writeFile(at("sub/part.lua"), "return function(d) d:image(5, 5, 'p.png') end");
    const std::vector<Bytes> direct = drawn("clip.mov", "-e 'image 5 5 sub/p.png'");
    EXPECT_NE(direct, readAll(at("clip.mov")));
    EXPECT_EQ(drawn("clip.mov", "--script sub/s.zrd"), direct);
    EXPECT_EQ(drawn("clip.mov", "--lua sub/p.lua"), direct);
    EXPECT_EQ(drawn("clip.mov", fmt::format("-e 'image 5 5 {}'", at("sub/p.png"))), direct);
    fs::remove(at("out.mov"));
    expectRefused({{"$Z draw clip.mov out.mov -e 'image 5 5 p.png'", 1, "cannot read 'p.png'"}});
}

} // namespace
