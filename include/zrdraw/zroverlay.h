/**
 * CZrOverlay: burns time code, texts, the source's format, a watermark and audio meters into the
 * frames of an outgoing video stream.
 *
 * A host makes one a stream, lets it load its settings, hands it the stream's description with
 * Create, and calls BurnIn for each frame just before the frame leaves. Commands may change
 * settings at any time between frames. Nothing here takes a lock: BurnIn, commands and settings
 * must not run at the same time.
 *
 * zrdraw/overlay_settings.h tells what each setting does.
 */
#ifndef ZRDRAW_ZROVERLAY_H
#define ZRDRAW_ZROVERLAY_H

#include "zrdraw/records.h"
#include "zrdraw/zrdraw.h"

#include <cstdio>

class ZRDRAW_API CZrOverlay {
public:
    static constexpr int textSlots = 10;
    static constexpr int historyChannels = 32;
    static constexpr int historyLevels = 100;

    /** Takes the settings' initial values; reads no configuration. */
    CZrOverlay();

    /** Frees the custom texts and releases the drawing object. Watermark caches stay allocated. */
    virtual ~CZrOverlay();

    CZrOverlay(const CZrOverlay&) = delete;
    CZrOverlay& operator=(const CZrOverlay&) = delete;

    /**
     * Takes a copy of a stream's description and loads the watermark, if that is enabled: settings
     * are to be loaded, and the field `Watermark` set, before. May be called again for another
     * stream; a drawing object made meanwhile stays, and so do old watermark caches.
     * @return 0
     */
    virtual int Create(KPXVIDEO* newVideo, KPXSYSTEM* newSystem);

    /** Releases the drawing object; the next BurnIn makes a new one. @return 0 */
    virtual int Destroy();

    /**
     * Draws the enabled layers into a frame: time codes, watermark, source format, custom texts,
     * meters, each over the ones before. Does nothing before Create or while `Enabled` is 0. On an
     * interlaced stream the tops of texts and meters and the size of the time code become even for
     * good, in the settings themselves.
     *
     * Allocates nothing after the first frame, but for a drawing object a frame where a watermark
     * lies on v210.
     * @param audioLevels 16-bit amplitudes, two channels a word, the even one low; may be null
     * @param audioPeaks  peaks in the same form; may be null
     * @param tcAdjust    frames that are taken off both time codes
     * @return 0
     */
    virtual int BurnIn(DFRAME* frame, unsigned int* audioLevels, unsigned int* audioPeaks,
                       unsigned int tcAdjust);

    /**
     * Sets or asks for settings, see zrCommand and zrOverlayCommand. Nothing is saved and no
     * watermark is loaded. A query must not be sent for a text that is null: it is copied unseen,
     * without a bound.
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
     * to the store.
     * @return 0
     */
    virtual int SaveConfigINI(const char* path);

    /**
     * Reads a settings file that must exist: drops all custom texts, sets every number that the
     * section names to 0, and takes custom texts from the '=' of their line on.
     * @return 0
     */
    virtual int LoadConfigINI(const char* path);

    /** The meters' layer; `draw` must exist. @return 0 */
    int drawAudMeters(unsigned int* levels, unsigned int* peaks);

    /** Reads the file of `Watermark` into a cache in the stream's layout. @return 0 */
    int LoadWatermark();

    /** The watermark's layer. @return 0 */
    int ApplyWatermark(DFRAME* frame);

    unsigned int Enabled;
    unsigned int FillBackground;
    unsigned int AudioEnable;
    unsigned int AudioX;
    unsigned int AudioY;
    unsigned int AudioChannels;
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
    char* CustomText[textSlots]; /**< owned, made by new[] */

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

#endif
