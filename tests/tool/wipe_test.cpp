// `zrdraw wipe` and `zrdraw mux`: two clips or pictures that become one.
#include "common/transition.h"
#include "common/v210_words.h"
#include "common/wipe_names.h"
#include "tool/tool_fixture.h"
#include "zrdraw/v210.h"

#include <fmt/format.h>

#include <map>
#include <sstream>

namespace {

using WipeTest = ToolTest;

TEST_F(WipeTest, WordsOfV210GoThereAndBack) {
    for (const int width : {1, 5, 6, 7, 48, 50, 95}) {
        const int lineBytes = wholeLineBytes(layoutOf(ptV210), width);
        std::mt19937 random(static_cast<unsigned>(width));
        std::vector<std::uint32_t> line(static_cast<std::size_t>(lineBytes) / 4), back(line.size());
        for (std::uint32_t& word : line)
            word = static_cast<std::uint32_t>(random()) & 0x3FFFFFFF;
        std::vector<std::uint8_t> words(static_cast<std::size_t>(width * 6 + wordOverhang));
        expandV210Line(reinterpret_cast<std::uint8_t*>(line.data()), words.data(), width);
        const auto sample = [&](int pixel, int component) {
            std::uint16_t value;
            std::memcpy(&value, &words[static_cast<std::size_t>(6 * pixel + 2 * component)], 2);
            return value;
        };
        for (int x = 0; x < width; ++x)
            for (int component = 0; component < 3; ++component) {
                const auto [word, bit] =
                    zrV210::placeOf(static_cast<unsigned>(x) % 6, static_cast<unsigned>(component));
                EXPECT_EQ(sample(x, component),
                          line[static_cast<std::size_t>(x / 6 * 4) + word] >> bit & 0x3FF)
                    << width << ", column " << x << ", component " << component;
            }
        packV210Line(words.data(), reinterpret_cast<std::uint8_t*>(back.data()), width);
        for (std::size_t i = 0; i < static_cast<std::size_t>((width + 5) / 6 * 4); ++i)
            EXPECT_EQ(back[i], line[i]) << width << ", word " << i;
    }
}

std::uint32_t wordOf(Canvas& frame, int word) {
    std::uint32_t value;
    std::memcpy(&value, frame.data() + 4 * word, 4);
    return value;
}

// Every sample is that of the frame that the rule names, but for the chroma of a pair on the edge.
TEST_F(WipeTest, KeepEverySampleOfV210) {
    constexpr int width = 50, height = 6;
    const zrLayout& layout = layoutOf(ptV210);
    Canvas a(layout, width, height), b(layout, width, height), out(layout, width, height);
    fillNoise(a, 1);
    fillNoise(b, 2);
    Transition transition(layout, width, height, 1, false, false);
    for (const double at : {0.0, 0.36, 1.0}) {
        transition.draw(a.view(), b.view(), out.view(),
                        static_cast<unsigned>(at * Transition::scale));
        const int edge = width * static_cast<int>(at * Transition::scale) / 65536;
        for (int x = 0; x < width / 6 * 6; ++x) {
            const auto lumaOf = [x](Canvas& frame) {
                const auto [word, bit] = zrV210::luma[x % 6];
                return wordOf(frame, 4 * (x / 6) + static_cast<int>(word)) >> bit & 0x3FF;
            };
            EXPECT_EQ(lumaOf(out), lumaOf(x < edge ? b : a)) << "column " << x;
        }
    }
}

// What is drawn line by line, or mixed by bytes, is what the library's front ends make: of v210
// they drop the two low bits, so there the words of its pixels are the reference.
TEST_F(WipeTest, AreThoseOfTheLibraryWherePixelsShareSamples) {
    constexpr int width = 94, height = 22; // the last group and the last lines are cut
    for (const unsigned code : {ptUYVY, ptYVYU, ptV210}) {
        const zrLayout& layout = layoutOf(code);
        Canvas a(layout, width, height), b(layout, width, height), out(layout, width, height),
            expected(layout, width, height);
        fillNoise(a, 3);
        fillNoise(b, 4);
        if (code == ptV210) // whose words have nothing in their two top bits
            for (Canvas* canvas : {&a, &b})
                for (int i = 3; i < canvas->pitch() * height; i += 4)
                    canvas->data()[i] &= 0x3F;
        const auto pitch = static_cast<unsigned>(a.pitch());
        const auto bytes = [](Canvas& canvas) {
            return reinterpret_cast<unsigned char*>(canvas.data());
        };
        constexpr unsigned words = width * wordPixelBytes;
        std::vector<std::uint8_t> first(words * height + wordOverhang), second(first), mixed(first);
        for (const zrWipe& wipe : namedWipes())
            for (const bool swap : {false, true})
                for (const unsigned at : {0U, 1U, 9999U, 21845U, 40000U, 65535U, 65536U}) {
                    const bool slide = wipe.kernel == zrfxSLIDE_Basic;
                    if (slide && swap)
                        continue; // which the library does not draw
                    Transition(layout, width, height, wipe.first, swap, false)
                        .draw(a.view(), b.view(), out.view(), at);
                    const unsigned all = wipe.first | (swap ? zrWipeSwap : 0);
                    if (code != ptV210) {
                        ZRDraw_DisplayWipeYCbCr(bytes(a), pitch, bytes(b), pitch, bytes(expected),
                                                pitch, all, code, width, height, 1, 1, 0, 0, 0, 0,
                                                Transition::scale, at);
                    } else {
                        for (int y = 0; y < height; ++y) {
                            expandV210Line(a.view().line(y),
                                           &first[static_cast<unsigned>(y) * words], width);
                            expandV210Line(b.view().line(y),
                                           &second[static_cast<unsigned>(y) * words], width);
                        }
                        ZRDraw_DisplayWipe(first.data(), words, second.data(), words, mixed.data(),
                                           words, all, zrWipeWord3, width, height, 1, 1, 0, 0, 0, 0,
                                           Transition::scale, at);
                        for (int y = 0; y < height; ++y)
                            packV210Line(&mixed[static_cast<unsigned>(y) * words],
                                         expected.view().line(y), width);
                    }
                    for (int y = 0; y < height; ++y)
                        for (int x = 0; x < wholeLineBytes(layout, width) / 16 * 16 - 16; ++x)
                            ASSERT_EQ(out.view().line(y)[x], expected.view().line(y)[x])
                                << layout.name << ' ' << wipe.name << (swap ? " swapped" : "")
                                << " at " << at << ": line " << y << ", byte " << x;
                }
    }
}

// The library draws nothing of them.
TEST_F(WipeTest, ASwappedSlideMovesTheOtherSource) {
    constexpr int width = 48, height = 10;
    for (const unsigned code : {ptBGRA32, ptUYVY, ptV210}) {
        const zrLayout& layout = layoutOf(code);
        Canvas a(layout, width, height), b(layout, width, height), out(layout, width, height),
            expected(layout, width, height);
        fillNoise(a, 5);
        fillNoise(b, 6);
        Transition(layout, width, height, zrSlideUp, true, false)
            .draw(a.view(), b.view(), out.view(), Transition::scale / 4);
        Transition(layout, width, height, zrSlideUp, false, false)
            .draw(b.view(), a.view(), expected.view(), Transition::scale / 4);
        const auto bytes = static_cast<std::size_t>(out.pitch() * height);
        EXPECT_EQ(std::memcmp(out.data(), expected.data(), bytes), 0) << layout.name;
        const Canvas untouched(layout, width, height);
        EXPECT_NE(std::memcmp(out.data(), untouched.view().data, bytes), 0) << layout.name;
    }
}

TEST_F(WipeTest, AWipeBeginsAndEndsWithItsSources) {
    run("$F -f lavfi -i testsrc2=s=96x48:r=25:d=1 -pix_fmt yuv422p10 -c:v v210 a.mov && "
        "$F -f lavfi -i smptebars=s=96x48:r=25:d=1 -pix_fmt yuv422p10 -c:v v210 b.mov && "
        "$Z wipe a.mov b.mov out.mov --code 1 --frames 5 --hold 2 --codec v210");
    const std::vector<Bytes> out = v210Packets(at("out.mov")), a = v210Packets(at("a.mov")),
                             b = v210Packets(at("b.mov"));
    ASSERT_EQ(out.size(), 9U);
    EXPECT_EQ(out[0], a[0]);
    EXPECT_EQ(out[2], a[2]) << "the transition begins with A";
    EXPECT_EQ(out[6], b[4]) << "and ends with B";
    EXPECT_EQ(out[8], b[6]);
    EXPECT_NE(out[4], a[4]);
    EXPECT_NE(out[4], b[2]);
}

// Where a mode moves pieces of its sources, no sample changes.
TEST_F(WipeTest, MuxMovesPiecesAsTheyAre) {
    const std::string columns = "[0]crop=W:ih:0:0[a];[1]crop=iw-W:ih:W:0[b];[a][b]hstack";
    const std::string lines = "[0]crop=iw:H:0:0[a];[1]crop=iw:ih-H:0:H[b];[a][b]vstack";
    const struct {
        std::string name, pixels, options, filter;
    } rows[] = {
        {"a.mov", "-pix_fmt yuv422p10 -c:v v210", "--mode split", columns},
        {"b.mov", "-pix_fmt yuv422p10 -c:v v210", "--mode split-lines", lines},
        {"c.mkv", "-pix_fmt yuv422p10 -c:v ffv1", "--mode split --split 30", columns},
        {"d.mov", "-pix_fmt uyvy422 -c:v rawvideo", "--mode split --swap --split 30", columns},
        {"e.mkv", "-pix_fmt yuv420p -c:v ffv1", "--mode split", columns},
        {"f.mkv", "-pix_fmt gbrp16 -c:v ffv1", "--mode split --split 30", columns},
    };
    for (const auto& [name, pixels, options, filter] : rows) {
        const bool swapped = options.find("--swap") != options.npos;
        const bool thirty = options.find("30") != options.npos;
        std::string graph = filter;
        for (std::size_t at; (at = graph.find_first_of("WH")) != graph.npos;)
            graph.replace(at, 1, graph[at] == 'H' ? "28" : thirty ? "30" : "36");
        run("$F -f lavfi -i testsrc2=s=72x56:r=25:d=0.2 " + pixels + " 1" + name +
            " && $F -f lavfi -i smptebars=s=72x56:r=25:d=0.2 " + pixels + " 2" + name +
            " && $Z mux 1" + name + " 2" + name + " o" + name + " " + options);
        const std::string as = name == "d.mov" ? " -pix_fmt yuv422p" : "";
        const std::string first = swapped ? "2" : "1", second = swapped ? "1" : "2";
        EXPECT_EQ(run("$F -i o" + name + as + " -f md5 -"),
                  run("$F -i " + first + name + " -i " + second + name + " -filter_complex '" +
                      graph + "'" + as + " -f md5 -"))
            << name;
    }
}

// Numbers of the second that stand for other colours are brought to those of the first.
TEST_F(WipeTest, TheSecondComesInTheColoursOfTheFirst) {
    const std::string clip = "$F -f lavfi -i color=red:s=96x48:r=25:d=0.4 -pix_fmt yuv422p10 -vf "
                             "format=gbrp,scale=";
    run(clip + "out_color_matrix=bt601:out_range=tv -c:v v210 a.mov && " + clip +
        "out_color_matrix=bt709:out_range=pc -colorspace bt709 -color_range pc -c:v ffv1 b.mkv");
    for (const std::string layout : {"v210", "uyvy", "bgra"}) {
        run("$Z wipe a.mov b.mkv o.mov --force --frames 4 --hold 2 --layout " + layout +
            " && $Z mux a.mov b.mkv m.mov --force --mode b" +
            (layout == "uyvy" ? " --layout bgra" : ""));
        for (const char* name : {"o.mov", "m.mov"})
            for (const Bytes& frame : readAll(at(name))) {
                EXPECT_NEAR(static_cast<unsigned char>(frame[0]), 0, 3) << layout;
                EXPECT_NEAR(static_cast<unsigned char>(frame[1]), 0, 3) << layout;
                EXPECT_NEAR(static_cast<unsigned char>(frame[2]), 254, 3) << layout;
            }
    }
}

TEST_F(WipeTest, MuxUndoesItsFlips) {
    run("$F -f lavfi -i testsrc2=s=60x40 -frames:v 1 a.png && "
        "$F -f lavfi -i smptebars=s=60x40:r=25:d=0.2 -c:v png b.mov && "
        "$Z mux a.png b.mov out.mov --mode a --flip-a h --codec png");
    const std::vector<Bytes> frames = readAll(at("out.mov"));
    ASSERT_EQ(frames.size(), 5U);
    for (const Bytes& frame : frames)
        EXPECT_EQ(frame, frames[0]) << "flipped once, not each time again";
    const Bytes a = readAll(at("a.png")).at(0);
    for (std::size_t x = 0; x < 60; ++x)
        EXPECT_EQ(frames[0][4 * x], a[4 * (59 - x)]);
}

TEST_F(WipeTest, NamesAreThoseOfTheTable) {
    const std::string list = listWipes();
    for (const zrWipe& wipe : zrWipes)
        if (wipe.name != nullptr) {
            EXPECT_EQ(wipeCodeOf(wipe.name), wipe.first);
            EXPECT_NE(list.find(fmt::format("{}  {} ", wipe.first, wipe.name)), std::string::npos);
        }
    EXPECT_EQ(wipeCodeOf("45"), 45U);
    EXPECT_THROW(wipeCodeOf("2147483648"), UsageError) << "the bit of --swap";
}

TEST_F(WipeTest, EveryListedModeIsAPictureOfItsOwn) {
    run("$F -f lavfi -i testsrc2=s=64x48 -frames:v 1 a.png && "
        "$F -f lavfi -i rgbtestsrc=s=64x48 -frames:v 1 b.png");
    std::istringstream modes(run("$Z mux --list | awk 'NR > 1 {print $1}'"));
    std::map<std::string, std::string> made;
    for (std::string mode; modes >> mode;) {
        run("$Z mux --position 0.3 --gain 2 --block 8 a.png b.png out.png --force --mode " + mode);
        const auto [other, isNew] = made.emplace(readFile(at("out.png")), mode);
        EXPECT_TRUE(isNew) << mode << " is " << other->second;
    }
    EXPECT_GE(made.size(), 20U);
}

TEST_F(WipeTest, WhatDoesNotFitIsRefusedWithItsMend) {
    run("$F -f lavfi -i testsrc2=s=64x48:r=25:d=0.2 -c:v png in.mov && "
        "$F -i in.mov -vf scale=32:48 -c:v png other.mov && "
        "$F -i in.mov -r 50 -c:v png fast.mov && "
        "$F -i in.mov -vf 'select=not(eq(n\\,3))' -vsync vfr -c:v png gap.mov && "
        "$F -i gap.mov -c copy gap.mkv && "
        "$F -i in.mov -vf 'select=not(eq(n\\,2))' -vsync vfr -c:v png hole.mov");
    expectRefused({
        {"$Z wipe in.mov other.mov o.mov", 1, "use --scale"},
        {"$Z wipe in.mov fast.mov o.mov", 1, "differ in rate: the first is 25"},
        {"$Z wipe in.mov fast.mov o.mov", 1, "use --rate to bring both to one"},
        {"$Z wipe gap.mov gap.mov o.mov", 1, "'gap.mov' are not evenly spaced in time: use --rate"},
        {"$Z wipe gap.mkv gap.mkv o.mov", 1, "frame 2 of 'gap.mkv' stands -0.020 s off"},
        {"$Z mux gap.mov hole.mov o.mov", 1,
         "frame 2 stands at 0.080 s in the first and at 0.120 s"},
        {"$Z wipe in.mov in.mov o.mov --code horizontl", 2, "did you mean horizontal"},
        {"$Z wipe in.mov in.mov o.mov --position 1.5", 2, "from 0 to 1"},
        {"$Z wipe in.mov in.mov o.mov --layout bayerrggb", 2, "no transitions in layout bayerrggb"},
        {"$Z mux in.mov in.mov o.mov --mode spilt", 2, "did you mean split"},
        {"$Z mux in.mov in.mov o.mov --grid 1%", 2, "cannot be cut into 100 parts"},
        {"$Z mux in.mov in.mov o.mov --layout uyvy --mode mix", 2, "32-bit RGB"},
        {"$Z mux in.mov in.mov o.mov --layout v210 --split 32", 2, "32-bit RGB"},
        {"$Z wipe in.mov in.mov o.mov --position nan", 2, "from 0 to 1, got 'nan'"},
    });
}

} // namespace
