#include "overlay/burner.h"

#include "common/layout_names.h"
#include "common/overlay_stream.h"
#include "common/settings_store.h"
#include "common/tool_error.h"
#include "picture/pixel_formats.h"
#include "zrdraw/platform/config_store.h"
#include "zrdraw/platform/media.h"
#include "zrdraw/zrhost.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstring>

namespace {

bool isAssigned(const BurnOptions& options, const char* key) {
    return std::any_of(
        options.settings.begin(), options.settings.end(),
        [key](const Assignment& setting) { return setting.key->name == key; });
}

bool hasLayer(const CZrOverlay& overlay) {
    const bool own = std::any_of(
        std::begin(zrOverlaySettings), std::end(zrOverlaySettings),
        [&](const zrOverlaySetting& setting) {
            return setting.layer && overlay.*setting.number != 0;
        });
    return own ||
           std::any_of(std::begin(overlay.CustomTextEnabled), std::end(overlay.CustomTextEnabled),
                       [](unsigned enabled) { return enabled != 0; });
}

// The code by which the source's line names its codec, where it is not the layout's own: that of
// QuickTime with the first letter on top, or letters that stand for themselves.
unsigned nameCode(const StreamInfo& source, unsigned layoutCode) {
    if (source.codec == AV_CODEC_ID_NONE || source.codec == AV_CODEC_ID_RAWVIDEO)
        return layoutCode;
    const AVCodecTag* const tables[] = {avformat_get_mov_video_tags(),
                                        avformat_get_riff_video_tags(), nullptr};
    const bool isMov = source.formatName.find("mov") != std::string::npos;
    const unsigned letters =
        isMov && source.codecTag != 0 ? source.codecTag : av_codec_get_tag(tables, source.codec);
    const unsigned code = __builtin_bswap32(letters);
    const std::string_view own(reinterpret_cast<const char*>(&code), sizeof code);
    const bool hasName = kpxutilCodecTypeString(code) != own;
    return hasName ? code : letters;
}

} // namespace

Burner::Burner(const BurnOptions& options, const StreamInfo& source, const zrLayout& layout,
               unsigned audioChannels)
    : m_peaks(av_q2d(source.frameRate)) {
    loadStore(options);
    applyOptions(options, audioChannels);
    describe(options, source, layout);
    startTimeCodeAt(options, source);
}

void Burner::loadStore(const BurnOptions& options) {
    useSettingsStore(options.store);
    m_stored = loadStoredSettings(m_overlay, m_watermark);
    if (!m_stored && !options.store.empty())
        throw UsageError(fmt::format("'{}' holds no settings of an overlay: make them with zrdraw "
                                     "config set, or leave out --settings-store",
                                     options.store));
}

void Burner::applyOptions(const BurnOptions& options, unsigned audioChannels) {
    if (!options.watermark.empty()) {
        m_watermark = options.watermark;
        m_overlay.WatermarkEnable = 1;
    }
    for (std::size_t slot = 0; slot < options.texts.size(); ++slot) {
        if (options.texts[slot].empty())
            continue;
        setOverlayText(m_overlay, static_cast<int>(slot), options.texts[slot]);
        m_overlay.CustomTextEnabled[slot] = 1;
    }
    for (const auto& [key, value] : options.settings)
        if (!key->isText())
            key->of(m_overlay) = settingNumber(*key, value);
        else if (key->name == "Watermark")
            m_watermark = value;
        else
            setOverlayText(m_overlay, key->slot, value);
    m_overlay.Watermark = m_watermark.empty() ? nullptr : m_watermark.data();
    // Whoever burns an overlay wants one, and time code if nothing else was asked for.
    if (!isAssigned(options, "Enabled"))
        m_overlay.Enabled = 1;
    if (!hasLayer(m_overlay) && !isAssigned(options, "TimeCodeLTCEnable"))
        m_overlay.TimeCodeLTCEnable = 1;
    if (!m_stored && !isAssigned(options, "AudioChannels") && audioChannels != 0)
        m_overlay.AudioChannels = audioChannels;
    if (m_overlay.AudioChannels > mostMeters)
        throw UsageError(fmt::format("AudioChannels: there are {} meters at most, not {}",
                                     mostMeters, m_overlay.AudioChannels));
}

