#include "media/convert.h"

#include "media/canvas_converter.h"
#include "media/pixel_formats.h"
#include "tool_error.h"

#include <fmt/format.h>

#include <cstdint>
#include <new>
#include <vector>

extern "C" {
#include <libavutil/imgutils.h>
}

namespace {

void requireSameSize(const AVFrame& picture, const CanvasShape& shape) {
    if (picture.width != shape.width || picture.height != shape.height)
        throw Failure(fmt::format("a picture of {}x{} does not fit the canvas of {}x{}",
                                  picture.width, picture.height, shape.width, shape.height));
}

bool hasAlpha(const AVFrame& picture) {
    return picture.format == barePixels ||
           hasFlag(static_cast<AVPixelFormat>(picture.format), AV_PIX_FMT_FLAG_ALPHA);
}

CanvasConverter& converterFor(std::unique_ptr<CanvasConverter>& kept, const CanvasShape& shape,
                              const PictureKind& picture, const Colors& canvas) {
    if (!kept || !kept->isFor(picture, canvas))
        kept = std::make_unique<CanvasConverter>(shape, picture, canvas);
    return *kept;
}

// A bare picture may be the canvas itself.
void copyLines(const std::uint8_t* from, int fromPitch, std::uint8_t* to, int toPitch,
               const CanvasShape& shape) {
    if (from != to)
        av_image_copy_plane(to, toPitch, from, fromPitch, shape.lineBytes, shape.height);
}

void makeOpaque(AVFrame& frame) {
    const auto format = static_cast<AVPixelFormat>(frame.format);
    if (!hasFlag(format, AV_PIX_FMT_FLAG_ALPHA) || hasFlag(format, AV_PIX_FMT_FLAG_PAL) ||
        hasFlag(format, AV_PIX_FMT_FLAG_FLOAT))
        return;
    const AVPixFmtDescriptor* layout = av_pix_fmt_desc_get(format);
    const int alpha = layout->nb_components - 1;
    const auto opaque = static_cast<std::uint16_t>((1U << layout->comp[alpha].depth) - 1);
    const std::vector<std::uint16_t> line(static_cast<std::size_t>(frame.width), opaque);
    for (int y = 0; y < frame.height; ++y)
        av_write_image_line2(line.data(), frame.data, frame.linesize, layout, 0, y, alpha,
                             frame.width, sizeof(line[0]));
}

} // namespace

Loader::Loader(const CanvasShape& shape, Alpha alpha) : m_shape(shape), m_alpha(alpha) {}
Loader::~Loader() = default;

void Loader::load(const AVFrame& picture, Canvas& canvas) {
    requireSameSize(picture, m_shape);
    const PictureKind kind = kindOf(picture, m_shape, {});
    canvas.colors = canvasColors(m_shape, picture, kind);
    if (picture.format == barePixels)
        return copyLines(picture.data[0], picture.linesize[0], canvas.lines().data, canvas.pitch(),
                         m_shape);
    converterFor(m_converter, m_shape, kind, canvas.colors).load(picture, canvas);
}

const AVFrame& Loader::groundOf(const AVFrame& picture) const {
    return m_converter ? m_converter->groundOf(picture) : picture;
}

Storer::Storer(const CanvasShape& shape, Alpha alpha)
    : m_shape(shape), m_alpha(alpha), m_loader(shape) {}
Storer::~Storer() = default;

void Storer::store(const Canvas& canvas, const AVFrame& source, AVFrame& target) {
    requireSameSize(target, m_shape);
    target.interlaced_frame = source.interlaced_frame;
    target.top_field_first = source.top_field_first;
    target.sample_aspect_ratio = source.sample_aspect_ratio;
    if (target.format == barePixels)
        return copyLines(canvas.lines().data, canvas.pitch(), target.data[0], target.linesize[0],
                         m_shape);
    if ((target.buf[0] ? av_frame_make_writable(&target) : av_frame_get_buffer(&target, 0)) < 0)
        throw std::bad_alloc();
    const PictureKind loaded = kindOf(source, m_shape, {});
    const PictureKind kind = kindOf(target, m_shape, loaded.colors);
    CanvasConverter& converter = converterFor(m_converter, m_shape, kind, canvas.colors);
    if (isChromaOnly(*m_shape.layout))
        converter.setGround(ground(source), target);
    converter.store(canvas, target);
    if (!hasAlpha(source))
        makeOpaque(target);
}

const AVFrame* Storer::ground(const AVFrame& source) {
    if (source.format == barePixels || !hasPixels(source))
        return nullptr;
    if (!m_reference)
        m_reference.emplace(m_shape);
    m_loader.load(source, *m_reference);
    return &m_loader.groundOf(source);
}
