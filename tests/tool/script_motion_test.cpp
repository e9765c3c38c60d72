// Scripts that move: variables and blocks from frame to frame, fields, places, and numbers that
// leave their range.
#include "tool/text_canvas.h"
#include "tool/tool_fixture.h"

#include <fmt/format.h>

#include <cmath>

namespace {

StreamFacts streamOf(int width, int height, unsigned timeCodeType = zrTimeCode25) {
    StreamFacts stream{width, height};
    stream.timeCodeType = timeCodeType;
    if (zrTimeCodeIsDrop(timeCodeType) != 0)
        stream.framesPerSecond = 30000.0 / 1001;
    return stream;
}

TEST(ScriptMotionTest, VariablesAndBlocksFromFrameToFrame) {
    const struct {
        const char* script;
        std::vector<std::string> arts; // of the frames 0, 1...
    } cases[] = {
        {"let x = n; let y = 'x + 2'; point y 0", {"..#...", "...#..", "....#."}},
        {"when gt(n,0); point 0 0; when gt(n,1); point 1 0; end; point 2 0; end; point 3 0",
         {"...#..", "#.##..", "####.."}},
        // A block changes what is around it, and later frames begin anew.
        {"let x = 1; when eq(n,1); let x = 'x + 3'; end; point x 0",
         {".#....", "....#.", ".#...."}},
        {"when 1; let x = 2; point x 0; end; let x = 5; point x 0", {"..#..#"}},
        {"let x = 4; when 0; let x = 1; end; point x 0", {"....#."}},
        {"when 0; when 1; point 0 0; end; point 1 0; end; point 2 0", {"..#..."}},
        {"when -0.5; point 0 0; end", {"#....."}},
        {"horiz 0 0 'st(0,ld(0)+1)'", {"##....", "###...", "####.."}},
        {"polyline 0 0 n 0 'n+1' 0", {"##....", "###...", "####.."}},
        // The mark of an earlier frame is not the start of a line of the next.
        {"lineto 'n+1' 0; move 5 0", {"##....", "###..."}},
    };
    for (const auto& [script, arts] : cases) {
        SCOPED_TRACE(script);
        std::vector<FrameFacts> frames;
        for (std::size_t i = 0; i < arts.size(); ++i)
            frames.push_back(frameAt(static_cast<std::int64_t>(i)));
        const Played played = play(listSource(script), streamOf(6, 1), frames);
        EXPECT_EQ(played.error, "");
        ASSERT_EQ(played.arts.size(), arts.size());
        for (std::size_t i = 0; i < arts.size(); ++i)
            EXPECT_EQ(played.arts[i], arts[i] + "\n") << i;
    }
}

TEST(ScriptMotionTest, FromHoldsUpToItsSecondTimeCode) {
    const struct {
        const char* range;
        unsigned type;
        std::vector<std::string> in, out;
    } cases[] = {
        {"00:00:01:00 to 00:00:02:00",
         zrTimeCode25,
         {"00:00:01:00", "00:00:01:24"},
         {"00:00:00:24", "00:00:02:00", "23:00:01:00"}},
        {"23:59:59:00 to 00:00:00:10",
         zrTimeCode25,
         {"23:59:59:00", "23:59:59:24", "00:00:00:00", "00:00:00:09"},
         {"23:59:58:24", "00:00:00:10", "12:00:00:00"}},
        {"00:00:01:00 to 00:00:01:00", zrTimeCode25, {}, {"00:00:01:00", "00:00:00:24"}},
        // The semicolon of a time code ends no command.
        {"00:00:59;29 to \"00:01:00;03\"",
         zrTimeCode30Drop,
         {"00:00:59;29", "00:01:00;02"},
         {"00:00:59;28", "00:01:00;03"}},
    };
    for (const auto& [range, type, in, out] : cases)
        for (const bool isIn : {true, false})
            for (const std::string& timeCode : isIn ? in : out) {
                const Played played =
                    play(listSource(fmt::format("from {}; point 0 0; end", range)),
                         streamOf(1, 1, type), {frameAt(0, timeCode, type)});
                EXPECT_EQ(played.error, "");
                EXPECT_EQ(played.arts.at(0), isIn ? "#\n" : ".\n") << range << ", " << timeCode;
            }
    // Counts go on behind midnight.
    FrameFacts second = frameAt(0);
    second.timeCode = (24 * 3600 + 1) * 25;
    EXPECT_EQ(play(listSource("from 00:00:01:00 to 00:00:01:01; point 0 0; end"), streamOf(1, 1),
                   {second})
                  .arts.at(0),
              "#\n");
}

TEST(ScriptMotionTest, TimeCodesThatCannotBeAreRefusedBeforeAnyFrame) {
    const struct {
        const char* script;
        unsigned type;
        const char* error;
    } cases[] = {
        {"\nfrom 00:00:00:00 to 00:00:00:25; end", zrTimeCode25,
         "-e:2:21: from: the time code 00:00:00:25 cannot be at 25 frames a second"},
        {"from 00:01:00;00 to 00:02:00:02; end", zrTimeCode30Drop,
         "-e:1:6: from: the time code 00:01:00;00 cannot be at 29.97 frames a second drop-frame"},
        {"from 24:00:00:00 to 00:00:00:01; end", zrTimeCode25,
         "-e:1:6: from: the time code 24:00:00:00 cannot be at 25 frames a second"},
    };
    for (const auto& [script, type, error] : cases)
        EXPECT_EQ(play(listSource(script), streamOf(1, 1, type), {}).error, error);
}

TEST(ScriptMotionTest, FieldsAndTheirForms) {
    StreamFacts stream = streamOf(64, 48, zrTimeCode30Drop);
    stream.file = "clip.mov";
    stream.tags = {{"title", "A titl\u00e9"}};
    FrameFacts facts = frameAt(7, "00:01:00;02", zrTimeCode30Drop);
    facts.time = 0.28;
    TextCanvas canvas(64, 48);
    Stage stage(stream, Names().size(), {});
    stage.begin(*canvas.draw, canvas.view(), facts);
    const struct {
        const char* text;
        const char* written;
    } cases[] = {
        {"at {tc}.", "at 00:01:00;02."},
        {"{tc:<14}|{tc:^13}|{tc:.5}", "00:01:00;02   | 00:01:00;02 |00:01"},
        {"{n}{n:06}{n:3}{n:<3}|", "7000007  77  |"},
        {"{t} {t:.1} {t:8.2} {t:08}", "0.280 0.3     0.28 0000.280"},
        {"{file} {file:10}|{file:.4}", "clip.mov clip.mov  |clip"},
        {"{meta:title} {meta:title:8}| {meta:none}{meta:none:3}|", "A titl? A titl? |    |"},
        {"{expr:n*2} {expr:n/2:.2} {expr:w/3:6.1} {expr:1e7} {expr:-n:05}",
         "14 3.50   21.3 10000000 -0007"},
        {"{{n} } a{{{n}}b", "{n} } a{7}b"},
        {"{date:a%%b}", "a%b"},
    };
    for (const auto& [text, written] : cases) {
        std::string got = "before";
        FieldText(text, Names{}).write(stage.textFacts(facts), got);
        EXPECT_EQ(got, written) << text;
    }
}

// A label is 8 by 10 pixels a character at scale 1.
TEST(ScriptMotionTest, TheSameIsDrawnTwoWays) {
    const struct {
        const char* script;
        const char* other;
    } cases[] = {
        {"label 30 20 \"Hi\" anchor right bottom", "label 15 11 \"Hi\""},
        {"label 30 20 \"Hi\" anchor left top", "label 30 20 \"Hi\""},
        {"label 30 20 \"Hi\" anchor centre middle inverse", "label 23 16 \"Hi\" inverse"},
        {"scale 2; label 40 31 \"H\" opaque anchor right middle", "scale 2; label 25 22 \"H\" "
                                                                  "opaque"},
        {"label 0 0 \"abc\"; point dw 20", "label 0 0 \"abc\"; point 24 20"},
        {"scale 2; measure \"ab\"; point dw 20", "point 32 20"},
        {"text 0 0 40 20 \"H\"; let a = dw; text 0 20 60 40 \"HH\"; when gt(a,0)*eq(dw,a*2); point "
         "1 44; end",
         "text 0 0 40 20 \"H\"; text 0 20 60 40 \"HH\"; point 1 44"},
        {"unit 32 24; measure \"ab\"; point dw 5", "point 16 10"},
        {"unit 32 24; point 'w-1' 'h-1'", "point 62 46"},
        {"unit 32 24; rect 1 1 4 4; circle 10 10 2", "rect 2 2 9 9; circle 20 20 4"},
        {"unit 128 96; line 0 0 100 40; gradient 2 2 9 9 30",
         "line 0 0 50 20; gradient 1 1 4 4 30"},
        {"unit 32 24; scale 1; label 1 1 \"H\"", "scale 2; label 2 2 \"H\""},
        {"unit 640 480; scale 1; label 10 10 \"H\"", "label 1 1 \"H\""},
        {"unit 32 24; polyline 0 0 5 5 9 5", "polyline 0 0 10 10 18 10"},
        {"at right bottom; point 0 0; point -3 -2", "point 63 47; point 60 45"},
        {"at centre middle; point 0 0", "point 31 23"},
        {"safe 0.5; at left top; point 0 0; at right bottom; point 0 0",
         "point 16 12; point 47 35"},
        {"unit 32 24; safe 0.5; at right top; rect -3 0 0 3", "rect 40 12 47 19"},
        {"safe 0.5; point 0 0", "point 16 12"},
        {"let x = 3; let y = 'x * 2'; point y x", "point 6 3"},
    };
    for (const auto& [script, other] : cases) {
        TextCanvas canvas(64, 48), plain(64, 48);
        EXPECT_EQ(canvas.run(script), plain.run(other)) << script;
        EXPECT_EQ(canvas.art(), plain.art()) << script;
    }
}

TEST(ScriptMotionTest, CellsOfAGridLeaveNoGap) {
    using Role = Parameter::Role;
    const struct {
        int width, height;
    } cases[] = {{1280, 720}, {3840, 2160}, {1366, 768}, {100, 56}};
    for (const auto& [width, height] : cases) {
        Place place(width, height);
        place.setUnit(1920, 1080);
        EXPECT_EQ(place.pixels(0, Role::X), 0);
        EXPECT_EQ(place.pixels(1919, Role::Right), width - 1);
        EXPECT_EQ(place.pixels(1079, Role::Bottom), height - 1);
        for (int i = 0; i < 1079; ++i) {
            ASSERT_EQ(place.pixels(i, Role::Right) + 1, place.pixels(i + 1, Role::X)) << i;
            ASSERT_EQ(place.pixels(i, Role::Bottom) + 1, place.pixels(i + 1, Role::Y)) << i;
        }
    }
    TextCanvas canvas(11, 5);
    canvas.run("unit 3 2; fillrect 0 0 0 1; color 0 1 0; fillrect 1 0 1 1; color 1 1 1; "
               "fillrect 2 1 2 2");
    EXPECT_EQ(canvas.art(), "####ooo....\n####ooo....\n####ooo....\n.......####\n.......####\n");
}

TEST(ScriptMotionTest, NumbersThatLeaveTheirRange) {
    const struct {
        const char* script;
        std::vector<std::string> warnings;
        const char* error;
    } cases[] = {
        {"color n 0 0; color 0 n 0",
         {"-e:1:7: color: expected a number from 0 to 1 for r, got 2 in frame 2: it is held at 1",
          "-e:1:22: color: expected a number from 0 to 1 for g, got 2 in frame 2: it is held at "
          "1"},
         ""},
        {"point '100*n' 0",
         {"-e:1:1: point was refused: it does not lie wholly on the 6x1 canvas"},
         ""},
        {"\npoint 0 '0/(n-2)'", {}, "-e:2:9: point: y is no number in frame 2"},
        {"let x = '1/(n-3)'", {}, "-e:1:9: let: x is no number in frame 3"},
        {"when sqrt(2-n); end", {}, "-e:1:6: when: condition is no number in frame 3"},
        {"label 0 0 \"\\\"{expr:1/(n-1)}\"",
         {},
         "-e:1:20: label: the expression gives no number in frame 1"},
    };
    for (const auto& [script, warnings, error] : cases) {
        const Played played = play(listSource(script), streamOf(6, 1),
                                   {frameAt(0), frameAt(1), frameAt(2), frameAt(3)});
        EXPECT_EQ(played.warnings, warnings) << script;
        EXPECT_EQ(played.error, error) << script;
    }
}

} // namespace
