// Media go in and come out: exact where the format is, complete or not at all where it fails.
#include "error.h"
#include "media/frame_sink.h"
#include "media/frame_source.h"
#include "media/working_frame.h"
#include "zrdraw/layouts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

using Bytes = std::vector<unsigned char>;

class Media : public testing::Test {
protected:
    void SetUp() override {
        quietAv();
        std::string pattern = testing::TempDir() + "zrdraw-media-XXXXXX";
        ASSERT_NE(::mkdtemp(pattern.data()), nullptr);
        m_folder = pattern;
    }
    void TearDown() override { fs::remove_all(m_folder); }

    std::string at(const std::string& name) const { return m_folder / name; }
    std::size_t fileCount() const {
        return static_cast<std::size_t>(
            std::distance(fs::directory_iterator(m_folder), fs::directory_iterator()));
    }

    fs::path m_folder;
};

StreamInfo infoOf(AVPixelFormat format, int width = 64, int height = 48) {
    StreamInfo info;
    info.pixelFormat = format;
    info.width = width;
    info.height = height;
    return info;
}

std::string readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

void writeFile(const std::string& path, const std::string& content) {
    std::ofstream(path, std::ios::binary) << content;
}

void fillNoise(WorkingFrame& canvas, unsigned seed) {
    std::mt19937 random(seed);
    std::generate_n(canvas.data(), canvas.pitch() * canvas.height(),
                    [&] { return static_cast<char>(random()); });
}

Bytes pixelsOf(WorkingFrame& canvas, int bytesPerPixel) {
    Bytes pixels;
    for (int y = 0; y < canvas.height(); ++y) {
        const char* line = canvas.data() + y * canvas.pitch();
        pixels.insert(pixels.end(), line, line + canvas.width() * bytesPerPixel);
    }
    return pixels;
}

// Writes frames of noise, the seeds of which are the frames' numbers.
void writeNoise(const std::string& path, const StreamInfo& info, int frames,
                const SinkOptions& options = {}, AVPixelFormat working = AV_PIX_FMT_BGRA) {
    FrameSink sink(path, options, info, working);
    WorkingFrame canvas(working, info.width, info.height);
    for (int i = 0; i < frames; ++i) {
        fillNoise(canvas, static_cast<unsigned>(i));
        const FramePtr frame = sink.makeFrame();
        canvas.store(*frame);
        frame->pts = i;
        sink.write(*frame);
    }
    sink.finish();
}

std::vector<Bytes> readAll(const std::string& path,
                           const std::optional<RawFormat>& raw = std::nullopt) {
    FrameSource source(path, raw);
    WorkingFrame canvas(AV_PIX_FMT_BGRA, source.info().width, source.info().height);
    const FramePtr frame(av_frame_alloc());
    std::vector<Bytes> frames;
    while (source.read(*frame)) {
        canvas.load(*frame);
        frames.push_back(pixelsOf(canvas, 4));
    }
    return frames;
}

// The message of the error with the wanted status, or what happened in its place.
std::string errorOf(const std::function<void()>& action, ExitStatus wanted = ExitStatus::Failed) {
    try {
        action();
    } catch (const ToolError& error) {
        return error.status == wanted ? error.what() : std::string("other status: ") + error.what();
    }
    return "no error";
}

Bytes noiseAsBgra(unsigned seed, const StreamInfo& info, bool alpha) {
    WorkingFrame canvas(AV_PIX_FMT_BGRA, info.width, info.height);
    fillNoise(canvas, seed);
    Bytes pixels = pixelsOf(canvas, 4);
    for (std::size_t i = 3; i < pixels.size() && !alpha; i += 4)
        pixels[i] = 255;
    return pixels;
}

