// Positions in 16.16 fixed point, in 32-bit arithmetic that wraps.
#pragma once

namespace fixed {

inline constexpr int half = 0x8000;

constexpr int fromInt(int value) {
    return value << 16;
}

constexpr int floorToInt(int position) {
    return position >> 16;
}

// The line on which a line of no slope is drawn. By contract: beyond what 16 bits hold it is
// another.
constexpr int lineOf(int coordinate) {
    return floorToInt(fromInt(coordinate) + half);
}

// Whether no coordinate from 0 up to this one is lost.
constexpr bool holds(int coordinate) {
    return lineOf(coordinate) == coordinate;
}

// How far the minor coordinate moves for each step of the major one; 0 for no major move. The
// division is done wide, as the one quotient of 32 bits that overflows would trap.
constexpr int slope(int minor, int major) {
    // NOLINTNEXTLINE(clang-analyzer-core.DivideZero): no move is told apart first.
    return major == 0 ? 0 : static_cast<int>(static_cast<long>(fromInt(minor)) / major);
}

} // namespace fixed
