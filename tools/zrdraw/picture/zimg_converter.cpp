#include "picture/zimg_converter.h"

#include "common/tool_error.h"
#include "picture/pixel_formats.h"
#include "picture/samples.h"

#include <algorithm>
#include <cstdint>

#include <zimg.h>

namespace {

constexpr std::size_t alignment = 32;
constexpr int alpha = 3;

zimg_matrix_coefficients_e matrixOf(const PictureKind& kind) {
    // Both are numbered as in the standards.
    return hasFlag(kind.format, AV_PIX_FMT_FLAG_RGB)
               ? ZIMG_MATRIX_RGB
               : static_cast<zimg_matrix_coefficients_e>(kind.colors.space);
}

zimg_image_format formatOf(const PictureKind& kind, int width, int height, int field, bool fields) {
    const AVPixFmtDescriptor& description = *av_pix_fmt_desc_get(kind.format);
    const bool rgb = (description.flags & AV_PIX_FMT_FLAG_RGB) != 0;
    zimg_image_format format;
    zimg_image_format_default(&format, ZIMG_API_VERSION);
    format.width = static_cast<unsigned>(width);
    format.height = static_cast<unsigned>(height);
    format.depth = static_cast<unsigned>(description.comp[0].depth);
    format.pixel_type = format.depth > 8 ? ZIMG_PIXEL_WORD : ZIMG_PIXEL_BYTE;
    format.subsample_w = description.log2_chroma_w;
    format.subsample_h = description.log2_chroma_h;
    format.color_family = rgb ? ZIMG_COLOR_RGB : ZIMG_COLOR_YUV;
    format.matrix_coefficients = matrixOf(kind);
    format.pixel_range =
        rgb || kind.colors.range == AVCOL_RANGE_JPEG ? ZIMG_RANGE_FULL : ZIMG_RANGE_LIMITED;
    if (fields)
        format.field_parity = field == 0 ? ZIMG_FIELD_TOP : ZIMG_FIELD_BOTTOM;
    if (kind.chromaPlace != AVCHROMA_LOC_UNSPECIFIED)
        format.chroma_location =
            static_cast<zimg_chroma_location_e>(kind.chromaPlace - AVCHROMA_LOC_LEFT);
    return format;
}

bool fits(const zimg_image_format& format) {
    return format.width % (1U << format.subsample_w) == 0 &&
           format.height % (1U << format.subsample_h) == 0;
}

bool isAligned(const AVFrame& picture) {
    for (int i = 0; i < 4 && picture.data[i]; ++i)
        if (reinterpret_cast<std::uintptr_t>(picture.data[i]) % alignment != 0 ||
            picture.linesize[i] % int{alignment} != 0)
            return false;
    return true;
}

template <class Buffer>
Buffer bufferOf(const Planes& planes, AVPixelFormat format) {
    const AVPixFmtDescriptor& description = *av_pix_fmt_desc_get(format);
    Buffer buffer{};
    buffer.version = ZIMG_API_VERSION;
    for (int i = 0; i < 3; ++i) {
        const int plane = description.comp[i].plane;
        buffer.plane[i] = {planes.data[plane], planes.pitch[plane], ZIMG_BUFFER_MAX};
    }
    return buffer;
}

} // namespace

bool isPlanar(AVPixelFormat format) {
    const AVPixFmtDescriptor* description = av_pix_fmt_desc_get(format);
    return description && description->nb_components >= 3 && hasOwnBytes(format) &&
           (description->flags & AV_PIX_FMT_FLAG_BE) == 0 &&
           std::all_of(description->comp, description->comp + 3,
                       [&](const AVComponentDescriptor& component) {
                           return component.shift == 0 && component.offset == 0 &&
                                  component.step == (description->comp[0].depth > 8 ? 2 : 1);
                       });
}

void ZimgConverter::GraphFree::operator()(zimg_filter_graph* graph) const {
    zimg_filter_graph_free(graph);
}

