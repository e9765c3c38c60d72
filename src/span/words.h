// Words at any address.
#pragma once

#include <cstring>

template <typename Word>
Word loadAs(const void* address) {
    Word word;
    std::memcpy(&word, address, sizeof word);
    return word;
}

template <typename Word>
void storeAs(void* address, Word word) {
    std::memcpy(address, &word, sizeof word);
}
