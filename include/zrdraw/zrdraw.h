/**
 * @file
 * @ingroup drawing
 *
 * ZRDraw: the drawing operations, and the functions that size frames and make drawing objects.
 */
#ifndef ZRDRAW_ZRDRAW_H
#define ZRDRAW_ZRDRAW_H

#include "zrdraw/zrpixel.h"

/** @addtogroup drawing
 * @{ */

/** The bits of ZRDraw::DrawText's `format`. Others are ignored. */
enum zrTextFormat : unsigned int {
    zrTextCentre = 0x001,     /**< wins over the next two */
    zrTextRight = 0x002,      /**< align to the right edge */
    zrTextKeepBottom = 0x008, /**< the text stands on the rectangle's bottom, not below its top */
    zrTextReport = 0x400 /**< put the text's rectangle into the caller's; it is drawn as well */
};

/**
 * The primitives. They know no layouts: pixels go through the virtual PutPixel, in the foreground
 * slot unless told otherwise, and there is no clipper, so each pixel off the canvas is refused by
 * itself. LineHoriz and LineVert refuse whole lines instead. Horizontal runs and what is made of
 * them, erases included, pass PutPixel by on 32-bit RGB, and call it for their first pixel only on
 * other layouts of whole-byte pixels: see LineHoriz. Objects exactly of a class of ours are written
 * without the calls, with the same result and several times as fast; a class that is derived from
 * one gets every call.
 *
 * Coordinates are pixels. Positions run in 16.16 fixed point, so a coordinate of 32,768 or more
 * in magnitude overflows, which nothing guards against.
 */
class ZRDRAW_API ZRDraw : public virtual ZRPixel {
public:
    /** Filters and scalers have no effect; the values are free for callers. */
    enum zrFilterType : unsigned int { zrFilterNone = 0 };
    enum zrScaleType : unsigned int { zrScaleNone = 0 };

    /** The four doubles of a text colour: r, g, b, a. */
    struct TextColor {
        double r, g, b, a;
    };

    /** The code is not stored: `pixelType` is set by the format class. */
    explicit ZRDraw(unsigned int pixelType);
    ~ZRDraw() override;

    /** Does nothing. @return 0 */
    virtual int SetBrush(unsigned char* brush, int brushWidth, int brushHeight);

    /** Makes (x, y) the current position, even off the canvas, and writes it. @return of PutPixel
     */
    virtual int Point(int x, int y, bool selector);
    virtual int MoveTo(int x, int y);
    /** As MoveTo(x, y); the old position goes to `previous` unless that is null. */
    virtual int MoveTo(int x, int y, _POINT* previous);
    /** Line from the current position to (x, y), which becomes the current position. */
    virtual int LineTo(int x, int y);
    virtual int Line(_POINT& from, _POINT& to);
    /**
     * A straight line with both ends, each pixel once, from the upper end to the lower one; the
     * same pixels in either direction. The current position stays.
     * With `antiAlias` set, lines that are neither axis-parallel nor diagonal take a weighted path
     * that changes the foreground colour; see docs/contract.md.
     * @return 0, always
     */
    virtual int Line(int x0, int y0, int x1, int y1);
    /** LineWu from the current position to (x, y), which becomes the current position. */
    virtual int LineWuTo(int x, int y);
    /**
     * An anti-aliased line by Wu's algorithm. The coverage of each pixel travels in the alpha of
     * the foreground colour, which is not restored: afterwards it is the last pixel's coverage.
     * @return 0, always
     */
    virtual int LineWu(int x0, int y0, int x1, int y1);
    /** A vertical run, both ends included. @return 0, or -1 when any of it is off the canvas */
    virtual int LineVert(int x, int y0, int y1);
    /**
     * A horizontal run, both ends included; the row stands between the columns. One fill on
     * layouts of whole-byte pixels, if it is opaque; on 32-bit RGB it always is. Else pixel by
     * pixel.
     * @return 0, or -1 when any of it is off the canvas
     */
    virtual int LineHoriz(int x0, int y, int x1);
    /**
     * A dashed line from the first point to the second: `on` pixels drawn, `off` skipped, in turn.
     * @return 0, always
     */
    virtual int Dash(int x0, int y0, int x1, int y1, int on, int off);

