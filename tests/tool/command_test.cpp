// The tool as a process: its outputs, its exit statuses and what it leaves behind.
#include "tool/media_fixture.h"
#include "zrdraw/font.h"

#include <bit>
#include <cstdint>
#include <regex>
#include <set>

#include <sys/wait.h>

namespace {

using Names = std::set<std::string>;
using Pixels = std::vector<std::uint32_t>; // B, G, R, A in memory

constexpr std::size_t width = 320;
constexpr std::size_t height = 240;
constexpr std::size_t framePixels = width * height;
constexpr std::size_t clipFrames = 10;
constexpr std::uint32_t white = 0xFFFFFFFF;

struct Result {
    int status;
    std::string out;
    std::string err;
};

// Runs shell commands in a fresh folder. $Z is the tool; $M holds a lossless clip of ten frames,
// its y4m form and a picture.
class CommandTest : public testing::Test {
protected:
    static void SetUpTestSuite() {
        s_root = testing::TempDir() + "zrdraw_command_test_" + std::to_string(getpid());
        fs::create_directories(s_root / "media");
        setenv("Z", ZRDRAW_TOOL, 1);
        setenv("M", (s_root / "media").c_str(), 1);
        const char* const make = R"(
            F="ffmpeg -v error -y"
            $F -f lavfi -i testsrc2=s=320x240:r=25 -frames:v 10 -pix_fmt bgra -c:v ffv1 $M/clip.mkv &&
            $F -i $M/clip.mkv -pix_fmt yuv444p $M/clip.y4m &&
            $F -i $M/clip.mkv -frames:v 1 -pix_fmt rgb24 $M/picture.png)";
        ASSERT_EQ(std::system(make), 0);
    }
    static void TearDownTestSuite() { fs::remove_all(s_root); }

    void SetUp() override {
        fs::remove_all(m_folder);
        fs::create_directory(m_folder);
    }

    Result shell(const std::string& commands) const {
        const fs::path out = s_root / "stdout";
        const fs::path err = s_root / "stderr";
        const std::string line = "cd '" + m_folder.string() + "'\n{ " + commands + "\n} >'" +
                                 out.string() + "' 2>'" + err.string() + "'";
        const int status = std::system(line.c_str());
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, readFile(out), readFile(err)};
    }

    // Everything in the folder, hidden files too.
    Names left() const {
        Names names;
        for (const auto& entry : fs::directory_iterator(m_folder))
            names.insert(entry.path().filename());
        return names;
    }

    // A media file's frames, one after the other.
    Pixels decode(const std::string& file) const {
        const std::string bytes =
            shell("ffmpeg -v error -i " + file + " -f rawvideo -pix_fmt bgra -").out;
        Pixels pixels(bytes.size() / 4);
        std::copy_n(bytes.data(), pixels.size() * 4, reinterpret_cast<char*>(pixels.data()));
        return pixels;
    }

    // One line that holds `part`, and the status.
    void expectError(const Result& result, int status, const std::string& part) const {
        EXPECT_EQ(result.status, status) << result.err;
        EXPECT_EQ(result.err.rfind("zrdraw: ", 0), 0U) << result.err;
        EXPECT_EQ(result.err.find('\n'), result.err.size() - 1) << result.err;
        EXPECT_NE(result.err.find(part), std::string::npos) << result.err;
    }

    const fs::path m_folder = s_root / "work";
    static inline fs::path s_root;
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

TEST_F(CommandTest, DrawsOnPicturesAndClips) {
    const struct {
        std::string in, out, options;
        std::size_t frames;
    } cases[] = {
        {"picture.png", "out.png", "", 1},
        {"picture.png", "out.bmp", "--layout rgb24", 1},
        {"clip.mkv", "out.mkv", "--codec ffv1", clipFrames},
        {"clip.mkv", "out.mkv", "--codec ffv1 --layout bgr24", clipFrames},
        {"clip.mkv", "out.png", "", 1},
    };
    for (const auto& [in, out, options, frames] : cases) {
        const std::string what = in + " " + out + " " + options;
        const Result result =
            shell("$Z draw $M/" + in + " " + out + " --force " + mark + " " + options);
        EXPECT_EQ(result.status, 0) << what << result.err;
        EXPECT_EQ(result.out + result.err, "") << what;
        Pixels expected = decode("$M/" + in);
        expected.resize(frames * framePixels);
        EXPECT_TRUE(decode(out) == withMark(expected)) << what;
    }
}

