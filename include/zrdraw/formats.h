/**
 * @file
 * @ingroup formats
 *
 * The format classes: each reads and writes one family of layouts. Objects of them come from
 * GetDraw; a class is named here for callers that derive from one or make one themselves.
 *
 * Inheritance is virtual, so that a derived class names ZRDraw(code) in its own constructor, and
 * sets `pixelType` where its layout has a code. An object starts with one reference; ReleaseDraw
 * deletes it with the last one, so one that `new` did not make gets a further reference before it
 * is handed there.
 */
#ifndef ZRDRAW_FORMATS_H
#define ZRDRAW_FORMATS_H

#include "zrdraw/zrdraw.h"

/** @addtogroup formats
 * @{ */

/**
 * The four 32-bit RGB layouts, codes 1 to 4. GetPixelYCbCr does not test the address, so a
 * coordinate off the canvas is the caller's fault; GetPixelHSV always answers 0.
 */
class ZRDRAW_API CDrawRGBA32 : public virtual ZRDraw {
public:
    explicit CDrawRGBA32(unsigned int code);
    ~CDrawRGBA32() override;
    unsigned int GetPitch() override;
    int GetPixelYCbCr(int x, int y, double& cy, double& cb, double& cr, double& a) override;
    int GetPixelHSV(int x, int y, double& h, double& s, double& v, double& a) override;
};

/** The two 24-bit RGB layouts, codes 5 and 6. Alpha reads as 1.0; otherwise as CDrawRGBA32. */
class ZRDRAW_API CDrawRGB24 : public virtual ZRDraw {
public:
    explicit CDrawRGB24(unsigned int code);
    ~CDrawRGB24() override;
    unsigned int GetPitch() override;
    int GetPixelYCbCr(int x, int y, double& cy, double& cb, double& cr, double& a) override;
    int GetPixelHSV(int x, int y, double& h, double& s, double& v, double& a) override;
};

/**
 * The four 8-bit 4:2:2 layouts, codes 10 to 13; any other code counts as 11. Two pixels share one
 * Cb and Cr, and the last writer of a pair decides them: nothing is filtered. A write is opaque
 * whatever the transparency and additive switches say. An odd width ends in half a pair, and
 * writes to it reach two bytes behind the natural line.
 *
 * SetCanvas keeps the signs of height and width, so that a negative one refuses every pixel; it
 * raises a pitch below 2 * width, as which a negative one does not count: that stays the very large
 * number that its bits make; and it forces the matrix mode to BT.709 above a width of 720
 * and to BT.601 else, unless the full-range mode of the right standard is set.
 *
 * Colours: SetColorYCbCr takes fractions of the member scale and adds the member offset, so that
 * SetColorRGBA, whose matrix is in studio range already, gives white Y 232 and black Y 30 in
 * BT.709. SetColorYCbCr10 and SetColorYCbCr8 pack samples as they are; none is masked. The latter
 * is not virtual: by a ZRDraw* it is ZRPixel's, which goes through SetColorYCbCr and makes (Y 200,
 * Cb 100, Cr 50) into (200, 104, 60).
 * Foreground and background draw in odd colours until they are set: see docs/contract.md.
 *
 * On YUYV and YVYU an even pixel writes the luma of the odd one of its pair and the other way
 * round. Readers take the first luma of the pair, but for GetPixelRGBA on UYVY. Off the canvas
 * they answer 0: GetPixelRGBA with a mid grey and alpha 0.0, the others with 0 and the alpha left
 * alone. In the column behind an even width, GetPixelRGBA on UYVY takes that of the even pixel.
 * GetLuma does not
 * test the coordinate. There is no HSV: GetPixelHSV answers -1 and writes nothing.
 */
