// Runs of set bits in a field of lines.
#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>
#include <vector>

// Bits are looked up by 64 of a line, when first asked for: match(x, y, count) gives so many of
// them, the first in the lowest bit.
template <typename Match>
class BitRuns {
public:
    BitRuns(const Match& match, int columns, int lines)
        : m_match(match), m_columns(columns), m_words((columns + 63) / 64),
          m_bits(static_cast<std::size_t>(m_words) * static_cast<std::size_t>(lines)),
          m_seen(m_bits.size()) {}

    // The first one from a column on, or the number of columns.
    int next(int x, int y) { return find(x, y, 0); }

    // Behind the run of them that begins at a column.
    int endOf(int x, int y) { return find(x, y, ~std::uint64_t{0}); }

    // The beginning of the run that a column is in.
    int beginOf(int x, int y) {
        while (x > 0) {
            // Those before it in its 64, moved up so that the nearest is the highest bit.
            const int before = x % 64 != 0 ? x % 64 : 64;
            const int run = std::countl_one(word((x - 1) / 64, y) << (64 - before));
            const int taken = run < before ? run : before;
            x -= taken;
            if (taken < before)
                break;
        }
        return x;
    }

    void remove(int begin, int end, int y) {
        for (int x = begin; x < end;) {
            const int first = x % 64, count = end - x < 64 - first ? end - x : 64 - first;
            word(x / 64, y) &= ~(~std::uint64_t{0} >> (64 - count) << first);
            x += count;
        }
    }

private:
    // The first column from one on whose bit differs from those of `passed`.
    int find(int x, int y, std::uint64_t passed) {
        for (; x < m_columns; x = (x / 64 + 1) * 64) {
            const std::uint64_t rest = (word(x / 64, y) ^ passed) >> (x % 64);
            if (rest != 0)
                return std::min(x + std::countr_zero(rest), m_columns);
        }
        return m_columns;
    }

    std::uint64_t& word(int index, int y) {
        const std::size_t at = static_cast<std::size_t>(y) * static_cast<std::size_t>(m_words) +
                               static_cast<std::size_t>(index);
        if (m_seen[at] == 0) {
            m_seen[at] = 1;
            m_bits[at] = m_match(64 * index, y, std::min(64, m_columns - 64 * index));
        }
        return m_bits[at];
    }

    const Match& m_match;
    int m_columns, m_words;
    std::vector<std::uint64_t> m_bits;
    std::vector<unsigned char> m_seen;
};
