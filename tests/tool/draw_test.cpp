// `zrdraw draw` on pictures, clips and pipes, what `zrdraw types`, `font` and `gallery` print and
// make, and what every subcommand does with bad usage.
#include "tool/tool_fixture.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <regex>

namespace {

using Names = std::set<std::string>;
using Pixels = std::vector<std::uint32_t>; // B, G, R, A in memory

constexpr std::size_t width = 320;
constexpr std::size_t height = 240;
constexpr std::size_t framePixels = width * height;
constexpr std::size_t clipFrames = 10;
constexpr std::uint32_t white = 0xFFFFFFFF;

// $M holds a lossless clip of ten frames, its y4m form and a picture.
class DrawTest : public ToolTest {
protected:
    void SetUp() override {
        ToolTest::SetUp();
        fs::create_directory(m_root / "media");
        setenv("M", (m_root / "media").c_str(), 1);
        run("$F -f lavfi -i testsrc2=s=320x240:r=25 -frames:v 10 -pix_fmt bgra -c:v ffv1 "
            "$M/clip.mkv && $F -i $M/clip.mkv -pix_fmt yuv444p $M/clip.y4m && "
            "$F -i $M/clip.mkv -frames:v 1 -pix_fmt rgb24 $M/picture.png");
    }

    // A media file's frames, one after the other.
    Pixels decode(const std::string& file) const {
        const std::string bytes = run("$F -i " + file + " -f rawvideo -pix_fmt bgra -");
        Pixels pixels(bytes.size() / 4);
        std::memcpy(pixels.data(), bytes.data(), pixels.size() * 4);
        return pixels;
    }
};

// What horizontal white lines over rows 5 and 6 make of frames.
Pixels withMark(Pixels pixels) {
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        const std::size_t row = i % framePixels / width;
        if (row == 5 || row == 6)
            pixels[i] = white;
    }
    return pixels;
}

constexpr const char* mark = "-e 'color 1 1 1; horiz 0 5 319' -e 'color 1 1 1; horiz 0 6 319'";

TEST_F(DrawTest, DrawsOnPicturesAndClips) {
    const struct {
        std::string in, out, options;
        std::size_t frames;
    } cases[] = {
        {"picture.png", "out.png", "", 1},
        {"picture.png", "out.bmp", "--layout rgb24", 1},
        {"clip.mkv", "out.mkv", "--codec ffv1", clipFrames},
        {"clip.mkv", "out.mkv", "--codec ffv1 --layout bgr24", clipFrames},
        {"clip.mkv", "out.png", "--frames 0", 1},
    };
    for (const auto& [in, out, options, frames] : cases) {
        const std::string what = in + " " + out + " " + options;
        EXPECT_EQ(run("$Z draw $M/" + in + " " + out + " --force " + mark + " " + options), "");
        Pixels expected = decode("$M/" + in);
        expected.resize(frames * framePixels);
        EXPECT_TRUE(decode(out) == withMark(expected)) << what;
    }
}

TEST_F(DrawTest, FramesAreCountedFromZero) {
    const Pixels all = withMark(decode("$M/clip.mkv"));
    const struct {
        std::string range;
        std::size_t first, end;
    } cases[] = {{"2:5", 2, 5}, {"8:", 8, 10},   {":1", 0, 1},
                 {"9", 9, 10},  {"7:99", 7, 10}, {":", 0, 10}};
    for (const auto& [range, first, end] : cases) {
        run(std::string("$Z draw $M/clip.mkv out.mkv --force --codec ffv1 ") + mark + " --frames " +
            range);
        const auto at = [&](std::size_t frame) {
            return all.begin() + static_cast<long>(frame * framePixels);
        };
        EXPECT_TRUE(decode("out.mkv") == Pixels(at(first), at(end))) << range;
    }
    run(std::string("$Z draw $M/clip.mkv out.png --frames 4 ") + mark);
    EXPECT_TRUE(decode("out.png") ==
                Pixels(all.begin() + 4 * framePixels, all.begin() + 5 * framePixels));
}

