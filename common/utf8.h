// Texts in UTF-8, of which the library's font has the codes up to 127.
#pragma once

#include <string>
#include <string_view>

// Whether a byte starts a character, so that characters can be counted.
constexpr bool startsCharacter(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U;
}

// What the font has of a text, with '?' for each other character.
inline std::string drawableText(std::string_view text) {
    std::string result;
    for (const char c : text)
        if (static_cast<unsigned char>(c) < 0x80)
            result += c;
        else if (startsCharacter(c))
            result += '?';
    return result;
}
