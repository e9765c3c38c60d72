#include "picture/scaler.h"

#include "common/tool_error.h"

#include <fmt/format.h>

#include <new>

const AVFrame& Scaler::scaled(const AVFrame& picture) {
    if (picture.width == m_width && picture.height == m_height)
        return picture;
    const auto format = static_cast<AVPixelFormat>(picture.format);
    m_scaler.reset(sws_getCachedContext(m_scaler.release(), picture.width, picture.height, format,
                                        m_width, m_height, format, SWS_BICUBIC | SWS_ACCURATE_RND,
                                        nullptr, nullptr, nullptr));
    if (!m_scaler)
        throw Failure(fmt::format("pictures of {}x{} cannot be brought to {}x{}", picture.width,
                                  picture.height, m_width, m_height));
    m_scaled = newFrame(format, m_width, m_height);
    if (av_frame_copy_props(m_scaled.get(), &picture) < 0)
        throw std::bad_alloc();
    sws_scale(m_scaler.get(), picture.data, picture.linesize, 0, picture.height, m_scaled->data,
              m_scaled->linesize);
    return *m_scaled;
}
