// Pictures of noise in any pixel format, and a block that is drawn on them.
#pragma once

#include "draw_object.h"
#include "picture/convert.h"
#include "picture/nearest_layout.h"
#include "picture/pixel_formats.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <random>
#include <vector>

inline constexpr unsigned taken[] = {ptBGRA32, ptUYVY, ptV210, ptRGB48, ptARGB64};

// In the middle, with odd edges.
inline constexpr int left = 21, right = 38, top = 15, bottom = 30;

inline bool isInBlock(int x, int y) {
    return x >= left && x < right && y >= top && y < bottom;
}

inline DrawPtr objectOn(Canvas& canvas) {
    ZRDraw* object = nullptr;
    EXPECT_EQ(GetDraw(canvas.layout().code, canvas.width(), canvas.height(), canvas.pitch(),
                      canvas.data(), object),
              0);
    DrawPtr draw(object);
    if (const auto mode = canvas.matrixMode())
        draw->SetYCbCrMode(*mode);
    return draw;
}

inline void fillBlock(ZRDraw& draw) {
    for (int y = top; y < bottom; ++y)
        for (int x = left; x < right; ++x)
            draw.PutPixel(x, y, true);
}

using Line = std::vector<std::uint32_t>;

inline Line lineOf(const AVFrame& picture, int component, int y, int width) {
    Line line(static_cast<std::size_t>(width));
    const std::uint8_t* data[4] = {picture.data[0], picture.data[1], picture.data[2],
                                   picture.data[3]};
    av_read_image_line2(line.data(), data, picture.linesize,
                        av_pix_fmt_desc_get(static_cast<AVPixelFormat>(picture.format)), 0, y,
                        component, width, 0, sizeof line[0]);
    return line;
}

// One component of a format: how many samples it has, and which pixels each of them covers.
struct Component {
    Component(AVPixelFormat format, int index, const AVFrame& picture)
        : m_index(index), m_description(*av_pix_fmt_desc_get(format)), m_height(picture.height),
          m_fields(hasChromaByFields(picture, format)) {
        const bool chroma = (index == 1 || index == 2) && m_description.nb_components > 2 &&
                            !hasFlag(format, AV_PIX_FMT_FLAG_RGB);
        m_shiftX = chroma ? m_description.log2_chroma_w : 0;
        m_shiftY = chroma ? m_description.log2_chroma_h : 0;
        width = AV_CEIL_RSHIFT(picture.width, m_shiftX);
        height = AV_CEIL_RSHIFT(picture.height, m_shiftY);
    }

    int width, height;

    bool touchesBlock(int x, int y) const {
        const bool fields = m_fields && m_shiftY == 1;
        for (int line = 0; line < m_height; ++line) {
            const int own = fields ? line / 4 * 2 + line % 2 : line >> m_shiftY;
            for (int column = x << m_shiftX; own == y && column < (x + 1) << m_shiftX; ++column)
                if (isInBlock(column, line))
                    return true;
        }
        return false;
    }

private:
    int m_index;
    const AVPixFmtDescriptor& m_description;
    int m_height;
    bool m_fields;
    int m_shiftX, m_shiftY;
};

inline FramePtr noise(AVPixelFormat format, int width, int height, bool interlaced) {
    FramePtr picture = newFrame(format, width, height);
    picture->interlaced_frame = interlaced;
    for (const AVBufferRef* plane : picture->buf)
        if (plane)
            std::fill_n(plane->data, plane->size, std::uint8_t{0});
    std::mt19937 random(static_cast<unsigned>(format));
    const AVPixFmtDescriptor& description = *av_pix_fmt_desc_get(format);
    if (hasFlag(format, AV_PIX_FMT_FLAG_PAL))
        for (int i = 0; i < AVPALETTE_SIZE; ++i)
            picture->data[1][i] = i % 4 == 3 ? 255 : static_cast<std::uint8_t>(random());
    for (int i = 0; i < (hasFlag(format, AV_PIX_FMT_FLAG_PAL) ? 1 : description.nb_components);
         ++i) {
        const Component component(format, i, *picture);
        for (int y = 0; y < component.height; ++y) {
            Line line(static_cast<std::size_t>(component.width));
            for (std::uint32_t& sample : line) {
                const float value = static_cast<float>(random() % 4096) / 4095;
                if (hasFlag(format, AV_PIX_FMT_FLAG_FLOAT))
                    std::memcpy(&sample, &value, sizeof sample);
                else
                    sample = static_cast<std::uint32_t>(random()) &
                             ((1U << description.comp[i].depth) - 1);
            }
            av_write_image_line2(line.data(), picture->data, picture->linesize, &description, 0, y,
                                 i, component.width, sizeof line[0]);
        }
    }
    return picture;
}
