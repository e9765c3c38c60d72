#include "gallery/sheet.h"

#include "media/frame_sink.h"

#include <algorithm>

Sheet::Sheet(const zrLayout& layout, int width, int height)
    : m_frame(layout, width, height), m_draw(makeDraw(m_frame)) {
    m_draw->SetColorRGBA(0.03, 0.04, 0.06, 1.0, true);
    m_draw->EraseCanvas(false);
    m_draw->SetColorRGBA(0.85, 0.87, 0.9, 1.0, true);
}

void Sheet::paste(WorkingFrame& picture, int x, int y) {
    constexpr int pixelBytes = 4;
    const FramePtr shown = newFrame(AV_PIX_FMT_BGRA, picture.width(), picture.height());
    picture.store(*shown);
    for (int row = 0; row < picture.height(); ++row)
        std::copy_n(shown->data[0] + row * shown->linesize[0], picture.width() * pixelBytes,
                    m_frame.data() + (y + row) * m_frame.pitch() + x * pixelBytes);
}

// Without alpha, as anti-aliased lines leave their coverage in it.
void Sheet::writePng(const std::string& path, bool force) {
    StreamInfo info;
    info.width = m_frame.width();
    info.height = m_frame.height();
    info.pixelFormat = AV_PIX_FMT_RGB24;
    FrameSink sink(path, {"", "", force}, info, m_frame.layout());
    const FramePtr result = sink.makeFrame();
    m_frame.store(*result);
    result->pts = 0;
    sink.write(*result);
    sink.finish();
}
