#include "live_overlay.h"

#include "common/settings_store.h"
#include "common/tool_error.h"
#include "common/utf8.h"
#include "zrdraw/zrhost.h"

#include <climits>
#include <fmt/format.h>

#include <algorithm>
#include <cstring>
#include <utility>

namespace {

// The library ends the process at a longer text.
constexpr std::size_t longestText = 511;
constexpr std::size_t longestPath = PATH_MAX - 1;

// The store is the process's own, and each overlay may name another.
std::mutex& storeMutex() {
    static std::mutex mutex;
    return mutex;
}

struct OtherStore {
    explicit OtherStore(const std::string& file) { useSettingsStore(file); }
    ~OtherStore() { zrCFGUseStore(nullptr, nullptr, 0); }
    OtherStore(const OtherStore&) = delete;
    OtherStore& operator=(const OtherStore&) = delete;
};

} // namespace

std::string overlayText(const std::string& text) {
    return drawableText(text).substr(0, longestText);
}

LiveOverlay::LiveOverlay() {
    for (const SettingKey& key : settingKeys())
        if (!key.isText())
            key.of(m_overlay) = initial(key);
    // Commands may ask for a text at any time.
    for (int slot = 0; slot < CZrOverlay::textSlots; ++slot)
        setOverlayText(m_overlay, slot, "");
}

unsigned LiveOverlay::initial(const SettingKey& key) {
    // Whoever puts an overlay into a pipeline wants to see one.
    if (key.number == &CZrOverlay::Enabled || key.number == &CZrOverlay::TimeCodeLTCEnable)
        return 1;
    return static_cast<unsigned>(std::stoul(key.initial));
}

unsigned LiveOverlay::number(const SettingKey& key) const {
    const std::lock_guard lock(m_mutex);
    return key.of(const_cast<CZrOverlay&>(m_overlay));
}

void LiveOverlay::setNumber(const SettingKey& key, unsigned number) {
    const std::lock_guard lock(m_mutex);
    m_assigned.insert(&key);
    m_followsSound = m_followsSound && key.number != &CZrOverlay::AudioChannels;
    key.of(m_overlay) = number;
}

std::string LiveOverlay::text(int slot) const {
    const std::lock_guard lock(m_mutex);
    return m_overlay.CustomText[slot] ? m_overlay.CustomText[slot] : "";
}

void LiveOverlay::setText(int slot, const std::string& text) {
    const std::lock_guard lock(m_mutex);
    m_assignedTexts.insert(slot);
    setOverlayText(m_overlay, slot, overlayText(text));
    m_overlay.CustomTextEnabled[slot] = text.empty() ? 0 : 1;
}

std::string LiveOverlay::watermark() const {
    const std::lock_guard lock(m_mutex);
    return m_watermark;
}

bool LiveOverlay::setWatermark(const std::string& given) {
    const std::string path = given.substr(0, longestPath); // no file has a longer one
    std::optional<OverlayStream> stream;
    {
        const std::lock_guard lock(m_mutex);
        m_watermark = path;
        m_watermarkAssigned = true;
        m_overlay.WatermarkEnable = path.empty() ? 0 : 1;
        stream = m_stream;
    }
    if (!stream)
        return true;
    std::unique_ptr<WatermarkPicture> picture = read(path, *stream);
    const bool isThere = path.empty() || picture->isThere();
    const std::lock_guard lock(m_mutex);
    const bool isMeant = m_watermark == path && m_stream == stream;
    if (isMeant) // and not meanwhile another one
        take(std::move(picture));
    return isThere;
}

// By an overlay of its own, so that frames go on.
std::unique_ptr<WatermarkPicture> LiveOverlay::read(const std::string& path,
                                                    const OverlayStream& stream) {
    CZrOverlay reader;
    std::string copy = path;
    reader.Watermark = copy.data();
    reader.WatermarkEnable = path.empty() ? 0 : 1;
    KPXSYSTEM system{};
    reader.Create(describeStream(stream).get(), &system);
    return std::make_unique<WatermarkPicture>(reader);
}

void LiveOverlay::take(std::unique_ptr<WatermarkPicture> picture) {
    m_picture = std::move(picture);
    m_picture->lend(m_overlay);
}

