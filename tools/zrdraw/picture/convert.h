// Pictures into canvases and back.
#pragma once

#include "picture/canvas.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

class CanvasConverter;
class DrawnPixels;

// What is drawn on a picture with alpha keeps the alpha that the canvas has, or is opaque. For the
// latter the alpha of a canvas tells where it was drawn on and nothing of the picture, which
// `Storer::store` must get whole. Bare pictures keep the canvas' alpha.
enum class Alpha { Canvas, Opaque };

// Pictures of any pixel format into canvases of one shape. A picture without alpha becomes opaque.
class Loader {
public:
    // With `colors`, Y, Cb and Cr of canvases stand for those, else for the picture's own.
    explicit Loader(const CanvasShape& shape, Alpha alpha = Alpha::Canvas,
                    std::optional<Colors> colors = {});
    ~Loader();

    // A picture of the canvas' size, or a bare one. Sets the colours of the canvas too.
    void load(const AVFrame& picture, Canvas& canvas);

    // The picture that was loaded last, in the format that stands for the layout.
    const AVFrame& groundOf(const AVFrame& picture) const;

private:
    CanvasShape m_shape;
    Alpha m_alpha;
    std::optional<Colors> m_colors;
    std::unique_ptr<CanvasConverter> m_converter;
};

// Canvases of one shape into pictures.
class Storer {
public:
    using Alpha = ::Alpha;

    explicit Storer(const CanvasShape& shape, Alpha alpha = Alpha::Canvas);
    ~Storer();

    // Into a target that has format, size and buffers, or bare into one. `source` is the picture
    // that was loaded: what was not drawn on comes back from it bit for bit where the target has
    // its pixel format and colours. It may be without pixels, and then only says how they stood for
    // colours and whether there was alpha. A target that leaves its colour space or range
    // unspecified gets those of the source; the interlace flags and the sample aspect always come
    // from there. What was drawn on a picture without alpha is stored opaque, but in a bare target.
    void store(const Canvas& canvas, const AVFrame& source, AVFrame& target);

private:
    Canvas& reference(const AVFrame& source);
    const AVFrame& groundOf(const AVFrame& source);
    DrawnPixels& drawn();

    CanvasShape m_shape;
    Alpha m_alpha;
    std::unique_ptr<CanvasConverter> m_converter;
    Loader m_loader;                   // of the source
    std::optional<Canvas> m_reference; // the source as it was before it was drawn on
    std::unique_ptr<DrawnPixels> m_drawn;
    std::vector<std::uint16_t> m_alphaLine;
};
