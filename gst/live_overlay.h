// The library's overlay on a stream that runs: any thread may change settings at any time.
#pragma once

#include "common/meter_levels.h"
#include "common/overlay_stream.h"
#include "common/picture_view.h"
#include "common/setting_names.h"
#include "common/watermark_picture.h"

#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <vector>

// Names of the source's line: a file type, and what stands for a codec in biCompression.
struct SourceNames {
    unsigned fileType = 0;
    std::optional<unsigned> codec; // none: that of the stream's layout
};

// What the font has of a text in UTF-8, with '?' for all else, as long as the library takes it.
std::string overlayText(const std::string& text);

class LiveOverlay {
public:
    // An overlay that is on, with time code; all else as the library has it.
    LiveOverlay();
    LiveOverlay(const LiveOverlay&) = delete;
    LiveOverlay& operator=(const LiveOverlay&) = delete;

    static unsigned initial(const SettingKey& key);
    unsigned number(const SettingKey& key) const;
    void setNumber(const SettingKey& key, unsigned number);

    // A text that is not empty switches its slot on, an empty one off.
    std::string text(int slot) const;
    void setText(int slot, const std::string& text);

    // A path switches the watermark on, an empty one off. The file is read before the call returns,
    // and frames go on meanwhile; false: it cannot be read, and there is none.
    std::string watermark() const;
    bool setWatermark(const std::string& path);

    // Takes all settings of a store, but for those that were set. A ToolError tells what is wrong.
    void loadStore(const std::string& file);

    // The stream that the frames to come are of; false: the watermark cannot be read.
    bool describe(const OverlayStream& stream);
    void setSource(const SourceNames& names);

    // Follows the sound where nobody has set a number of meters.
    void setSoundChannels(unsigned channels);

    // Into a picture at the layout's natural pitch. `timeCodeType` is one of zrTimeCode.
    void burn(const PictureView& picture, unsigned timeCode, unsigned timeCodeType,
              const MeterLevels& levels, const MeterLevels& peaks);

    // The library's own command; the room of its text is the caller's to see to.
    void command(MEDIACMD& command);

    // The numbers of all settings, in the order of settingKeys().
    std::vector<unsigned> numbers() const;

private:
    static std::unique_ptr<WatermarkPicture> read(const std::string& path,
                                                  const OverlayStream& stream);
    void boundNumbers();
    void take(std::unique_ptr<WatermarkPicture> picture);

    mutable std::mutex m_mutex;
    CZrOverlay m_overlay;
    std::set<const SettingKey*> m_assigned;
    std::set<int> m_assignedTexts;
    std::string m_watermark;
    bool m_watermarkAssigned = false;
    std::optional<OverlayStream> m_stream;
    SourceNames m_source;
    std::unique_ptr<WatermarkPicture> m_picture;
    bool m_followsSound = true;
    std::unique_ptr<DFRAME> m_frame = std::make_unique<DFRAME>();
};