TEST_F(DrawTest, StateStartsFreshOnEveryFrame) {
    // Were the colour or position kept, the second frame would differ from the first.
    const std::string script = "-e 'lineto 20 100; color 1 0 0; move 300 200; transparency 0.5'";
    run("$F -f lavfi -i color=gray:s=320x240 -frames:v 3 -pix_fmt bgra "
        "-c:v ffv1 flat.mkv && $Z draw flat.mkv out.mkv --codec ffv1 -e 'color 0 1 0' " +
        script);
    const Pixels out = decode("out.mkv");
    ASSERT_EQ(out.size(), 3 * framePixels);
    EXPECT_EQ(out[0], 0xFF00FF00U);
    EXPECT_TRUE(std::equal(out.begin(), out.begin() + 2 * framePixels, out.begin() + framePixels));
}

TEST_F(DrawTest, PipesAndRawFrames) {
    run("cat $M/clip.y4m | $Z draw - - >piped.y4m -e 'horiz 0 5 319'");
    EXPECT_EQ(readFile(m_folder / "piped.y4m").size(), readFile(m_root / "media/clip.y4m").size());
    const Pixels pixels = decode("piped.y4m");
    EXPECT_TRUE(std::all_of(pixels.end() - framePixels + 5 * width,
                            pixels.end() - framePixels + 6 * width,
                            [](std::uint32_t pixel) { return pixel == white; }));

    run("$F -i $M/clip.mkv -f rawvideo -pix_fmt abgr in.raw && "
        "$Z draw in.raw out.raw --layout abgr --raw 320x240@25 --format raw -e 'point 1 0'");
    std::string expected = readFile(m_folder / "in.raw");
    ASSERT_EQ(expected.size(), clipFrames * framePixels * 4);
    for (std::size_t frame = 0; frame < clipFrames; ++frame)
        expected.replace(frame * framePixels * 4 + 4, 4, 4, '\xFF');
    EXPECT_TRUE(readFile(m_folder / "out.raw") == expected);
}

TEST_F(DrawTest, ScriptFilesComeFirst) {
    run("echo 'color 1 1 1 # white' > marks.txt\n"
        "$Z draw $M/picture.png out.png --script marks.txt -e 'horiz 0 5 319; horiz 0 6 319'");
    EXPECT_TRUE(decode("out.png") == withMark(decode("$M/picture.png")));
    // A byte order mark is no command, - is standard input and -- ends the options.
    writeFile(at("bom.txt"), "\xEF\xBB\xBF"
                             "color 1 1 1; horiz 0 5 319; horiz 0 6 319");
    run("$Z draw --script - -- $M/picture.png dash.png <bom.txt");
    EXPECT_TRUE(decode("dash.png") == withMark(decode("$M/picture.png")));
    expectError(
        shell("echo 'point 1 x' > bad.txt; $Z draw $M/picture.png new.png --script bad.txt"), 2,
        "bad.txt:1:9: point: expected a number");
}