    /**
     * A circle's outline by the integer midpoint rule, eight pixels a step.
     * @return 0; -1 for a negative radius; for radius 0, which is one pixel, what PutPixel answers
     */
    virtual int Circle(int cx, int cy, int radius);
    /** An ellipse by centre and radii; the current position becomes (cx + rx, cy). @return 0 */
    virtual int Ellipse(int cx, int cy, int rx, int ry);
    /**
     * A filled circle of 2 * radius + 1 horizontal runs. A run over the left or right edge of the
     * canvas is refused whole.
     * @return 0, always
     */
    virtual int FillCircle(int cx, int cy, int radius);
    /**
     * Part of the ellipse inscribed in a box, counter-clockwise from the angle of one point to that
     * of another, as chords of one degree. The ends go to xStartArc and so on of zrdraw/arc_ends.h.
     * @return 0; -1 for an empty box or a point that is its centre
     */
    virtual int Arc(int left, int top, int right, int bottom, int xStart, int yStart, int xEnd,
                    int yEnd);
    /**
     * Arc with the two coordinates of the start point exchanged; (xEnd, yEnd) becomes the current
     * position.
     * @return 0, always
     */
    virtual int ArcTo(int left, int top, int right, int bottom, int xStart, int yStart, int xEnd,
                      int yEnd);
    /**
     * An arc by centre and angles in whole degrees, counter-clockwise with 0 at the right. The
     * second angle is the end, not the sweep.
     * @return 0, always
     */
    virtual int AngleArc(int cx, int cy, unsigned int radius, float startAngle, float endAngle);
    /** AngleArc with two radii; its end becomes the current position. */
    virtual int AngleArcTo(int cx, int cy, int rx, int ry, float startAngle, float endAngle);
    /**
     * A cubic Bezier curve by subdivision on whole coordinates. The current position becomes the
     * start of its last piece.
     * @return 0; -1 when its ends coincide
     */
    virtual int Bezier(int x1, int y1, int x2, int y2, int x3, int y3, int x4, int y4);
    /** Bezier curves end to end: 3n + 1 points. @return 0; -1 for null or another count */
    virtual int PolyBezier(const _POINT* points, unsigned int count);
    /** PolyBezier from points[0]; the last point becomes the current position. In both, a count
     * with the top bit set is a very large one, not a negative one. */
    virtual int PolyBezierTo(const _POINT* points, unsigned int count);

    /**
     * A Line between each two neighbours; shared vertices are written twice. The current position
     * stays.
     * @return 0, or -1 for fewer than two points
     */
    virtual int Polyline(const _POINT* points, unsigned int count);
    /**
     * Polyline from points[0]; the current position then becomes points[count], so the caller
     * supplies one element more than it draws. Refused as Polyline, with the position unchanged. A
     * count with the top bit set draws nothing and succeeds, and that far element is read.
     */
    virtual int PolylineTo(const _POINT* points, unsigned int count);

    /**
     * Fills a rectangle: its right column belongs to it, its bottom row does not. Rows that lie
     * partly off the canvas are refused whole. On 32-bit RGB a rectangle of the canvas' size is one
     * fill of the buffer, wherever it stands and whatever the pitch.
     * @return 0, always
     */
    virtual int FillRect(const RECT* rect);
    /** The outline of a rectangle, corners included. @return 0 */
    virtual int Rectangle(int left, int top, int right, int bottom);
    /**
     * An outline with elliptic corners. The current position becomes the end of the last corner.
     * @param cornerWidth both corners of a side together, pixels; cornerHeight likewise
     * @return 0; -1 when the corners do not fit
     */
    virtual int RoundRect(int left, int top, int right, int bottom, int cornerWidth,
                          int cornerHeight);
    /** ArcTo's arc and the lines from its ends to the middle of the box. @return 0 */
    virtual int Pie(int left, int top, int right, int bottom, int xStart, int yStart, int xEnd,
                    int yEnd);
    /**
     * Paints the whole canvas in a slot's colour: the background when `useBackground` is true. On
     * 32-bit RGB one opaque fill of the buffer, whatever the pitch.
     * @return 0, always
     */
    virtual int EraseCanvas(bool useBackground);
    /**
     * Flood fill, four-connected, of the pixels whose r, g and b each differ by at most `tolerance`
     * (0.0 to 1.0) from those of (x, y). Takes up to a byte a pixel of the canvas while it runs,
     * and the frontier; an allocation failure leaves as the allocator's exception. Where pixels are
     * whole bytes, objects exactly of a class of ours are filled by runs, which is many times as
     * fast.
     * @return 0; -1 off the canvas, for a width or height below 1, and without a frame, but on
     * 4:2:2 and v210, whose readers never refuse, 0 without a frame
     */
    virtual int Fill(int x, int y, double tolerance);
    /**
     * A linear blend from the foreground to the background colour at an angle in degrees: 0 from
     * left to right, 90 from top to bottom. The foreground colour is left as the last pixel's.
     * @return 0; -1 for a width or height below 1
     */
    virtual int GradientRect(int left, int top, int right, int bottom, int angle);

