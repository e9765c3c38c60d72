// A frame in a numpy array: the shape that a layout has, and how far its memory reaches.
#pragma once

#include "common/picture_view.h"
#include "python/numbers.h"

#include <optional>
#include <string>

#include <pybind11/numpy.h>

// A layout by its name; any other name is a ValueError that tells all.
const zrLayout& layoutOf(const std::string& name);

enum class Access { Read, Write };

struct FrameArray {
    py::array array; // keeps the memory
    PictureView view;
    bool hasRoom; // whether the memory goes on behind the frame as far as zrFrameRoom counts
};

// The frame that an array holds. Any other array is a TypeError or a ValueError that tells what is
// expected and what came. `width` is that of the caller, for the layouts whose lines do not tell.
FrameArray frameIn(const py::array& array, const zrLayout& layout, std::optional<int> width,
                   Access access);

// The same of an array whose lines follow each other without gaps, for operations on whole frames.
FrameArray wholeFrameIn(const py::array& array, const zrLayout& layout, std::optional<int> width,
                        Access access);

// A new array of zeros, whose memory has the room.
py::array makeFrame(const zrLayout& layout, int width, int height);

// What `frameIn` takes, in words: "uint8[height, width, 4]".
std::string expectedArray(const zrLayout& layout);

// The memory that an array, or the one that it is a view of, has.
struct Memory {
    const char* begin;
    const char* end;
};
Memory memoryOf(const py::array& array);

// Whether two pictures have a byte in common.
bool overlap(const PictureView& a, const PictureView& b);