TEST_F(Media, LosslessFormatsReturnEveryByte) {
    const struct {
        const char* name;
        AVPixelFormat source;
        const char* codec;
        int frames;
        bool alpha;
    } rows[] = {
        {"rgb.png", AV_PIX_FMT_RGB24, "", 1, false},  {"rgba.png", AV_PIX_FMT_RGBA, "", 1, true},
        {"bgra.png", AV_PIX_FMT_BGRA, "", 1, true},   {"palette.png", AV_PIX_FMT_PAL8, "", 1, true},
        {"grey.png", AV_PIX_FMT_GRAY8, "", 1, false}, {"a.bmp", AV_PIX_FMT_BGR24, "", 1, false},
        {"a.tif", AV_PIX_FMT_RGB24, "", 1, false},    {"a.ppm", AV_PIX_FMT_RGB24, "", 1, false},
        {"a.mkv", AV_PIX_FMT_BGRA, "ffv1", 3, true},  {"a.mov", AV_PIX_FMT_RGB24, "png", 3, false},
        {"a.avi", AV_PIX_FMT_BGR0, "ffv1", 3, false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const StreamInfo info = infoOf(row.source, 61, 47);
        writeNoise(at(row.name), info, row.frames, {"", row.codec, false});
        const std::vector<Bytes> frames = readAll(at(row.name));
        ASSERT_EQ(frames.size(), static_cast<std::size_t>(row.frames));
        for (unsigned i = 0; i < frames.size(); ++i)
            EXPECT_EQ(frames[i], noiseAsBgra(i, info, row.alpha)) << "seed " << i;
        EXPECT_EQ(FrameSource(at(row.name)).info().picture, row.frames == 1);
    }
}

TEST_F(Media, EveryWorkingLayoutHasItsChannelsInPlace) {
    writeNoise(at("in.png"), infoOf(AV_PIX_FMT_RGB24), 1);
    const Bytes expected = readAll(at("in.png")).at(0);
    int served = 0;
    for (const zrLayout& layout : zrLayouts) {
        const std::optional<AVPixelFormat> format = workingPixelFormat(layout.code);
        if (!format)
            continue;
        ++served;
        SCOPED_TRACE(layout.name);
        FrameSource source(at("in.png"));
        const FramePtr frame(av_frame_alloc());
        ASSERT_TRUE(source.read(*frame));
        WorkingFrame canvas(*format, 64, 48);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(canvas.data()) % 64, 0u);
        canvas.load(*frame);
        const int size = layout.bytes.a < 0 ? 3 : 4;
        const Bytes pixels = pixelsOf(canvas, size);
        for (std::size_t i = 0; i < expected.size() / 4; ++i) {
            const unsigned char* pixel = &pixels[i * static_cast<std::size_t>(size)];
            ASSERT_EQ(pixel[layout.bytes.b], expected[4 * i]);
            ASSERT_EQ(pixel[layout.bytes.g], expected[4 * i + 1]);
            ASSERT_EQ(pixel[layout.bytes.r], expected[4 * i + 2]);
            ASSERT_EQ(size == 4 ? pixel[layout.bytes.a] : 255, 255);
        }
    }
    EXPECT_GE(served, 6);
}

FramePtr flatFrame(AVPixelFormat format, int width, int height, int y, int cb, int cr) {
    FramePtr frame(av_frame_alloc());
    frame->format = format;
    frame->width = width;
    frame->height = height;
    if (av_frame_get_buffer(frame.get(), 0) < 0)
        throw std::bad_alloc();
    const int samples[3] = {y, cb, cr};
    for (int plane = 0; plane < 3; ++plane) {
        const int lines = plane == 0 ? height : height / 2;
        std::fill_n(frame->data[plane], frame->linesize[plane] * lines,
                    static_cast<unsigned char>(samples[plane]));
    }
    return frame;
}

