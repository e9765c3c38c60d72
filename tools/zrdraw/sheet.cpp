#include "sheet.h"

#include "media/writer.h"
#include "picture/convert.h"

#include <algorithm>

Sheet::Sheet(const zrLayout& layout, int width, int height)
    : m_frame(layout, width, height), m_draw(makeDraw(m_frame)) {
    m_draw->SetColorRGBA(0.03, 0.04, 0.06, 1.0, true);
    m_ground = m_draw->foreColor;
    m_draw->EraseCanvas(false);
    m_draw->SetColorRGBA(0.85, 0.87, 0.9, 1.0, true);
}

void Sheet::paste(const Canvas& picture, const AVFrame* source, int x, int y) {
    constexpr int pixelBytes = 4;
    const FramePtr shown = newFrame(AV_PIX_FMT_BGRA, picture.width(), picture.height());
    const FramePtr none = newFrame();
    none->format = shown->format;
    Storer(picture.shape()).store(picture, source ? *source : *none, *shown);
    for (int row = 0; row < picture.height(); ++row)
        std::copy_n(shown->data[0] + row * shown->linesize[0], picture.width() * pixelBytes,
                    m_frame.data() + (y + row) * m_frame.pitch() + x * pixelBytes);
}

// Without alpha, as anti-aliased lines leave their coverage in it.
void Sheet::write(const WriteOptions& options) {
    StreamInfo info;
    info.width = m_frame.width();
    info.height = m_frame.height();
    info.pixelFormat = AV_PIX_FMT_RGB24;
    Writer writer(options, m_frame.shape(), info);
    auto frame = std::make_unique<Frame>(m_frame.share());
    frame->picture = newFrame();
    frame->picture->format = AV_PIX_FMT_RGB24;
    Item item(std::move(frame));
    writer.write(item);
    writer.finish();
}
