// The script language: what is refused with which words, and what good scripts leave on a canvas.
#include "gallery/cells.h"
#include "tool/text_canvas.h"
#include "tool/tool_fixture.h"

#include <string_view>

namespace {

TEST(ScriptTest, FaultsAreNamedWithTheirPlace) {
    const struct {
        std::string script, error;
    } cases[] = {
        {"line abc 0 5 5",
         "-e:1:6: line: expected a number from -32767 to 32767 for x0, got \"abc\""},
        {"line 0 0 5 32768",
         "-e:1:12: line: expected a number from -32767 to 32767 for y1, got \"32768\""},
        {"line 0 0 5", "-e:1:1: line: y1 is missing; write line X0 Y0 X1 Y1"},
        {"line 0 0 5 5 6", "-e:1:14: line: unexpected \"6\"; write line X0 Y0 X1 Y1"},
        {"color 1 1 1.01", "-e:1:11: color: expected a number from 0 to 1 for b, got \"1.01\""},
        {"color 1 1 nan", "-e:1:11: color: expected a number from 0 to 1 for b, got \"nan\""},
        {"transparency on",
         "-e:1:14: transparency: expected a number from 0 to 1 or off for t, got \"on\""},
        {"additive 1", "-e:1:10: additive: expected one of off, on for switch, got \"1\""},
        {"matrix rec1", "-e:1:8: matrix: expected one of rec601, rec601full, rec709, rec709full, "
                        "rec2020, rec2020full, rec2020cl for name, got \"rec1\""},
        {"polyline 1 2", "-e:1:1: polyline: a point is missing; write polyline X0 Y0 X1 Y1 ..."},
        {"polyline 1 2 3 4 5", "-e:1:1: polyline: y2 is missing; write polyline X0 Y0 X1 Y1 ..."},
        {"scale 65", "-e:1:7: scale: expected a number from 0.01 to 64 for n, got \"65\""},
        {"point 1 1 back back", "-e:1:16: point: unexpected \"back\"; write point X Y [back]"},
        {"label 1 1 hi", "-e:1:11: label: expected a text in double quotes for text, got \"hi\""},
        {"label 1 1 \"hi", "-e:1:11: the quote is not closed on its line"},
        {"label 1 1 \"h\\i\"", R"(-e:1:13: a backslash in quotes must be \\ or \")"},
        {"label 1 1 \"\\\"\u00e4\u00e9\"",
         "-e:1:14: label: character 2 of text is \"\u00e4\"; only "
         "the codes 1 to 127 can be drawn"},
        {std::string("label 1 1 \"a\0\"", 14),
         "-e:1:13: label: character 2 of text is code 0; only the codes 1 to 127 can be drawn"},
        {"move 1 1\n  # comment\n\tpoint 2 x",
         "-e:3:10: point: expected a number from -32767 to 32767 for y, got \"x\""},
        {"# \u00e4\nmove 1 1; \u00e4\u00e9\u00e4\u00e9\u00e4 1",
         "-e:2:11: unknown command \"\u00e4\u00e9\u00e4\u00e9\u00e4\"; the commands are "},
        {"label 1 1 \"a;#\"; lime 0 0", "-e:1:18: unknown command \"lime\"; did you mean line?"},
        {"point 1 1 \"back\"", "-e:1:11: point: unexpected \"back\"; write point X Y [back]"},
        {"point\"1\"", "-e:1:6: a quote inside a word; put a blank before it"},
        {"label 1 1 \"a\"b", "-e:1:14: put a blank after the closing quote"},
        {"circle 5 5 -1", "-e:1:12: circle: expected a number from 0 to 32767 for r, got \"-1\""},
        {"ellipse -5 9 3 32759", "-e:1:1: ellipse: its edge lies beyond the largest coordinate"},
        {"anglearc -9 5 32759 0 9",
         "-e:1:1: anglearc: its edge lies beyond the largest coordinate"},
        {"anglearc 5 5 4 0 3601",
         "-e:1:18: anglearc: expected a number from -3600 to 3600 for end, got \"3601\""},
        {"polybezier 0 0 1 1 2 2 3 3 4 4",
         "-e:1:1: polybezier: expected 4, 7, 10 or another 3n + 1 points, got 5"},
        {"move 1 1; polybezierto 0 0 1 1 2 2",
         "-e:1:11: polybezierto: expected 4, 7, 10 or another 3n + 1 points, got 3"},
        {"gradient 0 0 9 9 4.5",
         "-e:1:18: gradient: expected a whole number from -3600 to 3600 for angle, got \"4.5\""},
    };
    for (const auto& [script, error] : cases) {
        const std::string got = errorOf([&] { parseScript(script, "-e"); }, ExitStatus::BadUsage);
        // A list of all commands is compared up to its start.
        EXPECT_EQ(error.ends_with(' ') ? got.substr(0, error.size()) : got, error) << script;
    }
}

TEST(ScriptTest, MarksOnTheCanvas) {
    const struct {
        std::string script, art;
    } cases[] = {
        {"point 1 1; point 3 1 back", "..........\n.#.o......\n..........\n"},
        {"point 0 2\r\nlineto 3 2 # to the right", "..........\n..........\n####......\n"},
        {"line 0 0 2 2;;line 9 0 7 2;", "#........#\n.#......#.\n..#....#..\n"},
        {"horiz 2 1 5; vert 7 0 2", ".......#..\n..####.#..\n.......#..\n"},
        {"dash 0 0 9 0 2 1", "##.##.##.#\n..........\n..........\n"},
        {"polyline 0 0 3 0 3 2; lineto 0 2", "####......\n#..#......\n#..#......\n"},
        {"polylineto 0 0 3 0 3 1; lineto 3 2", "####......\n...#......\n...#......\n"},
        {"pixel 5 1 0 1 0 1; point 6 1", "..........\n.....oo...\n..........\n"},
        {"transparency 0.5; point 1 1; transparency off; point 2 1",
         "..........\n.o#.......\n..........\n"},
        {"circle 4 1 1", "...###....\n...#.#....\n...###....\n"},
        {"fillcircle 4 1 1", "....#.....\n...###....\n....#.....\n"},
        {"ellipse 4 1 3 0", "..........\n.#######..\n..........\n"},
        {"anglearcto 4 1 3 0 180 0; lineto 8 0", "........#.\n.#######..\n..........\n"},
        {"bezier 1 1 2 1 5 1 7 1", "..........\n.#######..\n..........\n"},
        {"polybezierto 0 0 1 0 2 0 3 0 3 1 3 1 3 2; lineto 6 2",
         "####......\n...#......\n...####...\n"},
        {"rect 1 0 5 2", ".#####....\n.#...#....\n.#####....\n"},
        {"fillrect 1 0 5 2", ".#####....\n.#####....\n..........\n"},
        {"roundrect 1 0 7 2 2 0", ".#######..\n.#.....#..\n.#######..\n"},
        {"horiz 2 1 5; vert 7 0 2; fill 8 0; fill 9 2", ".......###\n..####.###\n.......###\n"},
        {"pixel 0 0 0.1 0 0 1; color 1 1 1; fill 1 0 0.2", "##########\n##########\n##########\n"},
        {"erase back", "oooooooooo\noooooooooo\noooooooooo\n"},
        {"erase", "##########\n##########\n##########\n"},
        {"gradient 1 0 3 1 0", ".#oo......\n.#oo......\n..........\n"},
    };
    for (const auto& [script, art] : cases) {
        TextCanvas canvas(10, 3);
        canvas.run(script);
        EXPECT_EQ(canvas.art(), art) << script;
    }
}

TEST(ScriptTest, QuotesKeepWhatTheyHold) {
    const Script script = parseScript(R"(label 1 2 "a\\\"; # b"; move 1 1 # ")", "-e");
    ASSERT_EQ(script.commands.size(), 2U);
    EXPECT_EQ(script.commands[0].arguments.text(2), R"(a\"; # b)");
    EXPECT_EQ(script.commands[1].place(), "-e:1:25");
}

TEST(ScriptTest, TextFlagsAreThoseOfTheLibrary) {
    const struct {
        std::string flags;
        unsigned format;
        bool opaque;
    } cases[] = {{"", 0, false},
                 {"bottom", zrTextKeepBottom, false},
                 {"right", zrTextRight, false},
                 {"opaque centre", zrTextCentre, true}};
    for (const auto& [flags, format, opaque] : cases) {
        TextCanvas canvas(48, 24), direct(48, 24);
        canvas.run("text 4 2 44 18 \"HH\" " + flags);
        RECT rect{4, 2, 44, 18};
        direct.draw->textTransparent = !opaque;
        direct.draw->DrawText("HH", 2, &rect, format);
        EXPECT_EQ(canvas.art(), direct.art()) << flags;
        EXPECT_TRUE(canvas.draw->textTransparent) << "opaque is for one text";
    }
}

TEST(ScriptTest, GalleryShowsEveryCommand) {
    std::set<std::string_view> shown;
    for (const Cell& cell : galleryCells())
        for (const Command& command : parseScript(cell.script, cell.title).commands)
            shown.insert(command.operation->name);
    for (const Operation& operation : operations())
        EXPECT_TRUE(shown.contains(operation.name)) << operation.name;
}

TEST(ScriptTest, StateCommandsSetTheObject) {
    const struct {
        std::string script;
        std::function<bool(const ZRDraw&)> holds;
    } cases[] = {
        {"additive on", [](const ZRDraw& d) { return d.alphaAdditive; }},
        {"antialias on", [](const ZRDraw& d) { return d.antiAlias; }},
        {"matrix rec2020cl", [](const ZRDraw& d) { return d.yCbCrMode == cmRec2020CL; }},
        {"transparency 0.25",
         [](const ZRDraw& d) {
             return d.transparency && d.foreTransparency == 0.25 && d.backTransparency == 0.25;
         }},
        {"color 1 0 0 0", [](const ZRDraw& d) { return d.foreColor == 0x00FF0000; }},
    };
    for (const auto& [script, holds] : cases) {
        TextCanvas canvas(10, 10);
        canvas.run(script);
        EXPECT_TRUE(holds(*canvas.draw)) << script;
    }
}

TEST(ScriptTest, OffTheCanvasIsRefused) {
    const struct {
        std::string script, refusal;
    } cases[] = {
        {"horiz 0 0 9; point 9 2; move 99 99; line -5 -5 5 5", ""},
        {"horiz 5 0 50", "-e:1:1: horiz was refused: it does not lie wholly on the 10x3 canvas"},
        {"vert 1 -1 1", "-e:1:1: vert was refused: it does not lie wholly on the 10x3 canvas"},
        {"\n point 20 0", "-e:2:2: point was refused: it does not lie wholly on the 10x3 canvas"},
        {"arc 5 5 5 9 0 0 9 9",
         "-e:1:1: arc was refused: its box is empty or a point is its centre"},
        {"bezier 1 1 5 5 2 2 1 1", "-e:1:1: bezier was refused: its ends coincide"},
        {"roundrect 0 0 9 2 10 0", "-e:1:1: roundrect was refused: its corners do not fit"},
        {"fill 3 -1", "-e:1:1: fill was refused: its start is off the canvas"},
        {"circle 5 5 'w*4000'", "-e:1:1: circle was refused: its edge lies beyond the largest "
                                "coordinate"},
    };
    for (const auto& [script, refusal] : cases) {
        const std::vector<std::string> got = TextCanvas(10, 3).run(script);
        EXPECT_EQ(got.empty() ? "" : got.back(), refusal) << script;
    }
}

} // namespace