TEST_F(Media, MatrixAndRangeFollowTheFrameAndComeBack) {
    const struct {
        AVColorSpace space;
        AVColorRange range;
        int height;
        double kr, kb; // of the matrix that must be used
        bool full;
    } rows[] = {
        {AVCOL_SPC_UNSPECIFIED, AVCOL_RANGE_UNSPECIFIED, 576, 0.299, 0.114, false},
        {AVCOL_SPC_UNSPECIFIED, AVCOL_RANGE_UNSPECIFIED, 720, 0.2126, 0.0722, false},
        {AVCOL_SPC_BT709, AVCOL_RANGE_MPEG, 576, 0.2126, 0.0722, false},
        {AVCOL_SPC_SMPTE170M, AVCOL_RANGE_JPEG, 720, 0.299, 0.114, true},
        {AVCOL_SPC_BT2020_NCL, AVCOL_RANGE_MPEG, 720, 0.2627, 0.0593, false},
    };
    constexpr int y = 110, cb = 140, cr = 170;
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << row.space << " " << row.range << " " << row.height);
        const FramePtr in = flatFrame(AV_PIX_FMT_YUV420P, 64, row.height, y, cb, cr);
        in->colorspace = row.space;
        in->color_range = row.range;
        in->interlaced_frame = in->top_field_first = 1;
        WorkingFrame canvas(AV_PIX_FMT_RGB24, 64, row.height);
        canvas.load(*in);

        const double luma = row.full ? y : (y - 16) * 255.0 / 219;
        const double chroma = row.full ? 1 : 255.0 / 224;
        const double red = luma + (cr - 128) * chroma * 2 * (1 - row.kr);
        const double blue = luma + (cb - 128) * chroma * 2 * (1 - row.kb);
        const double green = (luma - row.kr * red - row.kb * blue) / (1 - row.kr - row.kb);
        const auto* pixel = reinterpret_cast<const unsigned char*>(canvas.data());
        EXPECT_NEAR(pixel[0], red, 1.5);
        EXPECT_NEAR(pixel[1], green, 1.5);
        EXPECT_NEAR(pixel[2], blue, 1.5);

        const FramePtr out = flatFrame(AV_PIX_FMT_YUV420P, 64, row.height, 0, 0, 0);
        canvas.store(*out);
        EXPECT_NEAR(out->data[0][0], y, 1);
        EXPECT_NEAR(out->data[1][0], cb, 1);
        EXPECT_NEAR(out->data[2][0], cr, 1);
        EXPECT_TRUE(out->interlaced_frame && out->top_field_first);
    }
}

TEST_F(Media, StreamPropertiesPassThroughAClip) {
    StreamInfo info = infoOf(AV_PIX_FMT_YUV422P);
    info.frameRate = {30000, 1001};
    info.sampleAspect = {12, 11};
    info.colorSpace = AVCOL_SPC_BT709;
    info.colorRange = AVCOL_RANGE_MPEG;
    info.colorPrimaries = AVCOL_PRI_BT709;
    info.colorTransfer = AVCOL_TRC_BT709;
    info.chromaLocation = AVCHROMA_LOC_LEFT;
    info.fieldOrder = AV_FIELD_TT;
    writeNoise(at("a.mkv"), info, 4, {"", "ffv1", false});
    const StreamInfo found = FrameSource(at("a.mkv")).info();
    EXPECT_EQ(av_cmp_q(found.frameRate, info.frameRate), 0);
    EXPECT_EQ(av_cmp_q(found.sampleAspect, info.sampleAspect), 0);
    EXPECT_EQ(found.pixelFormat, info.pixelFormat);
    EXPECT_EQ(found.colorSpace, info.colorSpace);
    EXPECT_EQ(found.colorRange, info.colorRange);
    EXPECT_EQ(found.colorPrimaries, info.colorPrimaries);
    EXPECT_EQ(found.colorTransfer, info.colorTransfer);
    EXPECT_EQ(found.chromaLocation, info.chromaLocation);
    EXPECT_EQ(found.fieldOrder, info.fieldOrder);
    EXPECT_EQ(found.frameCount, 4);
}

TEST_F(Media, StandardInputGivesWhatTheFileGives) {
    writeNoise(at("a.y4m"), infoOf(AV_PIX_FMT_YUV420P), 5);
    const std::vector<Bytes> expected = readAll(at("a.y4m"));
    ASSERT_EQ(expected.size(), 5u);
    const int kept = ::dup(STDIN_FILENO);
    FILE* pipe = ::popen(("cat '" + at("a.y4m") + "'").c_str(), "r");
    ASSERT_NE(pipe, nullptr);
    ::dup2(::fileno(pipe), STDIN_FILENO);
    EXPECT_EQ(readAll("-"), expected);
    ::dup2(kept, STDIN_FILENO);
    ::close(kept);
    ::pclose(pipe);
}

TEST_F(Media, RawFramesAreTheLayoutsBytes) {
    const StreamInfo info = infoOf(AV_PIX_FMT_YUV420P, 61, 47);
    writeNoise(at("a.raw"), info, 2, {}, AV_PIX_FMT_BGRA);
    const Bytes first = noiseAsBgra(0, info, true);
    const std::string content = readFile(at("a.raw"));
    ASSERT_EQ(content.size(), 2 * first.size());
    EXPECT_TRUE(
        std::equal(first.begin(), first.end(), content.begin(),
                   [](unsigned char a, char b) { return a == static_cast<unsigned char>(b); }));
    const auto frames = readAll(at("a.raw"), RawFormat{AV_PIX_FMT_BGRA, 61, 47, {25, 1}});
    ASSERT_EQ(frames.size(), 2u);
    EXPECT_EQ(frames[1], noiseAsBgra(1, info, true));
}

