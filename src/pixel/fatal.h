// Faults of bounds that end the process.
#pragma once

#include <cstring>

// Writes one line and aborts.
[[noreturn]] void fatalBounds(const char* what);

// Copies a text with its zero into `bytes` bytes; a longer one is a fault.
inline void copyText(char* to, std::size_t bytes, const char* text, const char* what) {
    const std::size_t length = std::strlen(text);
    if (length >= bytes)
        fatalBounds(what);
    std::memcpy(to, text, length + 1);
}