class ZRDRAW_API CDrawYCbCrYUYV : public virtual ZRDraw {
public:
    explicit CDrawYCbCrYUYV(unsigned int code);
    ~CDrawYCbCrYUYV() override;
    int SetCanvas(char* newCanvas, int newHeight, int newWidth, int newPitch) override;
    unsigned int GetPitch() override;
    char* GetPixel(int x, int y) override;
    int PutPixel(int x, int y, bool selector) override;
    int GetPixelRGBA(int x, int y, double& r, double& g, double& b, double& a) override;
    int GetPixelYCbCr(int x, int y, double& cy, double& cb, double& cr, double& a) override;
    int GetPixelYCbCr8(int x, int y, unsigned char& cy, unsigned char& cb, unsigned char& cr,
                       unsigned char& a) override;
    int GetPixelYCbCr10(int x, int y, unsigned int& cy, unsigned int& cb, unsigned int& cr,
                        unsigned int& a) override;
    int GetPixelHSV(int x, int y, double& h, double& s, double& v, double& a) override;
    double GetLuma(int x, int y) override;
    int SetColorYCbCr(double y, double cb, double cr, double a, bool selector) override;
    int SetColorRGBA(double r, double g, double b, double a, bool selector) override;
    int SetColorYCbCr10(unsigned int y, unsigned int cb, unsigned int cr, unsigned int a,
                        bool selector) override;
    int SetColorYCbCr8(unsigned char y, unsigned char cb, unsigned char cr, unsigned char a,
                       bool selector);

    double yOffset, yScale; /**< an 8-bit sample is the fraction * scale + offset, truncated */
    double cbOffset, cbScale;
    double crOffset, crScale;
    unsigned int foreWord; /**< foreground, as the four bytes of a pixel pair */
    unsigned int backWord;
    unsigned int reservedWord;
};

/**
 * The v210 layout, code 14; the codes 15 and 16 are kept and mean the same, any other counts as
 * 14. Six pixels stand in four words; two of them share one Cb and Cr, and the last writer of a
 * pair decides them. A write is opaque, and leaves bits 30 and 31 of each word alone.
 *
 * SetCanvas raises a pitch below the natural line, which is 128 bytes for each started 48 pixels,
 * but not a negative one, whose magnitude stands; and it sets the matrix mode: BT.601 below a width
 * of 721, else BT.709.
 *
 * Colours: SetColorYCbCr takes fractions of 1023, SetColorYCbCr10 samples as they are, unmasked.
 *
 * Readers scale by 1/1024. In the column equal to the width they take the samples of the pixel that
 * follows in its group. Off the canvas they write nothing and answer 0, and GetLuma does not
 * test the coordinate. The last pixel of a group reads the luma of the third. In GetPixelYCbCr8,
 * which drops the two low bits, the Cr of the first pixel of a group is its low eight bits.
 * There is no HSV: GetPixelHSV answers -1 and writes nothing.
 */
class ZRDRAW_API CDrawYCbCr10 : public virtual ZRDraw {
public:
    explicit CDrawYCbCr10(unsigned int code);
    ~CDrawYCbCr10() override;
    int SetCanvas(char* newCanvas, int newHeight, int newWidth, int newPitch) override;
    unsigned int GetPitch() override;
    char* GetPixel(int x, int y) override;
    int PutPixel(int x, int y, bool selector) override;
    int GetPixelRGBA(int x, int y, double& r, double& g, double& b, double& a) override;
    int GetPixelYCbCr(int x, int y, double& cy, double& cb, double& cr, double& a) override;
    int GetPixelYCbCr8(int x, int y, unsigned char& cy, unsigned char& cb, unsigned char& cr,
                       unsigned char& a) override;
    int GetPixelYCbCr10(int x, int y, unsigned int& cy, unsigned int& cb, unsigned int& cr,
                        unsigned int& a) override;
    int GetPixelHSV(int x, int y, double& h, double& s, double& v, double& a) override;
    double GetLuma(int x, int y) override;
    int SetColorYCbCr(double y, double cb, double cr, double a, bool selector) override;
    int SetColorRGBA(double r, double g, double b, double a, bool selector) override;
    int SetColorYCbCr10(unsigned int y, unsigned int cb, unsigned int cr, unsigned int a,
                        bool selector) override;

    double yOffset, yScale; /**< read by nothing */
    double cbOffset, cbScale;
    double crOffset, crScale;
    unsigned long foreWord; /**< foreground: Y in bits 0 to 9, Cb in 10 to 19, Cr in 20 to 29 */
    unsigned long backWord;
    unsigned long reservedWord;
};

/**
 * Words of 10-bit RGB in big-endian order, code 20. Colours live in the slots of ZRPixel, so
 * transparency and the additive switch mix them as if they were 8-bit pixels. Readers do not test
 * the coordinate.
 */