TEST_F(Media, AnExistingFileIsReplacedOnlyByForce) {
    writeFile(at("a.png"), "precious");
    const StreamInfo info = infoOf(AV_PIX_FMT_RGB24);
    EXPECT_EQ(errorOf([&] { writeNoise(at("a.png"), info, 1); }, ExitStatus::BadUsage),
              "'" + at("a.png") + "' exists; use --force to replace it");
    EXPECT_EQ(readFile(at("a.png")), "precious");
    EXPECT_EQ(errorOf([&] {
                  writeNoise(at("a.png"), info, 2, {"", "", true});
              }),
              "'" + at("a.png") + "' takes one picture only");
    EXPECT_EQ(readFile(at("a.png")), "precious");
    writeNoise(at("a.png"), info, 1, {"", "", true});
    EXPECT_EQ(readAll(at("a.png")).at(0), noiseAsBgra(0, info, false));
    EXPECT_EQ(fileCount(), 1u);
}

TEST_F(Media, AnUnfinishedResultLeavesNothing) {
    {
        FrameSink sink(at("a.mkv"), {}, infoOf(AV_PIX_FMT_YUV420P), AV_PIX_FMT_BGRA);
        EXPECT_EQ(fileCount(), 1u);
        EXPECT_FALSE(fs::exists(at("a.mkv")));
        const FramePtr frame = sink.makeFrame();
        WorkingFrame(AV_PIX_FMT_BGRA, 64, 48).store(*frame);
        frame->pts = 0;
        sink.write(*frame);
    }
    EXPECT_EQ(fileCount(), 0u);
    const std::string error =
        errorOf([&] { writeNoise(at("a.png"), infoOf(AV_PIX_FMT_RGB24), 0); });
    EXPECT_NE(error.find("no frame"), std::string::npos) << error;
    EXPECT_EQ(fileCount(), 0u);
}

TEST_F(Media, OutputsThatCannotBeAreRefusedWithTheirMend) {
    writeFile(at("file"), "x");
    const StreamInfo even = infoOf(AV_PIX_FMT_YUV420P), odd = infoOf(AV_PIX_FMT_YUV420P, 61, 47);
    const struct {
        std::string path;
        SinkOptions options;
        StreamInfo info;
        ExitStatus status;
        const char* text;
    } rows[] = {
        {at("none/a.png"), {}, even, ExitStatus::Failed, "none' does not exist"},
        {at("file/a.png"), {}, even, ExitStatus::Failed, "cannot write"},
        {m_folder, {}, even, ExitStatus::Failed, "is a folder"},
        {at("a.xyz"), {}, even, ExitStatus::BadUsage, "unknown output format '.xyz': use a name"},
        {at("a"), {}, even, ExitStatus::BadUsage, "unknown output format"},
        {at("a.mov"), {"nope", "", false}, even, ExitStatus::BadUsage, "format 'nope'"},
        {at("a.mov"), {"", "nope", false}, even, ExitStatus::BadUsage, "encoder 'nope'"},
        {at("a.mov"), {"", "aac", false}, even, ExitStatus::BadUsage, "encoder 'aac'"},
        {at("a.webm"), {"", "ffv1", false}, even, ExitStatus::BadUsage, "cannot hold 'ffv1'"},
        {at("a.wav"), {}, even, ExitStatus::BadUsage, "no video encoder"},
        {at("a.m3u8"), {}, even, ExitStatus::BadUsage, "does not make one file"},
        {at("a.avi"), {"", "h263", false}, odd, ExitStatus::Failed, "refuses 61x47 yuv420p"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.path);
        const std::string error =
            errorOf([&] { writeNoise(row.path, row.info, 1, row.options); }, row.status);
        EXPECT_NE(error.find(row.text), std::string::npos) << error;
        EXPECT_EQ(error.find('\n'), std::string::npos) << error;
        EXPECT_EQ(fileCount(), 1u);
    }
}

