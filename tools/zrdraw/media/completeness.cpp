#include "media/completeness.h"

#include <bit>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <istream>
#include <optional>

namespace {

constexpr std::uint32_t ebmlHeaderId = 0x1A45DFA3;
constexpr std::uint32_t segmentId = 0x18538067;

// Markers that stand alone, without a length and content: a stuffed zero, fill bytes and restarts.
bool standsAlone(std::uint8_t marker) {
    return marker == 0x00 || marker == 0x01 || marker == 0xFF || (marker >= 0xD0 && marker <= 0xD8);
}

std::uint64_t readBigEndian(std::istream& in, int bytes) {
    std::uint64_t value = 0;
    for (int i = 0; i < bytes; ++i)
        value = value << 8 | static_cast<std::uint8_t>(in.get());
    return value;
}

// A length whose first byte tells by its leading zeros how many bytes follow. All ones: unknown.
std::optional<std::uint64_t> readLength(std::istream& in) {
    const auto first = static_cast<std::uint8_t>(in.get());
    const int following = std::countl_zero(first);
    if (!in || following > 7)
        return std::nullopt;
    const std::uint64_t unknown = (std::uint64_t{1} << (7 * (following + 1))) - 1;
    const std::uint64_t high = std::uint64_t{first} << (8 * following);
    const std::uint64_t value = (high | readBigEndian(in, following)) & unknown;
    return value == unknown ? std::nullopt : std::optional(value);
}

bool isAtLeast(const std::string& path, std::uint64_t bytes) {
    std::error_code error;
    const std::uint64_t size = std::filesystem::file_size(path, error);
    return error || size >= bytes;
}

} // namespace

bool jpegReachesItsEnd(std::span<const std::uint8_t> jpeg) {
    constexpr std::uint8_t endOfImage = 0xD9;
    for (std::size_t i = 0; i + 1 < jpeg.size();) {
        const std::uint8_t marker = jpeg[i + 1];
        if (jpeg[i] != 0xFF || standsAlone(marker)) {
            ++i;
            continue;
        }
        if (marker == endOfImage)
            return true;
        // Content is jumped over, because it may hold a small picture with an end of its own.
        if (i + 3 >= jpeg.size())
            return false;
        i += 2 + (std::size_t{jpeg[i + 2]} << 8 | jpeg[i + 3]);
    }
    return false;
}

bool aviReachesItsEnd(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    constexpr std::uint32_t riff = 0x52494646;
    constexpr std::uint64_t headerBytes = 8; // which the length does not count
    if (readBigEndian(in, 4) != riff)
        return true;
    std::uint64_t length = 0;
    for (int shift = 0; shift < 32; shift += 8)
        length |= readBigEndian(in, 1) << shift;
    return !in || isAtLeast(path, headerBytes + length);
}

bool matroskaReachesItsEnd(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (readBigEndian(in, 4) != ebmlHeaderId)
        return true;
    const std::optional<std::uint64_t> headerLength = readLength(in);
    if (!headerLength || !in.seekg(static_cast<std::streamoff>(*headerLength), std::ios::cur) ||
        readBigEndian(in, 4) != segmentId)
        return true;
    const std::optional<std::uint64_t> length = readLength(in);
    if (!length || !in)
        return true;
    return isAtLeast(path, static_cast<std::uint64_t>(in.tellg()) + *length);
}
