#include "picture/canvas.h"

#include "common/tool_error.h"

#include <fmt/format.h>

#include <cstdint>
#include <new>

extern "C" {
#include <libavutil/imgutils.h>
}

namespace {

constexpr std::size_t alignment = 64;

template <typename Number>
Number roundedUp(Number bytes, Number unit) {
    return (bytes + unit - 1) / unit * unit;
}

} // namespace

CanvasShape::CanvasShape(const zrLayout& canvasLayout, int canvasWidth, int canvasHeight)
    : layout(&canvasLayout), width(canvasWidth), height(canvasHeight),
      lineBytes(wholeLineBytes(canvasLayout, canvasWidth)),
      pitch(wordPitch(canvasLayout, canvasWidth)) {
    if (width <= 0 || height <= 0 ||
        av_image_check_size2(static_cast<unsigned>(width), static_cast<unsigned>(height), INT64_MAX,
                             pixelFormatOf(canvasLayout), 0, nullptr) < 0)
        throw Failure(fmt::format("pictures of {}x{} cannot be drawn on", width, height));
    requireFit(canvasLayout, width, height);
    // The scaler writes behind the last pixel as well, up to a vector.
    bytes = roundedUp(zrFrameRoom(canvasLayout, width, height, pitch) + alignment, alignment);
}

void copyLines(const std::uint8_t* from, int fromPitch, std::uint8_t* to, int toPitch,
               const CanvasShape& shape) {
    if (from != to)
        av_image_copy_plane(to, toPitch, from, fromPitch, shape.lineBytes, shape.height);
}

Canvas::Canvas(const CanvasShape& shape) : Canvas(CanvasPool(shape).take()) {}

Canvas Canvas::share() const {
    BufferPtr memory(av_buffer_ref(m_memory.get()));
    if (!memory)
        throw std::bad_alloc();
    Canvas canvas(m_shape, std::move(memory));
    canvas.colors = colors;
    return canvas;
}

std::optional<cmYCbCr> Canvas::matrixMode() const {
    if (!isYCbCr(layout()))
        return std::nullopt;
    const bool full = colors.range == AVCOL_RANGE_JPEG;
    switch (colors.space) {
    case AVCOL_SPC_BT709:
        return full ? cmRec709Full : cmRec709;
    case AVCOL_SPC_BT470BG:
    case AVCOL_SPC_SMPTE170M:
        return full ? cmRec601Full : cmRec601;
    case AVCOL_SPC_BT2020_NCL:
        return full ? cmRec2020Full : cmRec2020;
    default:
        return std::nullopt;
    }
}

// Cleared, so that the bytes that fill lines up do not tell of other work when they are written.
CanvasPool::CanvasPool(const CanvasShape& shape)
    : m_shape(shape), m_pool(av_buffer_pool_init(shape.bytes, av_buffer_allocz)) {
    if (!m_pool)
        throw std::bad_alloc();
}

Canvas CanvasPool::take() const {
    BufferPtr memory(av_buffer_pool_get(m_pool.get()));
    if (!memory)
        throw std::bad_alloc();
    return {m_shape, std::move(memory)};
}
