// The reader of media files, loaded by its name as the library loads it.
#include "support/temp_file.h"
#include "zrdraw/platform/files.h"
#include "zrdraw/platform/media.h"

#include <gtest/gtest.h>

#include <cstdarg>
#include <cstdint>
#include <memory>
#include <string>
#include <tuple>

#include <unistd.h>

extern "C" {
#include <libavcodec/avcodec.h>
}

namespace {

class ClipFile : public testing::Test {
protected:
    void SetUp() override {
        constexpr int loadNow = 2;
        m_library = zrOSLoadLibrary("clipFile.so", loadNow);
        ASSERT_NE(m_library, nullptr);
    }
    void TearDown() override { zrOSFreeLibrary(m_library); }

    template <typename Function>
    Function* entry(const char* name) {
        return reinterpret_cast<Function*>(zrOSGetProcAddress(m_library, name));
    }

    void* open(const std::string& path) {
        return entry<cfOpenFunction>("cfOpen")(path.c_str(), 0x80000000U, 1, nullptr, 3, 0,
                                               0x20000);
    }

    int close(void*& clip) { return entry<cfCloseFunction>("cfClose")(&clip); }

    unsigned int read(void*& clip, DFRAME* frame) {
        return entry<cfReadFrameUncFunction>("cfReadFrameUnc")(&clip, 0, 1, 1, 1, frame, nullptr,
                                                               nullptr);
    }

    // The first picture of a file of this content; empty when it cannot be opened.
    std::string pictureOf(const std::string& content) {
        const TempFile file(content);
        void* clip = open(file.path());
        if (clip == nullptr)
            return {};
        constexpr char guard = 0x5A;
        const unsigned int bytes = read(clip, nullptr);
        std::string pixels(bytes + 64, guard);
        DFRAME frame{};
        frame.videoData = pixels.data();
        EXPECT_EQ(read(clip, &frame), bytes);
        EXPECT_EQ(pixels.substr(bytes), std::string(64, guard)) << "written past the picture";
        EXPECT_EQ(close(clip), 0);
        EXPECT_EQ(clip, nullptr);
        pixels.resize(bytes);
        return pixels;
    }

