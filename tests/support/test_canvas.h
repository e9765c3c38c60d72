// A canvas for tests: guard bytes around the frame and behind each line, and its pixels as text.
#pragma once

#include "support/guarded_memory.h"
#include "zrdraw/zrdraw.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

class TestCanvas {
public:
    TestCanvas(unsigned int code, int width, int height)
        : m_width(width), m_height(height), m_pitch(lineBytes(code, width) + linePadding),
          m_memory(static_cast<std::size_t>(m_pitch * height)) {
        for (int y = 0; y < height; ++y)
            std::memset(frame() + y * m_pitch, 0, static_cast<std::size_t>(m_pitch - linePadding));
        ZRDraw* made = nullptr;
        GetDraw(code, width, height, m_pitch, frame(), made);
        m_draw.reset(made);
    }

    ZRDraw& draw() { return *m_draw; }
    ZRDraw* operator->() { return m_draw.get(); }
    char* frame() { return m_memory.chars(); }
    std::vector<unsigned char> bytesAt(int offset, int y, int count) {
        const char* const start = frame() + y * m_pitch + offset;
        return {start, start + count};
    }

    // A row of characters a line: '.' for a pixel of zeros, '#' for one of all ones, '+' others.
    std::string art() {
        std::string rows;
        const int bytes = lineBytes(m_draw->pixelType, 1);
        for (int y = 0; y < m_height; ++y) {
            for (int x = 0; x < m_width; ++x)
                rows += characterOf(m_draw->GetPixel(x, y), bytes);
            rows += '\n';
        }
        return rows;
    }

    bool guardsIntact() {
        const auto isGuard = [](char byte) { return byte == GuardedMemory::guardByte; };
        bool intact = m_memory.guardsIntact();
        for (int y = 1; y <= m_height; ++y)
            intact = intact && std::all_of(frame() + y * m_pitch - linePadding,
                                           frame() + y * m_pitch, isGuard);
        return intact;
    }

private:
    struct Release {
        void operator()(ZRDraw* draw) const { ReleaseDraw(draw); }
    };
    static constexpr int linePadding = 16;

    static int lineBytes(unsigned int code, int width) {
        return static_cast<int>(GetDrawSize(code, width, 1, 0));
    }
    static char characterOf(const char* pixel, int bytes) {
        const auto all = [&](char value) {
            return std::all_of(pixel, pixel + bytes, [=](char byte) { return byte == value; });
        };
        return all('\0') ? '.' : all('\xFF') ? '#' : '+';
    }

    int m_width, m_height, m_pitch;
    GuardedMemory m_memory;
    std::unique_ptr<ZRDraw, Release> m_draw;
};