TEST_F(CommandTest, FramesAreCountedFromZero) {
    const Pixels all = withMark(decode("$M/clip.mkv"));
    const struct {
        std::string range;
        std::size_t first, end;
    } cases[] = {{"2:5", 2, 5}, {"8:", 8, 10},   {":1", 0, 1},
                 {"9", 9, 10},  {"7:99", 7, 10}, {":", 0, 10}};
    for (const auto& [range, first, end] : cases) {
        const Result result =
            shell(std::string("$Z draw $M/clip.mkv out.mkv --force --codec ffv1 ") + mark +
                  " --frames " + range);
        EXPECT_EQ(result.status, 0) << range << result.err;
        const auto at = [&](std::size_t frame) {
            return all.begin() + static_cast<long>(frame * framePixels);
        };
        EXPECT_TRUE(decode("out.mkv") == Pixels(at(first), at(end))) << range;
    }
    EXPECT_EQ(shell(std::string("$Z draw $M/clip.mkv out.png --frames 4 ") + mark).status, 0);
    EXPECT_TRUE(decode("out.png") ==
                Pixels(all.begin() + 4 * framePixels, all.begin() + 5 * framePixels));
}

TEST_F(CommandTest, StateStartsFreshOnEveryFrame) {
    // Were the colour or position kept, the second frame would differ from the first.
    const std::string script = "-e 'lineto 20 100; color 1 0 0; move 300 200; transparency 0.5'";
    const Result result =
        shell("ffmpeg -v error -f lavfi -i color=gray:s=320x240 -frames:v 3 -pix_fmt bgra "
              "-c:v ffv1 flat.mkv && $Z draw flat.mkv out.mkv --codec ffv1 -e 'color 0 1 0' " +
              script);
    ASSERT_EQ(result.status, 0) << result.err;
    const Pixels out = decode("out.mkv");
    ASSERT_EQ(out.size(), 3 * framePixels);
    EXPECT_EQ(out[0], 0xFF00FF00U);
    EXPECT_TRUE(std::equal(out.begin(), out.begin() + 2 * framePixels, out.begin() + framePixels));
}

TEST_F(CommandTest, PipesAndRawFrames) {
    const Result piped = shell("cat $M/clip.y4m | $Z draw - - >piped.y4m -e 'horiz 0 5 319'");
    EXPECT_EQ(piped.status, 0) << piped.err;
    EXPECT_EQ(readFile(m_folder / "piped.y4m").size(), readFile(s_root / "media/clip.y4m").size());
    const Pixels pixels = decode("piped.y4m");
    EXPECT_TRUE(std::all_of(pixels.end() - framePixels + 5 * width,
                            pixels.end() - framePixels + 6 * width,
                            [](std::uint32_t pixel) { return pixel == white; }));

    const Result raw =
        shell("ffmpeg -v error -i $M/clip.mkv -f rawvideo -pix_fmt abgr in.raw && "
              "$Z draw in.raw out.raw --layout abgr --raw 320x240@25 --format raw -e 'point 1 0'");
    ASSERT_EQ(raw.status, 0) << raw.err;
    std::string expected = readFile(m_folder / "in.raw");
    ASSERT_EQ(expected.size(), clipFrames * framePixels * 4);
    for (std::size_t frame = 0; frame < clipFrames; ++frame)
        expected.replace(frame * framePixels * 4 + 4, 4, 4, '\xFF');
    EXPECT_TRUE(readFile(m_folder / "out.raw") == expected);
}

TEST_F(CommandTest, ScriptFilesComeFirst) {
    const Result result = shell(
        "echo 'color 1 1 1 # white' > marks.txt\n"
        "$Z draw $M/picture.png out.png --script marks.txt -e 'horiz 0 5 319; horiz 0 6 319'");
    ASSERT_EQ(result.status, 0) << result.err;
    EXPECT_TRUE(decode("out.png") == withMark(decode("$M/picture.png")));
    expectError(
        shell("echo 'point 1 x' > bad.txt; $Z draw $M/picture.png new.png --script bad.txt"), 2,
        "bad.txt:1:9: point: expected a whole number");
}

