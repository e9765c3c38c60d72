/**
 * @file
 * @ingroup overlay
 *
 * The records of the host's media layer, of which this library reads the named fields. All else in
 * them is the host's and is passed on untouched. Packed: the offsets are what counts. Compiles as C
 * and as C++.
 */
#ifndef ZRDRAW_RECORDS_H
#define ZRDRAW_RECORDS_H

#include "zrdraw/types.h"

#include <stddef.h>

/** @addtogroup overlay
 * @{ */

#pragma pack(push, 1)

/** A stream's video. */
typedef struct KPXVIDEO {
    /** Width, height, layout as biCompression and frame bytes as biSizeImage. A negative height
     * goes to SetCanvas as it stands; a biSizeImage of 0 switches the overlay off. */
    tagBITMAPINFO header;
    unsigned char opaque1[1040];
    unsigned int scale; /**< denominator of the frame rate */
    unsigned int rate;  /**< numerator of the frame rate */
    unsigned char opaque2[308];
    unsigned int flags; /**< the scan: zrScanInterlaced, zrScanSegmented */
    unsigned char opaque3[24];
} KPXVIDEO;

/** A stream's surroundings. */
typedef struct KPXSYSTEM {
    unsigned char opaque1[348];
    unsigned int fileType; /**< for kpxutilFileTypeString */
    unsigned char opaque2[4];
} KPXSYSTEM;

/** A frame as the media layer hands it over. The pixels stand elsewhere. */
typedef struct DFRAME {
    unsigned char opaque1[40];
    unsigned int ltc; /**< linear time code, frames */
    unsigned char opaque2[4];
    unsigned int vitc; /**< vertical interval time code, frames */
    unsigned char opaque3[8376];
    char* videoData; /**< first byte of the pixels */
    unsigned char opaque4[44];
} DFRAME;

/**
 * A control command, as CZrOverlay::SetMode takes it. A set takes the fields that `cmdFlags` has
 * valid and changes nothing in the record; a query writes fields and adds their flags. What each
 * field carries, by sub-code:
 *
 *     zrOverlay...   valueA           valueB           valueC  paramA            paramB    cmdText
 *     Master         Enabled          FillBackground*
 *     Audio          enable           X                Y                         channels
 *     VChip          enable
 *     Captions       enable           source
 *     TimeCode       switches, below  X                Y       size (type << 8)
 *     Watermark      enable           X                Y       opacity                     path**
 *     SourceFormat   enable           X                Y
 *     CustomText     enable           X                Y       slot***                     text
 *     Reserved...    0 when asked
 *
 * All numbers are taken as they come, but for paramA, of which a set takes the low byte (and of a
 * slot all).
 * - TimeCode: a set takes zrOverlayTimeCodeSwitch bits in valueA, and an absent bit switches off; a
 *   query answers one of them, that of the first switch that is on, or 0. paramA answers the size
 *   with the stream's time code type above it, `tcType` << 8.
 * - Audio: `channels` is 32 at most; more write behind the overlay's fields. 0 becomes 8.
 * - (*) set only. (**) asked only: no command sets the path or loads the watermark.
 * - (***) A set takes the slot, 0 to 9 and not tested, from a valid paramA, a query from a valid
 *   valueA. In both, the slot is 0 when that flag is not set or valueA, the switch of a set, is
 *   above 9.
 * - A text that is set has 511 characters at most, and 128 to be saved: a longer one ends the
 *   process in BurnIn, or in SaveConfig.
 * - A query copies text or path whole, zero included, with no bound but the room of the host's
 *   record, and must not be sent while there is none: CZrOverlay::Watermark or CustomText null.
 */
typedef struct MEDIACMD {
    unsigned char opaque1[36];
    unsigned int cmd;      /**< zrCommandSet, zrCommandGet or zrCommandGetState */
    unsigned int cmdFlags; /**< which of the fields below are valid: zrValid... */
    unsigned int paramA;
    unsigned char opaque2[4];
    unsigned int paramB;
    unsigned char opaque3[4];
    unsigned int subCode; /**< zrOverlay... */
    unsigned int valueA;
    unsigned int valueB;
    unsigned int valueC;
    char cmdText[1]; /**< ends with a zero; its room is the rest of the host's record */
} MEDIACMD;

#pragma pack(pop)

/** Bits of KPXVIDEO::flags. Neither or both of the two mean progressive in the source line. */
enum zrScanFlag { zrScanInterlaced = 0x100, zrScanSegmented = 0x200 };

/**
 * The values of biCompression in whose streams a watermark can lie: four characters in memory
 * order, or 0 for a plain bitmap, which must have 32 bits. All else of an overlay is burnt into
 * every layout that GetDraw serves.
 */
enum zrWatermarkCode {
    zrWatermarkBgra = 0,
    zrWatermarkYuv2 = 0x32767579, /**< "yuv2", ptUYVY */
    zrWatermarkV210 = 0x76323130  /**< "012v", ptV210 */
};

/** MEDIACMD::cmd. Any other does nothing. */
enum zrCommand { zrCommandGet = 14, zrCommandSet = 15, zrCommandGetState = 16 };

/** Bits of MEDIACMD::cmdFlags: the field is valid. */
enum zrValidField {
    zrValidParamA = 0x10,
    zrValidParamB = 0x20,
    zrValidValueA = 0x40,
    zrValidValueB = 0x100,
    zrValidValueC = 0x400,
    zrValidText = 0x2000
};

/** MEDIACMD::subCode. */
enum zrOverlayCommand {
    zrOverlayMaster = 111000,
    zrOverlayAudio = 111001,
    zrOverlayVChip = 111002,
    zrOverlayCaptions = 111003,
    zrOverlayTimeCode = 111004,
    zrOverlayWatermark = 111005,
    zrOverlaySourceFormat = 111006,
    zrOverlayCustomText = 111007,
    zrOverlayReservedFirst = 111008,
    zrOverlayReservedLast = 111010
};

/** MEDIACMD::valueA of zrOverlayTimeCode. The vsync switch has no effect on the picture. */
enum zrOverlayTimeCodeSwitch { zrOverlayLtc = 1, zrOverlayVitc = 2, zrOverlayVsync = 16 };

#ifdef __cplusplus
static_assert(sizeof(KPXVIDEO) == 1428 && offsetof(KPXVIDEO, scale) == 1084 &&
              offsetof(KPXVIDEO, rate) == 1088 && offsetof(KPXVIDEO, flags) == 1400);
static_assert(sizeof(KPXSYSTEM) == 356 && offsetof(KPXSYSTEM, fileType) == 348);
static_assert(sizeof(DFRAME) == 8480 && offsetof(DFRAME, ltc) == 40 &&
              offsetof(DFRAME, vitc) == 48 && offsetof(DFRAME, videoData) == 8428);
static_assert(offsetof(MEDIACMD, cmd) == 36 && offsetof(MEDIACMD, paramA) == 44 &&
              offsetof(MEDIACMD, paramB) == 52 && offsetof(MEDIACMD, subCode) == 60 &&
              offsetof(MEDIACMD, valueC) == 72 && offsetof(MEDIACMD, cmdText) == 76);
#endif

/** @} */

#endif
