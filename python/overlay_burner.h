// The class Overlay of the module: an overlay of one stream, and what it needs beside its settings.
#pragma once

#include "common/meter_levels.h"
#include "common/peak_hold.h"
#include "common/watermark_picture.h"
#include "python/frame_array.h"
#include "zrdraw/zroverlay.h"

#include <memory>
#include <mutex>
#include <optional>
#include <string>

// What the stream is like.
struct StreamOfFrames {
    std::string layout;
    int width, height;
    int rate, scale; // frames in `scale` seconds
    bool interlaced;
    std::string start; // time code of frame 0
    std::optional<bool> drop;
    std::string container; // a demuxer's name
};

class Burner {
public:
    explicit Burner(const StreamOfFrames& stream);
    Burner(const Burner&) = delete;
    Burner& operator=(const Burner&) = delete;

    // Works on the overlay, which one thread at a time has; other threads of Python run meanwhile.
    template <typename Work>
    auto with(Work work) {
        const py::gil_scoped_release released;
        const std::lock_guard<std::mutex> lock(m_mutex);
        return work(m_overlay);
    }

    // Burns the layers into the frame of this number. Without peaks they are held here.
    void burn(const py::array& array, Whole number, const std::optional<py::array>& levels,
              const std::optional<py::array>& peaks);

    std::string watermark() {
        return with([this](CZrOverlay&) { return m_watermark; });
    }
    void setWatermark(const std::string& file);

private:
    void startTimeCode(const StreamOfFrames& stream);
    void loadWatermark();

    const zrLayout& m_layout;
    int m_width, m_height;
    std::unique_ptr<KPXVIDEO> m_video;
    std::unique_ptr<KPXSYSTEM> m_system = std::make_unique<KPXSYSTEM>();
    std::unique_ptr<DFRAME> m_frame = std::make_unique<DFRAME>();
    unsigned m_timeCodeType = 0, m_first = 0;
    std::string m_watermark;
    std::optional<WatermarkPicture> m_picture; // none: to be read
    PeakHold m_peaks;
    CZrOverlay m_overlay;
    std::mutex m_mutex;
};

using OverlayClass = py::class_<Burner>;
void bindOverlayCommands(OverlayClass& overlay);
