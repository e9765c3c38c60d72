/**
 * @file
 * @ingroup overlay
 *
 * The settings of CZrOverlay as one table: the class walks it to save and load them, the command
 * line tool to list them.
 */
#ifndef ZRDRAW_OVERLAY_SETTINGS_H
#define ZRDRAW_OVERLAY_SETTINGS_H

#include "zrdraw/zroverlay.h"

/** @addtogroup overlay
 * @{ */

/** The place of the overlay's keys in the configuration store. */
inline constexpr const char* zrOverlayKeyPath = "KPX\\Advanced\\Overlay";

/** The largest numbers that mean anything; the overlay takes others as they come. */
inline constexpr unsigned int zrOverlaySwitch = 1;
inline constexpr unsigned int zrOverlayFarthest = 32767; /**< of coordinates */
inline constexpr unsigned int zrOverlayLargestSize = 64; /**< of time codes */

/** A setting of the whole overlay. */
struct zrOverlaySetting {
    const char* key;
    unsigned int CZrOverlay::*number; /**< null: the text `Watermark`, which is only ever written */
    unsigned int initial;
    unsigned int most; /**< the largest number that means anything; 0: none has an effect */
    bool saved;        /**< a setting that is not saved is loaded all the same */
    const char* help;
    bool layer = false; /**< switches a layer of the picture on */
};

/** A number that each of the ten custom texts has; %d of the key is the slot. */
struct zrOverlaySlotSetting {
    const char* key;
    unsigned int (CZrOverlay::*numbers)[CZrOverlay::textSlots];
    unsigned int initial;
    unsigned int most; /**< as above */
    unsigned int step; /**< what each slot's initial value has more than the one before */
    const char* help;
};

/** In the order in which they are saved and loaded. */
// clang-format off
inline constexpr zrOverlaySetting zrOverlaySettings[] = {
    {"Enabled", &CZrOverlay::Enabled, 0, zrOverlaySwitch, true, "master switch"},
    {"FillBackground", &CZrOverlay::FillBackground, 1, zrOverlaySwitch, true, "1: texts stand on a filled background"},
    {"AudioEnable", &CZrOverlay::AudioEnable, 0, zrOverlaySwitch, true, "audio meters", true},
    {"AudioX", &CZrOverlay::AudioX, 20, zrOverlayFarthest, true, "left of the meters, pixels"},
    {"AudioY", &CZrOverlay::AudioY, 100, zrOverlayFarthest, true, "top of the meters, lines"},
    {"AudioChannels", &CZrOverlay::AudioChannels, 2, CZrOverlay::historyChannels, true, "meters, 32 at most; 0 becomes 8"},
    {"VChipEnable", &CZrOverlay::VChipEnable, 0, 0, true, "kept, without effect on the picture"},
    {"CaptionsEnable", &CZrOverlay::CaptionsEnable, 0, 0, true, "kept, without effect on the picture"},
    {"CaptionSource", &CZrOverlay::CaptionSource, 0, 0, true, "kept, without effect on the picture"},
    {"TimeCodeLTCEnable", &CZrOverlay::TimeCodeLTCEnable, 0, zrOverlaySwitch, true, "linear time code", true},
    {"TimeCodeLUBEnable", &CZrOverlay::TimeCodeLUBEnable, 0, 0, true, "kept, without effect on the picture"},
    {"TimeCodeVITCEnable", &CZrOverlay::TimeCodeVITCEnable, 0, zrOverlaySwitch, true, "vertical interval time code", true},
    {"TimeCodeVUBEnable", &CZrOverlay::TimeCodeVUBEnable, 0, 0, true, "kept, without effect on the picture"},
    {"TimeCodeVsyncEnable", &CZrOverlay::TimeCodeVsyncEnable, 0, 0, false, "loaded, never saved; without effect on the picture"},
    {"TimeCodeLTCFrameEnable", &CZrOverlay::TimeCodeLTCFrameEnable, 0, 0, true, "kept, without effect on the picture"},
    {"TimeCodeVITCFrameEnable", &CZrOverlay::TimeCodeVITCFrameEnable, 0, 0, true, "kept, without effect on the picture"},
    {"TimeCodeX", &CZrOverlay::TimeCodeX, 20, zrOverlayFarthest, true, "left of the time codes, pixels"},
    {"TimeCodeY", &CZrOverlay::TimeCodeY, 300, zrOverlayFarthest, true, "top of the first time code, lines"},
    {"TimeCodeSize", &CZrOverlay::TimeCodeSize, 2, zrOverlayLargestSize, true, "scale of the time codes; 1 is 8 x 10 pixels a character"},
    {"WatermarkEnable", &CZrOverlay::WatermarkEnable, 0, zrOverlaySwitch, true, "watermark", true},
    {"WatermarkX", &CZrOverlay::WatermarkX, 400, zrOverlayFarthest, true, "left of the watermark, pixels"},
    {"WatermarkY", &CZrOverlay::WatermarkY, 400, zrOverlayFarthest, true, "top of the watermark, lines"},
    {"WatermarkOpacity", &CZrOverlay::WatermarkOpacity, 50, 0, true, "kept, without effect on the picture"},
    {"Watermark", nullptr, 0, 0, true, "file of the watermark; saved, never loaded"},
    {"SourceFormatEnable", &CZrOverlay::SourceFormatEnable, 0, zrOverlaySwitch, true, "rate, file type, codec, size and scan of the source", true},
    {"SourceFormatX", &CZrOverlay::SourceFormatX, 20, zrOverlayFarthest, true, "left of the source's format, pixels"},
    {"SourceFormatY", &CZrOverlay::SourceFormatY, 600, zrOverlayFarthest, true, "top of the source's format, lines"},
};
// clang-format on

/** Of each slot, in this order; the text itself, zrOverlayTextKey, comes behind them. */
inline constexpr zrOverlaySlotSetting zrOverlaySlotSettings[] = {
    {"CustomTextEnabled%d", &CZrOverlay::CustomTextEnabled, 0, zrOverlaySwitch, 0, "custom text"},
    {"CustomTextX%d", &CZrOverlay::CustomTextX, 500, zrOverlayFarthest, 0,
     "left of the text, pixels"},
    {"CustomTextY%d", &CZrOverlay::CustomTextY, 0, zrOverlayFarthest, 30, "top of the text, lines"},
};

inline constexpr const char* zrOverlayTextKey = "CustomText%d";

/** Room for a key with its slot. */
inline constexpr unsigned int zrOverlayKeyBytes = 128;

/** The most characters that a text may have to be saved. */
inline constexpr unsigned int zrOverlayTextLimit = 128;

/** @} */

#endif
