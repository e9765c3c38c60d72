// A format object on a frame between guard bytes, all filled alike, so that every byte that a write
// touches or leaves is seen. Serves also classes that the factory never makes.
#pragma once

#include "support/guarded_memory.h"
#include "zrdraw/formats.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

using Make = std::unique_ptr<ZRDraw> (*)(unsigned int code);

template <typename Format>
std::unique_ptr<ZRDraw> make(unsigned int code) {
    return std::make_unique<Format>(code);
}

// Bytes of a frame; `kept` for one that a write leaves as it was.
inline constexpr int kept = -1;
class Bytes {
public:
    // Two hexadecimal digits each, or "--" for a kept one.
    Bytes(const char* text) {
        std::istringstream words(text);
        for (std::string word; words >> word;)
            values.push_back(word == "--" ? kept : std::stoi(word, nullptr, 16));
    }
    explicit Bytes(const std::vector<unsigned int>& littleEndianWords) {
        for (const unsigned int word : littleEndianWords)
            for (int shift = 0; shift < 32; shift += 8)
                values.push_back(static_cast<int>(word >> shift & 0xFF));
    }
    std::vector<int> values;
};

class GuardedCanvas {
public:
    GuardedCanvas(Make makeDraw, unsigned int code, int width, int height, int pitch,
                  unsigned char fill = 0)
        : m_draw(makeDraw(code)), m_fill(fill),
          m_memory(static_cast<std::size_t>(height * pitch), fill) {
        m_draw->SetCanvas(frame(), height, width, pitch);
    }

    ZRDraw* operator->() { return m_draw.get(); }
    template <typename Format>
    Format& as() {
        return dynamic_cast<Format&>(*m_draw);
    }
    char* frame() { return m_memory.chars(); }
    void store(int offset, const Bytes& bytes) { put(m_memory, offset, bytes); }

    // Whether `bytes` stand at `offset` of the frame and everything else is as it was filled, and
    // so it is all over afterwards.
    ::testing::AssertionResult wrote(int offset, const Bytes& bytes) {
        const GuardedMemory blank(m_memory.size(), m_fill);
        GuardedMemory expected = blank;
        put(expected, offset, bytes);
        ::testing::AssertionResult result = ::testing::AssertionSuccess();
        if (m_memory != expected) {
            const std::ptrdiff_t at = m_memory.firstDifference(expected);
            result = ::testing::AssertionFailure()
                     << "frame byte " << at << " is " << int{m_memory.data()[at]} << " instead of "
                     << int{expected.data()[at]} << ", filled with " << int{m_fill};
        }
        m_memory = blank;
        return result;
    }
    ::testing::AssertionResult wroteNothing() { return wrote(0, ""); }

private:
    static void put(GuardedMemory& memory, int offset, const Bytes& bytes) {
        for (std::size_t i = 0; i < bytes.values.size(); ++i) {
            if (bytes.values[i] != kept)
                memory.data()[static_cast<std::size_t>(offset) + i] =
                    static_cast<unsigned char>(bytes.values[i]);
        }
    }

    std::unique_ptr<ZRDraw> m_draw;
    unsigned char m_fill;
    GuardedMemory m_memory;
};
