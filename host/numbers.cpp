// Numbers as texts.
#include "zrdraw/platform/config_store.h"
#include "zrdraw/types.h"

#include <charconv>

namespace {

constexpr std::size_t longestNumber = 32; // the digits in base 2, or a sign and the ten of base 10

} // namespace

ZRDRAW_API char* itoa(int value, char* text, int base) {
    char* end = text;
    if (base == 10) {
        end = std::to_chars(text, text + longestNumber, value).ptr;
    } else if (base >= 2 && base <= 36) {
        const auto pattern = static_cast<unsigned int>(value);
        end = std::to_chars(text, text + longestNumber, pattern, base).ptr;
    }
    *end = 0;
    return text;
}
