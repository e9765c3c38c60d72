// A frame in a block of its own, with guard bytes around it and behind each line.
#pragma once

#include "zrdraw/layouts.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include <sanitizer/asan_interface.h>

struct FrameShape {
    const zrLayout* layout;
    int width, height;
    int padding; // bytes behind each line

    int lineBytes() const {
        return static_cast<int>(zrLineBytes(layout->line, static_cast<unsigned int>(width)));
    }
    int pitch() const { return lineBytes() + padding; }

    int bytes() const { return static_cast<int>(zrFrameRoom(*layout, width, height, pitch())); }
};

class GuardedFrame {
public:
    explicit GuardedFrame(const FrameShape& shape)
        : m_shape(shape),
          m_memory(static_cast<std::size_t>(guardBytes + shape.bytes() + guardBytes), guardByte) {
        for (int y = 0; y < shape.height; ++y)
            std::fill_n(line(y), shape.lineBytes(), '\0');
        // Reads off the frame, which leave no trace, are the sanitizer's to find.
        ASAN_POISON_MEMORY_REGION(m_memory.data(), guardBytes);
        ASAN_POISON_MEMORY_REGION(end(), guardBytes);
    }

    ~GuardedFrame() { ASAN_UNPOISON_MEMORY_REGION(m_memory.data(), m_memory.size()); }

    GuardedFrame(const GuardedFrame&) = delete;
    GuardedFrame& operator=(const GuardedFrame&) = delete;

    char* bytes() { return m_memory.data() + guardBytes; }
    const FrameShape& shape() const { return m_shape; }

    // Ends the process when a byte around the frame has changed or, with `linesApart`, one behind
    // a line.
    void check(bool linesApart) {
        ASAN_UNPOISON_MEMORY_REGION(m_memory.data(), m_memory.size());
        checkRange(m_memory.data(), bytes(), "before the frame");
        checkRange(end(), end() + guardBytes, "behind the frame");
        for (int y = 0; linesApart && y < m_shape.height; ++y) {
            const char* next = y + 1 < m_shape.height ? line(y + 1) : end();
            checkRange(line(y) + m_shape.lineBytes(), next, "behind line " + std::to_string(y));
        }
    }

private:
    static constexpr int guardBytes = 256;
    static constexpr char guardByte = '\x5A';

    char* line(int y) { return bytes() + y * m_shape.pitch(); }
    char* end() { return bytes() + m_shape.bytes(); }

    void checkRange(const char* first, const char* last, const std::string& where) {
        const auto isGuard = [](char byte) { return byte == guardByte; };
        const char* touched = std::find_if_not(first, last, isGuard);
        if (touched == last)
            return;
        std::fprintf(stderr, "%s, %d x %d, pitch %d: byte %td %s was written\n",
                     m_shape.layout->name, m_shape.width, m_shape.height, m_shape.pitch(),
                     touched - bytes(), where.c_str());
        std::abort();
    }

    FrameShape m_shape;
    std::vector<char> m_memory;
};