void LiveOverlay::loadStore(const std::string& file) {
    const std::lock_guard storeLock(storeMutex());
    const OtherStore store(file);
    const std::lock_guard lock(m_mutex);
    std::vector<std::pair<const SettingKey*, unsigned>> numbers;
    for (const SettingKey* key : m_assigned)
        numbers.emplace_back(key, key->of(m_overlay));
    std::vector<std::pair<int, std::string>> texts;
    for (const int slot : m_assignedTexts)
        texts.emplace_back(slot, m_overlay.CustomText[slot]);
    const auto watermark = std::pair(m_watermark, m_overlay.WatermarkEnable);
    if (!loadStoredSettings(m_overlay, m_watermark))
        throw UsageError(fmt::format("'{}' holds no settings of an overlay: make them with zrdraw "
                                     "config set",
                                     file));
    boundNumbers();
    m_followsSound = false;
    for (const auto& [slot, text] : texts) {
        setOverlayText(m_overlay, slot, text);
        m_overlay.CustomTextEnabled[slot] = text.empty() ? 0 : 1;
    }
    if (m_watermarkAssigned)
        std::tie(m_watermark, m_overlay.WatermarkEnable) = watermark;
    for (const auto& [key, number] : numbers)
        key->of(m_overlay) = number;
}

bool LiveOverlay::describe(const OverlayStream& stream) {
    std::string path = watermark();
    std::unique_ptr<WatermarkPicture> picture = read(path, stream);
    std::unique_lock lock(m_mutex);
    while (m_watermark != path) { // another one has been set meanwhile
        path = m_watermark;
        lock.unlock();
        picture = read(path, stream);
        lock.lock();
    }
    const bool isThere = path.empty() || picture->isThere();
    m_stream = stream;
    m_overlay.Destroy();
    // The picture is read already.
    const unsigned enabled = std::exchange(m_overlay.WatermarkEnable, 0);
    KPXSYSTEM system{};
    system.fileType = m_source.fileType;
    m_overlay.Create(describeStream(stream).get(), &system);
    m_overlay.video.header.biCompression =
        m_source.codec.value_or(overlayCompression(*stream.layout));
    m_overlay.WatermarkEnable = enabled;
    take(std::move(picture));
    return isThere;
}

void LiveOverlay::setSource(const SourceNames& names) {
    const std::lock_guard lock(m_mutex);
    m_source = names;
    if (!m_stream)
        return;
    m_overlay.system.fileType = names.fileType;
    m_overlay.video.header.biCompression =
        names.codec.value_or(overlayCompression(*m_stream->layout));
}

void LiveOverlay::setSoundChannels(unsigned channels) {
    const std::lock_guard lock(m_mutex);
    if (m_followsSound && channels != 0)
        m_overlay.AudioChannels = std::min(channels, mostMeters);
}

void LiveOverlay::burn(const PictureView& picture, unsigned timeCode, unsigned timeCodeType,
                       const MeterLevels& levels, const MeterLevels& peaks) {
    MeterWords levelWords = packedLevels(levels), peakWords = packedLevels(peaks);
    const std::lock_guard lock(m_mutex);
    if (m_picture)
        m_picture->fit(m_overlay);
    m_overlay.tcType = timeCodeType;
    m_frame->videoData = reinterpret_cast<char*>(picture.data);
    m_frame->ltc = m_frame->vitc = timeCode;
    m_overlay.BurnIn(m_frame.get(), levelWords.data(), peakWords.data(), 0);
}

void LiveOverlay::command(MEDIACMD& command) {
    const std::vector<unsigned> before = numbers();
    const std::lock_guard lock(m_mutex);
    m_overlay.Watermark = m_watermark.data();
    m_overlay.SetMode(&command);
    boundNumbers();
    if (command.cmd != zrCommandSet)
        return;
    m_followsSound = m_followsSound && !(command.subCode == zrOverlayAudio &&
                                         (command.cmdFlags & zrValidParamB) != 0);
    for (std::size_t i = 0; i < before.size(); ++i)
        if (const SettingKey& key = settingKeys()[i];
            !key.isText() && key.of(m_overlay) != before[i])
            m_assigned.insert(&key);
    if (command.subCode == zrOverlayCustomText && (command.cmdFlags & zrValidText) != 0)
        m_assignedTexts.insert(
            (command.cmdFlags & zrValidParamA) != 0 ? static_cast<int>(command.paramA) : 0);
}

// Stores and commands bring any numbers.
void LiveOverlay::boundNumbers() {
    for (const SettingKey& key : settingKeys())
        if (key.most != 0)
            key.of(m_overlay) = std::min(key.of(m_overlay), key.most);
}

std::vector<unsigned> LiveOverlay::numbers() const {
    const std::lock_guard lock(m_mutex);
    std::vector<unsigned> result;
    for (const SettingKey& key : settingKeys())
        result.push_back(key.isText() ? 0 : key.of(const_cast<CZrOverlay&>(m_overlay)));
    return result;
}
