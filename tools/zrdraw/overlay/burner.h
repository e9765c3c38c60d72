// The overlay of the library on the frames of one clip.
#pragma once

#include "media/audio_levels.h"
#include "media/frame_source.h"
#include "media/working_frame.h"
#include "overlay/peak_hold.h"
#include "overlay/setting_names.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

struct BurnOptions {
    std::vector<Assignment> settings; // come last, over all else
    std::vector<std::string> texts;   // by slot; empty for none
    std::string watermark;            // file; empty for none
    std::string store;                // file of settings; empty for the user's own
    std::string startTimeCode;        // empty: the source's, or 0
    std::optional<bool> dropFrame;    // the source's, or the rate's usual one
    bool interlaced = false;          // whatever the source says
};

// The nearest of the layouts that the overlay knows: bgra, uyvy or v210.
const zrLayout& overlayLayout(AVPixelFormat source);

class Burner {
public:
    // Settings and time code that do not fit are UsageErrors.
    Burner(const BurnOptions& options, const StreamInfo& source, const zrLayout& layout,
           unsigned audioChannels);

    // Of the first frame, as the output's own.
    std::string startTimeCode() const;
    bool showsMeters() const { return m_overlay.Enabled != 0 && m_overlay.AudioEnable != 0; }

    // What the user should know and what does not stop the work; empty if nothing.
    const std::string& warning() const { return m_warning; }

    // Burns into frame `number` of the clip.
    void burn(WorkingFrame& canvas, std::int64_t number, const AudioLevels::Levels& levels);

private:
    void loadStore(const BurnOptions& options);
    void applyOptions(const BurnOptions& options, unsigned audioChannels);
    void describe(const BurnOptions& options, const StreamInfo& source, const zrLayout& layout);
    void startTimeCodeAt(const BurnOptions& options, const StreamInfo& source);
    void warn(const std::string& text);

    CZrOverlay m_overlay;
    std::string m_watermark; // owner of the overlay's path
    bool m_stored = false;   // settings came from a store
    unsigned m_timeCodeType = 0;
    unsigned m_firstTimeCode = 0;
    std::string m_warning;
    PeakHold m_peaks;
    std::unique_ptr<DFRAME> m_frame = std::make_unique<DFRAME>();
};