    void* m_library = nullptr;
};

template <auto freeFunction>
struct AvFree {
    template <class T>
    void operator()(T* object) const {
        freeFunction(&object);
    }
};

constexpr int width = 37, height = 23; // of encoded pictures

// What a byte of a line of an encoded picture is, in each plane.
char sampleOf(int x, int y) {
    return static_cast<char>(x * 89 + y * 7);
}

std::string encode(AVCodecID codec, AVPixelFormat format) {
    const AVCodec* encoder = avcodec_find_encoder(codec);
    const std::unique_ptr<AVCodecContext, AvFree<avcodec_free_context>> context(
        avcodec_alloc_context3(encoder));
    const std::unique_ptr<AVFrame, AvFree<av_frame_free>> frame(av_frame_alloc());
    const std::unique_ptr<AVPacket, AvFree<av_packet_free>> packet(av_packet_alloc());
    context->width = frame->width = width;
    context->height = frame->height = height;
    context->pix_fmt = format;
    frame->format = format;
    context->time_base = {1, 25};
    EXPECT_EQ(avcodec_open2(context.get(), encoder, nullptr), 0);
    EXPECT_EQ(av_frame_get_buffer(frame.get(), 0), 0);
    for (int plane = 0; frame->data[plane] != nullptr; ++plane) {
        const int lines = plane == 0 ? height : (height + 1) / 2;
        for (int i = 0; i < lines * frame->linesize[plane]; ++i) {
            frame->data[plane][i] = static_cast<std::uint8_t>(
                sampleOf(i % frame->linesize[plane], i / frame->linesize[plane]));
        }
    }
    EXPECT_EQ(avcodec_send_frame(context.get(), frame.get()), 0);
    EXPECT_EQ(avcodec_send_frame(context.get(), nullptr), 0);
    EXPECT_EQ(avcodec_receive_packet(context.get(), packet.get()), 0);
    return {reinterpret_cast<const char*>(packet->data), static_cast<std::size_t>(packet->size)};
}

std::string ramp(std::size_t bytes) {
    std::string samples;
    for (std::size_t i = 0; i < bytes; ++i)
        samples += static_cast<char>(i * 37 + 1);
    return samples;
}

TEST_F(ClipFile, KeepsEveryByteOfAPicture) {
    for (const int depth : {3, 4}) {
        std::string expected;
        for (int i = 0; i < width * height; ++i) {
            const int x = i % width * depth, y = i / width;
            expected += {sampleOf(x + 2, y), sampleOf(x + 1, y), sampleOf(x, y),
                         depth == 4 ? sampleOf(x + 3, y) : '\xFF'};
        }
        EXPECT_EQ(
            pictureOf(encode(AV_CODEC_ID_PNG, depth == 4 ? AV_PIX_FMT_RGBA : AV_PIX_FMT_RGB24)),
            expected)
            << depth;
    }
}

TEST_F(ClipFile, TellsSizeAndRate) {
    const TempFile file("YUV4MPEG2 W6 H4 F30000:1001 Ip C444\nFRAME\n" + ramp(72));
    void* clip = open(file.path());
    ASSERT_NE(clip, nullptr);
    KPXVIDEO record{};
    record.header.biSize = sizeof record;
    record.header.biCompression = 99;
    const auto info = entry<cfGetFileInfoFunction>("cfGetFileInfo");
    EXPECT_EQ(info(&clip, 1, 0, &record, nullptr, nullptr), 0);
    const tagBITMAPINFO& header = record.header;
    EXPECT_EQ(header.biSize, sizeof record);
    EXPECT_EQ(std::tuple(header.biWidth, header.biHeight, header.biPlanes, header.biBitCount),
              std::tuple(6, 4, 1, 32));
    EXPECT_EQ(std::tuple(header.biCompression, header.biSizeImage), std::tuple(0U, 96U));
    EXPECT_EQ(std::tuple(record.rate, record.scale), std::tuple(30000U, 1001U));
    EXPECT_EQ(close(clip), 0);
}

// The colours are those of ITU-R BT.601 and BT.709, with one step for rounding.
TEST_F(ClipFile, FirstPictureOfAClipInItsMatrixAndRange) {
    const struct {
        int lines;
        const char* range;
        int y, cb, cr;
        int b, g, r;
    } rows[] = {
        {4, "", 16, 128, 128, 0, 0, 0},
        {4, "", 235, 128, 128, 255, 255, 255},
        {4, " XCOLORRANGE=FULL", 235, 128, 128, 235, 235, 235},
        {4, "", 81, 90, 240, 0, 0, 254},
        {720, "", 63, 102, 240, 0, 0, 255},
        {4, "", 145, 54, 34, 1, 255, 0},
    };
    for (const auto& row : rows) {
        const auto planeBytes = static_cast<std::size_t>(4 * row.lines);
        std::string clip =
            "YUV4MPEG2 W4 H" + std::to_string(row.lines) + " F25:1 C444" + row.range + "\nFRAME\n";
        for (const int sample : {row.y, row.cb, row.cr})
            clip += std::string(planeBytes, static_cast<char>(sample));
        clip += "FRAME\n" + std::string(3 * planeBytes, 100);
        const std::string pixels = pictureOf(clip);
        ASSERT_EQ(pixels.size(), 4 * planeBytes) << row.y;
        const int expected[] = {row.b, row.g, row.r, 255};
        for (std::size_t i = 0; i < pixels.size(); ++i)
            ASSERT_NEAR(static_cast<std::uint8_t>(pixels[i]), expected[i % 4], 2)
                << row.lines << " lines, Y " << row.y << ", byte " << i;
    }
}

TEST_F(ClipFile, RefusesWhatIsCutOffOrNoPicture) {
    const std::string png = encode(AV_CODEC_ID_PNG, AV_PIX_FMT_RGB24);
    const std::string jpeg = encode(AV_CODEC_ID_MJPEG, AV_PIX_FMT_YUVJ420P);
    const std::string y4m = "YUV4MPEG2 W6 H4 F25:1 C444\nFRAME\n" + ramp(72);
    for (const std::string& whole : {png, jpeg, y4m}) {
        EXPECT_NE(pictureOf(whole), "") << whole.substr(0, 10);
        const std::size_t bytes = whole.size();
        for (const std::size_t left : {bytes / 4, bytes / 2, bytes * 3 / 4, bytes - 20, bytes - 2})
            EXPECT_EQ(pictureOf(whole.substr(0, left)), "")
                << whole.substr(0, 10) << ", " << left << " of " << bytes << " bytes";
    }
    EXPECT_EQ(pictureOf(""), "");
    EXPECT_EQ(pictureOf("no picture at all\n"), "");
    EXPECT_EQ(open("no such file"), nullptr);
    EXPECT_EQ(open(testing::TempDir()), nullptr) << "a folder";
}

TEST_F(ClipFile, TakesANameAsItStands) {
    const TempFile file(encode(AV_CODEC_ID_PNG, AV_PIX_FMT_RGB24));
    const std::string name = std::string(file.path()) + " 100%d: #1?.png";
    ASSERT_EQ(link(file.path(), name.c_str()), 0);
    void* clip = open(name);
    unlink(name.c_str());
    ASSERT_NE(clip, nullptr) << name;
    EXPECT_EQ(close(clip), 0);
}

TEST_F(ClipFile, ReadsAJpegWithoutAMessageAndLeavesTheirLevel) {
    const std::string jpeg = encode(AV_CODEC_ID_MJPEG, AV_PIX_FMT_YUVJ420P);
    av_log_set_level(AV_LOG_WARNING);
    static int messages;
    messages = 0;
    av_log_set_callback([](void*, int level, const char*, va_list) {
        messages += (level & 0xFF) <= AV_LOG_WARNING ? 1 : 0;
    });
    EXPECT_NE(pictureOf(jpeg), "");
    av_log_set_callback(av_log_default_callback);
    EXPECT_EQ(messages, 0);
    EXPECT_EQ(av_log_get_level(), AV_LOG_WARNING);
}

} // namespace
