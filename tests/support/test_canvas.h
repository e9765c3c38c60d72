// A canvas for tests: guard bytes around the frame and behind each line, and its pixels as text.
#pragma once

#include <algorithm>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "zrdraw/zrdraw.h"

class TestCanvas {
public:
    TestCanvas(unsigned int code, int width, int height)
        : width_(width), height_(height), pitch_(lineBytes(code, width) + linePadding),
          memory_(frameStart + static_cast<std::size_t>(pitch_ * height) + frameStart, guardByte) {
        for (int y = 0; y < height; ++y)
            std::memset(frame() + y * pitch_, 0, static_cast<std::size_t>(pitch_ - linePadding));
        ZRDraw* made = nullptr;
        GetDraw(code, width, height, pitch_, frame(), made);
        draw_.reset(made);
    }

    ZRDraw& draw() { return *draw_; }
    ZRDraw* operator->() { return draw_.get(); }
    char* frame() { return memory_.data() + frameStart; }
    unsigned char byteAt(int x, int y) {
        return static_cast<unsigned char>(frame()[y * pitch_ + x]);
    }
    std::vector<unsigned char> bytesAt(int offset, int y, int count) {
        std::vector<unsigned char> bytes;
        for (int i = 0; i < count; ++i)
            bytes.push_back(byteAt(offset + i, y));
        return bytes;
    }

    // A row of characters a line: '.' for a pixel of zeros, '#' for one of all ones, '+' others.
    std::string art() {
        std::string rows;
        const int bytes = lineBytes(draw_->pixelType, 1);
        for (int y = 0; y < height_; ++y) {
            for (int x = 0; x < width_; ++x)
                rows += characterOf(draw_->GetPixel(x, y), bytes);
            rows += '\n';
        }
        return rows;
    }

    bool guardsIntact() {
        const auto isGuard = [](char byte) { return byte == guardByte; };
        const char* const end = frame() + height_ * pitch_;
        bool intact = std::all_of(memory_.data(), frame(), isGuard) &&
                      std::all_of(static_cast<const char*>(end), end + frameStart, isGuard);
        for (int y = 1; y <= height_; ++y)
            intact = intact &&
                     std::all_of(frame() + y * pitch_ - linePadding, frame() + y * pitch_, isGuard);
        return intact;
    }

private:
    struct Release {
        void operator()(ZRDraw* draw) const { ReleaseDraw(draw); }
    };
    static constexpr char guardByte = '\x5A';
    static constexpr int linePadding = 16;
    static constexpr int frameStart = 64;

    static int lineBytes(unsigned int code, int width) {
        return static_cast<int>(GetDrawSize(code, width, 1, 0));
    }
    static char characterOf(const char* pixel, int bytes) {
        const auto all = [&](char value) {
            return std::all_of(pixel, pixel + bytes, [=](char byte) { return byte == value; });
        };
        return all('\0') ? '.' : all('\xFF') ? '#' : '+';
    }

    int width_, height_, pitch_;
    std::vector<char> memory_;
    std::unique_ptr<ZRDraw, Release> draw_;
};
