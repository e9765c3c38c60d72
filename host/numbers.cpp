/**
 * Numbers as texts.
 */
#include "platform/config_store.h"
#include "zrdraw/types.h"

#include <charconv>
#include <limits>

extern "C" {

ZRDRAW_API char* itoa(int value, char* text, int base) {
    constexpr int longest = std::numeric_limits<unsigned int>::digits + 1; // in base 2, or a sign
    constexpr int decimal = 10;
    if (base < 2 || base > 36) {
        *text = '\0';
        return text;
    }
    const auto written = base == decimal ? std::to_chars(text, text + longest, value)
                                         : std::to_chars(text, text + longest,
                                                         static_cast<unsigned int>(value), base);
    *written.ptr = '\0';
    return text;
}

} // extern "C"
