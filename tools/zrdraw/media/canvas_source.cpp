#include "media/canvas_source.h"

#include "picture/picture_kind.h"
#include "picture/pixel_formats.h"

#include <utility>

CanvasSource::CanvasSource(const CanvasShape& shape, Alpha alpha,
                           const std::optional<Colors>& colors)
    : m_shape(shape), m_colors(colors), m_pool(shape), m_loader(shape, alpha, colors),
      m_scaler(shape.width, shape.height) {}

Canvas CanvasSource::canvasOf(AVFrame& picture) {
    if (servesAsCanvas(picture)) {
        BufferPtr memory(std::exchange(picture.buf[0], nullptr));
        memory->data = picture.data[0];
        Canvas canvas(m_shape, std::move(memory));
        m_loader.load(picture, canvas);
        picture.data[0] = nullptr;
        return canvas;
    }
    Canvas canvas = m_pool.take();
    m_loader.load(m_scaler.scaled(picture), canvas);
    return canvas;
}

// Nobody else may look at the memory, and it must have the room that drawing may touch. Of a
// picture with alpha the writer wants to see what it was.
bool CanvasSource::servesAsCanvas(const AVFrame& picture) const {
    const AVBufferRef* buffer = picture.buf[0];
    const auto format = static_cast<AVPixelFormat>(picture.format);
    const bool ownBytes = picture.format == barePixels || (isMemoryOf(*m_shape.layout, format) &&
                                                           !hasFlag(format, AV_PIX_FMT_FLAG_ALPHA));
    if (!ownBytes || picture.width != m_shape.width || picture.height != m_shape.height ||
        !buffer || picture.buf[1] || picture.linesize[0] != m_shape.pitch ||
        !av_buffer_is_writable(buffer))
        return false;
    const auto room = static_cast<std::size_t>(buffer->data + buffer->size - picture.data[0]);
    return room >= zrFrameRoom(*m_shape.layout, m_shape.width, m_shape.height, m_shape.pitch) &&
           countsAlike(picture);
}

bool CanvasSource::countsAlike(const AVFrame& picture) const {
    return !m_colors || areAlike(kindOf(picture, m_shape).colors, *m_colors);
}
