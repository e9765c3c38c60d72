#include "picture/convert.h"

#include "common/tool_error.h"
#include "picture/canvas_converter.h"
#include "picture/drawn_pixels.h"
#include "picture/pixel_formats.h"
#include "picture/samples.h"

#include <fmt/format.h>

#include <cstdint>
#include <new>

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

// `line` has room for a line of alpha.
void makeOpaque(AVFrame& picture, std::vector<std::uint16_t>& line) {
    const auto format = static_cast<AVPixelFormat>(picture.format);
    const AVPixFmtDescriptor& description = *av_pix_fmt_desc_get(format);
    if (!hasFlag(format, AV_PIX_FMT_FLAG_ALPHA) || hasFlag(format, AV_PIX_FMT_FLAG_PAL) ||
        hasFlag(format, AV_PIX_FMT_FLAG_FLOAT))
        return;
    const int index = description.nb_components - 1;
    const AVComponentDescriptor& alpha = description.comp[index];
    line.assign(static_cast<std::size_t>(picture.width),
                static_cast<std::uint16_t>((1U << alpha.depth) - 1));
    for (int y = 0; y < picture.height; ++y)
        if (hasOwnBytes(format))
            writeSamples(line.data(), picture, alpha, hasFlag(format, AV_PIX_FMT_FLAG_BE), y,
                         picture.width);
        else
            av_write_image_line2(line.data(), picture.data, picture.linesize, &description, 0, y,
                                 index, picture.width, sizeof line[0]);
}

// Whether the alpha of a canvas of such a picture tells where it was drawn on.
bool tellsByAlpha(const CanvasShape& shape, const AVFrame& picture) {
    return picture.format != barePixels && hasAlpha(picture) && hasAlpha(*shape.layout);
}

} // namespace

Loader::Loader(const CanvasShape& shape, Alpha alpha, std::optional<Colors> colors)
    : m_shape(shape), m_alpha(alpha), m_colors(isYCbCr(*shape.layout) ? colors : std::nullopt) {}
Loader::~Loader() = default;

void Loader::load(const AVFrame& picture, Canvas& canvas) {
    requireSameSize(picture, m_shape);
    const PictureKind kind = kindOf(picture, m_shape);
    canvas.colors = m_colors ? *m_colors : canvasColors(m_shape, picture, kind);
    if (picture.format == barePixels)
        return copyLines(picture.data[0], picture.linesize[0], canvas.lines().data, canvas.pitch(),
                         m_shape);
    converterFor(m_converter, m_shape, kind, canvas.colors).load(picture, canvas);
    if (m_alpha == Alpha::Opaque && tellsByAlpha(m_shape, picture))
        for (int y = 0; y < m_shape.height; ++y)
            markUntouched(*m_shape.layout, canvas.lines().line(y), m_shape.width);
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
    const bool byAlpha =
        m_alpha == Alpha::Opaque && hasPixels(source) && tellsByAlpha(m_shape, source);
    if (byAlpha)
        drawn().findByAlpha(reference(source).lines(), canvas.lines());
    const Canvas& result = byAlpha ? *m_reference : canvas;
    if (target.format == barePixels)
        return copyLines(result.lines().data, result.pitch(), target.data[0], target.linesize[0],
                         m_shape);
    if ((target.buf[0] ? av_frame_make_writable(&target) : av_frame_get_buffer(&target, 0)) < 0)
        throw std::bad_alloc();
    const PictureKind loaded = kindOf(source, m_shape);
    PictureKind kind = kindOf(target, m_shape, loaded.colors);
    if (kind.chromaPlace == AVCHROMA_LOC_UNSPECIFIED)
        kind.chromaPlace = loaded.chromaPlace;
    CanvasConverter& converter = converterFor(m_converter, m_shape, kind, canvas.colors);
    const bool chromaOnly = isChromaOnly(*m_shape.layout);
    const bool whole = source.format != barePixels && hasPixels(source);
    const bool comparable = whole && kind.format == loaded.format && areAlike(kind, loaded);
    const bool compared = comparable && (chromaOnly || !converter.isExact());
    if (compared && !byAlpha)
        drawn().find(reference(source).lines(), canvas.lines());
    if (chromaOnly)
        converter.setGround(whole ? &groundOf(source) : nullptr, target);
    converter.store(result, target);
    if (!hasAlpha(source) || !hasAlpha(*m_shape.layout))
        makeOpaque(target, m_alphaLine);
    if (compared)
        drawn().keepOthers(source, target, kind);
}

Canvas& Storer::reference(const AVFrame& source) {
    if (!m_reference)
        m_reference.emplace(m_shape);
    m_loader.load(source, *m_reference);
    return *m_reference;
}

const AVFrame& Storer::groundOf(const AVFrame& source) {
    reference(source);
    return m_loader.groundOf(source);
}

DrawnPixels& Storer::drawn() {
    if (!m_drawn)
        m_drawn = std::make_unique<DrawnPixels>(m_shape);
    return *m_drawn;
}
