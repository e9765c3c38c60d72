// `zrdraw draw --contact`: which frames a sheet shows, where and under which time code, how their
// number is found, and what is refused.
#include "draw_object.h"
#include "tool/tool_fixture.h"
#include "zrdraw/font.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <sstream>
#include <utility>

namespace {

// Of cells of 64x48, which are not as wide as their labels.
constexpr int cellWidth = 64, cellHeight = 48;
constexpr int strideX = 96, strideY = 78;
constexpr int cellX = 16, cellY = 4;
constexpr int labelY = 58;

using Color = std::array<int, 3>; // B, G, R

class Picture {
public:
    explicit Picture(const std::string& path) {
        Reader reader(path, {always(bgra)});
        width = reader.info().width;
        height = reader.info().height;
        m_pixels = pixelsOf(framesOf(reader).at(0)->canvas, 4);
    }

    Color at(int x, int y) const {
        const unsigned char* pixel = &m_pixels.at(static_cast<std::size_t>((y * width + x) * 4));
        return {pixel[0], pixel[1], pixel[2]};
    }

    // Everything that is not ground, as text art.
    std::string inkIn(int x, int y, int columns, int rows) const {
        std::string art;
        for (int row = y; row < y + rows; ++row, art += '\n')
            for (int column = x; column < x + columns; ++column)
                art += at(column, row) == at(0, 0) ? '.' : '#';
        return art;
    }

    int width, height;

private:
    Bytes m_pixels;
};

// What stands in a column of cells under the one in a line, with a label in its middle.
std::string inkOf(const std::string& label) {
    Canvas canvas(bgra, strideX, zrFontHeight);
    const DrawPtr draw = makeDraw(canvas);
    draw->LabelFont(0U, 1);
    const int letters = static_cast<int>(label.size());
    draw->Label((strideX - letters * zrFontWidth) / 2, 0, label.c_str(), false, false);
    std::string art;
    for (int y = 0; y < zrFontHeight; ++y, art += '\n')
        for (int x = 0; x < strideX; ++x)
            art += canvas.data()[y * canvas.pitch() + 4 * x] == 0 ? '.' : '#';
    return art;
}

bool isNear(const Color& a, const Color& b) {
    return std::equal(
        a.begin(), a.end(), b.begin(),
        [](int left, int right) { return std::abs(left - right) <= 3; });
}

// In shell commands, `$GREY RATE` and options make 30 frames whose grey tells their number.
class ContactTest : public ToolTest {
protected:
    void SetUp() override {
        ToolTest::SetUp();
        writeFile(m_root / "grey", "rate=$1; shift; $F -f lavfi -i color=s=64x48:r=$rate "
                                   "-frames:v 30 -vf 'format=gray,geq=lum=20+7*N,format=rgb24' "
                                   "\"$@\"");
        setenv("GREY", ("sh " + (m_root / "grey").string()).c_str(), 1);
        run("$GREY 25 -c:v png -timecode 10:00:00:00 in.mov\n"
            "$GREY 25 -c:v ffv1 -pix_fmt bgr0 -f matroska - >live.mkv\n"
            "$GREY 25 -pix_fmt bgra -f rawvideo in.raw");
    }

    static Color greyOf(int number) {
        const int grey = 20 + 7 * number;
        return {grey, grey, grey};
    }

