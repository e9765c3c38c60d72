#include "contact/contact_sheet.h"

#include "zrdraw/font.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace {

constexpr int sheetWidth = 1920; // at most, unless the labels need more
constexpr int margin = 4;        // about each cell with its label
constexpr int labelGap = 6;      // above and below the label
constexpr int labelLetters = 11; // "00:00:00:00", and seconds for more than a day
constexpr int labelScales = 3;

struct Size {
    int width, height;
};

// In the shape that a frame is displayed in, and nowhere larger than it.
Size displaySize(const CanvasShape& shape, AVRational sampleAspect) {
    const bool known = sampleAspect.num > 0 && sampleAspect.den > 0;
    const double aspect = known ? av_q2d(sampleAspect) : 1.0;
    const auto scaled = [](int length, double factor) {
        return std::max(static_cast<int>(std::lround(length * factor)), 1);
    };
    return {scaled(shape.width, std::min(aspect, 1.0)),
            scaled(shape.height, std::min(1.0 / aspect, 1.0))};
}

CanvasShape cellShape(int columns, const Size& display) {
    const int width = std::min(display.width, sheetWidth / columns - 2 * margin);
    const auto height = static_cast<int>(av_rescale(display.height, width, display.width));
    return {*zrFindLayout(ptBGRA32), width, std::max(height, 1)};
}

// Labels are about half as wide as the cells where they can be.
int labelScaleFor(int cellWidth) {
    return std::clamp(cellWidth / (2 * labelLetters * zrFontWidth), 1, labelScales);
}

// Leaves a picture in planar RGB with alpha, of 8 bits, without it.
void putOver(std::uint32_t ground, AVFrame& picture) {
    constexpr int shifts[] = {8, 0, 16}; // of G, B and R in the ground, as the planes follow
    constexpr int opaque = 255;
    for (int plane = 0; plane < 3; ++plane) {
        const int below = static_cast<int>(ground >> shifts[plane] & 0xFF);
        for (int y = 0; y < picture.height; ++y) {
            std::uint8_t* line = picture.data[plane] + y * picture.linesize[plane];
            const std::uint8_t* alpha = picture.data[3] + y * picture.linesize[3];
            for (int x = 0; x < picture.width; ++x)
                line[x] = static_cast<std::uint8_t>(
                    (line[x] * alpha[x] + below * (opaque - alpha[x]) + opaque / 2) / opaque);
        }
    }
    picture.format = AV_PIX_FMT_GBRP;
}

} // namespace

ContactSheet::ContactSheet(const ContactGrid& grid, std::int64_t frames, const CanvasShape& shape,
                           const StreamInfo& info)
    : m_info(info), m_timeCode(timeCodeFrom(info.timeCode, info.frameRate)), m_frames(frames),
      m_columns(static_cast<int>(std::min<std::int64_t>(grid.columns, frames))),
      m_cells(static_cast<int>(std::min<std::int64_t>(grid.columns * grid.lines, frames))),
      m_cell(cellShape(grid.columns, displaySize(shape, info.sampleAspect))),
      m_labelScale(labelScaleFor(m_cell.width())),
      m_strideX(std::max(m_cell.width(), labelLetters * zrFontWidth) + 2 * margin),
      m_strideY(m_cell.height() + zrFontHeight * m_labelScale + 2 * (labelGap + margin)),
      m_sheet(m_cell.layout(), m_columns * m_strideX,
              (m_cells + m_columns - 1) / m_columns * m_strideY),
      m_storer(shape), m_scaler(m_cell.width(), m_cell.height()), m_loader(m_cell.shape()) {
    m_sheet.draw().LabelFont(0U, m_labelScale);
}

bool ContactSheet::wants(std::int64_t index) const {
    if (isFull())
        return false;
    return index == (m_cells == 1 ? 0 : av_rescale(m_next, m_frames - 1, m_cells - 1));
}

void ContactSheet::add(const Frame& frame) {
    FramePtr picture = newFrame(AV_PIX_FMT_GBRAP, frame.canvas.width(), frame.canvas.height());
    m_storer.store(frame.canvas, *frame.picture, *picture);
    putOver(m_sheet.ground(), *picture);
    m_loader.load(m_scaler.scaled(*picture), m_cell);
    const auto centred = [&](int width) {
        return m_next % m_columns * m_strideX + (m_strideX - width) / 2;
    };
    const int y = m_next / m_columns * m_strideY + margin;
    m_sheet.paste(m_cell, nullptr, centred(m_cell.width()), y);
    const std::string time = timeOf(frame);
    const auto letters = static_cast<int>(time.size());
    m_sheet.draw().Label(centred(letters * m_sheet.draw().LabelGetFontWidth()),
                         y + m_cell.height() + labelGap, time.c_str(), false, false);
    ++m_next;
}

std::string ContactSheet::timeOf(const Frame& frame) const {
    if (m_timeCode)
        return m_timeCode->at(frame.clock);
    return fmt::format("{:.3f} s",
                       static_cast<double>(frame.time - m_info.start) * av_q2d(m_info.timeBase));
}
