// A clip's pictures onto canvases.
#pragma once

#include "picture/convert.h"
#include "picture/scaler.h"

#include <optional>

class CanvasSource {
public:
    // Pictures of another size than the canvases' are scaled.
    CanvasSource(const CanvasShape& shape, Alpha alpha, const std::optional<Colors>& colors);

    // The picture's own memory where that is in the layout and nobody else looks at it, and the
    // picture is without pixels then; else a canvas that it is loaded into.
    Canvas canvasOf(AVFrame& picture);

private:
    bool countsAlike(const AVFrame& picture) const;
    bool servesAsCanvas(const AVFrame& picture) const;

    CanvasShape m_shape;
    std::optional<Colors> m_colors; // that canvases are to have
    CanvasPool m_pool;
    Loader m_loader;
    Scaler m_scaler;
};