    void expectCell(const Picture& sheet, int column, int line, int number,
                    const std::string& label) const {
        const int left = column * strideX + cellX, right = left + cellWidth - 1;
        const int top = line * strideY + cellY, bottom = top + cellHeight - 1;
        for (const auto& [x, y] : {std::pair(left, top), {right, bottom}, {left + 30, top + 20}})
            EXPECT_TRUE(isNear(sheet.at(x, y), greyOf(number)))
                << "frame " << number << " is " << (sheet.at(x, y)[0] - 20) / 7.0;
        for (const auto& [x, y] : {std::pair(left - 1, top), {right + 1, bottom}})
            EXPECT_EQ(sheet.at(x, y), sheet.at(0, 0));
        EXPECT_EQ(sheet.at(left, top - 1), sheet.at(0, 0));
        EXPECT_EQ(sheet.at(left, bottom + 1), sheet.at(0, 0));
        EXPECT_EQ(sheet.inkIn(column * strideX, line * strideY + labelY, strideX, zrFontHeight),
                  inkOf(label));
    }
};

TEST_F(ContactTest, ShowsFramesFromTheFirstToTheLastOverTheirTimeCodes) {
    run(R"($GREY 30000/1001 -c:v png -timecode '00:00:59;20' drop.mov
        $GREY 30000/1001 -c:v png plain.mov
        $GREY 10 -c:v png slow.mov
        $GREY 25 -start_number 7 f%03d.png
        $F -i live.mkv -vf 'select=not(mod(n\,2))' -fps_mode passthrough -c:v ffv1 gaps.mkv
        $F -i live.mkv -c:v mpeg4 -q:v 1 -g 30 long.mov
        $F -ss 0.4 -i long.mov -c copy cut.mov)");
    const struct {
        std::string why, in, options;
        int columns, lines; // of the sheet
        std::string cells;  // frame=label
    } cases[] = {
        {"the nearest frames to even distances", "in.mov", "4x3", 4, 3,
         "0=10:00:00:00,3=10:00:00:03,5=10:00:00:05,8=10:00:00:08,11=10:00:00:11,13=10:00:00:13,"
         "16=10:00:00:16,18=10:00:00:18,21=10:00:00:21,24=10:00:00:24,26=10:00:01:01,"
         "29=10:00:01:04"},
        {"one cell", "in.mov", "1x1", 1, 1, "0=10:00:00:00"},
        {"a range", "in.mov", "3x1 --frames 10:21", 3, 1,
         "10=10:00:00:10,15=10:00:00:15,20=10:00:00:20"},
        {"a range that is longer than the clip", "in.mov", "2x2 --frames 27:99", 2, 2,
         "27=10:00:01:02,28=10:00:01:03,29=10:00:01:04"},
        {"fewer frames than a line has cells", "in.mov", "20x2 --frames 5", 1, 1, "5=10:00:00:05"},
        {"drop-frame over a minute", "drop.mov", "2x1", 2, 1, "0=00:00:59;20,29=00:01:00;21"},
        {"without time code the usual one", "plain.mov", "2x1", 2, 1,
         "0=00:00:00;00,29=00:00:00;29"},
        {"a rate that no time code counts", "slow.mov", "1x2", 1, 2, "0=0.000 s,29=2.900 s"},
        {"neither count nor length", "live.mkv", "2x1", 2, 1, "0=00:00:00:00,29=00:00:01:04"},
        {"fewer frames than the length lets expect", "gaps.mkv", "3x1", 3, 1,
         "0=00:00:00:00,14=00:00:00:14,28=00:00:01:03"},
        {"frames that only the decoder needs", "cut.mov", "3x1", 3, 1,
         "10=00:00:00:00,20=00:00:00:10,29=00:00:00:19"},
        {"pictures with numbers, at their rate", "f%03d.png", "3x1 --rate 50", 3, 1,
         "0=00:00:00:00,15=00:00:00:15,29=00:00:00:29"},
        {"bare frames", "in.raw", "2x1 --raw 64x48@50 --layout bgra", 2, 1,
         "0=00:00:00:00,29=00:00:00:29"},
        {"a layout without alpha", "in.mov", "2x1 --layout v210", 2, 1,
         "0=10:00:00:00,29=10:00:01:04"},
        {"a pipe, by its range", "- <live.mkv", "2x1 --frames 2:7", 2, 1,
         "2=00:00:00:02,6=00:00:00:06"},
        {"a pipe that ends within its range", "- <live.mkv", "2x2 --frames 20:98 --quiet", 2, 2,
         "20=00:00:00:20,29=00:00:01:04"},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.why);
        run("$Z draw " + row.in + " out.png --force --contact " + row.options);
        const Picture sheet(at("out.png"));
        EXPECT_EQ(sheet.width, row.columns * strideX);
        EXPECT_EQ(sheet.height, row.lines * strideY);
        std::istringstream cells(row.cells);
        int i = 0;
        for (std::string frame, label;
             std::getline(cells, frame, '=') && std::getline(cells, label, ','); ++i)
            expectCell(sheet, i % row.columns, i / row.columns, std::stoi(frame), label);
        for (; i < row.columns * row.lines; ++i)
            EXPECT_EQ(
                sheet.inkIn(i % row.columns * strideX, i / row.columns * strideY, strideX, strideY)
                    .find('#'),
                std::string::npos)
                << i;
    }
}

TEST_F(ContactTest, CellsHaveTheShapeOfTheDisplayAndAreDrawnOn) {
    const struct {
        std::string why;
        int width, height;
        std::string aspect; // of samples
        int columns;
        int cellWidth, cellHeight;
    } cases[] = {
        {"not larger than the frames", 320, 180, "1", 2, 320, 180},
        {"a fourth of the sheet", 1280, 720, "1", 4, 472, 266},
        {"wide samples", 720, 576, "64/45", 4, 472, 266},
        {"wide samples at full width", 320, 256, "64/45", 1, 320, 180},
        {"narrow samples", 720, 480, "8/9", 2, 640, 480},
        {"the most columns", 1280, 720, "1", 20, 88, 50},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.why);
        run(fmt::format(
            "$F -f lavfi -i color=lime:s={0}x{1},setsar={2} -frames:v 1 -c:v ffv1 "
            "-pix_fmt bgr0 wide.mkv && $Z draw wide.mkv out.png --force --contact {3}x1 "
            "-e 'color 1 0 0; fillrect 0 0 {4} {1}'",
            row.width, row.height, row.aspect, row.columns, row.width / 2 - 1));
        const Picture sheet(at("out.png"));
        const int left = (sheet.width - row.cellWidth) / 2, right = left + row.cellWidth - 1;
        constexpr Color red{0, 0, 255}, lime{0, 255, 0};
        const int bottom = cellY + row.cellHeight - 1;
        EXPECT_TRUE(isNear(sheet.at(left, cellY), red));
        EXPECT_TRUE(isNear(sheet.at(left, bottom), red));
        EXPECT_TRUE(isNear(sheet.at(left + row.cellWidth / 2 - 5, cellY + 9), red));
        EXPECT_TRUE(isNear(sheet.at(left + row.cellWidth / 2 + 4, cellY + 9), lime));
        EXPECT_TRUE(isNear(sheet.at(right, bottom), lime));
        EXPECT_EQ(sheet.inkIn(0, cellY, sheet.width, 1),
                  std::string(static_cast<std::size_t>(left), '.') +
                      std::string(static_cast<std::size_t>(row.cellWidth), '#') +
                      std::string(static_cast<std::size_t>(sheet.width - right - 1), '.') + '\n');
        EXPECT_EQ(sheet.at(left, bottom + 1), sheet.at(0, 0));
    }
}

