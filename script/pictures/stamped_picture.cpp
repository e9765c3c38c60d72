#include "script/pictures/stamped_picture.h"

#include "common/picture_color.h"
#include "common/sample_rules.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <stdexcept>

namespace {

// Drawing cuts colours of 8 bits off, which are to be rounded.
double valueOf(std::uint16_t word, const zrLayout& layout) {
    return layout.bytes.r >= 0 ? static_cast<double>(byteOfWord(word)) / fullByte
                               : static_cast<double>(word) / fullWord;
}

void setColor(ZRDraw& draw, const std::uint16_t* pixel, const zrLayout& layout) {
    setPictureColor(draw, valueOf(pixel[1], layout), valueOf(pixel[2], layout),
                    valueOf(pixel[3], layout), 1, true);
}

bool haveOneColor(const std::uint16_t* a, const std::uint16_t* b) {
    return std::equal(a + 1, a + pictureWords, b + 1);
}

bool hasWholeBytes(const zrLayout& layout) {
    return layout.line.groupPixels == 1;
}

} // namespace

void StampedPicture::prepare(const std::shared_ptr<const ScriptPicture>& picture,
                             const zrLayout& layout, cmYCbCr mode, double opacity) {
    m_picture = picture;
    m_layout = &layout;
    findRuns(opacity);
    m_canvas.clear();
    if (hasWholeBytes(layout))
        m_canvas.resize(zrFrameRoom(layout, picture->width, picture->height, 0));
    ZRDraw* draw = nullptr;
    if (GetDraw(layout.code, picture->width, picture->height, 0,
                reinterpret_cast<char*>(m_canvas.data()), draw) != 0)
        throw std::runtime_error("there is no drawing object for a picture's layout");
    m_draw.reset(draw);
    draw->SetYCbCrMode(mode);
    if (hasWholeBytes(layout))
        drawOnCanvas();
}

void StampedPicture::findRuns(double opacity) {
    m_runs.clear();
    for (int y = 0; y < m_picture->height; ++y) {
        bool inRun = false;
        for (int x = 0; x < m_picture->width; ++x) {
            const bool opaque = isMostlyOpaque(*pixelOf(*m_picture, x, y), opacity);
            if (opaque && !inRun)
                m_runs.push_back({y, x, 0});
            if (opaque)
                ++m_runs.back().count;
            inRun = opaque;
        }
    }
}

void StampedPicture::drawOnCanvas() {
    for (const Run& run : m_runs)
        drawRun(run, 0, run.count, 0, 0);
}

// Pixels of a run from one to another, with the picture's first one at (x, y) of what is drawn on.
void StampedPicture::drawRun(const Run& run, int from, int to, int x, int y) {
    const std::uint16_t* color = nullptr;
    for (int column = run.first + from; column < run.first + to; ++column) {
        const std::uint16_t* pixel = pixelOf(*m_picture, column, run.line);
        if (!color || !haveOneColor(pixel, color))
            setColor(*m_draw, pixel, *m_layout);
        color = pixel;
        m_draw->PutPixel(x + column, y + run.line, true);
    }
}

void StampedPicture::stamp(const PictureView& frame, int x, int y) {
    const bool copies = hasWholeBytes(*m_layout);
    if (!copies)
        m_draw->SetCanvas(reinterpret_cast<char*>(frame.data), frame.height, frame.width,
                          frame.pitch);
    const std::ptrdiff_t pixelBytes = m_layout->line.groupBytes;
    const std::ptrdiff_t pitch = wholeLineBytes(*m_layout, m_picture->width);
    for (const Run& run : m_runs) {
        const std::int64_t line = std::int64_t{y} + run.line, first = std::int64_t{x} + run.first;
        const auto from = static_cast<int>(std::clamp<std::int64_t>(-first, 0, run.count));
        const auto to =
            static_cast<int>(std::clamp<std::int64_t>(frame.width - first, 0, run.count));
        if (line < 0 || line >= frame.height || from >= to)
            continue;
        if (!copies)
            drawRun(run, from, to, x, y);
        else
            std::memcpy(frame.line(static_cast<int>(line)) + (first + from) * pixelBytes,
                        m_canvas.data() + run.line * pitch + (run.first + from) * pixelBytes,
                        static_cast<std::size_t>((to - from) * pixelBytes));
    }
}