TEST_F(Media, InputsThatAreNoMediaAreNamed) {
    fs::create_directory(at("folder"));
    writeFile(at("empty.png"), "");
    for (const char* name : {"text.txt", "text.png", "text.mov", "text"})
        writeFile(at(name), "These lines are no picture.\nNor do they move.\n");
    const struct {
        const char* name;
        const char* text;
    } rows[] = {
        {"missing.png", "No such file or directory"},
        {"folder", "is a folder"},
        {"empty.png", "is empty"},
        {"text.txt", "is not a media file"},
        {"text.png", "text.png'"},
        {"text.mov", "is not a media file"},
        {"text", "is not a media file"},
    };
    for (const auto& row : rows) {
        const std::string error = errorOf([&] { readAll(at(row.name)); });
        EXPECT_NE(error.find(row.text), std::string::npos) << row.name << ": " << error;
        EXPECT_NE(error.find(at(row.name)), std::string::npos) << row.name << ": " << error;
    }
    EXPECT_NE(errorOf(
                  [&] {
                      readAll(at("text"), RawFormat{AV_PIX_FMT_BGRA, 0, 4, {25, 1}});
                  },
                  ExitStatus::BadUsage)
                  .find("0x4"),
              std::string::npos);
}

TEST_F(Media, AFileThatIsCutOffIsReported) {
    const struct {
        const char* name;
        const char* codec;
        int frames;
    } rows[] = {
        {"a.png", "", 1},         {"a.jpg", "", 1},      {"a.bmp", "", 1},
        {"a.tif", "", 1},         {"a.ppm", "", 1},      {"a.y4m", "", 10},
        {"a.mov", "mpeg4", 10},   {"a.mkv", "ffv1", 10}, {"a.avi", "ffv1", 10},
        {"a.mkv", "libx264", 10},
    };
    for (const auto& row : rows) {
        writeNoise(at(row.name), infoOf(AV_PIX_FMT_YUV420P), row.frames, {"", row.codec, true});
        const std::string whole = readFile(at(row.name));
        ASSERT_EQ(readAll(at(row.name)).size(), static_cast<std::size_t>(row.frames)) << row.name;
        for (const std::size_t percent : {30u, 60u, 85u, 97u}) {
            SCOPED_TRACE(testing::Message() << row.name << " " << row.codec << " " << percent);
            const std::string cut = at("cut-" + std::string(row.name));
            writeFile(cut, whole.substr(0, whole.size() * percent / 100));
            const std::string error = errorOf([&] { readAll(cut); });
            EXPECT_NE(error.find(cut), std::string::npos) << error;
        }
    }
}

TEST_F(Media, AChangeOfSizeIsReported) {
    const SinkOptions options{"mpeg2video", "", false};
    writeNoise(at("a.m2v"), infoOf(AV_PIX_FMT_YUV420P, 64, 48), 3, options);
    writeNoise(at("b.m2v"), infoOf(AV_PIX_FMT_YUV420P, 96, 64), 3, options);
    writeFile(at("ab.m2v"), readFile(at("a.m2v")) + readFile(at("b.m2v")));
    const std::string error = errorOf([&] { readAll(at("ab.m2v")); });
    EXPECT_NE(error.find("from 64x48 yuv420p to 96x64 yuv420p at frame"), std::string::npos)
        << error;
}

using MediaDeathTest = Media;

TEST_F(MediaDeathTest, AFullDiskIsNamedAndLeavesNothing) {
    const auto writeTooMuch = [&] {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{1000, 1000};
        ::setrlimit(RLIMIT_FSIZE, &limit);
        const std::string error =
            errorOf([&] { writeNoise(at("a.mkv"), infoOf(AV_PIX_FMT_YUV420P), 10); });
        std::fputs(error.c_str(), stderr);
        std::_Exit(fileCount() == 0 ? 0 : 1);
    };
    EXPECT_EXIT(writeTooMuch(), testing::ExitedWithCode(0), "cannot write '.*a.mkv': File too");
}

TEST_F(MediaDeathTest, AFullStandardOutputIsNamed) {
    const auto writeToFull = [&] {
        ::dup2(::open("/dev/full", O_WRONLY), STDOUT_FILENO);
        const std::string error = errorOf([&] { writeNoise("-", infoOf(AV_PIX_FMT_YUV420P), 3); });
        std::fputs(error.c_str(), stderr);
        std::_Exit(0);
    };
    EXPECT_EXIT(writeToFull(), testing::ExitedWithCode(0),
                "^cannot write standard output: No space left on device$");
}

} // namespace
