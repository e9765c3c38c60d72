/**
 * @file
 * @ingroup pixel
 *
 * ZRPixel: one canvas with its colour state, the root of all drawing classes.
 */
#ifndef ZRDRAW_ZRPIXEL_H
#define ZRDRAW_ZRPIXEL_H

#include "zrdraw/types.h"

/** @addtogroup pixel
 * @{ */

/**
 * A canvas, which is a caller's frame buffer that the object does not own, with two colour slots,
 * a transparency state, a lock, a change event and a reference count.
 *
 * Conventions of every operation here and in ZRDraw:
 * - A trailing `bool selector` chooses the colour slot: true the foreground, false the background.
 * - Colour components are 0.0 to 1.0 of full scale; Cb and Cr have their zero at 0.5; hue is in
 *   degrees, 0.0 to 360.0, which only rounding reaches.
 * - An `int` result is 0 for success and -1 for refusal unless told otherwise.
 * - A coordinate equal to the width or the height is legal and lands on the last pixel or line, but
 *   for what zrdraw/formats.h tells of readers of 4:2:2 and v210; one beyond that, or negative, is
 *   off the canvas. Coordinates compare as signed numbers.
 * - No operation takes the lock, but for Lock and TryLock, allocates, but for Fill and the font
 * file readers, or logs. Callers that share an object between threads use Lock and Unlock
 * themselves.
 *
 * The pixel operations of this class serve the 8-bit RGB layouts; the format classes of
 * zrdraw/formats.h replace what depends on the memory layout.
 */
class ZRDRAW_API ZRPixel {
public:
    /** Creates the event and the lock through the platform layer. There is no canvas yet. */
    ZRPixel();
    /** Closes the event and the lock; the canvas is left alone. */
    virtual ~ZRPixel();

    ZRPixel(const ZRPixel&) = delete;
    ZRPixel& operator=(const ZRPixel&) = delete;

    /**
     * Points the object at a frame. May be called again at any time; colours, transparency and
     * lock survive it.
     * @param newCanvas first byte of the frame; null is accepted, pixel operations then refuse
     * @param newHeight lines, and it stands before the width. A negative height counts as positive
     *                  and only sets `flipped`, which changes no address. The 4:2:2, v210 and
     *                  component classes clear `flipped`, and tell what else they do with a sign
     * @param newWidth  pixels
     * @param newPitch  bytes from one line to the next. 0 takes the layout's natural line; a
     *                  negative pitch counts as positive; one below the natural line is raised to
     *                  it for the layouts so marked in zrdraw/layouts.h
     * @return 0, always
     */
    virtual int SetCanvas(char* newCanvas, int newHeight, int newWidth, int newPitch);

    /** The stored pitch here; in the format classes the natural line of the current width. */
    virtual unsigned int GetPitch();

    /**
     * YCbCr to RGB by the matrix mode in force. Modes below 1000 clamp r, g and b to 0.0 ... 1.0.
     * `a` is ignored and `aOut` becomes 0.0; in an unknown mode no output is written.
     * @return 0, always
     */
    virtual int YCbCrToRGB(double y, double cb, double cr, double a, double& r, double& g,
                           double& b, double& aOut);

    /**
     * RGB to YCbCr by the matrix mode in force. Never clamps. `aOut` is not written, and in an
     * unknown mode nothing is.
     * @return 0, always
     */
    virtual int RGBToYCbCr(double r, double g, double b, double a, double& y, double& cb,
                           double& cr, double& aOut);

    /**
     * RGB on a scale of 0 to 255 to YCbCr on a scale of 0 to 1023, in studio range. The BT.601 and
     * BT.709 studio modes (0, 1, 3) share one matrix, the BT.2020 modes 5 and 6 another, and each
     * raw mode does as the mode 1000 lower; in any other mode nothing is written. `aOut` is never
     * written.
     * @return 0, always
     */
    virtual int RGBToYCbCr10(double r, double g, double b, double a, double& y, double& cb,
                             double& cr, double& aOut);

    /**
     * RGB to hue, saturation and value. For grey and black, h is -1.0, s is 0.0 and `aOut` is not
     * written; otherwise `aOut` is `a`.
     * @return 0, always
     */
    virtual int RGBToHSV(double r, double g, double b, double a, double& h, double& s, double& v,
                         double& aOut);

    /** YCbCrToRGB, then RGBToHSV; the alpha is lost on the way and counts as 0.0. @return 0 */
    virtual int YCbCrToHSV(double y, double cb, double cr, double a, double& h, double& s,
                           double& v, double& aOut);

    /**
     * Mixes a second colour into the first: each of r, g and b becomes (1 - w) * itself + w * its
     * counterpart, with w = percent / 100. Nothing is clamped or tested.
     */
    virtual void BlendPixel(double& r, double& g, double& b, double r2, double g2, double b2,
                            int percent);

    /** The address of a pixel; null off the canvas or without one. */
    virtual char* GetPixel(int x, int y);

    /**
     * Writes a pixel in the colour of a slot. In the foreground with the additive switch on: added
     * to what is there, scaled by the colour's alpha, whatever the transparency. Else, with the
     * transparency switch on and the slot's transparency above 0.0: blended with what is there.
     * Else stored.
     * On 24-bit layouts only the plain foreground write has three bytes; see docs/contract.md.
     * @return 0, or -1 off the canvas, with nothing written
     */
    virtual int PutPixel(int x, int y, bool selector);

    /** 1 when SetPixel takes RGB for this pixelType, 0 when it takes YCbCr. */
    virtual int IsRgbType();

    /** The transparency switch, which both slots share. */
    virtual void SetTransparency(bool on);
    virtual bool GetTransparency();