class ZRDRAW_API CDrawRGB30DPX : public virtual ZRDraw {
public:
    explicit CDrawRGB30DPX(unsigned int code);
    ~CDrawRGB30DPX() override;
    unsigned int GetPitch() override;
    int GetPixelRGBA(int x, int y, double& r, double& g, double& b, double& a) override;
    int GetPixelYCbCr(int x, int y, double& cy, double& cb, double& cr, double& a) override;
    int GetPixelHSV(int x, int y, double& h, double& s, double& v, double& a) override;
    double GetLuma(int x, int y) override;
    int GetColorRGBA(double& r, double& g, double& b, double& a, bool selector) override;
    int SetColorRGBA(double r, double g, double b, double a, bool selector) override;
};

/**
 * Three 16-bit words R, G, B, code 31. Pixels are written in the members below, which no colour
 * operation changes: the foreground is 255 of 65535 in each word and the background 0, until a
 * caller stores something else there. A write is opaque.
 *
 * Readers scale by 1/65536 and leave the alpha alone, but off the canvas, where everything reads
 * 0.0; the answer then is -1 from GetPixelRGBA and GetPixelYCbCr, and 0 from GetPixelHSV. GetLuma
 * is the plain average and does not test the coordinate.
 */
class ZRDRAW_API CDrawRGB48 : public virtual ZRDraw {
public:
    explicit CDrawRGB48(unsigned int code);
    ~CDrawRGB48() override;
    unsigned int GetPitch() override;
    char* GetPixel(int x, int y) override;
    int PutPixel(int x, int y, bool selector) override;
    int GetPixelRGBA(int x, int y, double& r, double& g, double& b, double& a) override;
    int GetPixelYCbCr(int x, int y, double& cy, double& cb, double& cr, double& a) override;
    int GetPixelHSV(int x, int y, double& h, double& s, double& v, double& a) override;
    double GetLuma(int x, int y) override;

    unsigned int foreR, foreG, foreB;
    unsigned int backR, backG, backB;
};

/**
 * Four 16-bit words A, R, G, B, code 32. As CDrawRGB48, but the alpha is read as well.
 */
class ZRDRAW_API CDrawARGB64 : public virtual ZRDraw {
public:
    explicit CDrawARGB64(unsigned int code);
    ~CDrawARGB64() override;
    unsigned int GetPitch() override;
    char* GetPixel(int x, int y) override;
    int PutPixel(int x, int y, bool selector) override;
    int GetPixelRGBA(int x, int y, double& r, double& g, double& b, double& a) override;
    int GetPixelYCbCr(int x, int y, double& cy, double& cb, double& cr, double& a) override;
    int GetPixelHSV(int x, int y, double& h, double& s, double& v, double& a) override;
    double GetLuma(int x, int y) override;

    unsigned int foreA, foreR, foreG, foreB;
    unsigned int backA, backR, backG, backB;
};

/**
 * Three half floats R, G, B, code 37, which are handled as the 16-bit integers of CDrawRGB48: a
 * written 255 reads as 255/65536.
 */
class ZRDRAW_API CDrawRGBHalf48 : public virtual ZRDraw {
public:
    explicit CDrawRGBHalf48(unsigned int code);
    ~CDrawRGBHalf48() override;
    unsigned int GetPitch() override;
    char* GetPixel(int x, int y) override;
    int PutPixel(int x, int y, bool selector) override;
    int GetPixelRGBA(int x, int y, double& r, double& g, double& b, double& a) override;
    int GetPixelYCbCr(int x, int y, double& cy, double& cb, double& cr, double& a) override;
    int GetPixelHSV(int x, int y, double& h, double& s, double& v, double& a) override;
    double GetLuma(int x, int y) override;

    unsigned int foreR, foreG, foreB;
    unsigned int backR, backG, backB;
};

/**
 * Four half floats R, G, B, A, code 38, from and to the 8-bit colour slots of ZRPixel. A write is
 * opaque. Off the canvas readers give 0.0 and answer -1, but GetPixelHSV, which answers 0;
 * GetLuma is the plain average, and 0.0 there. See zrdraw/half_float.h for the conversions.
 */
