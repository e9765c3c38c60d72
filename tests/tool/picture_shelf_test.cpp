// The pictures that scripts keep open and ready.
#include "tool/text_canvas.h"

#include <gtest/gtest.h>

#include <map>

namespace {

// A file is one white pixel, and "none" cannot be read.
class WhitePixel : public PictureClip {
public:
    std::shared_ptr<const ScriptPicture> at(double) override { return m_picture; }

private:
    std::shared_ptr<const ScriptPicture> m_picture = std::make_shared<const ScriptPicture>(
        ScriptPicture{1, 1, {0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF}});
};

struct Opener {
    std::map<std::string, int> opened;

    PictureOpener get() {
        return [this](const std::string& path) {
            if (path == "none")
                throw Failure("cannot read 'none'");
            ++opened[path];
            return std::make_unique<WhitePixel>();
        };
    }
};

std::vector<FrameFacts> framesUpTo(std::int64_t count) {
    std::vector<FrameFacts> frames;
    for (std::int64_t n = 0; n < count; ++n)
        frames.push_back(frameAt(n));
    return frames;
}

TEST(PictureShelf, AFileIsOpenedOnceAndMayBeUsedAgainAndAgain) {
    Opener opener;
    const Played played = play(listSource("image n 0 a; image 0 1 a; image 9 1 b 0.5"), {10, 2},
                               framesUpTo(100), opener.get());
    EXPECT_EQ(played.error, "");
    EXPECT_EQ(played.arts.at(3), "...#......\n#........o\n");
    EXPECT_EQ(opener.opened, (std::map<std::string, int>{{"a", 1}, {"b", 1}}));
}

TEST(PictureShelf, WhatIsNotUsedMakesRoom) {
    Opener opener;
    EXPECT_EQ(play(listSource("image 0 0 a since t"), {2, 1}, framesUpTo(200), opener.get()).error,
              "");
    std::string blocks;
    for (int n = 0; n < 100; ++n)
        blocks +=
            "when eq(n," + std::to_string(n) + "); image 0 0 s" + std::to_string(n) + "; end;";
    const Played shown = play(listSource(blocks), {2, 1}, framesUpTo(100), opener.get());
    EXPECT_EQ(shown.error, "");
    EXPECT_EQ(shown.arts.at(99), "#.\n");
    const char* slides = "function frame(d) d:image(0, 0, 'slide' .. d.n) end";
    EXPECT_EQ(play(luaSource(slides), {2, 1}, framesUpTo(200), opener.get()).error, "");
    const char* all = "function frame(d) for i = 1, d.n do d:image(0, 0, 'p' .. i) end end";
    EXPECT_EQ(play(luaSource(all), {2, 1}, framesUpTo(65), opener.get()).error, "");
    EXPECT_EQ(play(luaSource(all), {2, 1}, framesUpTo(66), opener.get()).error,
              "p.lua:1: image: 'p65': more than 64 pictures in a frame (in frame 65)");
}

TEST(PictureShelf, WhatCannotBeReadIsToldWhereverItStands) {
    struct {
        ScriptSource source;
        const char* error;
    } cases[] = {
        {listSource("point 0 0\n image 0 0 none"), "-e:2:12: cannot read 'none'"},
        {luaSource("function setup(d) d:picture('none') end function frame() end"),
         "p.lua:1: picture: cannot read 'none' (in setup)"},
        {luaSource("function frame(d) d:image(0, 0, 'none') end"),
         "p.lua:1: image: cannot read 'none' (in frame 0)"},
        {luaSource("function frame(d) pcall(d.picture, d, 'none') d:image(0, 0, 'none') end"),
         "p.lua:1: image: cannot read 'none' (in frame 0)"},
    };
    for (auto& [source, error] : cases) {
        Opener opener;
        EXPECT_EQ(play(std::move(source), {2, 1}, framesUpTo(1), opener.get()).error, error);
    }
}

TEST(PictureShelf, HugeScalesAreRefused) {
    Opener opener;
    const Played played = play(listSource("image 0 0 a scale 32767 32767; image 0 0 a scale 2 1"),
                               {2, 1}, framesUpTo(2), opener.get());
    EXPECT_EQ(played.error, "");
    EXPECT_EQ(played.arts.at(1), "##\n");
    EXPECT_EQ(played.warnings,
              std::vector<std::string>{"-e:1:1: image was refused: it would be scaled to more than "
                                       "8192 times 8192 pixels"});
}

} // namespace
