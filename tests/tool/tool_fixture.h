// A folder for each test, the tool as a process, and frames of noise for media.
#pragma once

#include "common/tool_error.h"
#include "media/av_messages.h"
#include "media/reader.h"
#include "media/writer.h"
#include "support/temp_file.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <functional>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <vector>

#include <sys/wait.h>
#include <unistd.h>

extern "C" {
#include <libavutil/pixdesc.h>
}

namespace fs = std::filesystem;

using Bytes = std::vector<unsigned char>;

// A folder of its own for every test. In shell commands, which run there, $Z is the tool and $F is
// FFmpeg's.
class ToolTest : public testing::Test {
protected:
    struct Result {
        int status;
        std::string out;
        std::string err;
    };

    void SetUp() override {
        quietAv();
        std::string pattern = testing::TempDir() + "zrdraw-tool-XXXXXX";
        ASSERT_NE(::mkdtemp(pattern.data()), nullptr);
        m_root = pattern;
        m_folder = m_root / "work";
        fs::create_directory(m_folder);
        setenv("Z", ZRDRAW_TOOL, 1);
        setenv("F", "ffmpeg -v error -y", 1);
        setenv("ZRDRAW_STORE", at("settings.db").c_str(), 1);
    }
    void TearDown() override { fs::remove_all(m_root); }

    std::string at(const std::string& name) const { return m_folder / name; }

    // Everything in the folder, hidden files too.
    std::set<std::string> left() const {
        std::set<std::string> names;
        for (const auto& entry : fs::directory_iterator(m_folder))
            names.insert(entry.path().filename());
        return names;
    }

    Result shell(const std::string& commands) const {
        const std::string out = m_root / "stdout", err = m_root / "stderr";
        const std::string line =
            "cd '" + m_folder.string() + "'\n{ " + commands + "\n} >'" + out + "' 2>'" + err + "'";
        const int status = std::system(line.c_str());
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, readFile(out), readFile(err)};
    }

    // Commands that must go well without a word of complaint. Returns what they print.
    std::string run(const std::string& commands) const {
        const Result result = shell(commands);
        EXPECT_EQ(result.status, 0) << commands << "\n" << result.err;
        EXPECT_EQ(result.err, "") << commands;
        return result.out;
    }

    // One line that holds `part`, and the status.
    static void expectError(const Result& result, int status, const std::string& part) {
        EXPECT_EQ(result.status, status) << result.err;
        EXPECT_EQ(result.err.rfind("zrdraw: ", 0), 0U) << result.err;
        EXPECT_EQ(result.err.find('\n'), result.err.size() - 1) << result.err;
        EXPECT_NE(result.err.find(part), std::string::npos) << result.err;
    }

    struct Refused {
        std::string commands;
        int status;
        std::string part; // of the message
    };
    // Each ends so, and leaves nothing that was not there.
    void expectRefused(const std::vector<Refused>& cases) const {
        const std::set<std::string> before = left();
        for (const auto& [commands, status, part] : cases) {
            SCOPED_TRACE(commands);
            expectError(shell(commands), status, part);
            EXPECT_EQ(left(), before);
        }
    }

    fs::path m_root;
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

// Each plane full of its samples, in turns: the three of a packed format, or one of a planar one.
inline FramePtr flatFrame(AVPixelFormat format, const std::vector<std::vector<unsigned>>& planes,
                          std::size_t sampleBytes, int height = 48) {
    FramePtr frame = newFrame(format, 64, height);
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

inline void fillNoise(Canvas& canvas, unsigned seed) {
    std::mt19937 random(seed);
    std::generate_n(canvas.data(), canvas.pitch() * canvas.height(),
                    [&] { return static_cast<char>(random()); });
}

inline std::string bytesOf(Canvas& canvas) {
    return {canvas.data(), static_cast<std::size_t>(canvas.pitch() * canvas.height())};
}

template <typename AnyCanvas>
Bytes pixelsOf(AnyCanvas& canvas, int bytesPerPixel) {
    Bytes pixels;
    for (int y = 0; y < canvas.height(); ++y) {
        const char* line = canvas.data() + y * canvas.pitch();
        pixels.insert(pixels.end(), line, line + canvas.width() * bytesPerPixel);
    }
    return pixels;
}

// Of frames that come from nowhere.
inline void writeFrame(Writer& writer, Canvas canvas, const StreamInfo& info, std::int64_t number) {
    auto frame = std::make_unique<Frame>(std::move(canvas));
    frame->picture = newFrame();
    frame->picture->format = info.pixelFormat;
    frame->number = frame->clock = frame->time = number;
    frame->duration = 1;
    Item item(std::move(frame));
    writer.write(item);
}

// Writes frames of noise, the seeds of which are the frames' numbers.
inline void writeNoise(const std::string& path, StreamInfo info, int frames,
                       WriteOptions options = {}, const zrLayout& layout = bgra) {
    options.path = path;
    info.timeBase = av_inv_q(info.frameRate);
    const CanvasShape shape(layout, info.width, info.height);
    Writer writer(options, shape, info);
    for (int i = 0; i < frames; ++i) {
        Canvas canvas(shape);
        fillNoise(canvas, static_cast<unsigned>(i));
        writeFrame(writer, std::move(canvas), info, i);
    }
    writer.finish();
}

// How to write: with an encoder, a format.
inline WriteOptions writeAs(const std::string& codec, const std::string& format = "") {
    WriteOptions options;
    options.encoder.codec = codec;
    options.format = format;
    return options;
}

inline std::vector<std::unique_ptr<Frame>> framesOf(Reader& reader) {
    std::vector<std::unique_ptr<Frame>> frames;
    while (std::optional<Item> item = reader.next())
        if (auto* frame = std::get_if<std::unique_ptr<Frame>>(&*item))
            frames.push_back(std::move(*frame));
    return frames;
}

inline std::vector<Bytes> readAll(const std::string& path,
                                  const std::optional<RawFormat>& raw = std::nullopt) {
    Reader reader(path, {always(bgra), raw});
    std::vector<Bytes> frames;
    for (const auto& frame : framesOf(reader))
        frames.push_back(pixelsOf(frame->canvas, 4));
    return frames;
}

inline std::vector<Bytes> v210Packets(const std::string& path) {
    Reader reader(path, {always(layoutOf(ptV210))});
    std::vector<Bytes> packets;
    for (const auto& frame : framesOf(reader)) {
        EXPECT_EQ(frame->picture->format, barePixels);
        const std::string bytes = bytesOf(frame->canvas);
        packets.emplace_back(bytes.begin(), bytes.end());
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
    Canvas canvas(bgra, info.width, info.height);
    fillNoise(canvas, seed);
    Bytes pixels = pixelsOf(canvas, 4);
    for (std::size_t i = 3; i < pixels.size() && !alpha; i += 4)
        pixels[i] = 255;
    return pixels;
}