class ZRDRAW_API CDrawRGBAHalf : public virtual ZRDraw {
public:
    explicit CDrawRGBAHalf(unsigned int code);
    ~CDrawRGBAHalf() override;
    unsigned int GetPitch() override;
    char* GetPixel(int x, int y) override;
    int PutPixel(int x, int y, bool selector) override;
    int GetPixelRGBA(int x, int y, double& r, double& g, double& b, double& a) override;
    int GetPixelYCbCr(int x, int y, double& cy, double& cb, double& cr, double& a) override;
    int GetPixelHSV(int x, int y, double& h, double& s, double& v, double& a) override;
    double GetLuma(int x, int y) override;
};

/**
 * The eight 12-bit Bayer mosaics, codes 21 to 28, two samples in three bytes. An even column is
 * written in its high eight bits only. An odd column gets the high nibble of its own channel and
 * the low nibble of the even column's, and clears the low bits of its even neighbour. A write is
 * opaque. SetColorRGBA stores into the members below, and GetColorRGBA does not read them.
 *
 * Readers take the 2 x 2 cell that the pixel is in, with the first green of it, as 8-bit values;
 * alpha is 1.0. No coordinate is tested, and they read beyond what they are given: GetLuma reads
 * the line below the given one, GetPixelRGBA that below an even one and that below the last for a
 * coordinate equal to the height. In the last column of an odd width GetPixelRGBA reads two bytes
 * behind the natural line and GetLuma one; for a coordinate equal to an even width GetPixelRGBA
 * reads one. zrFrameRoom of zrdraw/layouts.h counts all of that. GetLuma averages three raw bytes
 * from the line as given, not from the cell's first.
 */
class ZRDRAW_API CDrawBayer : public virtual ZRDraw {
public:
    explicit CDrawBayer(unsigned int code);
    ~CDrawBayer() override;
    unsigned int GetPitch() override;
    char* GetPixel(int x, int y) override;
    int PutPixel(int x, int y, bool selector) override;
    int SetColorRGBA(double r, double g, double b, double a, bool selector) override;
    int GetPixelYCbCr(int x, int y, double& cy, double& cb, double& cr, double& a) override;
    int GetPixelHSV(int x, int y, double& h, double& s, double& v, double& a) override;
    int GetPixelRGBA(int x, int y, double& r, double& g, double& b, double& a) override;
    double GetLuma(int x, int y) override;

    unsigned char bayerForeground[4]; /**< r, g, b, a */
    unsigned char bayerBackground[4];
};

/** A colour of the interleaved component layouts, on a scale of 65536. */
struct zrYcc {
    unsigned int first;  /**< Y */
    unsigned int third;  /**< Cr */
    unsigned int second; /**< Cb */
};

/** As zrYcc, with the fourth component of CDrawYCbCrYCbCrA16. */
struct zrYccA {
    unsigned int first, third, second, fourth;
};

/**
 * Three 16-bit words Y, Cb, Cr. GetDraw never makes one: no code is served by it, and pixelType
 * stays that of ptRGBA32, as which runs and erases treat the canvas.
 *
 * Of this class and the three below: SetCanvas keeps the signs of height and width, raises a
 * pitch below the bytes of a line, and forces the matrix mode by the width as CDrawYCbCrYUYV
 * does. GetPitch is 2 * width. A colour is a fraction of 65536, cut to the width of a sample
 * when it is written, so that 1.0 is stored as 0. A write is opaque. Readers scale by 1/65536;
 * off the canvas they answer -1 and GetPixelRGBA and GetPixelYCbCr give 0.0. GetPixelHSV always
 * answers -1 and writes nothing.
 *
 * Here, GetPixelYCbCr leaves the alpha alone, and GetLuma off the canvas stops the program.
 */
class ZRDRAW_API CDrawYCbCrYCbCr16 : public virtual ZRDraw {
public:
    explicit CDrawYCbCrYCbCr16(unsigned int code);
    ~CDrawYCbCrYCbCr16() override;
    int SetCanvas(char* newCanvas, int newHeight, int newWidth, int newPitch) override;
    unsigned int GetPitch() override;
    char* GetPixel(int x, int y) override;
    int PutPixel(int x, int y, bool selector) override;
    int GetPixelRGBA(int x, int y, double& r, double& g, double& b, double& a) override;
    int GetPixelYCbCr(int x, int y, double& cy, double& cb, double& cr, double& a) override;
    int GetPixelHSV(int x, int y, double& h, double& s, double& v, double& a) override;
    double GetLuma(int x, int y) override;
    int SetColorYCbCr(double y, double cb, double cr, double a, bool selector) override;
    int SetColorRGBA(double r, double g, double b, double a, bool selector) override;

