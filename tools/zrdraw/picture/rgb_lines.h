// Lines of RGB pixels from and to a line of each of their channels.
#pragma once

#include "zrdraw/layouts.h"

#include <array>
#include <cstdint>

// Which sample of a pixel red, green, blue and alpha are; -1 where there is none.
struct ChannelOrder {
    int place[4];
    int samples; // of a pixel

    bool hasAlpha() const { return place[3] >= 0; }
};

// Of the layouts of 8-bit and 16-bit RGB.
ChannelOrder channelOrder(const zrLayout& layout);

// Red, green, blue and alpha; or the samples of a pixel in their order.
template <typename Sample>
using Lines = std::array<Sample*, 4>;

// A null line at the fourth sample of bytes is made full, or dropped.
void weave(const Lines<std::uint8_t>& from, int samples, std::uint8_t* to, int width);
void weave(const Lines<std::uint16_t>& from, int samples, std::uint16_t* to, int width);
void unweave(const std::uint8_t* from, int samples, const Lines<std::uint8_t>& to, int width);
void unweave(const std::uint16_t* from, int samples, const Lines<std::uint16_t>& to, int width);

// By the order of the channels.
template <typename Sample>
Lines<Sample> inOrder(const Lines<Sample>& channels, const ChannelOrder& order) {
    Lines<Sample> samples{};
    for (unsigned i = 0; i < 4; ++i)
        if (order.place[i] >= 0)
            samples[static_cast<unsigned>(order.place[i])] = channels[i];
    return samples;
}

inline void weaveChannels(const Lines<std::uint8_t>& channels, const ChannelOrder& order,
                          std::uint8_t* line, int width) {
    weave(inOrder(channels, order), order.samples, line, width);
}

inline void unweaveChannels(const std::uint8_t* line, const ChannelOrder& order,
                            const Lines<std::uint8_t>& channels, int width) {
    unweave(line, order.samples, inOrder(channels, order), width);
}
