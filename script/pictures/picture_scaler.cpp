#include "script/pictures/picture_scaler.h"

#include "common/tool_error.h"

#include <fmt/format.h>

#include <cstdlib>
#include <memory>
#include <new>

#include <zimg.h>

namespace {

constexpr std::size_t alignment = 64;

struct Free {
    void operator()(void* memory) const { std::free(memory); }
};
struct GraphFree {
    void operator()(zimg_filter_graph* graph) const { zimg_filter_graph_free(graph); }
};

std::size_t rounded(std::size_t bytes) {
    return (bytes / alignment + 1) * alignment;
}

std::unique_ptr<unsigned char, Free> alignedBytes(std::size_t bytes) {
    std::unique_ptr<unsigned char, Free> memory(
        static_cast<unsigned char*>(std::aligned_alloc(alignment, rounded(bytes))));
    if (!memory)
        throw std::bad_alloc();
    return memory;
}

// The four words of a pixel in zimg's order of planes, as offsets in a pixel.
constexpr int planes = pictureWords;
constexpr std::size_t offsets[planes] = {1, 2, 3, 0};

class Planes {
public:
    Planes(int width, int height)
        : m_width(static_cast<std::size_t>(width)), m_height(static_cast<std::size_t>(height)),
          m_stride(rounded(m_width * sizeof(std::uint16_t))),
          m_bytes(alignedBytes(m_stride * m_height * planes)) {}

    void read(const std::uint16_t* words) {
        forWords([&](std::uint16_t& sample, std::size_t at) { sample = words[at]; });
    }
    void write(std::uint16_t* words) {
        forWords([&](std::uint16_t& sample, std::size_t at) { words[at] = sample; });
    }

    template <class Buffer>
    Buffer buffer() const {
        Buffer buffer{};
        buffer.version = ZIMG_API_VERSION;
        for (std::size_t i = 0; i < planes; ++i)
            buffer.plane[i] = {m_bytes.get() + i * m_stride * m_height,
                               static_cast<std::ptrdiff_t>(m_stride), ZIMG_BUFFER_MAX};
        return buffer;
    }

private:
    // Calls with each sample and where its word is in a picture.
    template <class Work>
    void forWords(Work work) {
        for (std::size_t plane = 0; plane < planes; ++plane)
            for (std::size_t y = 0; y < m_height; ++y) {
                auto* line = reinterpret_cast<std::uint16_t*>(m_bytes.get() +
                                                              (plane * m_height + y) * m_stride);
                for (std::size_t x = 0; x < m_width; ++x)
                    work(line[x], (y * m_width + x) * planes + offsets[plane]);
            }
    }

    std::size_t m_width, m_height, m_stride;
    std::unique_ptr<unsigned char, Free> m_bytes;
};

zimg_image_format formatOf(int width, int height) {
    zimg_image_format format;
    zimg_image_format_default(&format, ZIMG_API_VERSION);
    format.width = static_cast<unsigned>(width);
    format.height = static_cast<unsigned>(height);
    format.pixel_type = ZIMG_PIXEL_WORD;
    format.depth = 16;
    format.color_family = ZIMG_COLOR_RGB;
    format.matrix_coefficients = ZIMG_MATRIX_RGB;
    format.pixel_range = ZIMG_RANGE_FULL;
    format.alpha = ZIMG_ALPHA_STRAIGHT;
    return format;
}

} // namespace

ScriptPicture scaled(const ScriptPicture& picture, int width, int height) {
    const auto failed = [&] {
        char reason[256] = "";
        zimg_get_last_error(reason, sizeof reason);
        return Failure(fmt::format("a picture of {}x{} cannot be scaled to {}x{}: {}",
                                   picture.width, picture.height, width, height, reason));
    };
    const zimg_image_format in = formatOf(picture.width, picture.height);
    const zimg_image_format out = formatOf(width, height);
    const std::unique_ptr<zimg_filter_graph, GraphFree> graph(
        zimg_filter_graph_build(&in, &out, nullptr));
    std::size_t room = 0;
    if (!graph || zimg_filter_graph_get_tmp_size(graph.get(), &room) != 0)
        throw failed();
    Planes source(picture.width, picture.height), target(width, height);
    source.read(picture.words.data());
    const auto from = source.buffer<zimg_image_buffer_const>();
    const auto to = target.buffer<zimg_image_buffer>();
    const auto working = alignedBytes(room);
    if (zimg_filter_graph_process(graph.get(), &from, &to, working.get(), nullptr, nullptr, nullptr,
                                  nullptr) != 0)
        throw failed();
    ScriptPicture result{width, height, {}};
    result.words.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) *
                        planes);
    target.write(result.words.data());
    return result;
}
