// A fuzzer's input taken as a stream of small choices. Behind its end everything reads as 0.
#pragma once

#include "zrdraw/types.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <string>

class Input {
public:
    explicit Input(std::span<const std::uint8_t> bytes) : m_rest(bytes) {}

    bool empty() const { return m_rest.empty(); }

    int byte() {
        if (empty())
            return 0;
        const int first = m_rest.front();
        m_rest = m_rest.subspan(1);
        return first;
    }

    bool flag() { return byte() % 2 != 0; }

    // 0 up to but not including `count`, which is 256 at most.
    int below(int count) { return byte() % count; }

    int between(int low, int high) { return low + below(high - low + 1); }

    // Often about the edges of the smallest canvases, where faults show; else on a canvas or well
    // off it on either side.
    int coordinate() { return flag() ? between(-3, 12) : between(-60, 100); }

    _POINT point() { return {coordinate(), coordinate()}; }

    RECT rect() { return {coordinate(), coordinate(), coordinate(), coordinate()}; }

    int angle() { return 10 * byte() - 1000; }

    // A colour component: from a little below 0.0 to a little above 1.0, or something absurd.
    double component() {
        constexpr std::array absurd{std::numeric_limits<double>::quiet_NaN(),
                                    std::numeric_limits<double>::infinity(), -1e300, 1e300};
        const auto value = static_cast<std::size_t>(byte());
        const std::size_t plain = 256 - absurd.size();
        return value < plain ? static_cast<double>(value) / 200.0 - 0.1 : absurd[value - plain];
    }

    // Up to 20 characters of the codes that text operations know.
    std::string text() {
        std::string result;
        for (int left = below(21); left > 0; --left)
            result += static_cast<char>(between(1, 127));
        return result;
    }

private:
    std::span<const std::uint8_t> m_rest;
};
