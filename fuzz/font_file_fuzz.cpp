// Feeds an input to both readers of font files, as far as the contract lets it be read.
#include "zrdraw/font_files.h"
#include "zrdraw/zrdraw.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <span>
#include <string>

#include <sys/mman.h>
#include <unistd.h>

namespace {

using Bytes = std::span<const std::uint8_t>;

// A byte of a file; the readers take what lies behind its end as 0.
unsigned int byteAt(Bytes file, std::size_t offset) {
    return offset < file.size() ? file[offset] : 0U;
}

unsigned int littleEndian(Bytes file, std::size_t at) {
    return byteAt(file, at) | byteAt(file, at + 1) << 8 | byteAt(file, at + 2) << 16 |
           byteAt(file, at + 3) << 24;
}

unsigned int bigEndian(Bytes file, std::size_t at) {
    return byteAt(file, at) << 24 | byteAt(file, at + 1) << 16 | byteAt(file, at + 2) << 8 |
           byteAt(file, at + 3);
}

bool isChunk(Bytes file, std::size_t at, const char* name) {
    return at + 8 <= file.size() && std::memcmp(file.data() + at + 4, name, 4) == 0;
}

// By contract: a bitmap of more pixels than the buffer holds ends the process. Other kinds of
// bitmap are turned down before their size is looked at, and need no exact test here.
bool bitmapFits(Bytes file) {
    const unsigned int given = littleEndian(file, 34);
    const unsigned int natural = littleEndian(file, 18) * littleEndian(file, 22) * 3;
    return (given != 0 ? given : natural) <= sizeof data;
}

// Where the walk over the chunks of a PNG file ends or leaves the file; nothing when it collects
// more picture data than fits, which by contract ends the process.
std::optional<std::size_t> endOfWalk(Bytes file) {
    constexpr std::size_t firstChunkEnd = 33;
    std::size_t room = 65535;
    std::size_t at = firstChunkEnd;
    while (at + 8 <= file.size() && !isChunk(file, at, "IEND")) {
        const std::size_t length = bigEndian(file, at);
        if (isChunk(file, at, "IDAT")) {
            if (length > room)
                return std::nullopt;
            room -= length;
        }
        at += 8 + length + 4;
    }
    return at;
}

// A file in memory, which takes each input in turn.
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

ZRDraw& reader() {
    static ZRDraw* const draw = [] {
        ZRDraw* made = nullptr;
        GetDraw(ptBGRA32, 1, 1, 0, nullptr, made);
        return made;
    }();
    return *draw;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    static MemoryFile file;
    const Bytes content(bytes, count);
    file.assign(content);
    if (bitmapFits(content))
        file.read([](const char* path) { reader().ExtractBMPData(path); });
    if (const std::optional<std::size_t> end = endOfWalk(content)) {
        // By contract: a file without an end chunk is read for ever.
        constexpr std::array<std::uint8_t, 12> endChunk{0,   0,   0,    0,    'I',  'E',
                                                        'N', 'D', 0xAE, 0x42, 0x60, 0x82};
        file.write(endChunk, *end);
        file.read([](const char* path) { reader().ExtractPNGData(path); });
    }
    return 0;
}
