// Which default font file is looked for, and what comes of it.
#include "platform/injection.h"
#include "support/test_canvas.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

TEST(DefaultFont, TheFileGoesByTheWidthOfTheCanvas) {
    const std::pair<unsigned int, std::string> cases[] = {{720, "deffont_sd.bmp"},
                                                          {721, "deffont_720.bmp"},
                                                          {1280, "deffont_720.bmp"},
                                                          {1281, "deffont_1080.bmp"}};
    for (const auto& [width, name] : cases) {
        InjectionGuard guard;
        std::vector<std::string> asked;
        injection().fileExists = [&](const char* path) {
            asked.emplace_back(path);
            return 0;
        };
        TestCanvas canvas(1, 1, 1);
        canvas->width = width;
        canvas->useDefaultFont = false;
        EXPECT_EQ(canvas->UseDefaultFont(false), 1);
        EXPECT_TRUE(canvas->useDefaultFont);
        ASSERT_EQ(asked.size(), 3U);
        EXPECT_EQ(asked[0].front(), '/') << "the application's folder first";
        EXPECT_TRUE(asked[0].ends_with("/" + name)) << asked[0];
        EXPECT_EQ(asked[1], "E:\\zorvane\\bin\\" + name);
        EXPECT_EQ(asked[2], "C:\\Program Files (x86)\\Zorvane\\" + name);
    }
}

TEST(DefaultFont, AFileFoundIsNotedButNeverActive) {
    InjectionGuard guard;
    int asked = 0;
    injection().fileExists = [&](const char*) { return ++asked == 2 ? 1 : 0; };
    TestCanvas canvas(1, 1, 1);
    EXPECT_EQ(canvas->UseDefaultFont(false), 0);
    EXPECT_FALSE(canvas->useDefaultFont);
    EXPECT_EQ(asked, 2) << "the search ends at the file";
    EXPECT_EQ(canvas->HaveFont(), 0);
    EXPECT_EQ(canvas->UseDefaultFont(true), 1);
    EXPECT_EQ(asked, 2) << "the built-in font needs no file";
}

} // namespace
