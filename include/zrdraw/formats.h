/**
 * The format classes: each reads and writes one family of layouts. Objects of them come from
 * GetDraw; a class is named here for callers that derive from one or make one themselves.
 */
#ifndef ZRDRAW_FORMATS_H
#define ZRDRAW_FORMATS_H

#include "zrdraw/zrdraw.h"

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

#endif
