#include "working_picture.h"

#include "debug.h"
#include "formats.h"

#include <algorithm>
#include <cstring>

namespace {

// Lines of one memory to another.
void copyLines(const PictureView& from, const PictureView& to) {
    // The half pair at the end of an odd width is no more than the lines of one have of it.
    const auto bytes = static_cast<std::size_t>(
        std::min({wholeLineBytes(*from.layout, from.width), from.pitch, to.pitch}));
    for (int y = 0; y < from.height; ++y)
        std::memcpy(to.line(y), from.line(y), bytes);
}

// Bytes of the frame's memory from its first pixel on.
std::size_t roomOf(const GstVideoFrame& frame) {
    const GstMapInfo& map = frame.map[0];
    const auto before = static_cast<std::size_t>(
        static_cast<const guint8*>(GST_VIDEO_FRAME_PLANE_DATA(&frame, 0)) - map.data);
    return map.size - std::min(before, map.size);
}

} // namespace

MemoryNeeds drawingNeeds(const zrLayout& layout, int width, int height) {
    const int pitch = wordPitch(layout, width);
    return {pitch, zrFrameRoom(layout, width, height, pitch)};
}

PictureView viewOf(const GstVideoFrame& frame) {
    return {layoutOf(GST_VIDEO_FRAME_FORMAT(&frame)),
            static_cast<unsigned char*>(GST_VIDEO_FRAME_PLANE_DATA(&frame, 0)),
            GST_VIDEO_FRAME_WIDTH(&frame), linesOf(frame.info),
            GST_VIDEO_FRAME_PLANE_STRIDE(&frame, 0)};
}

PictureView WorkingPicture::take(const GstVideoFrame& frame, const MemoryNeeds& needs,
                                 bool asCopy) {
    m_view = viewOf(frame);
    const bool rightPitch = needs.pitch == 0 || m_view.pitch == needs.pitch;
    m_isCopy = asCopy || !rightPitch || roomOf(frame) < needs.room;
    if (!m_isCopy)
        return m_view;
    if (!m_told && !asCopy)
        GST_DEBUG("frames are copied: their lines are %d bytes apart and %" G_GSIZE_FORMAT
                  " bytes long in all, where %d and %" G_GSIZE_FORMAT " are needed",
                  m_view.pitch, roomOf(frame), needs.pitch, needs.room);
    m_told = m_told || !asCopy;
    const PictureView own = m_view;
    if (needs.pitch != 0)
        m_view.pitch = needs.pitch;
    m_copy.resize(std::max(needs.room, static_cast<std::size_t>(m_view.pitch) *
                                           static_cast<std::size_t>(m_view.height)));
    m_view.data = m_copy.data();
    copyLines(own, m_view);
    return m_view;
}

void WorkingPicture::giveBack(const GstVideoFrame& frame) const {
    if (m_isCopy)
        copyLines(m_view, viewOf(frame));
}
