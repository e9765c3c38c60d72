/**
 * @file
 * @ingroup overlay
 *
 * CZrOverlay: burns time code, texts, the source's format, a watermark and audio meters into the
 * frames of an outgoing video stream.
 *
 * A host makes one a stream, lets it load its settings, hands it the stream's description with
 * Create, and calls BurnIn for each frame just before the frame leaves. Commands may change
 * settings at any time between frames. Nothing here takes a lock: BurnIn, commands and settings
 * of one object must not run at the same time; objects of different streams may.
 *
 * zrdraw/overlay_settings.h tells what each setting does, zrdraw/records.h what each command does.
 *
 * The watermark. It is read once, by Create, from the file of the field `Watermark`, into a cache
 * for the stream's biCompression, which must be one of zrWatermarkCode: in any other stream nothing
 * is cached, and each frame writes a line to the log once the file was read.
 * - Where the reader, the file or memory is missing there is no watermark, and one line in the log.
 *   The line of a file that cannot be opened has a number in the place of its name. A file that
 *   opens and whose picture cannot be read is not noticed: what the memory held is shown.
 * - The frame's lines are taken for packed: `width` * 4 bytes in code 0, `width` * 2 in "yuv2". So
 *   a plain bitmap of 24 bits must have none: it is laid over the frame and behind its end.
 * - Loading for "yuv2" or "012v" makes WatermarkX even. An odd one that a command sets later
 *   exchanges Cb and Cr in "yuv2".
 * - In "yuv2" what reaches over the right edge goes on in the next line, and that of the frame's
 *   last line goes behind the frame: the picture must end on or before the edge, or above the
 *   bottom. Code 0 and "012v" cut at the edge. All cut at the bottom.
 * - In "012v" a picture of an odd width shows in the last column of each line but the last the
 *   first pixel of the line below; in "yuv2" its last column is not shown.
 * - Alpha mixes in code 0 and "yuv2"; in "012v" it only decides, above 10 of 1023, to draw.
 * - By contract the caches are never freed, by Create for another stream or by the destructor. A
 *   host that wants the memory back calls, while no BurnIn runs, ZRFree (zrdraw/platform/memory.h)
 *   on `wmV210`, `wmYuv2` and `wmBgra` and sets all three to null. It must do so before a Create
 *   for a stream of another layout that may load none: the old cache would be laid on its frames.
 */
#ifndef ZRDRAW_ZROVERLAY_H
#define ZRDRAW_ZROVERLAY_H

#include "zrdraw/records.h"
#include "zrdraw/zrdraw.h"

#include <cstdio>

/** @addtogroup overlay
 * @{ */

/** The overlay of one stream; the text of zroverlay.h tells how a host uses it. */
class ZRDRAW_API CZrOverlay {
public:
    static constexpr int textSlots = 10;
    static constexpr int historyChannels = 32;
    static constexpr int historyLevels = 100;

    /** Takes the settings' initial values; reads no configuration. */
    CZrOverlay();

    /** Frees the custom texts and releases the drawing object, not the watermark caches. */
    virtual ~CZrOverlay();

    CZrOverlay(const CZrOverlay&) = delete;
    CZrOverlay& operator=(const CZrOverlay&) = delete;

    /**
     * Takes a copy of a stream's description and loads the watermark, if that is enabled: settings
     * are to be loaded, and the field `Watermark` set, before. May be called again for another
     * stream, between frames; old watermark caches stay, and so does a drawing object made
     * meanwhile, of the old layout: for another one call Destroy too.
     *
     * The description is not tested. Whether its layout can be drawn on, a host asks beforehand:
     *
     *     tagBITMAPINFO header = video.header; // which the call completes
     *     unsigned int code = ptNone;
     *     const unsigned int bytes = GetDrawSize(&header, &code);
     *     const bool served = code != ptNone && bytes != 0 && bytes != 0xFFFFFFFF;
     *
     * A plain bitmap of 15 or 16 bits passes as served, and its pixels are written as 4 bytes each.
     * A frame must have zrFrameRoom bytes
     * (zrdraw/layouts.h) at a pitch of 0, which may be more than the header's form answers.
     * @return 0, also for null records, of which nothing is taken
     */
    virtual int Create(KPXVIDEO* newVideo, KPXSYSTEM* newSystem);

    /** Releases the drawing object; the next BurnIn makes a new one. @return 0 */
    virtual int Destroy();

    /**
     * Draws the enabled layers into a frame: time codes, watermark, source format, custom texts,
     * meters, each over the ones before. Does nothing before Create, while `Enabled` is 0, for a
     * stream whose biSizeImage is 0, and in a layout that GetDraw does not serve (tried again each
     * frame, without a line in the log). On an interlaced stream the tops of texts and meters and
     * the size of the time code become even for good, in the settings themselves.
     *
     * The frame's lines have no gaps: each is as long as zrLineBytes says for the layout and width.
     *
     * Allocates nothing after the first frame, but for a drawing object a frame where a watermark
     * lies on v210. Throws std::bad_alloc when such an object cannot be made.
     * @param frame       a null one, or one without `videoData`, is left alone
     * @param audioLevels linear amplitudes of 16 bits, 65,535 full scale, two channels a word, the
     *                    even one low: (AudioChannels + 1) / 2 words are read (4 where it is 0,
     * which becomes 8). May be null: silence. The bars span 41 dB: the lowest of 15 segments lights
     * from 892 on (-37 dB), full scale lights all but the topmost
     * @param audioPeaks  peaks in the same form, holding and decay are the host's; may be null: no
     *                    markers, as below a peak of 631
     * @param tcAdjust    frames that are taken off both time codes
     * @return 0
     */
    virtual int BurnIn(DFRAME* frame, unsigned int* audioLevels, unsigned int* audioPeaks,
                       unsigned int tcAdjust);

