// The pass over a frame: layers, their places and order, and the drawing object's life.
#include "overlay/overlay_fixture.h"

#include <array>
#include <new>

namespace {

long heapAllocations = 0;

constexpr int width = 640, height = 100;
constexpr unsigned int yuv2 = zrWatermarkYuv2, v210 = zrWatermarkV210;
constexpr unsigned int interlaced = 0x100, segmented = 0x200, bothScans = 0x300;

struct Text {
    std::string text;
    int left, top, scale;
};

Picture pictureOf(const std::vector<Text>& texts, bool filled) {
    Picture picture(width, height);
    for (const Text& t : texts)
        picture.text(t.text, t.left, t.top, t.scale, filled);
    return picture;
}

} // namespace

// The sanitizers' own operators stay, for what they find. Inlined, malloc and delete look
// mismatched.
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
#define COUNTS_ALLOCATIONS
[[gnu::noinline]] void* operator new(std::size_t bytes) {
    ++heapAllocations;
    if (void* memory = std::malloc(bytes != 0 ? bytes : 1))
        return memory;
    throw std::bad_alloc();
}
#endif

namespace {

class OverlayPass : public OverlayTest {
protected:
    // Every layer has a place, none is on.
    void createWithPlaces(unsigned int flags = 0) {
        create(width, height, 0, flags);
        overlay.Enabled = 1;
        overlay.FillBackground = 0;
        overlay.TimeCodeX = 9;
        overlay.TimeCodeY = 5;
        overlay.TimeCodeSize = 1;
        overlay.SourceFormatX = 4;
        overlay.SourceFormatY = 41;
        for (int slot = 0; slot < 10; ++slot) {
            overlay.CustomTextX[slot] = 30;
            overlay.CustomTextY[slot] = 7;
        }
        frame.ltc = 1000;
        frame.vitc = 2000;
    }
};

TEST_F(OverlayPass, Layers) {
    struct Case {
        const char* what;
        std::function<void(Overlay&)> set;
        std::vector<Text> texts;
        bool filled = false;
        unsigned int flags = 0;
        unsigned int adjust = 0;
    };
    const std::string source = "25.00 MXF BGRA 640x100 ";
    const auto bothCodes = [](Overlay& o) { o.TimeCodeLTCEnable = o.TimeCodeVITCEnable = 7; };
    const auto codesOfSize = [bothCodes](unsigned int size) {
        return [=](Overlay& o) { bothCodes(o), o.TimeCodeSize = size; };
    };
    const auto sourceOn = [](Overlay& o) { o.SourceFormatEnable = 2; };
    const auto slots = [](Overlay& o) {
        giveText(o, 9, "nine");
        giveText(o, 0, "zero");
        giveText(o, 4, "off");
        giveText(o, 5, "");
        o.CustomTextEnabled[9] = o.CustomTextEnabled[0] = o.CustomTextEnabled[5] = 3;
        o.CustomTextEnabled[6] = 1;
        o.FillBackground = 1;
        o.CustomTextX[9] = 41;
    };
    const auto withoutPicture = [](Overlay& o) {
        for (unsigned int* number :
             {&o.VChipEnable, &o.CaptionsEnable, &o.CaptionSource, &o.TimeCodeLUBEnable,
              &o.TimeCodeVUBEnable, &o.TimeCodeVsyncEnable, &o.TimeCodeLTCFrameEnable,
              &o.TimeCodeVITCFrameEnable})
            *number = 1;
        o.CustomTextEnabled[9] = o.CustomTextEnabled[0] = 0;
    };
    const std::vector<Text> codes{{"1000", 9, 5, 1}, {"2000", 9, 15, 1}};
    const Case cases[] = {
        {"all off", [](Overlay&) {}, {}},
        {"master off", [&](Overlay& o) { bothCodes(o), sourceOn(o), o.Enabled = 0; }, {}},
        {"LTC", [](Overlay& o) { o.TimeCodeLTCEnable = 1; }, {{"1000", 9, 5, 1}}},
        {"VITC in its place", [](Overlay& o) { o.TimeCodeVITCEnable = 1; }, {{"2000", 9, 5, 1}}},
        {"both", bothCodes, codes},
        {"adjusted", bothCodes, {{"4294967295", 9, 5, 1}, {"999", 9, 15, 1}}, false, 0, 1001},
        {"size 0", codesOfSize(0), {{"1000", 9, 5, 1}, {"2000", 9, 5, 1}}},
        {"size 3", codesOfSize(3), {{"1000", 9, 5, 3}, {"2000", 9, 35, 3}}},
        {"even lines", codesOfSize(3), {{"1000", 9, 4, 2}, {"2000", 9, 24, 2}}, false, interlaced},
        {"even size", codesOfSize(1), {{"1000", 9, 4, 1}, {"2000", 9, 4, 1}}, false, bothScans},
        {"segmented", codesOfSize(3), {{"1000", 9, 5, 3}, {"2000", 9, 35, 3}}, false, segmented},
        {"background 1", [&](Overlay& o) { bothCodes(o), o.FillBackground = 1; }, codes, true},
        {"background 2", [&](Overlay& o) { bothCodes(o), o.FillBackground = 2; }, codes},
        {"progressive", sourceOn, {{source + "p", 4, 41, 3}}, false, 0xFCFF},
        {"interlaced", sourceOn, {{source + "i", 4, 40, 3}}, false, interlaced},
        {"segments", sourceOn, {{source + "sf", 4, 41, 3}}, false, segmented},
        {"both bits", sourceOn, {{source + "p", 4, 40, 3}}, false, bothScans},
        {"slots", slots, {{"zero", 30, 7, 3}, {"nine", 41, 7, 3}}, true},
        {"without picture", withoutPicture, {}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        createWithPlaces(c.flags);
        overlay.TimeCodeLTCEnable = overlay.TimeCodeVITCEnable = overlay.SourceFormatEnable = 0;
        c.set(overlay);
        Picture picture(width, height);
        burnIn(picture, nullptr, nullptr, c.adjust);
        EXPECT_EQ(picture.difference(pictureOf(c.texts, c.filled)), "");
    }
    EXPECT_EQ(timeCodeFlags, 0x30107U) << "the stream's type and the flags";
}

TEST_F(OverlayPass, OnlyAFilledBackgroundSetsTheBackColor) {
    createWithPlaces();
    Picture picture(width, height);
    burnIn(picture);
    for (const unsigned int fill : {0U, 1U}) {
        overlay.draw->backColor = 0x12345678;
        overlay.FillBackground = fill;
        burnIn(picture);
        EXPECT_EQ(overlay.draw->backColor, fill == 1 ? clear : 0x12345678U);
    }
    const auto componentsOf = [](const auto& c) { return std::array{c.r, c.g, c.b, c.a}; };
    EXPECT_EQ(componentsOf(overlay.draw->textColor0), (std::array{0.9, 0.9, 0.9, 1.0}));
    EXPECT_EQ(componentsOf(overlay.draw->textColor1), (std::array{0.0, 0.0, 0.0, 0.0}));
}

TEST_F(OverlayPass, RateOfTheSourceLine) {
    struct Case {
        unsigned int rate, scale;
        std::string text;
    };
    for (const Case& c : {Case{30000, 1001, "29.97"},
                          {24000, 1001, "23.98"},
                          {4294967295, 1, "4294967296.00"},
                          {1, 8, "0.12"}}) {
        createWithPlaces();
        video.rate = c.rate;
        video.scale = c.scale;
        overlay.SourceFormatEnable = 1;
        overlay.Create(&video, &system);
        EXPECT_EQ(frameRate, static_cast<double>(c.rate) / c.scale);
        Picture picture(width, height);
        burnIn(picture);
        EXPECT_EQ(
            picture.difference(pictureOf({{c.text + " MXF BGRA 640x100 p", 4, 41, 3}}, false)), "");
    }
}

TEST_F(OverlayPass, EachLayerLiesOverTheOnesBefore) {
    createWithPlaces();
    std::vector<unsigned int> wm(60 * 40, 0xFF112233);
    overlay.wmBgra = reinterpret_cast<unsigned char*>(wm.data());
    overlay.wmWidth = 60;
    overlay.wmHeight = 40;
    overlay.WatermarkEnable = 1;
    overlay.WatermarkX = 20;
    overlay.WatermarkY = 3;
    overlay.TimeCodeLTCEnable = overlay.TimeCodeVITCEnable = overlay.FillBackground = 1;
    overlay.TimeCodeSize = 0;
    overlay.TimeCodeX = overlay.SourceFormatX = 10;
    overlay.SourceFormatEnable = overlay.AudioEnable = overlay.AudioChannels = 1;
    overlay.SourceFormatY = 8;
    giveText(overlay, 0, "zero");
    giveText(overlay, 9, "nine");
    overlay.CustomTextEnabled[0] = overlay.CustomTextEnabled[9] = 1;
    overlay.CustomTextX[0] = 16;
    overlay.CustomTextX[9] = 24;
    overlay.CustomTextY[0] = overlay.CustomTextY[9] = 12;
    overlay.AudioX = 50;
    overlay.AudioY = 40;
    Picture picture(width, height), wanted(width, height);
    burnIn(picture);
    wanted.text("1000", 10, 5, 1, true);
    wanted.text("2000", 10, 5, 1, true);
    wanted.box(20, 3, 60, 40, 0xFF112233);
    wanted.text("25.00 MXF BGRA 640x100 p", 10, 8, 3, true);
    wanted.text("zero", 16, 12, 3, true);
    wanted.text("nine", 24, 12, 3, true);
    // The panel runs past the bottom; a line of the height itself counts as the last one.
    wanted.box(50, 40, 71, 60, black);
    wanted.text("  0", 60, 50, 1, true);
    wanted.text("-10", 60, 95, 1, true);
    EXPECT_EQ(picture.difference(wanted), "");
}

TEST_F(OverlayPass, EvenLinesAreStoredForGood) {
    std::string evened = "AudioY=50 TimeCodeY=50 TimeCodeSize=50 SourceFormatY=50 ";
    for (int slot = 0; slot < 10; ++slot)
        evened += "CustomTextY" + std::to_string(slot) + "=50 ";
    struct Case {
        unsigned int flags, enabled;
        std::string changed;
    };
    for (const Case& c : {Case{interlaced, 1, evened},
                          {bothScans, 1, evened},
                          {segmented, 1, ""},
                          {interlaced, 0, ""}}) {
        createWithPlaces(c.flags);
        for (Overlay* each : {&overlay, &before}) {
            for (const auto& [key, number] : numbersOf(*each))
                *number = key.find("Enable") == std::string::npos ? 51 : 0;
            each->Enabled = c.enabled;
        }
        Picture picture(width, height);
        burnIn(picture);
        EXPECT_EQ(changes(before, overlay), c.changed) << std::hex << c.flags;
    }
}

TEST_F(OverlayPass, DrawingObjectComesAndGoes) {
    Picture first(width, height), second(width, height);
    overlay.Enabled = 1;
    overlay.TimeCodeLTCEnable = 1;
    burnIn(first);
    EXPECT_EQ(overlay.draw, nullptr) << "without a stream";
    EXPECT_EQ(overlay.Destroy(), 0);

    createWithPlaces();
    overlay.Enabled = 0;
    overlay.TimeCodeLTCEnable = 1;
    burnIn(first);
    ASSERT_NE(overlay.draw, nullptr) << "while off";
    EXPECT_EQ(first.difference(Picture(width, height)), "");
    overlay.Enabled = 1;
    burnIn(second); // another frame than that of the object
    EXPECT_EQ(second.difference(pictureOf({{"1000", 9, 5, 1}}, false)), "");
    EXPECT_EQ(first.difference(Picture(width, height)), "");

    ZRDraw* const kept = overlay.draw;
    overlay.Create(&video, &system);
    EXPECT_EQ(overlay.draw, kept);
    EXPECT_EQ(overlay.Destroy(), 0);
    EXPECT_EQ(overlay.draw, nullptr);
    burnIn(first);
    EXPECT_EQ(first.difference(second), "");

    overlay.Destroy();
    overlay.bitmapHeader.biCompression = 0x7A7A7A7A; // a layout that nothing serves
    burnIn(first);
    EXPECT_EQ(overlay.draw, nullptr);
    overlay.bitmapHeader.biCompression = 0; // is tried again on the next frame
    burnIn(first);
    EXPECT_NE(overlay.draw, nullptr);
    EXPECT_EQ(overlay.SetAppName("name"), 0);
    overlay.reservedArray = new char[4]; // for the destructor, as the object still is
}

TEST_F(OverlayPass, CreateTakesTheStream) {
    createWithPlaces();
    overlay.levelHistory[0][0] = overlay.levelHistory[31][99] = 5;
    video.header.biMask[3] = 77;
    video.opaque3[23] = 78;
    system.opaque2[3] = 79;
    video.header.biCompression = yuv2;
    overlay.Create(&video, &system);
    EXPECT_EQ(std::memcmp(&overlay.video, &video, 1428), 0);
    EXPECT_EQ(std::memcmp(&overlay.bitmapHeader, &video, 44), 0);
    EXPECT_EQ(std::memcmp(&overlay.system, &system, 356), 0);
    EXPECT_EQ(overlay.pixelCode, yuv2);
    EXPECT_EQ(overlay.tcType, 7U);
    EXPECT_EQ(overlay.levelHistory[0][0] + overlay.levelHistory[31][99], 0U);
}

TEST_F(OverlayPass, TextOfTheBufferEndsTheProcess) {
    createWithPlaces();
    overlay.CustomTextEnabled[0] = 1;
    Picture picture(width, height);
    giveText(overlay, 0, std::string(511, '-'));
    burnIn(picture);
    EXPECT_NE(picture.difference(Picture(width, height)), "");
    giveText(overlay, 0, std::string(512, '-'));
    EXPECT_DEATH(burnIn(picture), "custom text");
}

TEST_F(OverlayPass, AllocatesNothingAfterTheFirstFrame) {
#ifndef COUNTS_ALLOCATIONS
    GTEST_SKIP() << "the sanitizers' operators count nothing";
#endif
    injection().alloc = [](unsigned int bytes) {
        ++heapAllocations;
        return std::malloc(bytes);
    };
    for (const unsigned int code : {0U, yuv2, v210}) {
        overlay.Destroy();
        createWithPlaces();
        create(width, height, code);
        overlay.TimeCodeLTCEnable = overlay.TimeCodeVITCEnable = overlay.AudioEnable = 1;
        overlay.SourceFormatEnable = overlay.CustomTextEnabled[0] = 1;
        giveText(overlay, 0, "zero");
        unsigned int levels[1] = {0xFFFF1000};
        Picture picture(width, height);
        const long none = heapAllocations;
        burnIn(picture, levels, levels);
        const long first = heapAllocations;
        EXPECT_GT(first, none) << "the drawing object at least";
        for (int i = 0; i < 3; ++i)
            burnIn(picture, levels, levels);
        EXPECT_EQ(heapAllocations, first) << std::hex << code;
    }
}

} // namespace