void Burner::describe(const BurnOptions& options, const StreamInfo& source,
                      const zrLayout& layout) {
    if (layout.code == ptUYVY && source.width % 2 != 0)
        throw Failure(
            fmt::format("overlays in uyvy need an even width, and the pictures are {}x{}: "
                        "use --layout bgra",
                        source.width, source.height));
    const bool interlaced = isInterlaced(source.fieldOrder) || options.interlaced;
    const auto video = describeStream({&layout, source.width, source.height, source.frameRate.num,
                                       source.frameRate.den, interlaced});
    const auto system = std::make_unique<KPXSYSTEM>();
    system->fileType = zrFileTypeOf(source.formatName.c_str());
    const bool created = createOverlay(m_overlay, *video, *system);
    m_picture.emplace(m_overlay);
    m_overlay.video.header.biCompression = nameCode(source, overlayCompression(layout));
    if (created)
        return;
    if (m_watermark.empty())
        throw UsageError("the watermark is enabled, but none is given: use --watermark FILE");
    throw Failure(fmt::format("the watermark '{}' cannot be read as a picture", m_watermark));
}

void Burner::startTimeCodeAt(const BurnOptions& options, const StreamInfo& source) {
    const std::string& given = options.startTimeCode;
    const std::string text = given.empty() ? source.timeCode : given;
    const double rate = av_q2d(source.frameRate);
    int drop = text.empty() ? -1 : text.find(';') != std::string::npos;
    if (options.dropFrame)
        drop = *options.dropFrame;
    unsigned& type = m_timeCode.type;
    type = zrTimeCodeType(source.frameRate.num, source.frameRate.den, drop);
    if (type == 0 && options.dropFrame.value_or(false))
        throw UsageError(fmt::format("there is no drop-frame time code at {:.6g} frames a second: "
                                     "leave out --drop",
                                     rate));
    if (type == 0) // a source may claim what there is not
        type = zrTimeCodeType(source.frameRate.num, source.frameRate.den, -1);
    if (type == 0) {
        type = m_overlay.tcType;
        m_warnings.push_back(
            fmt::format("no time code counts {:.6g} frames a second: the nearest is used", rate));
    }
    m_overlay.tcType = type;
    if (text.empty() || zrTimeCodeFrames(text.c_str(), type, &m_timeCode.first) == 0)
        return;
    const std::string problem =
        fmt::format("the time code '{}' cannot be at {:.6g} frames a second{}", text, rate,
                    zrTimeCodeIsDrop(type) != 0 ? " drop-frame" : "");
    if (!given.empty())
        throw UsageError(problem + ": use one such as 01:00:00:00");
    m_warnings.push_back(problem + "; it starts at 00:00:00:00");
}

std::vector<std::string> layersOffFrame(const BurnOptions& options, const StreamInfo& source,
                                        const zrLayout& layout, unsigned audioChannels) {
    Burner burner(options, source, layout, audioChannels);
    return burner.layersThatChangeNothing(source, layout);
}

// Whether the enabled layers change a flat frame, with all meters lit.
bool Burner::changes(Canvas& canvas) {
    const std::size_t bytes =
        static_cast<std::size_t>(canvas.pitch()) * static_cast<std::size_t>(canvas.height());
    MeterLevels loud;
    loud.fill(0xFFFF);
    for (const char flat : {'\x80', '\x10'}) {
        std::fill_n(canvas.data(), bytes, flat);
        burn(canvas, 0, loud);
        if (std::any_of(canvas.data(), canvas.data() + bytes,
                        [=](char byte) { return byte != flat; }))
            return true;
    }
    return false;
}

// Each is burnt alone.
std::vector<std::string> Burner::layersThatChangeNothing(const StreamInfo& source,
                                                         const zrLayout& layout) {
    struct Layer {
        std::string name;
        unsigned* enabled;
    };
    std::vector<Layer> layers;
    for (const zrOverlaySetting& setting : zrOverlaySettings)
        if (setting.layer)
            layers.push_back({setting.key, &(m_overlay.*setting.number)});
    for (int slot = 0; slot < CZrOverlay::textSlots; ++slot)
        layers.push_back(
            {fmt::format("CustomTextEnabled{}", slot), &m_overlay.CustomTextEnabled[slot]});
    std::erase_if(layers, [](const Layer& layer) { return *layer.enabled == 0; });
    for (const Layer& layer : layers)
        *layer.enabled = 0;
    Canvas canvas(layout, source.width, source.height);
    std::vector<std::string> names;
    for (const Layer& layer : layers) {
        *layer.enabled = 1;
        if (m_overlay.Enabled != 0 && !changes(canvas))
            names.push_back(layer.name);
        *layer.enabled = 0;
    }
    return names;
}

void Burner::burn(Canvas& canvas, std::int64_t clock, const MeterLevels& levels) {
    m_frame->videoData = canvas.data();
    m_frame->ltc = m_frame->vitc = m_timeCode.first + static_cast<unsigned>(clock);
    MeterWords levelWords = packedLevels(levels);
    MeterWords peakWords = packedLevels(m_peaks.next(levels));
    m_overlay.BurnIn(m_frame.get(), levelWords.data(), peakWords.data(), 0);
}
