// Memory between guard bytes, which compares and copies together with them, so that a byte written
// beside it shows.
#pragma once

#include <algorithm>
#include <cstddef>
#include <ostream>
#include <vector>

class GuardedMemory {
public:
    static constexpr unsigned char guardByte = 0x5A;
    static constexpr std::size_t guardBytes = 64;

    explicit GuardedMemory(std::size_t bytes, unsigned char fill = guardByte)
        : m_bytes(guardBytes + bytes + guardBytes, fill) {
        std::fill_n(m_bytes.begin(), guardBytes, guardByte);
        std::fill_n(m_bytes.rbegin(), guardBytes, guardByte);
    }

    unsigned char* data() { return m_bytes.data() + guardBytes; }
    const unsigned char* data() const { return m_bytes.data() + guardBytes; }
    char* chars() { return reinterpret_cast<char*>(data()); }
    std::size_t size() const { return m_bytes.size() - 2 * guardBytes; }
    unsigned char* begin() { return data(); }
    unsigned char* end() { return data() + size(); }

    bool operator==(const GuardedMemory&) const = default;

    // Where two of a size differ first, counted from the first byte between the guards.
    std::ptrdiff_t firstDifference(const GuardedMemory& other) const {
        const auto at = std::mismatch(m_bytes.begin(), m_bytes.end(), other.m_bytes.begin());
        return at.first - m_bytes.begin() - static_cast<std::ptrdiff_t>(guardBytes);
    }

    bool guardsIntact() const {
        const auto isGuard = [](unsigned char byte) { return byte == guardByte; };
        return std::all_of(m_bytes.begin(), m_bytes.begin() + guardBytes, isGuard) &&
               std::all_of(m_bytes.end() - guardBytes, m_bytes.end(), isGuard);
    }

    // Too large to be shown; a failed test says what it did.
    friend void PrintTo(const GuardedMemory& memory, std::ostream* out) {
        *out << memory.size() << " bytes";
    }

private:
    std::vector<unsigned char> m_bytes;
};
