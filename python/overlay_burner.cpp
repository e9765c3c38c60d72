#include "python/overlay_burner.h"

#include "common/layout_names.h"
#include "common/overlay_stream.h"
#include "zrdraw/zrhost.h"

#include <fmt/format.h>

#include <algorithm>
#include <limits>

namespace {

const zrLayout& overlayLayout(const std::string& name) {
    const zrLayout& layout = layoutOf(name);
    std::string names;
    for (const unsigned code : overlayLayouts) {
        if (code == layout.code)
            return layout;
        names += (names.empty() ? "" : ", ") + layoutName(*zrFindLayout(code));
    }
    throw py::value_error(fmt::format("overlays are burnt in one of {}, not in {}", names, name));
}

void requireStream(const StreamOfFrames& stream, const zrLayout& layout) {
    withinRange({stream.width}, "width", 1, farthest);
    withinRange({stream.height}, "height", 1, farthest);
    if (layout.isPairs() && stream.width % 2 != 0)
        throw py::value_error(
            fmt::format("overlays in uyvy need an even width, not {}", stream.width));
    if (stream.rate < 1 || stream.scale < 1)
        throw py::value_error(fmt::format("rate: expected two numbers from 1 on, such as (30000, "
                                          "1001), got ({}, {})",
                                          stream.rate, stream.scale));
}

// Amplitudes as floats of 0 to 1, or as the numbers of 16 bits that the meters take.
MeterLevels levelsOf(const py::array& array, const char* name) {
    const bool isReal = array.dtype().kind() == 'f';
    const bool isWords = array.dtype().equal(py::dtype("uint16"));
    if (array.ndim() != 1 || (!isReal && !isWords))
        throw py::type_error(fmt::format("{}: expected an array of floats from 0 to 1, or of "
                                         "uint16, one a channel",
                                         name));
    if (array.size() > static_cast<py::ssize_t>(mostMeters))
        throw py::value_error(
            fmt::format("{}: there are {} meters at most, not {}", name, mostMeters, array.size()));
    const auto numbers =
        py::array_t<double, py::array::c_style | py::array::forcecast>::ensure(array);
    MeterLevels levels{};
    for (py::ssize_t i = 0; i < numbers.size(); ++i)
        levels[static_cast<std::size_t>(i)] =
            isReal ? meterLevel(numbers.at(i)) : static_cast<unsigned>(numbers.at(i));
    return levels;
}

} // namespace

Burner::Burner(const StreamOfFrames& stream)
    : m_layout(overlayLayout(stream.layout)), m_width(stream.width), m_height(stream.height),
      m_peaks((requireStream(stream, m_layout), static_cast<double>(stream.rate) / stream.scale)) {
    m_video = describeStream(
        {&m_layout, m_width, m_height, stream.rate, stream.scale, stream.interlaced});
    m_system->fileType = zrFileTypeOf(stream.container.c_str());
    startTimeCode(stream);
    createOverlay(m_overlay, *m_video, *m_system);
    m_overlay.tcType = m_timeCodeType;
    m_overlay.Enabled = 1;
}

void Burner::startTimeCode(const StreamOfFrames& stream) {
    const int drop = stream.drop            ? *stream.drop
                     : stream.start.empty() ? -1
                                            : stream.start.find(';') != std::string::npos;
    m_timeCodeType = zrTimeCodeType(stream.rate, stream.scale, drop);
    if (m_timeCodeType == 0)
        throw py::value_error(fmt::format("there is no {}time code at {}/{} frames a second",
                                          drop == 1 ? "drop-frame " : "", stream.rate,
                                          stream.scale));
    if (!stream.start.empty() &&
        zrTimeCodeFrames(stream.start.c_str(), m_timeCodeType, &m_first) != 0)
        throw py::value_error(fmt::format("start: '{}' is no {}time code at {}/{} frames a second",
                                          stream.start, drop == 1 ? "drop-frame " : "", stream.rate,
                                          stream.scale));
}

void Burner::setWatermark(const std::string& file) {
    const py::gil_scoped_release released;
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_watermark = file;
    m_overlay.WatermarkEnable = file.empty() ? 0 : 1;
    WatermarkPicture::takeBack(m_overlay);
    m_picture.reset();
}

void Burner::loadWatermark() {
    if (m_overlay.WatermarkEnable == 0 || m_picture)
        return;
    if (m_watermark.empty())
        throw py::value_error("the watermark is enabled, but none is given: set watermark to a "
                              "file");
    CZrOverlay reader;
    reader.Watermark = m_watermark.data();
    reader.WatermarkEnable = 1;
    reader.WatermarkX = 0; // all that the frame has room for
    const bool wasRead = createOverlay(reader, *m_video, *m_system);
    WatermarkPicture picture(reader);
    if (!wasRead)
        throw py::value_error(
            fmt::format("the watermark '{}' cannot be read as a picture", m_watermark));
    m_picture.emplace(std::move(picture));
    m_picture->lend(m_overlay);
}

void Burner::burn(const py::array& array, Whole number, const std::optional<py::array>& levels,
                  const std::optional<py::array>& peaks) {
    const FrameArray frame = wholeFrameIn(array, m_layout, m_width, Access::Write);
    if (frame.view.height != m_height)
        throw py::value_error(fmt::format("the stream's frames are {} x {}, this one is {} x {}",
                                          m_width, m_height, frame.view.width, frame.view.height));
    const int count = withinRange(number, "frame", 0, std::numeric_limits<int>::max());
    const MeterLevels loudness = levels ? levelsOf(*levels, "levels") : MeterLevels{};
    const MeterLevels given = peaks ? levelsOf(*peaks, "peaks") : MeterLevels{};
    with([&](CZrOverlay& overlay) {
        loadWatermark();
        if (m_picture)
            m_picture->fit(m_overlay);
        MeterWords levelWords = packedLevels(loudness);
        MeterWords peakWords = packedLevels(peaks ? given : m_peaks.next(loudness));
        m_frame->videoData = reinterpret_cast<char*>(frame.view.data);
        m_frame->ltc = m_frame->vitc = m_first + static_cast<unsigned>(count);
        return overlay.BurnIn(m_frame.get(), levelWords.data(), peakWords.data(), 0);
    });
}
