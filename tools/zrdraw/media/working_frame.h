// The canvas: one picture in the layout that is drawn on.
#pragma once

#include "media/av.h"

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <optional>

// The pixel format whose memory is that of a layout of the catalogue, if there is a converter.
std::optional<AVPixelFormat> workingPixelFormat(unsigned code);

class WorkingFrame {
public:
    WorkingFrame(AVPixelFormat format, int width, int height);

    char* data() { return reinterpret_cast<char*>(m_pixels.get()); }
    int pitch() const { return m_pitch; }
    int width() const { return m_width; }
    int height() const { return m_height; }
    AVPixelFormat pixelFormat() const { return m_format; }

    // Converts a decoded picture of the same size into the canvas. A picture without alpha becomes
    // opaque.
    void load(const AVFrame& decoded);

    // Converts the canvas into a target that has format and size, with or without buffers. A target
    // that leaves its colour space or range unspecified gets those of the picture loaded last; the
    // interlace flags and the sample aspect always come from there.
    void store(AVFrame& target);

private:
    // What a converted picture takes over from the one that was loaded.
    struct Properties {
        AVColorSpace space = AVCOL_SPC_UNSPECIFIED;
        AVColorRange range = AVCOL_RANGE_UNSPECIFIED;
        AVRational sampleAspect{0, 1};
        int interlaced = 0;
        int topFieldFirst = 0;
    };

    struct Planes {
        std::uint8_t* data[4];
        int pitch[4];
    };

    struct Free {
        void operator()(std::uint8_t* bytes) const { std::free(bytes); }
    };

    Properties propertiesOf(const AVFrame& frame, const Properties& otherwise) const;
    void requireSameSize(const AVFrame& frame) const;
    Planes planes();

    AVPixelFormat m_format;
    int m_width;
    int m_height;
    int m_pitch;
    std::unique_ptr<std::uint8_t, Free> m_pixels;
    Properties m_loaded;
    SwsPtr m_loader;
    SwsPtr m_storer;
};
