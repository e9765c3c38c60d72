// Names of codecs and files, frames, and time code against a rule that counts frame by frame.
#include "zrdraw/platform/media.h"
#include "zrdraw/zrhost.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

namespace {

unsigned int codeOf(const char (&characters)[5]) {
    unsigned int code;
    std::memcpy(&code, characters, sizeof code);
    return code;
}

TEST(Names, CodecsByTheirCharactersAreConstant) {
    const std::pair<unsigned int, const char*> rows[] = {
        {0, "BGRA"},
        {codeOf("yuv2"), "UYVY"},
        {codeOf("v210"), "v210"},
        {codeOf("012v"), "v210"},
        {codeOf("014v"), "v410"},
        {codeOf("GRBc"), "Bayer"},
        {codeOf("HEVC"), "HEVC"},
        {codeOf("yuv "), "yuv "},
        {codeOf("uv2 "), "uv2 "},
        {0x12345678, "Video"},
        {3, "Video"},
    };
    for (const auto& [code, name] : rows) // "uv2 ": no code of two neighbours in a row
        EXPECT_STREQ(kpxutilCodecTypeString(code), name) << code;
    const char* const first = kpxutilCodecTypeString(codeOf("ab01"));
    for (char c = 'a'; c <= 'z'; ++c)
        kpxutilCodecTypeString(codeOf({c, c, c, c, 0}));
    EXPECT_STREQ(first, "ab01");
    EXPECT_EQ(kpxutilCodecTypeString(codeOf("ab01")), first);
}

TEST(Names, FileTypesByTheirNumbers) {
    const std::pair<const char*, const char*> rows[] = {
        {"File", "what"},         {"MOV", "mov,mp4,m4a,3gp,3g2,mj2"},
        {"MKV", "matroska,webm"}, {"AVI", "avi"},
        {"MXF", "mxf"},           {"TS", "mpegts"},
        {"PS", "mpeg"},           {"DV", "dv"},
        {"GXF", "gxf"},           {"NUT", "nut"},
        {"Y4M", "yuv4mpegpipe"},  {"RAW", "rawvideo"},
        {"GIF", "gif"},           {"Image", "image2"},
    };
    unsigned int type = 0;
    for (const auto& [name, demuxer] : rows) {
        EXPECT_STREQ(kpxutilFileTypeString(type), name);
        EXPECT_EQ(zrFileTypeOf(demuxer), type++) << demuxer;
    }
    EXPECT_STREQ(kpxutilFileTypeString(type), "File");
    for (const auto& [demuxer, number] : {std::pair{"", 0U},
                                          {"mov", 0},
                                          {"_pip", 0},
                                          {"mxf_opatom", 4},
                                          {"image2pipe", 13},
                                          {"png_pipe", 13}})
        EXPECT_EQ(zrFileTypeOf(demuxer), number) << demuxer;
}

TEST(Frames, AreMadeAndFreed) {
    DFRAME* frame = nullptr;
    ASSERT_EQ(DFrameMemTrace(10, 1000, sizeof(DFRAME), &frame, "test", 1), 0);
    std::memset(frame->videoData, 1, 1000);
    EXPECT_EQ(frame->ltc, 0U);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(frame->videoData) % 64, 0U);
    EXPECT_EQ(DFrameMemTrace(11, 0, 0, &frame, "test", 2), 0);
    EXPECT_EQ(frame, nullptr);
    EXPECT_EQ(DFrameMemTrace(11, 0, 0, &frame, "test", 3), 0) << "of nothing";
    EXPECT_EQ(DFrameMemTrace(12, 0, 0, &frame, "test", 4), -1);
}

std::string textOf(unsigned int count, unsigned int type) {
    char text[512] = {};
    EXPECT_EQ(tc2String(count, type | zrTimeCodeTextFlags, text), 0);
    return text;
}

// Counts as a clock does, and leaves out `skipped` numbers at each minute that 10 does not divide.
struct Counter {
    int frames, skipped;
    char sign;
    int h = 0, m = 0, s = 0, f = 0;

    std::string text() const {
        char text[32];
        std::snprintf(text, sizeof text, "%02d:%02d:%02d%c%02d", h, m, s, sign, f);
        return text;
    }
    void next() {
        if (++f < frames)
            return;
        f = 0;
        if (++s < 60)
            return;
        s = 0;
        m = (m + 1) % 60;
        if (m == 0)
            h = (h + 1) % 24;
        f = m % 10 != 0 ? skipped : 0;
    }
};

