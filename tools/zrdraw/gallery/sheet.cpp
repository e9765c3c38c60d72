#include "gallery/sheet.h"

#include "media/frame_sink.h"

#include <algorithm>

Sheet::Sheet(const zrLayout& layout, int width, int height)
    : m_layout(layout), m_frame(workingPixelFormat(layout.code).value(), width, height),
      m_draw(makeDraw(layout, m_frame)) {
    m_draw->SetColorRGBA(0.03, 0.04, 0.06, 1.0, true);
    m_draw->EraseCanvas(false);
    m_draw->SetColorRGBA(0.85, 0.87, 0.9, 1.0, true);
}

void Sheet::paste(WorkingFrame& picture, int x, int y) {
    const auto bytes = [this](int columns) {
        return static_cast<int>(zrLineBytes(m_layout.line, static_cast<unsigned>(columns)));
    };
    for (int row = 0; row < picture.height(); ++row)
        std::copy_n(picture.data() + row * picture.pitch(), bytes(picture.width()),
                    m_frame.data() + (y + row) * m_frame.pitch() + bytes(x));
}

// Without alpha, as anti-aliased lines leave their coverage in it.
void Sheet::writePng(const std::string& path, bool force) {
    StreamInfo info;
    info.width = m_frame.width();
    info.height = m_frame.height();
    info.pixelFormat = AV_PIX_FMT_RGB24;
    FrameSink sink(path, {"", "", force}, info, m_frame.pixelFormat());
    const FramePtr result = sink.makeFrame();
    m_frame.store(*result);
    result->pts = 0;
    sink.write(*result);
    sink.finish();
}
