// Frames of any size, touched before any clock starts.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <random>

#include <sys/mman.h>

class Buffer {
public:
    explicit Buffer(std::size_t bytes) : m_size(bytes) {
        const std::size_t storage = (bytes / hugePage + 1) * hugePage;
        m_bytes.reset(static_cast<unsigned char*>(std::aligned_alloc(hugePage, storage)));
        if (!m_bytes)
            throw std::bad_alloc();
        madvise(m_bytes.get(), storage, MADV_HUGEPAGE);
        std::mt19937 random(1);
        for (std::size_t i = 0; i + 4 <= storage; i += 4) {
            const auto word = static_cast<unsigned int>(random());
            std::memcpy(m_bytes.get() + i, &word, sizeof word);
        }
    }

    unsigned char* bytes() { return m_bytes.get(); }
    std::size_t size() const { return m_size; }

private:
    struct Free {
        void operator()(unsigned char* bytes) const { std::free(bytes); }
    };
    static constexpr std::size_t hugePage = std::size_t{2} << 20;
    std::size_t m_size;
    std::unique_ptr<unsigned char, Free> m_bytes;
};

struct FrameSize {
    const char* name;
    int width, height;
};
inline constexpr FrameSize frameSizes[] = {{"1080p", 1920, 1080}, {"2160p", 3840, 2160}};
inline constexpr FrameSize chartSizes[] = {
    {"720p", 1280, 720}, {"1080p", 1920, 1080}, {"2160p", 3840, 2160}, {"4320p", 7680, 4320}};