TEST(TimeCode, AllDayByTheFrameAndBack) {
    const struct {
        unsigned int type;
        Counter counter;
        unsigned int framesOfDay;
    } rows[] = {
        {zrTimeCode30Drop, {30, 2, ';'}, 2589408}, {zrTimeCode30, {30, 0, ':'}, 2592000},
        {zrTimeCode60Drop, {60, 4, ';'}, 5178816}, {zrTimeCode60, {60, 0, ':'}, 5184000},
        {zrTimeCode25, {25, 0, ':'}, 2160000},
    };
    for (const auto& row : rows) {
        Counter counter = row.counter;
        for (unsigned int count = 0; count < row.framesOfDay; ++count, counter.next()) {
            const std::string text = counter.text();
            ASSERT_EQ(textOf(count, row.type), text) << count;
            unsigned int back = 0;
            ASSERT_EQ(zrTimeCodeFrames(text.c_str(), row.type, &back), 0) << text;
            ASSERT_EQ(back, count) << text;
        }
        EXPECT_EQ(counter.text(), row.counter.text()) << "a day is over";
        EXPECT_EQ(textOf(row.framesOfDay, row.type), row.counter.text()) << "wraps";
        EXPECT_EQ(textOf(0U - 1, row.type), textOf(row.framesOfDay - 1, row.type)) << "from below";
    }
}

TEST(TimeCode, TypesOfRates) {
    const struct {
        int numerator, denominator;
        unsigned int drop, nonDrop;
    } rows[] = {
        {24000, 1001, 0, zrTimeCode24},
        {25, 1, 0, zrTimeCode25},
        {30000, 1001, zrTimeCode30Drop, zrTimeCode30},
        {2997, 100, zrTimeCode30Drop, zrTimeCode30},
        {30, 1, 0, zrTimeCode30},
        {48000, 1001, 0, zrTimeCode48},
        {50, 1, 0, zrTimeCode50},
        {60000, 1001, zrTimeCode60Drop, zrTimeCode60},
        {60, 1, 0, zrTimeCode60},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.numerator);
        const unsigned int usual = row.drop != 0 ? row.drop : row.nonDrop;
        EXPECT_EQ(zrTimeCodeType(row.numerator, row.denominator, -1), usual);
        EXPECT_EQ(zrTimeCodeType(row.numerator, row.denominator, 1), row.drop);
        EXPECT_EQ(zrTimeCodeType(row.numerator, row.denominator, 0), row.nonDrop);
        EXPECT_EQ(vidGetTCType(static_cast<double>(row.numerator) / row.denominator), usual);
    }
    const std::pair<double, unsigned int> odd[] = {
        {23.98, zrTimeCode24},        {24.9, zrTimeCode25},     {29.9, zrTimeCode30Drop},
        {30.1, zrTimeCode30},         {59.7, zrTimeCode60Drop}, {119.4, zrTimeCode120},
        {0.0, zrTimeCode30},          {-25.0, zrTimeCode30},    {12.0, zrTimeCode30},
        {std::nan(""), zrTimeCode30}, {HUGE_VAL, zrTimeCode30},
    };
    for (const auto& [rate, type] : odd)
        EXPECT_EQ(vidGetTCType(rate), type) << rate;
    EXPECT_EQ(zrTimeCodeType(12, 1, -1), 0U);
    EXPECT_EQ(zrTimeCodeType(25, 0, -1), 0U);
    EXPECT_EQ(unsigned{zrTimeCode30}, 4U) << "the one of an object without a stream";
    EXPECT_EQ(textOf(31, 99), textOf(31, zrTimeCode30)) << "an unknown type";
    EXPECT_EQ(zrTimeCodeIsDrop(zrTimeCode60Drop), 1);
    EXPECT_EQ(zrTimeCodeIsDrop(zrTimeCode60), 0);
}

TEST(TimeCode, WhatIsNoneIsRefused) {
    const char* texts[] = {
        "",           "10:00:00",    "10:00:00:30", "24:00:00:00",  "10:60:00:00", "10:00:60:00",
        "1:00:00:00", "10;00:00:00", "-0:00:00:00", "00:00:00:001", "00:01:00;00", "00:01:00;01"};
    for (const char* text : texts) {
        unsigned int frames = 77;
        EXPECT_EQ(zrTimeCodeFrames(text, zrTimeCode30Drop, &frames), -1) << text;
        EXPECT_EQ(frames, 77U);
    }
    unsigned int frames = 0;
    EXPECT_EQ(zrTimeCodeFrames("00:01:00;00", zrTimeCode30, &frames), 0) << "either sign";
}

TEST(TimeCode, HighRatesHaveTheDigitsTheyNeed) {
    const struct {
        unsigned int type, count;
        const char* text;
    } rows[] = {
        {zrTimeCode48, 47, "00:00:00:47"},
        {zrTimeCode100, 199, "00:00:01:99"},
        {zrTimeCode120, 5, "00:00:00:005"},
        {zrTimeCode120, 119, "00:00:00:119"},
        {zrTimeCode120, 86400 * 120 - 1, "23:59:59:119"},
    };
    for (const auto& row : rows) {
        unsigned int back = 0;
        EXPECT_EQ(textOf(row.count, row.type), row.text);
        EXPECT_EQ(zrTimeCodeFrames(row.text, row.type, &back), 0) << row.text;
        EXPECT_EQ(back, row.count) << row.text;
    }
}

} // namespace