    /** These six do nothing, with any arguments, and answer 0. */
    virtual int SymGradientRect(int left, int top, int right, int bottom, int angle);
    virtual int CornerGradientRect(int left, int top, int right, int bottom, int corner);
    virtual int CenterGradientRect(int left, int top, int right, int bottom);
    virtual int RadialGradientFill(int left, int top, int right, int bottom, int cx, int cy);
    virtual int PatternFill(int left, int top, int right, int bottom, int patternWidth,
                            int patternHeight, unsigned char* pattern);
    virtual int RoundRectButton(int left, int top, int right, int bottom, int cornerWidth,
                                int cornerHeight);
    /** Does nothing. @return 0 */
    virtual int CopyRect(RECT* to, const RECT* from, ZRDraw* source);

    /** Sets the scale of labels, as it comes, and the built-in font. `font` is ignored. @return 0
     */
    virtual int LabelFont(unsigned int font, int scale);
    /** Does nothing. @return 0 */
    virtual int LabelFont(const char* name, unsigned int scale);
    /** Width of a label's cell in pixels; the height of one likewise. */
    virtual int LabelGetFontWidth();
    virtual int LabelGetFontHeight();
    /**
     * Writes a string in the built-in 8 by 10 font, the top left corner of its first cell at
     * (x, y). Characters are codes 0 to 127; there is no line handling. The current
     * position becomes that of the last single pixel written.
     * @param inverse ink in the background slot and empty pixels in the foreground slot
     * @param opaque  empty pixels of the cells are drawn at all
     * @return 0, always
     */
    virtual int Label(int x, int y, const char* text, bool inverse, bool opaque);

    /** These two do nothing. @return 0 */
    virtual int Filter(zrFilterType type, int left, int top, int right, int bottom);
    virtual int Scale(zrScaleType type, ZRDraw* to, RECT* toRect, ZRDraw* from, RECT* fromRect);

    /**
     * Opens a 16-bit Windows metafile and reads its headers into the two buffers that the caller
     * has set as `metaHeader` (18 bytes) and `placeableHeader` (22 bytes). A file opened before is
     * closed; the destructor closes none.
     * @return 0; -1 when it cannot be opened, or its placeable header has a wrong checksum or no
     *         buffer to go to, and then it stays open
     */
    virtual int EMFOpen(const char* path);
    /** Right and bottom of the placeable header. @return 0; -1 without a buffer for it */
    virtual int EMFGetSize(int& emfWidth, int& emfHeight);
    /** Does nothing. @return 0 */
    virtual int EMFDraw(int left, int top, int right, int bottom, bool keepAspect);
    virtual int EMFClose();

    /** Does nothing. @return 0 */
    virtual int Arrow(int x0, int y0, int x1, int y1, bool filled);

    /**
     * Lays a string out in a rectangle, in the built-in font at a scale of 1 to 20, a tenth of the
     * rectangle's height; a `bottom` of 0 or a negative `top` means scale 1. Characters are codes 0
     * to 127. Nothing is wrapped or clipped, and the whole string is drawn. With `textTransparent`
     * false the cells are painted in the background slot. From scale 2 on, a cell's topmost lines
     * show the bottom row of the next code's glyph, which is blank for all of text.
     * @param count  characters that alignment to the right and the report count with
     * @param rect   updated by the placement: top and left when centred, left when aligned to the
     *               right, nothing when the bottom is kept, else bottom; with zrTextReport it
     *               becomes the text's rectangle
     * @param format bits of zrTextFormat
     * @return 0, always
     */
    int DrawText(const char* text, int count, RECT* rect, unsigned int format);
    /** DrawText by a second name. */
    int ZRDrawText(const char* text, int count, RECT* rect, unsigned int format);
    /** Does nothing. @return 0 */
    int TextOut(int x, int y, const char* text, int count);
    /**
     * Reads a 24-bit uncompressed bitmap file, which has to be writable, into `data` and `pImgHdr`
     * of zrdraw/font_files.h. Pixels of more than `data` holds end the process.
     * @return 0; -1 for a file that cannot be opened or read, which is closed, and for one of
     *         another kind, which stays open
     */
    int ExtractBMPData(const char* path);
    /**
     * Walks the chunks of a PNG file and keeps nothing. More than 65,535 bytes of picture data end
     * the process; a file without an end chunk is read for ever.
     * @return as ExtractBMPData
     */
    int ExtractPNGData(const char* path);
    /** No font but the built-in one can be active: does nothing. @return 0 */
    int SetFont(char* path);
    /**
     * Notes whether the built-in font is the default. With `builtIn` false a font file is looked
     * for by the width of the canvas, in the application's directory and two fixed ones; one found
     * is only noted, never drawn with.
     * @return 1 when the built-in font is the default, 0 when a file was found
     */
    int UseDefaultFont(bool builtIn);
    /** Whether an external font is active: never. @return 0 */
    int HaveFont();