TEST_F(CommandTest, FailuresAreOneLineAndLeaveNothing) {
    const struct {
        std::string commands;
        int status;
        std::string part;
    } cases[] = {
        {"$Z", 2, "subcommand"},
        {"$Z typs", 2, "there is no subcommand 'typs'; did you mean types?\n"},
        {"$Z config gte", 2, "there is no subcommand 'gte'; did you mean get"},
        {"$Z paint", 2, "see zrdraw --help"},
        {"$Z draw $M/clip.mkv", 2, "OUT"},
        {"$Z draw $M/clip.mkv out.mkv --what", 2, "--what"},
        {"$Z draw $M/clip.mkv out.mkv -e 'horiz 0 0 3' -e 'horiz 0'", 2,
         "zrdraw: -e 2:1:1: horiz: y is missing"},
        {"$Z draw $M/clip.mkv out.mkv -e 'lien 0 0 1 1'", 2, "did you mean line?"},
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
        {"$Z gallery", 2, "DIR"},
        {"$Z gallery $M/clip.mkv/new", 1, "cannot make the folder"},
        {"$Z gallery $M/clip.mkv", 1, "clip.mkv"},
        {"$Z gallery /proc", 1, "cannot write '/proc/operations.png'"},
        {"ulimit -f 8; $Z gallery .", 1, "File too large"},
    };
    const std::string picture = readFile(s_root / "media/picture.png");
    for (const auto& [commands, status, part] : cases) {
        SCOPED_TRACE(commands);
        expectError(shell(commands), status, part);
        EXPECT_EQ(left(), Names{});
    }
    EXPECT_EQ(readFile(s_root / "media/picture.png"), picture);
}

TEST_F(CommandTest, InterruptedLeavesNothing) {
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

TEST_F(CommandTest, RefusedCommandsWarnOnce) {
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
TEST_F(CommandTest, ErasePaintsPicturesOfAnyWidth) {
    for (const std::string layout : {"bgra", "rgb24"}) {
        const Result result = shell(
            "ffmpeg -v error -y -f lavfi -i color=gray -vf scale=101:37 -frames:v 1 in.png && "
            "$Z draw in.png out.png --force -e 'erase' --layout " +
            layout);
        ASSERT_EQ(result.status, 0) << result.err;
        EXPECT_TRUE(decode("out.png") == Pixels(101 * 37, white)) << layout;
    }
}

// Counts the pixels of a cell that differ from the one in its top left corner.
std::ptrdiff_t inkOf(const Pixels& sheet, std::size_t sheetWidth, std::size_t left, std::size_t top,
                     std::size_t columns, std::size_t rows) {
    std::ptrdiff_t ink = 0;
    for (std::size_t y = top; y < top + rows; ++y) {
        const auto row = sheet.begin() + static_cast<std::ptrdiff_t>(y * sheetWidth + left);
        ink += std::count_if(row, row + static_cast<std::ptrdiff_t>(columns),
                             [ground = sheet[top * sheetWidth + left]](std::uint32_t pixel) {
                                 return pixel != ground;
                             });
    }
    return ink;
}

TEST_F(CommandTest, GalleryFillsItsCells) {
    const Result result = shell("$Z gallery new/folder");
    ASSERT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out + result.err, "");
    const Pixels operations = decode("new/folder/operations.png");
    ASSERT_EQ(operations.size(), 1200U * 900U);
    for (std::size_t cell = 0; cell < 36; ++cell) {
        const std::size_t left = cell % 6 * 200;
        const std::size_t top = cell / 6 * 150;
        EXPECT_GE(inkOf(operations, 1200, left, top, 200, 22), 40) << "title " << cell;
        EXPECT_GE(inkOf(operations, 1200, left + 4, top + 22, 192, 124), 18) << "cell " << cell;
    }
    const Pixels font = decode("new/folder/font.png");
    ASSERT_EQ(font.size(), 596U * 692U);
    for (std::size_t code = 0; code < 256; ++code) {
        const std::size_t left = 52 + code % 16 * 34;
        const std::size_t top = 52 + code / 16 * 40;
        std::ptrdiff_t dots = 0;
        for (std::size_t row = 0; row < 10; ++row)
            dots += std::popcount(gFont8x10[code * 10 + row]);
        // The corner of the gap beside the glyph is ground.
        EXPECT_EQ(inkOf(font, 596, left - 5, top - 5, 34, 40), 9 * dots) << code;
    }
}

TEST_F(CommandTest, GalleryReplacesOnlyWhenForced) {
    expectError(shell("touch font.png; $Z gallery ."), 2, "'./font.png' exists; use --force");
    EXPECT_EQ(left(), Names{"font.png"});
    EXPECT_EQ(shell("$Z gallery . --force").status, 0);
    EXPECT_GT(fs::file_size(m_folder / "font.png"), 0U);
}

TEST_F(CommandTest, ProgressBlocks) {
    const Result result = shell("$Z draw $M/clip.mkv out.mkv --progress");
    ASSERT_EQ(result.status, 0) << result.err;
    const std::regex blocks(R"((frame=\d+\nframes=10\nfps=\d+\.\d+\n)"
                            R"(seconds_left=\d+\.\d\nprogress=(continue|end)\n)+)");
    EXPECT_TRUE(std::regex_match(result.err, blocks)) << result.err;
    const std::string last = result.err.substr(result.err.rfind("frame="));
    EXPECT_TRUE(last.starts_with("frame=10\n") && last.ends_with("progress=end\n")) << last;
}

TEST_F(CommandTest, TypesListsTheCatalogue) {
    const std::string text = shell("$Z types --width 50").out;
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 27);
    const Result rows =
        shell("$Z types --width 50 | awk '{print $1, $2, $3, $4, $5, $6}' | "
              "grep -E '^(3|14|21|10001) '; $Z types --width 50 | grep -c '128 per 48 px  *256 '");
    EXPECT_EQ(rows.out, "3 ptBGRA32 bgra CDrawRGBA32 4W 200\n"
                        "14 ptV210 v210 CDrawYCbCr10 128 per\n"
                        "21 ptBayerBGGR bayerbggr CDrawBayer 3W/2 75\n"
                        "10001 ptUV16 uv16 CDrawUV16 4W 200\n1\n");
}

