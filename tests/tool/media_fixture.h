// A folder for media that tests make, and frames of noise to put into them.
#pragma once

#include "media/frame_sink.h"
#include "media/frame_source.h"
#include "media/working_frame.h"
#include "tool_error.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include <unistd.h>

extern "C" {
#include <libavutil/pixdesc.h>
}

namespace fs = std::filesystem;

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

inline const zrLayout& layoutOf(unsigned code) {
    return *zrFindLayout(code);
}

inline const zrLayout& bgra = *zrFindLayout(ptBGRA32);

inline StreamInfo infoOf(AVPixelFormat format, int width = 64, int height = 48) {
    StreamInfo info;
    info.pixelFormat = format;
    info.width = width;
    info.height = height;
    return info;
}

inline FramePtr makeFrame(AVPixelFormat format, int width, int height) {
    FramePtr frame(av_frame_alloc());
    frame->format = format;
    frame->width = width;
    frame->height = height;
    if (av_frame_get_buffer(frame.get(), 0) < 0)
        throw std::bad_alloc();
    return frame;
}

// Each plane full of its samples, in turns: the three of a packed format, or one of a planar one.
inline FramePtr flatFrame(AVPixelFormat format, const std::vector<std::vector<unsigned>>& planes,
                          std::size_t sampleBytes, int height = 48) {
    FramePtr frame = makeFrame(format, 64, height);
    const int chromaShift = av_pix_fmt_desc_get(format)->log2_chroma_h;
    for (std::size_t i = 0; i < planes.size(); ++i) {
        const int lines = i == 0 ? height : height >> chromaShift;
        const std::size_t bytes = static_cast<std::size_t>(frame->linesize[i] * lines);
        for (std::size_t k = 0; k < bytes / sampleBytes; ++k)
            std::memcpy(frame->data[i] + k * sampleBytes, &planes[i][k % planes[i].size()],
                        sampleBytes);
    }
    return frame;
}

inline std::string readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

inline void writeFile(const std::string& path, const std::string& content) {
    std::ofstream(path, std::ios::binary) << content;
}

inline void fillNoise(WorkingFrame& canvas, unsigned seed) {
    std::mt19937 random(seed);
    std::generate_n(canvas.data(), canvas.pitch() * canvas.height(),
                    [&] { return static_cast<char>(random()); });
}

inline Bytes pixelsOf(WorkingFrame& canvas, int bytesPerPixel) {
    Bytes pixels;
    for (int y = 0; y < canvas.height(); ++y) {
        const char* line = canvas.data() + y * canvas.pitch();
        pixels.insert(pixels.end(), line, line + canvas.width() * bytesPerPixel);
    }
    return pixels;
}

// Writes frames of noise, the seeds of which are the frames' numbers.
inline void writeNoise(const std::string& path, const StreamInfo& info, int frames,
                       const SinkOptions& options = {}, const zrLayout& layout = bgra) {
    FrameSink sink(path, options, info, layout);
    WorkingFrame canvas(layout, info.width, info.height);
    for (int i = 0; i < frames; ++i) {
        fillNoise(canvas, static_cast<unsigned>(i));
        const FramePtr frame = sink.makeFrame();
        canvas.store(*frame);
        frame->pts = i;
        sink.write(*frame);
    }
    sink.finish();
}

inline std::vector<Bytes> readAll(const std::string& path,
                                  const std::optional<RawFormat>& raw = std::nullopt) {
    FrameSource source(path, bgra, raw);
    WorkingFrame canvas(bgra, source.info().width, source.info().height);
    const FramePtr frame(av_frame_alloc());
    std::vector<Bytes> frames;
    while (source.read(*frame)) {
        canvas.load(*frame);
        frames.push_back(pixelsOf(canvas, 4));
    }
    return frames;
}

inline std::vector<Bytes> v210Packets(const std::string& path) {
    FrameSource source(path, layoutOf(ptV210));
    const FramePtr frame(av_frame_alloc());
    std::vector<Bytes> packets;
    while (source.read(*frame)) {
        EXPECT_EQ(frame->format, barePixels);
        packets.emplace_back(frame->data[0], frame->data[0] + frame->linesize[0] * frame->height);
    }
    return packets;
}

// The message of the error with the wanted status, or what happened in its place.
inline std::string errorOf(const std::function<void()>& action,
                           ExitStatus wanted = ExitStatus::Failed) {
    try {
        action();
    } catch (const ToolError& error) {
        return error.status == wanted ? error.what() : std::string("other status: ") + error.what();
    }
    return "no error";
}

inline Bytes noiseAsBgra(unsigned seed, const StreamInfo& info, bool alpha) {
    WorkingFrame canvas(bgra, info.width, info.height);
    fillNoise(canvas, seed);
    Bytes pixels = pixelsOf(canvas, 4);
    for (std::size_t i = 3; i < pixels.size() && !alpha; i += 4)
        pixels[i] = 255;
    return pixels;
}