    int metaFile; /**< descriptor of an open metafile, 0 for none */
    unsigned long reservedWord;
    unsigned char* metaHeader;
    unsigned char* placeableHeader;
    int currentX; /**< the current position */
    int currentY;
    unsigned char reservedBlock[16];
    TextColor textColor0; /**< kept for callers; nothing in the library reads the four */
    TextColor textColor1;
    TextColor textColor2;
    TextColor textColor3;
    bool textTransparent;
    const unsigned char* labelFont; /**< glyph table: a byte a row, bottom row first */
    int labelWidth;                 /**< advance of a glyph before scaling, pixels */
    int labelHeight;                /**< rows of a glyph before scaling */
    unsigned int labelScale;
    bool useDefaultFont;
};

/**
 * Bytes of a frame by layout code. A pitch above 0 is taken at its word as the bytes of a line,
 * any other gives the layout's natural line. The product wraps at 32 bits.
 * @return 0 for a width below 1, a height of 0, and a layout that has no size here: unknown codes,
 *         the Bayer layouts and the chroma planes
 */
ZRDRAW_API unsigned int GetDrawSize(unsigned int pixelType, int width, int height, int pitch);

/**
 * Works out layout and size of a picture from its bitmap header, by biCompression, and completes
 * the header: biBitCount, and biSizeImage, are set as the format has them.
 * @param info      not tested for null
 * @param pixelType if not null, receives the code; ptNone for a known format that cannot be drawn
 *                  on. An unknown biCompression leaves it alone
 * @return bytes of the frame; for formats that are not sized, biSizeImage as it stands
 */
ZRDRAW_API unsigned int GetDrawSize(tagBITMAPINFO* info, unsigned int* pixelType);
ZRDRAW_API unsigned int GetDrawSize(tagBITMAPINFO* info);

/**
 * Makes a drawing object for a layout on a caller's frame, with one reference, and stores it in
 * `draw`; what that held is not released. The arguments are those of SetCanvas and not tested.
 * A code that no class serves moves the object that `draw` holds to the new frame instead.
 * Allocates; an allocation failure leaves as the allocator's exception.
 * @return 0; 0xFFFFFFFF for ptNone, with `draw` untouched; 0xFFFFFFFE for a code that no class
 *         serves while `draw` is null
 */
ZRDRAW_API unsigned int GetDraw(unsigned int pixelType, int width, int height, int pitch,
                                char* canvas, ZRDraw*& draw);

/**
 * The same by a bitmap header, which GetDrawSize may complete. The sign of biHeight is dropped.
 * @return as above; 0xFFFFFFFF with `draw` null when the header gives no layout or no size
 */
ZRDRAW_API unsigned int GetDraw(tagBITMAPINFO* info, char* canvas, ZRDraw*& draw);

/** Takes one more reference, under the object's lock. @return 0 */
ZRDRAW_API int AddRefDraw(ZRDraw*& draw);

/**
 * Gives back one reference, under the object's lock. The last one destroys the object and leaves
 * `draw` null; otherwise `draw` stays usable.
 * @return 0
 */
ZRDRAW_API int ReleaseDraw(ZRDraw*& draw);

/** Makes the built-in font the default, as no other can be active. @return 0 */
ZRDRAW_API int UseDefaultFont(ZRDraw*& draw, bool builtIn);

/** Has no effect, as no font but the built-in one can be active. @return 0 */
ZRDRAW_API int SetFont(ZRDraw*& draw, char* path);

/** @} */

#endif
