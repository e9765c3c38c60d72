// A file in memory, for what reads by path.
#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <span>
#include <string>

#include <sys/mman.h>
#include <unistd.h>

using Bytes = std::span<const std::uint8_t>;

// Takes each input in turn.
class MemoryFile {
public:
    MemoryFile() : m_file(memfd_create("input", MFD_CLOEXEC)) {
        if (m_file < 0)
            fail("memfd_create");
        m_path = "/proc/self/fd/" + std::to_string(m_file);
    }

    const char* path() const { return m_path.c_str(); }

    void assign(Bytes content) {
        if (ftruncate(m_file, 0) != 0)
            fail("ftruncate");
        write(content, 0);
    }

    void write(Bytes content, std::size_t offset) {
        const auto at = static_cast<off_t>(offset);
        if (pwrite(m_file, content.data(), content.size(), at) !=
            static_cast<ssize_t>(content.size()))
            fail("pwrite");
    }

    // Lets a reader open this file, and closes the descriptor that it got in case it did not. Some
    // by contract do not, when they turn a file down.
    template <typename Reader>
    void read(Reader reader) const {
        const int next = dup(m_file);
        close(next);
        reader(path());
        close(next);
    }

private:
    [[noreturn]] static void fail(const char* call) {
        std::perror(call);
        std::abort();
    }

    int m_file;
    std::string m_path;
};
