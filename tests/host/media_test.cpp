// Names of codecs and files, and frames.
#include "zrdraw/platform/media.h"
#include "zrdraw/zrhost.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <vector>

namespace {

unsigned int codeOf(const char (&characters)[5]) {
    unsigned int code;
    std::memcpy(&code, characters, sizeof code);
    return code;
}

TEST(Names, CodecsByTheirCharacters) {
    const struct {
        unsigned int code;
        const char* name;
    } rows[] = {
        {0, "BGRA"},
        {codeOf("yuv2"), "UYVY"},
        {codeOf("v210"), "v210"},
        {codeOf("012v"), "v210"},
        {codeOf("014v"), "v410"},
        {codeOf("GRBc"), "Bayer"},
        {codeOf("HEVC"), "HEVC"},
        {codeOf("yuv "), "yuv "},
        {codeOf("uv2 "), "uv2 "}, // no code of two neighbours in a row
        {0x12345678, "Video"},
        {3, "Video"},
    };
    for (const auto& row : rows)
        EXPECT_STREQ(kpxutilCodecTypeString(row.code), row.name) << row.code;
}

TEST(Names, AreConstant) {
    const char* const first = kpxutilCodecTypeString(codeOf("ab01"));
    for (char c = 'a'; c <= 'z'; ++c)
        kpxutilCodecTypeString(codeOf({c, c, c, c, 0}));
    EXPECT_STREQ(first, "ab01");
    EXPECT_EQ(kpxutilCodecTypeString(codeOf("ab01")), first);
}

TEST(Names, FileTypesByTheirNumbers) {
    const struct {
        unsigned int type;
        const char* name;
        std::vector<const char*> demuxers;
    } rows[] = {
        {0, "File", {"what", "", "mov", "_pip"}},
        {1, "MOV", {"mov,mp4,m4a,3gp,3g2,mj2"}},
        {2, "MKV", {"matroska,webm"}},
        {3, "AVI", {"avi"}},
        {4, "MXF", {"mxf", "mxf_opatom"}},
        {5, "TS", {"mpegts"}},
        {6, "PS", {"mpeg"}},
        {7, "DV", {"dv"}},
        {8, "GXF", {"gxf"}},
        {9, "NUT", {"nut"}},
        {10, "Y4M", {"yuv4mpegpipe"}},
        {11, "RAW", {"rawvideo"}},
        {12, "GIF", {"gif"}},
        {13, "Image", {"image2", "image2pipe", "png_pipe"}},
    };
    for (const auto& row : rows) {
        EXPECT_STREQ(kpxutilFileTypeString(row.type), row.name);
        for (const char* demuxer : row.demuxers)
            EXPECT_EQ(zrFileTypeOf(demuxer), row.type) << demuxer;
    }
    EXPECT_STREQ(kpxutilFileTypeString(14), "File");
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

} // namespace