    /**
     * Sets or asks for settings, see MEDIACMD. Nothing is saved and no watermark is loaded. A query
     * of Watermark or CustomText copies a text into the record without a bound, and must not be
     * sent while that text is null.
     * @return `valueA` as it came, also for a query; 0 for null
     */
    virtual int SetMode(MEDIACMD* command);

    /** Does nothing. @return 0 */
    virtual int SetAppName(const char* name);

    /**
     * Writes all settings but TimeCodeVsyncEnable to the configuration store and makes them
     * lasting. A text of more than 128 characters ends the process.
     * @return 0
     */
    virtual int SaveConfig();

    /**
     * Reads the settings from the store, or stores them there if it holds none. Numbers are taken
     * as they come; a key that the store does not hold takes the number of the key read before it.
     * `Watermark` is not read, and a custom text only into a slot that has one.
     * @return 0
     */
    virtual int LoadConfig();

    /** The store, one setting at a time. LoadSetting takes a buffer of at least 128 bytes. */
    virtual int SaveSetting(const char* name, const char* value);
    virtual int LoadSetting(const char* name, char* value);
    virtual int SaveSetting(const char* name, unsigned int value);
    virtual int LoadSetting(const char* name, unsigned int& value);

    /**
     * Makes a settings file that holds its section line and nothing else, and saves the settings
     * to the store. A file that cannot be opened for writing ends the process.
     * @return 0
     */
    virtual int SaveConfigINI(const char* path);

    /**
     * Reads a settings file. Drops all custom texts; then every line behind the first "[zroverlay]"
     * counts, also those of later sections: each number whose key stands anywhere in a line becomes
     * 0, and a custom text is its line from the '=' on, line end included. A file that cannot be
     * opened, and a line with a key and no '=', end the process.
     * @return 0
     */
    virtual int LoadConfigINI(const char* path);

    /** The meters' layer; `draw` must exist, and `AudioChannels` be 32 at most. @return 0 */
    int drawAudMeters(unsigned int* levels, unsigned int* peaks);

    /** Reads the file of `Watermark` into a cache in the stream's layout, as Create does. @return 0
     */
    int LoadWatermark();

    /** The watermark's layer. @return 0 */
    int ApplyWatermark(DFRAME* frame);

    unsigned int Enabled;
    unsigned int FillBackground;
    unsigned int AudioEnable;
    unsigned int AudioX;
    unsigned int AudioY;
    unsigned int AudioChannels; /**< historyChannels at most, which nothing tests */
    unsigned int VChipEnable;
    unsigned int CaptionsEnable;
    unsigned int CaptionSource;
    unsigned int TimeCodeLTCEnable;
    unsigned int TimeCodeLUBEnable;
    unsigned int TimeCodeVITCEnable;
    unsigned int TimeCodeVUBEnable;
    unsigned int TimeCodeVsyncEnable;
    unsigned int TimeCodeLTCFrameEnable;
    unsigned int TimeCodeVITCFrameEnable;
    unsigned int tcType; /**< of the stream, as vidGetTCType names it */
    unsigned int TimeCodeX;
    unsigned int TimeCodeY;
    unsigned int TimeCodeSize;
    unsigned int WatermarkEnable;
    unsigned int WatermarkX;
    unsigned int WatermarkY;
    unsigned int WatermarkOpacity;
    char* Watermark; /**< path of the watermark's file; the host's, which sets it before Create */
    unsigned int SourceFormatEnable;
    unsigned int SourceFormatX;
    unsigned int SourceFormatY;
    unsigned int CustomTextEnabled[textSlots];
    unsigned int CustomTextX[textSlots];
    unsigned int CustomTextY[textSlots];
    char* CustomText[textSlots]; /**< owned, made by new[]; 511 characters at most */

    ZRDraw* draw;               /**< made on the first frame */
    tagBITMAPINFO bitmapHeader; /**< of `video`, completed by GetDraw */
    char* reservedArray;
    const char* iniPath; /**< set while a settings file is read or written */
    std::FILE* iniFile;

    unsigned int wmWidth, wmHeight;
    unsigned int wmLayout; /**< the `pixelCode` that the watermark was loaded for */
    unsigned int* wmV210;  /**< Y0, Cb, Y1, Cr, A of each pixel pair */
    unsigned char* wmYuv2; /**< Y, Cb, Y, Cr, A of each pixel pair */
    unsigned char* wmBgra; /**< the picture itself */

    /** The levels of each meter; nothing reads them. */
    unsigned int levelHistory[historyChannels][historyLevels];
    unsigned int pixelCode; /**< biCompression of `video` */
    KPXVIDEO video;
    KPXSYSTEM system;
};

/** Fills a box in the foreground colour, a Line a row; each row has `width` + 1 pixels. */
ZRDRAW_API void fillRect(ZRDraw* draw, int x, int y, int height, int width);

/** @} */

#endif
