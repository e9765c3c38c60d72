// The overlay of the library on the frames of one clip.
#pragma once

#include "common/overlay_stream.h"
#include "common/peak_hold.h"
#include "common/setting_names.h"
#include "common/watermark_picture.h"
#include "media/stream_info.h"
#include "media/time_code.h"
#include "picture/canvas.h"

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

inline constexpr unsigned oddWidthOverlayLayouts[] = {ptBGRA32, ptV210};

class Burner {
public:
    // Settings and time code that do not fit are UsageErrors, a watermark that cannot be read is a
    // Failure.
    Burner(const BurnOptions& options, const StreamInfo& source, const zrLayout& layout,
           unsigned audioChannels);

    // Of a frame, as the output's own.
    std::string timeCodeOf(std::int64_t frame) const { return m_timeCode.at(frame); }
    bool showsMeters() const { return m_overlay.Enabled != 0 && m_overlay.AudioEnable != 0; }

    // What the user should know and what does not stop the work, a line each.
    const std::vector<std::string>& warnings() const { return m_warnings; }

    // Burns into the frame that stands so many behind the clip's first.
    void burn(Canvas& canvas, std::int64_t clock, const MeterLevels& levels);

private:
    void loadStore(const BurnOptions& options);
    void applyOptions(const BurnOptions& options, unsigned audioChannels);
    void describe(const BurnOptions& options, const StreamInfo& source, const zrLayout& layout);
    void startTimeCodeAt(const BurnOptions& options, const StreamInfo& source);
    friend std::vector<std::string> layersOffFrame(const BurnOptions& options,
                                                   const StreamInfo& source, const zrLayout& layout,
                                                   unsigned audioChannels);
    std::vector<std::string> layersThatChangeNothing(const StreamInfo& source,
                                                     const zrLayout& layout);
    bool changes(Canvas& canvas);

    CZrOverlay m_overlay;
    std::string m_watermark; // owner of the overlay's path
    std::optional<WatermarkPicture> m_picture;
    bool m_stored = false; // settings came from a store
    TimeCode m_timeCode;
    std::vector<std::string> m_warnings;
    PeakHold m_peaks;
    std::unique_ptr<DFRAME> m_frame = std::make_unique<DFRAME>();
};

// The settings of the layers that are enabled and lie wholly off the frame.
std::vector<std::string> layersOffFrame(const BurnOptions& options, const StreamInfo& source,
                                        const zrLayout& layout, unsigned audioChannels);