std::unique_ptr<ZimgConverter> ZimgConverter::make(const PictureKind& from, const PictureKind& to,
                                                   int width, int height) {
    if (!isPlanar(from.format) || !isPlanar(to.format))
        return nullptr;
    std::unique_ptr<ZimgConverter> converter(new ZimgConverter(from, to, width));
    const bool fields = converter->m_fields;
    zimg_graph_builder_params parameters;
    zimg_graph_builder_params_default(&parameters, ZIMG_API_VERSION);
    parameters.resample_filter = ZIMG_RESIZE_BILINEAR;
    parameters.resample_filter_uv = ZIMG_RESIZE_BILINEAR;
    for (int field = 0; field < (fields ? 2 : 1); ++field) {
        const int lines = fields ? (height + 1 - field) / 2 : height;
        const zimg_image_format in = formatOf(from, width, lines, field, fields);
        const zimg_image_format out = formatOf(to, width, lines, field, fields);
        GraphPtr graph(fits(in) && fits(out) ? zimg_filter_graph_build(&in, &out, &parameters)
                                             : nullptr);
        if (!graph)
            return nullptr;
        converter->addGraph(std::move(graph), field);
    }
    return converter;
}

ZimgConverter::ZimgConverter(const PictureKind& from, const PictureKind& to, int width)
    : m_from(from), m_to(to), m_width(width), m_fields(from.fields || to.fields) {}

ZimgConverter::~ZimgConverter() = default;

void ZimgConverter::addGraph(GraphPtr graph, int field) {
    std::size_t bytes = 0;
    zimg_filter_graph_get_tmp_size(graph.get(), &bytes);
    m_room[field].reset(
        std::aligned_alloc(alignment, (bytes + 2 * alignment) / alignment * alignment));
    if (!m_room[field])
        throw std::bad_alloc();
    m_graphs[field] = std::move(graph);
}

void ZimgConverter::convert(const AVFrame& from, AVFrame& to) {
    const bool inPlace = isAligned(to);
    if (!inPlace && !m_alignedTo)
        m_alignedTo = newFrame(m_to.format, to.width, to.height);
    AVFrame& result = inPlace ? to : *m_alignedTo;
    byFields(m_fields, aligned(from), result, [&](const Planes& in, const Planes& out, int field) {
        const auto source = bufferOf<zimg_image_buffer_const>(in, m_from.format);
        const auto target = bufferOf<zimg_image_buffer>(out, m_to.format);
        if (zimg_filter_graph_process(m_graphs[field].get(), &source, &target, m_room[field].get(),
                                      nullptr, nullptr, nullptr, nullptr) != 0)
            throw Failure("pictures cannot be converted");
    });
    convertAlpha(from, result);
    if (!inPlace)
        copyPicture(result, to);
}

const AVFrame& ZimgConverter::aligned(const AVFrame& picture) {
    if (isAligned(picture))
        return picture;
    if (!m_alignedFrom)
        m_alignedFrom = newFrame(m_from.format, picture.width, picture.height);
    copyPicture(picture, *m_alignedFrom);
    return *m_alignedFrom;
}

// Apart from the colours, so that it comes back as it was.
void ZimgConverter::convertAlpha(const AVFrame& from, AVFrame& to) {
    if (!hasFlag(m_to.format, AV_PIX_FMT_FLAG_ALPHA))
        return;
    const AVComponentDescriptor& target = av_pix_fmt_desc_get(m_to.format)->comp[alpha];
    m_line.assign(static_cast<std::size_t>(m_width),
                  static_cast<std::uint16_t>((1U << target.depth) - 1));
    for (int y = 0; y < to.height; ++y) {
        if (hasFlag(m_from.format, AV_PIX_FMT_FLAG_ALPHA)) {
            const AVComponentDescriptor& source = av_pix_fmt_desc_get(m_from.format)->comp[alpha];
            readSamples(from, source, false, y, m_line.data(), m_width);
            changeDepth(m_line.data(), source.depth, m_line.data(), target.depth, m_width);
        }
        writeSamples(m_line.data(), to, target, false, y, m_width);
    }
}
