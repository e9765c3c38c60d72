#include "black_picture.h"

#include "common/picture_color.h"
#include "formats.h"
#include "zrdraw/zrdraw.h"

#include <new>

PictureView BlackPicture::like(const GstVideoFrame& frame, int pitch) {
    const zrLayout& layout = *layoutOf(GST_VIDEO_FRAME_FORMAT(&frame));
    const int width = GST_VIDEO_FRAME_WIDTH(&frame), height = linesOf(frame.info);
    const std::optional<cmYCbCr> mode = matrixModeOf(frame.info);
    if (pitch == 0)
        pitch = wordPitch(layout, width);
    const bool isSame = m_view.layout == &layout && m_view.width == width &&
                        m_view.height == height && m_view.pitch == pitch && m_mode == mode;
    if (isSame)
        return m_view;
    m_pixels.assign(zrFrameRoom(layout, width, height, pitch), 0);
    ZRDraw* draw = nullptr;
    if (GetDraw(layout.code, width, height, pitch, reinterpret_cast<char*>(m_pixels.data()),
                draw) != 0)
        throw std::bad_alloc();
    if (mode)
        draw->SetYCbCrMode(*mode);
    setPictureColor(*draw, 0.0, 0.0, 0.0, 1.0, true);
    RECT all{0, 0, width - 1, height};
    draw->FillRect(&all);
    ReleaseDraw(draw);
    m_view = {&layout, m_pixels.data(), width, height, pitch};
    m_mode = mode;
    return m_view;
}
