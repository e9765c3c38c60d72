#include "picture/canvas_converter.h"

#include "picture/drawn_pixels.h"
#include "picture/matrix_packer.h"
#include "picture/pixel_formats.h"
#include "picture/zimg_converter.h"

#include <cstring>

namespace {

void makeGrey(AVFrame& picture) {
    for (const AVBufferRef* plane : picture.buf)
        if (plane)
            std::memset(plane->data, 0x80, plane->size);
}

// The format of the picture in the middle: planes, where the other one has planes too.
AVPixelFormat middleFormat(const zrLayout& layout, AVPixelFormat other) {
    if (!isPlanar(other))
        return pixelFormatOf(layout);
    const bool alpha = hasFlag(other, AV_PIX_FMT_FLAG_ALPHA) && hasAlpha(layout);
    if (layout.bytes.r >= 0)
        return alpha ? AV_PIX_FMT_GBRAP : AV_PIX_FMT_GBRP;
    if (layout.code == ptRGB48 || layout.code == ptARGB64)
        return alpha ? AV_PIX_FMT_GBRAP16LE : AV_PIX_FMT_GBRP16LE;
    return layout.isPairs() ? AV_PIX_FMT_YUV422P : pixelFormatOf(layout);
}

} // namespace

CanvasConverter::CanvasConverter(const CanvasShape& shape, const PictureKind& picture,
                                 const Colors& canvas)
    : m_shape(shape), m_kind(picture), m_middleKind{middleFormat(*shape.layout, picture.format),
                                                    canvas, picture.chromaPlace, false} {
    const zrLayout& layout = *shape.layout;
    if (areAlike(m_kind, m_middleKind)) {
        m_packer = makePacker(layout, m_kind.format, shape.width, shape.height);
        m_straight = m_packer || isMemoryOf(layout, m_kind.format);
        m_exact = m_packer ? m_packer->isExact() : m_straight;
    } else {
        m_packer = makeMatrixPacker(layout, m_kind, shape.width, shape.height);
        m_straight = m_packer != nullptr;
    }
    if (m_straight)
        return;
    m_packer = makePacker(layout, m_middleKind.format, shape.width, shape.height);
    if (m_packer) {
        m_middle = newFrame(m_middleKind.format, shape.width, shape.height);
    } else {
        m_middle = newFrame();
        m_middle->format = m_middleKind.format;
        m_middle->width = shape.width;
        m_middle->height = shape.height;
    }
}

AVFrame& CanvasConverter::middleFor(const Canvas& canvas) {
    if (!m_packer) {
        m_middle->data[0] = canvas.lines().data;
        m_middle->linesize[0] = canvas.pitch();
    }
    return *m_middle;
}

PictureConverter& CanvasConverter::in() {
    if (!m_in)
        m_in = makeConverter(m_kind, m_middleKind, m_shape.width, m_shape.height);
    return *m_in;
}

void CanvasConverter::load(const AVFrame& picture, Canvas& canvas) {
    if (m_straight && m_packer)
        return m_packer->pack(picture, canvas.lines());
    if (m_straight)
        return copyLines(picture.data[0], picture.linesize[0], canvas.lines().data, canvas.pitch(),
                         m_shape);
    AVFrame& middle = middleFor(canvas);
    in().convert(picture, middle);
    if (m_packer)
        m_packer->pack(middle, canvas.lines());
}

void CanvasConverter::store(const Canvas& canvas, AVFrame& picture) {
    if (m_straight && m_packer)
        return m_packer->unpack(canvas.lines(), picture);
    if (m_straight)
        return copyLines(canvas.lines().data, canvas.pitch(), picture.data[0], picture.linesize[0],
                         m_shape);
    AVFrame& middle = middleFor(canvas);
    if (m_packer)
        m_packer->unpack(canvas.lines(), middle);
    if (!m_out)
        m_out = makeConverter(m_middleKind, m_kind, m_shape.width, m_shape.height);
    m_out->convert(middle, picture);
}

void CanvasConverter::setGround(const AVFrame* ground, AVFrame& picture) {
    AVFrame& whole = m_straight ? picture : *m_middle;
    if (ground)
        copyPicture(*ground, whole);
    else
        makeGrey(whole);
}