TEST_F(CommandTest, TypesTellsWhatHeadersBecome) {
    const struct {
        std::string options, out;
    } cases[] = {
        {"0 --size 64x-48 --depth 24", "code         6 ptBGR24\nbiBitCount   24 -> 24\n"
                                       "biSizeImage  0 -> 9216\nframe bytes  9216\n"},
        {"3 --size 64x48 --depth 32 --mask ff,0,0,0",
         "code         1 ptRGBA32\nbiBitCount   32 -> 32\n"
         "biSizeImage  0 -> 12288\nframe bytes  12288\n"},
        {"I420 --size 64x48 --image-size 77",
         "code         none: no drawing class\nbiBitCount   0 -> 0\n"
         "biSizeImage  77 -> 77\nframe bytes  77\n"},
        {"zzzz --image-size 5",
         "code         unknown: the code was left alone\nbiBitCount   0 -> 0\n"
         "biSizeImage  5 -> 5\nframe bytes  5\n"},
    };
    for (const auto& [options, out] : cases)
        EXPECT_EQ(shell("$Z types --bitmap " + options).out, out) << options;
}

TEST_F(CommandTest, FontTellsWhatABitmapHolds) {
    const Result result = shell("ffmpeg -v error -i $M/picture.png -pix_fmt bgr24 font.bmp && "
                                "$Z font font.bmp");
    EXPECT_EQ(result.out, "width   320\nheight  240\nbits    24\npixels  230400 bytes\n");
    expectError(shell("ffmpeg -v error -f lavfi -i color=s=720x576 -frames:v 1 -pix_fmt bgr24 "
                      "large.bmp; $Z font large.bmp"),
                1, "holds 1244160 bytes of pixels; at most 1048576 can be read");
}

TEST_F(CommandTest, HelpAtEveryLevel) {
    EXPECT_NE(shell("$Z --help").out.find("--help"), std::string::npos);
    const Result result = shell("$Z draw --help");
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_NE(result.out.find("\n  lineto X Y "), std::string::npos);
    EXPECT_EQ(shell("$Z --version").out.rfind("zrdraw ", 0), 0U);
}

} // namespace
