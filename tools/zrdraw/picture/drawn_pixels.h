// Where a canvas was drawn on, found by comparing it with what it was, and what else of a picture
// stays as it is.
#pragma once

#include "picture/canvas.h"
#include "picture/picture_kind.h"

#include <cstdint>
#include <vector>

class DrawnPixels {
public:
    // What of a pixel was drawn on.
    enum Part : std::uint8_t { None = 0, Luma = 1, Chroma = 2, All = 3 };

    explicit DrawnPixels(const CanvasShape& shape);

    // Both canvases in the layout.
    void find(CanvasLines before, CanvasLines after);

    // The same for canvases with the alpha of untouched ones, but for `before`, which then becomes
    // what `after` is to be: its own alpha, and opaque where it was drawn on.
    void findByAlpha(CanvasLines before, CanvasLines after);

    // Takes every sample of a picture that no such pixel touches from its source, which is of the
    // same kind.
    void keepOthers(const AVFrame& source, AVFrame& target, const PictureKind& kind) const;

private:
    struct Samples;
    void findTouched(Samples& samples, int first, int step, int count) const;
    void keepLine(const Samples& samples, const std::uint8_t* from, std::uint8_t* to) const;
    bool findInLine(const std::uint8_t* before, const std::uint8_t* after, int y);
    std::uint8_t* line(int y) { return m_parts.data() + std::ptrdiff_t{y} * m_shape.width; }
    const std::uint8_t* line(int y) const {
        return m_parts.data() + std::ptrdiff_t{y} * m_shape.width;
    }

    CanvasShape m_shape;
    std::vector<std::uint8_t> m_parts;           // of each pixel, valid where its line was drawn on
    std::vector<std::uint8_t> m_isDrawn;         // of each line
    std::vector<std::uint8_t> m_marked;          // a line
    mutable std::vector<std::uint8_t> m_touched; // of each sample of a line
};

// Gives the canvas the alpha that nothing draws, so that drawing shows.
void markUntouched(const zrLayout& layout, std::uint8_t* line, int width);
bool hasAlpha(const zrLayout& layout);
