// `zrdraw types`, `zrdraw font` and `zrdraw gallery`: what they print and make.
#include "tool/tool_fixture.h"

namespace {

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
