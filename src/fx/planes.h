// Frames of 4:2:2 as planes of three bytes a pixel, Y, Cb and Cr, and back.
#pragma once

// A frame of a caller's and the plane that stands for it. Planes have no padding.
struct PlaneCopy {
    unsigned char* frame;
    unsigned int pitch;
    unsigned char* plane;
    unsigned int width, height;

    static constexpr unsigned int pixelBytes = 3; // in the plane

    unsigned char* frameLine(unsigned int y) const { return frame + y * pitch; }
    unsigned char* planeLine(unsigned int y) const { return plane + y * width * pixelBytes; }
};

// 8-bit pixel pairs. By contract: four pixels are expanded at a time, so that a width that 4 does
// not divide is read beyond its line and written over the next line of the plane.
void expandPairs(const PlaneCopy& copy);
void packPairs(const PlaneCopy& copy);

// v210, a whole group of six pixels at a time. The two low bits of each sample are dropped.
void expandGroups(const PlaneCopy& copy);
void packGroups(const PlaneCopy& copy);
