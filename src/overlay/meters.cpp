// The audio meters: a panel with a scale, and for each channel a bar of segments and a peak marker.
#include "pixel/truncate.h"
#include "zrdraw/zroverlay.h"

#include <cmath>
#include <cstring>

namespace {

// The panel, pixels.
constexpr unsigned int margin = 10;
constexpr unsigned int panelHeight = 200;
constexpr unsigned int barsLeft = 40;
constexpr unsigned int barPitch = 30;
constexpr int barWidth = 20;
constexpr int segments = 15;
constexpr unsigned int segmentPitch = 12;
constexpr int segmentHeight = 10;
constexpr int markerHeight = 3;
constexpr unsigned int labelPitch = 45; // by contract, not that of the scale
constexpr const char* labels[] = {"  0", "-10", "-20", "-30"};

// The scale, in dB above a level of 1.
constexpr double lowest = 56;
constexpr double range = 41;

struct Color {
    double r, g, b;
};

// By contract: components above 1.0, which layouts treat as they treat any.
Color segmentColor(int segment) {
    if (segment < 3)
        return {1.9, 1.0, 1.0};
    return segment < 6 ? Color{1.9, 1.9, 1.0} : Color{1.0, 1.9, 1.0};
}

void setColor(ZRDraw& draw, const Color& color) {
    draw.SetColorRGBA(color.r, color.g, color.b, 1.0, true);
}

double decibels(unsigned int level) {
    return 20.0 * std::log10(static_cast<double>(level));
}

// Two channels a word, the even one low. Nothing reads as silence.
unsigned int channelOf(const unsigned int* words, unsigned int channel) {
    if (words == nullptr)
        return 0;
    return words[channel / 2] >> (channel % 2 * 16) & 0xFFFF;
}

// By contract: 127 bytes move, not words.
void remember(unsigned int* history, unsigned int level) {
    constexpr std::size_t movedBytes = 127;
    std::memmove(history + 1, history, movedBytes);
    history[0] = level;
}

// The topmost lit segment, counted from the top; beyond the last one when none is.
// By contract: the decibels are cut to a whole number first.
int firstSegment(unsigned int level) {
    if (level == 0)
        return segments;
    const int whole = static_cast<int>(decibels(level));
    const auto lit = static_cast<float>((whole - lowest) / range * segments);
    return segments - static_cast<int>(std::floor(lit));
}

void drawPanel(const CZrOverlay& overlay, unsigned int channels) {
    ZRDraw& draw = *overlay.draw;
    setColor(draw, {0.0, 0.0, 0.0});
    fillRect(&draw, static_cast<int>(overlay.AudioX), static_cast<int>(overlay.AudioY), panelHeight,
             static_cast<int>(barPitch * channels + barsLeft));
    setColor(draw, {0.9, 0.9, 0.9});
    unsigned int top = overlay.AudioY + margin;
    for (const char* label : labels) {
        RECT rect{static_cast<int>(overlay.AudioX + margin), static_cast<int>(top),
                  static_cast<int>(overlay.AudioX + barPitch), static_cast<int>(top + margin)};
        draw.DrawText(label, static_cast<int>(std::strlen(label)), &rect, zrTextReport);
        top += labelPitch;
    }
}

void drawBar(const CZrOverlay& overlay, int left, unsigned int level) {
    for (int segment = firstSegment(level); segment < segments; ++segment) {
        setColor(*overlay.draw, segmentColor(segment));
        const unsigned int top =
            overlay.AudioY + margin + segmentPitch * static_cast<unsigned int>(segment);
        fillRect(overlay.draw, left, static_cast<int>(top), segmentHeight, barWidth);
    }
}

void drawMarker(const CZrOverlay& overlay, int left, unsigned int peak) {
    setColor(*overlay.draw, {1.0, 1.0, 1.0});
    if (peak == 0)
        return;
    const double ratio = (decibels(peak) - lowest) / range;
    if (ratio <= 0)
        return;
    const double top = panelHeight - ratio * panelHeight + overlay.AudioY + margin;
    fillRect(overlay.draw, left, truncateToInt(top), markerHeight, barWidth);
}

} // namespace

int CZrOverlay::drawAudMeters(unsigned int* levels, unsigned int* peaks) {
    constexpr unsigned int usualChannels = 8;
    if (AudioChannels == 0)
        AudioChannels = usualChannels; // by contract, for good
    drawPanel(*this, AudioChannels);
    for (unsigned int channel = 0; channel < AudioChannels; ++channel) {
        const int left = static_cast<int>(AudioX + barsLeft + barPitch * channel);
        const unsigned int level = channelOf(levels, channel);
        remember(levelHistory[channel], level);
        drawBar(*this, left, level);
        if (peaks != nullptr)
            drawMarker(*this, left, channelOf(peaks, channel));
    }
    return 0;
}
