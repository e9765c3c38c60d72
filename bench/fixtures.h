// What the benchmarks work on: frames whose pages were touched before any clock starts, and
// drawing objects on them.
#pragma once

#include "zrdraw/zrdraw.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <random>

#include <sys/mman.h>

inline constexpr int frameWidth = 1920;
inline constexpr int frameHeight = 1080;
inline constexpr int framePitch = frameWidth * 4;
inline constexpr std::size_t framePixels = std::size_t{frameWidth} * frameHeight;
inline constexpr std::size_t frameBytes = framePixels * 4;

// One 1080p frame of 32-bit pixels on huge pages, where there are any: on small ones the figures
// depend on where each page happens to lie.
class Frame {
public:
    Frame() : m_bytes(static_cast<unsigned char*>(std::aligned_alloc(hugePage, storageBytes))) {
        if (m_bytes == nullptr)
            throw std::bad_alloc();
        madvise(m_bytes.get(), storageBytes, MADV_HUGEPAGE);
        std::memset(m_bytes.get(), 0x40, storageBytes);
    }

    unsigned char* bytes() { return m_bytes.get(); }
    unsigned char* pixel(int x, int y) { return bytes() + y * framePitch + x * 4; }

private:
    struct Free {
        void operator()(unsigned char* bytes) const { std::free(bytes); }
    };

    static constexpr std::size_t hugePage = std::size_t{2} << 20;
    static constexpr std::size_t storageBytes = (frameBytes / hugePage + 1) * hugePage;
    std::unique_ptr<unsigned char, Free> m_bytes;
};

// The frame that everything is drawn on.
inline Frame& target() {
    static Frame frame;
    return frame;
}

// Random colours and alpha in the top left `columns` by `lines`, nothing elsewhere.
inline void paintRandom(Frame& frame, int columns, int lines) {
    std::memset(frame.bytes(), 0, frameBytes);
    std::mt19937 random(20240501);
    for (int y = 0; y < lines; ++y) {
        for (int x = 0; x < columns; ++x) {
            const auto pixel = static_cast<std::uint32_t>(random());
            std::memcpy(frame.pixel(x, y), &pixel, sizeof pixel);
        }
    }
}

// A drawing object as callers get it, so that its virtual calls stay virtual.
inline std::shared_ptr<ZRDraw> drawOn(Frame& frame, unsigned int pixelType) {
    ZRDraw* draw = nullptr;
    GetDraw(pixelType, frameWidth, frameHeight, 0, reinterpret_cast<char*>(frame.bytes()), draw);
    draw->SetColorRGBA(0.2, 0.4, 0.6, 1.0, true);
    draw->SetColorRGBA(0.0, 0.0, 0.0, 1.0, false);
    return {draw, [](ZRDraw* last) { ReleaseDraw(last); }};
}
