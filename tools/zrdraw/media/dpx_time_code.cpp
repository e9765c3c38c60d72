#include "media/dpx_time_code.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

namespace {

// The encoder writes the generic header alone. The industry header behind it, of which the second
// part is for television, begins with the time code there.
constexpr std::uint32_t genericBytes = 1664;
constexpr std::uint32_t industryBytes = 384;
constexpr std::uint32_t timeCodeOffset = 1920;

// Fields of the generic header.
constexpr int magicField = 0; // "SDPX" in big-endian files, "XPDS" in others
constexpr int imageOffsetField = 4;
constexpr int fileSizeField = 16;
constexpr int industrySizeField = 28;

constexpr int undefined = 0xFF;

void putWord(AVPacket& file, int field, std::uint32_t value) {
    if (file.data[magicField] == 'S')
        value = __builtin_bswap32(value);
    std::memcpy(file.data + field, &value, sizeof value);
}

std::uint32_t wordAt(const AVPacket& file, std::uint32_t field) {
    std::uint32_t value;
    std::memcpy(&value, file.data + field, sizeof value);
    return file.data[magicField] == 'S' ? __builtin_bswap32(value) : value;
}

// Two decimal digits a byte: hours, minutes, seconds, frames.
std::uint32_t packedTimeCode(const std::string& text) {
    constexpr std::size_t fieldText = 3; // two digits and what follows them
    std::uint32_t packed = 0;
    for (std::size_t i = 0; i < 4; ++i)
        packed = packed << 8 | static_cast<std::uint32_t>(text[fieldText * i] - '0') << 4 |
                 static_cast<std::uint32_t>(text[fieldText * i + 1] - '0');
    return packed;
}

} // namespace

std::string dpxTimeCode(const AVPacket& file) {
    constexpr std::uint32_t most[] = {0x23, 0x59, 0x59, 0x99};
    if (file.size < static_cast<int>(genericBytes + industryBytes) ||
        wordAt(file, imageOffsetField) < genericBytes + industryBytes)
        return "";
    const std::uint32_t packed = wordAt(file, timeCodeOffset);
    std::string text;
    for (int i = 0; i < 4; ++i) {
        const std::uint32_t field = packed >> (24 - 8 * i) & 0xFF;
        if ((field & 0xF) > 9 || field > most[i]) // 0xFF where it is left open
            return "";
        text += fmt::format("{}{:02x}", i == 0 ? "" : ":", field);
    }
    return text;
}

void putDpxTimeCode(AVPacket& file, const std::string& text) {
    constexpr std::size_t textLength = 11; // HH:MM:SS:FF
    if (text.size() != textLength || file.size < static_cast<int>(genericBytes) ||
        wordAt(file, imageOffsetField) != genericBytes)
        return;
    const PacketPtr longer = newPacket();
    if (av_new_packet(longer.get(), file.size + static_cast<int>(industryBytes)) < 0)
        throw std::bad_alloc();
    std::copy_n(file.data, genericBytes, longer->data);
    std::fill_n(longer->data + genericBytes, industryBytes, undefined);
    std::copy_n(file.data + genericBytes, file.size - static_cast<int>(genericBytes),
                longer->data + genericBytes + industryBytes);
    putWord(*longer, imageOffsetField, genericBytes + industryBytes);
    putWord(*longer, fileSizeField, static_cast<std::uint32_t>(longer->size));
    putWord(*longer, industrySizeField, industryBytes);
    putWord(*longer, timeCodeOffset, packedTimeCode(text));
    if (av_packet_copy_props(longer.get(), &file) < 0)
        throw std::bad_alloc();
    av_packet_unref(&file);
    av_packet_move_ref(&file, longer.get());
}
