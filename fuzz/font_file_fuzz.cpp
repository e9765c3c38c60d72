// Feeds an input to both readers of font files, as far as the contract lets it be read.
#include "memory_file.h"
#include "zrdraw/font_files.h"
#include "zrdraw/zrdraw.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <optional>
#include <span>

namespace {

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