TEST_F(DrawTest, FailuresAreOneLineAndLeaveNothing) {
    const std::vector<Refused> cases = {
        {"$Z", 2, "subcommand"},
        {"$Z typs", 2, "there is no subcommand 'typs'; did you mean types?\n"},
        {"$Z config sett", 2, "there is no subcommand 'sett'; did you mean set?\n"},
        {"$Z paint", 2, "see zrdraw --help"},
        {"$Z draw $M/clip.mkv", 2, "OUT"},
        {"$Z draw $M/clip.mkv out.mkv --what", 2, "--what"},
        {"$Z draw $M/clip.mkv out.mkv -e 'horiz 0 0 3' -e 'horiz 0'", 2,
         "zrdraw: -e 2:1:1: horiz: y is missing"},
        {"$Z draw $M/clip.mkv out.mkv -e 'lien 0 0 1 1'", 2, "did you mean line or when?"},
        {"$Z draw $M/clip.mkv out.mkv --script none.txt", 1, "'none.txt': No such file"},
        {"$Z draw $M/clip.mkv out.mkv --script .", 1, "'.': Is a directory"},
        {"$Z draw $M/clip.mkv out.mkv --layout bgr", 2, "there is no layout 'bgr'"},
        {"$Z draw $M/clip.mkv out.mkv --frames 5-6", 2, "--frames: expected"},
        {"$Z draw $M/clip.mkv out.mkv --frames -1", 2, "--frames: expected"},
        {"$Z draw $M/clip.mkv out.mkv --frames 6:6", 1, "selects no frame"},
        {"$Z draw $M/clip.mkv out.mkv --frames 10:", 1, "has no frame in 10:"},
        {"$Z draw $M/clip.mkv out.mkv --raw 320", 2, "--raw: expected"},
        {"$Z draw /dev/null out.mkv", 1, "/dev/null"},
        {"$Z draw $Z out.mkv", 1, "not a media file"},
        {"head -c 150000 $M/clip.y4m | $Z draw - out.mkv", 1, "standard input"},
        {"head -c 2000 $M/picture.png | $Z draw - out.png", 1, "standard input"},
        {"$Z draw $M/clip.mkv $M/picture.png", 2, "exists; use --force to replace it"},
        {"ulimit -f 8; $Z draw $M/clip.mkv out.mkv --codec ffv1", 1, "File too large"},
        {"$Z draw $M/clip.y4m - >/dev/full", 1, "No space left on device"},
        {"$Z types >/dev/full", 1, "No space left on device"},
        {"$Z draw --help >/dev/full", 1, "No space left on device"},
        {"$Z types --bitmap YUY", 2, "--bitmap: expected four characters"},
        {"$Z types --bitmap YUY2 --size 10", 2, "--size: expected"},
        {"$Z types --bitmap 3 --mask 1,2,3", 2, "--mask: expected"},
        {"$Z types --width 0", 2, "--width"},
        {"$Z font $M/picture.png", 1, "picture.png' is no font bitmap: save it as a 24-bit"},
        {"$Z font none.bmp", 1, "'none.bmp' for reading and updating: No such file"},
        {"$Z font $M", 1, "is a folder"},
        {"head -c 9000 $M/clip.mkv | $Z draw - out.mkv", 1, "standard input"},
        {"$Z gallery", 2, "DIR"},
        {"$Z gallery $M/clip.mkv/new", 1, "cannot make the folder"},
        {"$Z gallery $M/clip.mkv", 1, "clip.mkv"},
        {"$Z gallery /proc", 1, "cannot write '/proc/operations.png'"},
        {"ulimit -f 8; $Z gallery .", 1, "File too large"},
    };
    const std::string picture = readFile(m_root / "media/picture.png");
    expectRefused(cases);
    EXPECT_EQ(readFile(m_root / "media/picture.png"), picture);
}

TEST_F(DrawTest, InterruptedLeavesNothing) {
    shell("mkfifo in");
    for (const std::string signal : {"TERM", "HUP"}) {
        const std::string kill = "$Z draw in out.mkv & exec 3>in; cat $M/clip.y4m >&3\n"
                                 "kill -" +
                                 signal + " $!; ";
        expectError(shell(kill + "wait $!"), 1, "interrupted");
        EXPECT_EQ(left(), Names{"in"}) << signal;
        // What the caller ignores, as nohup does, is ignored.
        EXPECT_EQ(shell("trap '' " + signal + "\n" + kill + "exec 3>&-; wait $!").status, 0);
        fs::remove(m_folder / "out.mkv");
    }
}

TEST_F(DrawTest, RefusedCommandsWarnOnce) {
    const std::string draw = "$Z draw $M/clip.mkv out.mkv --force --codec ffv1 -e ' horiz 0 0 900'";
    const Result result = shell(draw);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err,
              "zrdraw: warning: -e:1:2: horiz was refused: it does not lie wholly on the "
              "320x240 canvas\n");
    EXPECT_EQ(shell(draw + " --quiet").err, "");
    const Result reason = shell("$Z draw $M/picture.png out.png -e 'roundrect 0 0 9 9 10 0'");
    EXPECT_EQ(reason.err,
              "zrdraw: warning: -e:1:1: roundrect was refused: its corners do not fit\n");
}

// The frames of 32-bit layouts have to be contiguous for that, whatever their width.
TEST_F(DrawTest, ErasePaintsPicturesOfAnyWidth) {
    for (const std::string layout : {"bgra", "rgb24"}) {
        run("$F -f lavfi -i color=gray -vf scale=101:37 -frames:v 1 in.png && "
            "$Z draw in.png out.png --force -e 'erase' --layout " +
            layout);
        EXPECT_TRUE(decode("out.png") == Pixels(101 * 37, white)) << layout;
    }
}

