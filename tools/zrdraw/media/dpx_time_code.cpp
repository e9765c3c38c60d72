#include "media/dpx_time_code.h"

#include <algorithm>
#include <array>

namespace {

constexpr int offset = 1920;
constexpr std::uint8_t bigEndianMagic = 'S'; // "SDPX"; the other order has "XPDS"

} // namespace

// Two decimal digits a byte: hours, minutes, seconds, frames of one 32-bit word.
void putDpxTimeCode(AVPacket& file, const std::string& text) {
    std::array<std::uint8_t, 4> fields{};
    constexpr std::size_t fieldText = 3; // two digits and what follows them
    if (file.size < offset + 4 || text.size() + 1 != fields.size() * fieldText)
        return;
    for (std::size_t i = 0; i < fields.size(); ++i)
        fields[i] = static_cast<std::uint8_t>((text[fieldText * i] - '0') << 4 |
                                              (text[fieldText * i + 1] - '0'));
    if (file.data[0] != bigEndianMagic)
        std::reverse(fields.begin(), fields.end());
    if (av_packet_make_writable(&file) < 0)
        throw std::bad_alloc();
    std::copy(fields.begin(), fields.end(), file.data + offset);
}