TEST_F(ContactTest, WhatIsTransparentShowsTheGround) {
    run("$F -f lavfi -i color=white@0.5:s=64x48,format=rgba -frames:v 1 half.png && "
        "$Z draw half.png out.png --contact 1x1 -e 'color 1 0 0; fillrect 0 0 20 47'");
    const Picture sheet(at("out.png"));
    Color half = sheet.at(0, 0);
    for (int& value : half)
        value = (value + 255) / 2;
    EXPECT_TRUE(isNear(sheet.at(cellX + 50, cellY + 20), half));
    EXPECT_TRUE(isNear(sheet.at(cellX + 10, cellY + 20), {0, 0, 255})) << "marks are opaque";
}

TEST_F(ContactTest, IsWrittenAndWarnedOfLikeAnyStillPicture) {
    run("$Z draw in.mov out.png --contact 2x2 && $Z draw in.mov out.bmp --contact 2x2 && "
        "$Z draw in.mov - --contact 2x2 --format image2pipe --codec png >piped.png");
    EXPECT_EQ(readAll(at("out.bmp")), readAll(at("out.png")));
    EXPECT_EQ(readFile(at("piped.png")), readFile(at("out.png")));
    const Result refused = shell("$Z draw in.mov w.png --contact 2x2 -e 'horiz 0 0 900'");
    EXPECT_EQ(refused.err, "zrdraw: warning: -e:1:1: horiz was refused: it does not lie wholly on "
                           "the 64x48 canvas\n");
    const Result early = shell("$Z draw - e.png --contact 2x2 --frames 20:98 <live.mkv");
    EXPECT_EQ(early.err, "zrdraw: warning: standard input has fewer frames than expected: cells of "
                         "the sheet stay empty\n");
}

TEST_F(ContactTest, WhatCannotBeIsRefusedAndTouchesNothing) {
    writeFile(at("old.png"), "a picture");
    std::vector<Refused> cases = {
        {"$Z draw in.mov out.mov --contact 2x2", 2, "'out.mov' is not: use a name such as out.png"},
        {"$Z draw in.mov o%02d.png --contact 2x2", 2, "one picture"},
        {"$Z draw in.mov - --contact 2x2", 2, "one picture"},
        {"$Z draw in.mov out.png --contact 2x2 --format mov", 2, "'mov' is not"},
        {"$Z draw in.mov old.png --contact 2x2", 2, "'old.png' exists; use --force"},
        {"$Z draw in.mov out.png --contact 2x2 --rate 5", 2, "leave out --rate"},
        {"$Z draw in.mov out.png --contact 2x2 --streams v", 2, "excludes"},
        {"$Z draw in.mov out.png --contact 2x2 --audio-codec aac", 2, "excludes"},
        {"$Z draw in.mov out.png --contact 2x2 --frames 30:", 1, "'in.mov' has no frame in 30:"},
        {"$Z draw - out.png --contact 2x2 <live.mkv", 1,
         "standard input does not tell how many frames it has: give those of the sheet by "
         "--frames A:B"},
        {"$Z draw - out.png --contact 2x2 --frames 3: <live.mkv", 1, "--frames A:B"},
        {"$Z draw - out.png --contact 2x2 <one.png", 1, "--frames A:B"},
        {"$Z draw cut.raw old.png --force --contact 2x2 --raw 64x48 --layout bgra", 1,
         "cannot read frame 2 of 'cut.raw'"},
        {"ulimit -f 1; $Z draw in.mov old.png --force --contact 4x4", 1, "File too large"},
    };
    for (const std::string wrong :
         {"4", "4x", "x4", "0x3", "3x0", "21x1", "1x21", "-1x3", "4x3x2", "4X3", "' 4x3'"})
        cases.push_back(
            {"$Z draw missing.mov out.png --contact=" + wrong, 2,
             "--contact: expected COLUMNSxLINES such as 4x3, from 1x1 to 20x20, got '"});
    run("head -c 30000 in.raw >cut.raw; $F -i in.mov -frames:v 1 one.png");
    expectRefused(cases);
    EXPECT_EQ(readFile(at("old.png")), "a picture");
    run("$Z draw in.mov old.png --force --contact 2x2");
    EXPECT_EQ(Picture(at("old.png")).width, 2 * strideX);
}

} // namespace