TEST_F(DrawTest, ProgressBlocks) {
    const Result result = shell("$Z draw $M/clip.mkv out.mkv --progress");
    ASSERT_EQ(result.status, 0) << result.err;
    const std::regex blocks(R"((frame=\d+\nframes=10\nfps=\d+\.\d+\n)"
                            R"(seconds_left=\d+\.\d\nprogress=(continue|end)\n)+)");
    EXPECT_TRUE(std::regex_match(result.err, blocks)) << result.err;
    const std::string last = result.err.substr(result.err.rfind("frame="));
    EXPECT_TRUE(last.starts_with("frame=10\n") && last.ends_with("progress=end\n")) << last;
}

TEST_F(DrawTest, HelpAtEveryLevel) {
    EXPECT_NE(shell("$Z --help").out.find("--help"), std::string::npos);
    const Result result = shell("$Z draw --help");
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_NE(result.out.find("\n  lineto X Y "), std::string::npos);
    EXPECT_EQ(shell("$Z --version").out.rfind("zrdraw ", 0), 0U);
}

using TypesTest = ToolTest;

TEST_F(TypesTest, ListsTheCatalogue) {
    const std::string text = run("$Z types --width 50");
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 1 + std::ssize(zrLayouts));
    const Result rows =
        shell("$Z types --width 50 | awk '{print $1, $2, $3, $4, $5, $6}' | "
              "grep -E '^(3|14|21|10001) '; $Z types --width 50 | grep -c '128 per 48 px  *256 '");
    EXPECT_EQ(rows.out, "3 ptBGRA32 bgra CDrawRGBA32 4W 200\n"
                        "14 ptV210 v210 CDrawYCbCr10 128 per\n"
                        "21 ptBayerBGGR bayerbggr CDrawBayer 3W/2 75\n"
                        "10001 ptUV16 uv16 CDrawUV16 4W 200\n1\n");
}

TEST_F(TypesTest, TellsWhatHeadersBecome) {
    const struct {
        std::string options, out;
    } cases[] = {
        {"0 --size 64x-48 --depth 24", "code         6 ptBGR24\nbiBitCount   24 -> 24\n"
                                       "biSizeImage  0 -> 9216\nframe bytes  9216\n"},
        {"3 --size 64x48 --depth 32 --mask ff,0,0,0",
         "code         1 ptRGBA32\nbiBitCount   32 -> 32\n"
         "biSizeImage  0 -> 12288\nframe bytes  12288\n"},
        {"zzzz --image-size 5",
         "code         unknown: the code was left alone\nbiBitCount   0 -> 0\n"
         "biSizeImage  5 -> 5\nframe bytes  5\n"},
    };
    for (const auto& [options, out] : cases)
        EXPECT_EQ(shell("$Z types --bitmap " + options).out, out) << options;
}

TEST_F(TypesTest, FontTellsWhatABitmapHolds) {
    const Result result =
        shell("$F -f lavfi -i testsrc2=s=320x240 -frames:v 1 -pix_fmt bgr24 font.bmp && "
              "$Z font font.bmp");
    EXPECT_EQ(result.out, "width   320\nheight  240\nbits    24\npixels  230400 bytes\n");
    expectError(shell("$F -f lavfi -i color=s=720x576 -frames:v 1 -pix_fmt bgr24 "
                      "large.bmp; $Z font large.bmp"),
                1, "holds 1244160 bytes of pixels; at most 1048576 can be read");
}

TEST_F(TypesTest, GalleryShowsEverySheetAndReplacesOnlyWhenForced) {
    expectError(shell("touch font.png; $Z gallery ."), 2, "'./font.png' exists; use --force");
    EXPECT_EQ(left(), std::set<std::string>{"font.png"});
    EXPECT_EQ(run("$Z gallery . --force && $Z gallery more/folder --layout rgb24 --layout v210"),
              "");
    const std::set<std::string> names{"operations", "font", "layouts", "wipes", "mux"};
    std::set<std::string> pictures;
    for (const std::string& name : names)
        pictures.insert(readFile(at(name + ".png")));
    EXPECT_EQ(pictures.size(), names.size());
    EXPECT_TRUE(fs::exists(at("more/folder/font-v210.png")));
}

} // namespace