    /** The additive switch, which only foreground writes of PutPixel read. */
    virtual void SetAlphaAdditive(bool on);
    virtual bool GetAlphaAdditive();

    /**
     * Sets a slot's colour, (r, g, b, a) or (y, cb, cr, a) by IsRgbType, and writes the pixel. The
     * slot keeps the colour.
     * @return that of PutPixel
     */
    virtual int SetPixel(int x, int y, double c0, double c1, double c2, double c3, bool selector);

    /** Reads a pixel. Off the canvas all outputs are 0.0. @return 0, or -1 off the canvas */
    virtual int GetPixelRGBA(int x, int y, double& r, double& g, double& b, double& a);

    /**
     * Reads a pixel and converts it by the matrix mode in force. Some format classes do not test
     * the coordinate in this form and so in the two below, as they tell.
     * @return as GetPixelRGBA
     */
    virtual int GetPixelYCbCr(int x, int y, double& cy, double& cb, double& cr, double& a);

    /** GetPixelYCbCr on a scale of 255, truncated to 8 bits. */
    virtual int GetPixelYCbCr8(int x, int y, unsigned char& cy, unsigned char& cb,
                               unsigned char& cr, unsigned char& a);

    /** GetPixelYCbCr on a scale of 1024, truncated: full scale reads 1024. */
    virtual int GetPixelYCbCr10(int x, int y, unsigned int& cy, unsigned int& cb, unsigned int& cr,
                                unsigned int& a);

    /**
     * Reads a pixel as hue, saturation and value. A grey pixel has h 0.0 here and -1.0 in the
     * format classes.
     * @return as GetPixelRGBA here; the format classes tell their own
     */
    virtual int GetPixelHSV(int x, int y, double& h, double& s, double& v, double& a);

    /**
     * Luma of a pixel on a scale of 256, by weights of its own: white reads 255/256, but 0.8556 in
     * the full-range modes of BT.601 and BT.709 and their raw twins (2, 4, 1002, 1004). The
     * coordinate must be on the canvas: it is not tested.
     */
    virtual double GetLuma(int x, int y);

    /** A slot's colour, by GetColorRGBA and RGBToYCbCr. @return 0 */
    virtual int GetColorYCbCr(double& y, double& cb, double& cr, double& a, bool selector);

    /**
     * Sets a slot's colour in YCbCr, by YCbCrToRGB and SetColorRGBA. The alpha that arrives is
     * 0.0; where alpha matters, use SetColorRGBA.
     * @return 0
     */
    virtual int SetColorYCbCr(double y, double cb, double cr, double a, bool selector);

    /** SetColorYCbCr with each argument / 1024. */
    virtual int SetColorYCbCr10(unsigned int y, unsigned int cb, unsigned int cr, unsigned int a,
                                bool selector);

    /** A slot's colour as the layout stores it, each byte / 255; alpha 1.0 where there is none. */
    virtual int GetColorRGBA(double& r, double& g, double& b, double& a, bool selector);

    /**
     * Packs a colour once into a slot, so that PutPixel only stores or blends. Each component
     * times 255 is truncated and cut to its low 8 bits: nothing is rounded or clamped.
     * @return 0
     */
    virtual int SetColorRGBA(double r, double g, double b, double a, bool selector);

    /** Stores a slot's transparency, clamped to 0.0 ... 1.0; the switch is not touched. @return 0
     */
    virtual int SetTransparency(double value, bool selector);

    /** A fraction of 1 of the width or the height, in pixels, truncated; not clamped. */
    virtual int PercentX(double fraction);
    virtual int PercentY(double fraction);

    /** Stores the matrix mode as it comes; packed colours are not touched. @return 0 */
    virtual int SetYCbCrMode(cmYCbCr mode);
    virtual int GetYCbCrMode(cmYCbCr& mode);

    /** SetColorYCbCr with each argument / 255. */
    int SetColorYCbCr8(unsigned char y, unsigned char cb, unsigned char cr, unsigned char a,
                       bool selector);

    /** Sets the change event, a signal between callers that the library itself never gives. */
    void SetChangeEvent();

    /** Waits for the change event. @return what zrOSWaitForEvent answers */
    int WaitForChangeEvent(unsigned int timeout);

    /**
     * Takes the object's re-entrant lock.
     * @param timeout 0 or 0xFFFFFFFF waits without bound; any other value is the number of tries,
     *                one a millisecond
     * @return 0 after a wait without bound. After a bounded one 128 means taken, 0 not taken
     */
    int Lock(unsigned int timeout);

    /** Takes the lock if it is free or the caller's. @return 0 when taken, 258 when not */
    int TryLock();
    int Unlock();

    unsigned int pixelType;  /**< layout code of zrdraw/types.h */
    cmYCbCr yCbCrMode;       /**< colour matrix mode */
    unsigned int width;      /**< pixels of a line */
    unsigned int height;     /**< lines */
    unsigned int pitch;      /**< bytes from one line to the next */
    bool flipped;            /**< the height given was negative; nothing reads it */
    unsigned int foreColor;  /**< foreground, packed as the layout stores it */
    double foreTransparency; /**< 0.0 opaque to 1.0 */
    unsigned int backColor;
    double backTransparency;
    bool transparency;       /**< the transparency switch */
    bool alphaAdditive;      /**< the additive switch */
    unsigned int lastChange; /**< a number that callers keep here */
    bool antiAlias;          /**< read by ZRDraw::Line; set by callers only */
    bool reservedFlag;
    long refCount;     /**< changed under the lock by AddRefDraw and ReleaseDraw */
    void* changeEvent; /**< of zrOSCreateEvent; null if that failed */
    zrOSCriticalSection lock;
    char* canvas; /**< first byte of the frame, which belongs to the caller */
};

/** @} */

#endif