    double yOffset, yScale; /**< read by nothing */
    double cbOffset, cbScale;
    double crOffset, crScale;
    zrYcc yccForeground;
    zrYcc yccBackground;
};

/**
 * Four 16-bit words Y, Cb, Cr and a fourth, into which a colour's Cr goes a second time. PutPixel
 * writes at column 6x and all else is at column 8x, so that neighbours overlap when drawn.
 */
class ZRDRAW_API CDrawYCbCrYCbCrA16 : public virtual ZRDraw {
public:
    explicit CDrawYCbCrYCbCrA16(unsigned int code);
    ~CDrawYCbCrYCbCrA16() override;
    int SetCanvas(char* newCanvas, int newHeight, int newWidth, int newPitch) override;
    unsigned int GetPitch() override;
    char* GetPixel(int x, int y) override;
    int PutPixel(int x, int y, bool selector) override;
    int GetPixelRGBA(int x, int y, double& r, double& g, double& b, double& a) override;
    int GetPixelYCbCr(int x, int y, double& cy, double& cb, double& cr, double& a) override;
    int GetPixelHSV(int x, int y, double& h, double& s, double& v, double& a) override;
    double GetLuma(int x, int y) override;
    int SetColorYCbCr(double y, double cb, double cr, double a, bool selector) override;
    int SetColorRGBA(double r, double g, double b, double a, bool selector) override;

    double yOffset, yScale; /**< read by nothing */
    double cbOffset, cbScale;
    double crOffset, crScale;
    zrYccA yccForeground;
    zrYccA yccBackground;
};

/**
 * An interleaved plane of 8-bit Cb and Cr, code 10000. What is stored are the low eight bits of a
 * colour on the scale of 65536. Readers take the pixel and its right neighbour for two 16-bit
 * samples, so they need two bytes behind the last pixel. Luma is always 0.5.
 */
class ZRDRAW_API CDrawUV8 : public virtual ZRDraw {
public:
    explicit CDrawUV8(unsigned int code);
    ~CDrawUV8() override;
    int SetCanvas(char* newCanvas, int newHeight, int newWidth, int newPitch) override;
    unsigned int GetPitch() override;
    char* GetPixel(int x, int y) override;
    int PutPixel(int x, int y, bool selector) override;
    int GetPixelRGBA(int x, int y, double& r, double& g, double& b, double& a) override;
    int GetPixelYCbCr(int x, int y, double& cy, double& cb, double& cr, double& a) override;
    int GetPixelHSV(int x, int y, double& h, double& s, double& v, double& a) override;
    double GetLuma(int x, int y) override;
    int SetColorYCbCr(double y, double cb, double cr, double a, bool selector) override;
    int SetColorRGBA(double r, double g, double b, double a, bool selector) override;

    double yOffset, yScale; /**< read by nothing */
    double cbOffset, cbScale;
    double crOffset, crScale;
    zrYcc yccForeground;
    zrYcc yccBackground;
};

/**
 * An interleaved plane of 16-bit Cb and Cr, code 10001. Luma is always 0.5.
 */
class ZRDRAW_API CDrawUV16 : public virtual ZRDraw {
public:
    explicit CDrawUV16(unsigned int code);
    ~CDrawUV16() override;
    int SetCanvas(char* newCanvas, int newHeight, int newWidth, int newPitch) override;
    unsigned int GetPitch() override;
    char* GetPixel(int x, int y) override;
    int PutPixel(int x, int y, bool selector) override;
    int GetPixelRGBA(int x, int y, double& r, double& g, double& b, double& a) override;
    int GetPixelYCbCr(int x, int y, double& cy, double& cb, double& cr, double& a) override;
    int GetPixelHSV(int x, int y, double& h, double& s, double& v, double& a) override;
    double GetLuma(int x, int y) override;
    int SetColorYCbCr(double y, double cb, double cr, double a, bool selector) override;
    int SetColorRGBA(double r, double g, double b, double a, bool selector) override;

    double yOffset, yScale; /**< read by nothing */
    double cbOffset, cbScale;
    double crOffset, crScale;
    zrYcc yccForeground;
    zrYcc yccBackground;
};

/** @} */

#endif
