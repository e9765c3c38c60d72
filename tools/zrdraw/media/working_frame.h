// The canvas: one picture in the layout that is drawn on.
#pragma once

#include "media/av.h"
#include "media/packing.h"
#include "zrdraw/types.h"

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <optional>

class WorkingFrame {
public:
    // A size that the layout cannot hold is a Failure.
    WorkingFrame(const zrLayout& layout, int width, int height);

    char* data() { return reinterpret_cast<char*>(m_pixels.get()); }
    int pitch() const { return m_pitch; }
    int width() const { return m_width; }
    int height() const { return m_height; }
    const zrLayout& layout() const { return m_layout; }

    // The library's matrix mode for the colours of the canvas, where it is in Y, Cb and Cr.
    std::optional<cmYCbCr> matrixMode() const;

    // Converts a decoded picture of the same size into the canvas, or copies a bare one. A picture
    // without alpha becomes opaque.
    void load(const AVFrame& decoded);

    // Takes over what is known of another canvas' picture: its colours, scan and shape.
    void describeAs(const WorkingFrame& other);

    // Converts the canvas into a target that has format and size, with or without buffers, or
    // copies it into a bare one. A target that leaves its colour space or range unspecified gets
    // those of the picture loaded last; the interlace flags and the sample aspect always come from
    // there. What was drawn on a picture without alpha is stored opaque, but in a bare target.
    void store(AVFrame& target);

private:
    // What a converted picture takes over from the one that was loaded.
    struct Properties {
        AVColorSpace space = AVCOL_SPC_UNSPECIFIED;
        AVColorRange range = AVCOL_RANGE_UNSPECIFIED;
        AVRational sampleAspect{0, 1};
        int interlaced = 0;
        int topFieldFirst = 0;
        bool hasAlpha = true;
    };

    struct Free {
        void operator()(std::uint8_t* bytes) const { std::free(bytes); }
    };

    // How the numbers of the canvas stand for colours.
    struct Colors {
        AVColorSpace space = AVCOL_SPC_UNSPECIFIED;
        AVColorRange range = AVCOL_RANGE_JPEG;
    };

    Properties propertiesOf(const AVFrame& frame, const Properties& otherwise) const;
    Colors colorsFor(const AVFrame& loaded) const;
    void requireSameSize(const AVFrame& frame) const;
    CanvasLines lines() const { return {m_pixels.get(), m_pitch}; }
    void copyPlanes(const AVFrame& from, AVFrame& to) const;
    void convertIn(const AVFrame& decoded);
    void convertOut(AVFrame& target);

    const zrLayout& m_layout;
    AVPixelFormat m_format; // of m_picture
    int m_width;
    int m_height;
    int m_lineBytes;
    int m_pitch;
    std::unique_ptr<std::uint8_t, Free> m_pixels;
    std::unique_ptr<Packer> m_packer; // null: m_picture is the canvas itself
    FramePtr m_picture;               // the canvas as the media libraries know it
    Properties m_loaded;
    Colors m_colors;
    SwsPtr m_loader;
    SwsPtr m_storer;
};
