// The flood fill: what it reaches, and in which order it visits.
#include "support/test_canvas.h"
#include "zrdraw/formats.h"

#include <gtest/gtest.h>

namespace {

// Sets the grey of each pixel from a picture of digits, ten steps from black to white.
void paint(TestCanvas& canvas, const std::string& digits) {
    for (std::size_t i = 0; i < digits.size(); ++i) {
        const auto width = static_cast<std::size_t>(canvas->width);
        char* pixel = canvas->GetPixel(static_cast<int>(i % width), static_cast<int>(i / width));
        std::memset(pixel, (digits[i] - '0') * 20, 4);
    }
}

TEST(Fill, ReachesNeighboursWithinTheTolerance) {
    struct Case {
        int x, y;
        double steps; // of the picture's digits
        int result;
        const char* art;
        const char* why;
    };
    const std::string picture = "11211"
                                "19291"
                                "12345"
                                "91111";
    const Case cases[] = {
        {0, 0, 0.0, 0, "##+++\n#++++\n#++++\n+++++\n", "exact, and not across corners"},
        {0, 0, 1.0, 0, "#####\n#+#+#\n##+++\n+####\n", "compared with the seed, not the neighbour"},
        {0, 0, -3.0, 0, "##+++\n#++++\n#++++\n+++++\n", "a negative tolerance is none"},
        {0, 0, 9.0, 0, "#####\n#####\n#####\n#####\n", "everything"},
        {5, 4, 0.0, 0, "+++++\n+++++\n+++++\n+####\n", "pulled back onto the last pixel"},
        {6, 0, 0.0, -1, "+++++\n+++++\n+++++\n+++++\n", "off the canvas"},
        {-1, 0, 0.0, -1, "+++++\n+++++\n+++++\n+++++\n", "off the canvas"},
    };
    for (const Case& c : cases) {
        TestCanvas canvas(1, 5, 4);
        paint(canvas, picture);
        EXPECT_EQ(canvas->Fill(c.x, c.y, c.steps * 20 / 255.0 + (c.steps > 0 ? 1e-9 : 0)),
                  c.result);
        EXPECT_EQ(canvas.art(), c.art) << c.why;
        EXPECT_TRUE(canvas.guardsIntact());
    }
}

TEST(Fill, AlphaIsNotCompared) {
    TestCanvas canvas(1, 3, 1);
    canvas.frame()[7] = 50;
    canvas->Fill(0, 0, 0.0);
    EXPECT_EQ(canvas.art(), "###\n");
}

TEST(Fill, VisitsInTheOrderOfAQueueAndReadsEachPixelOnce) {
    struct Watcher : CDrawRGBA32 {
        Watcher() : ZRDraw(1), CDrawRGBA32(1) {}
        int GetPixelRGBA(int x, int y, double& r, double& g, double& b, double& a) override {
            log += "r" + std::to_string(x) + std::to_string(y) + " ";
            return CDrawRGBA32::GetPixelRGBA(x, y, r, g, b, a);
        }
        int PutPixel(int x, int y, bool selector) override {
            log += "w" + std::to_string(x) + std::to_string(y) + " ";
            return CDrawRGBA32::PutPixel(x, y, selector);
        }
        std::string log;
    };
    unsigned int memory[6] = {0, 0, 0, 0, 7, 0}; // pixel (1, 1) differs
    Watcher draw;
    draw.SetCanvas(reinterpret_cast<char*>(memory), 2, 3, 0);
    for (const char* const why : {"another colour", "its own colour ends as well"}) {
        draw.log.clear();
        draw.Fill(1, 0, 0.0);
        EXPECT_EQ(draw.log, "r10 r10 w10 r20 w20 r00 w00 r11 r21 w21 r01 w01 ") << why;
    }
}

} // namespace
