/**
 * @file
 * @ingroup formats
 *
 * Half floats (IEEE 754 binary16) as the half-float layouts hold them, for callers that fill or
 * read such frames themselves. CDrawRGBAHalf converts by these functions.
 */
#ifndef ZRDRAW_HALF_FLOAT_H
#define ZRDRAW_HALF_FLOAT_H

#include <cstdint>

/** @addtogroup formats
 * @{ */

namespace zrHalfFloat {

inline constexpr std::uint32_t exponentShift = 112; /**< a float's bias less a half's */
inline constexpr std::uint32_t infinity = 0x7C00;
inline constexpr std::uint32_t quietBit = 0x0200;

/** value >> bits, rounded to nearest, ties to even. */
constexpr std::uint32_t shiftRounded(std::uint32_t value, std::uint32_t bits) {
    const std::uint32_t tie = 1U << (bits - 1);
    const std::uint32_t lost = value & ((1U << bits) - 1);
    const std::uint32_t kept = value >> bits;
    return kept + (lost > tie || (lost == tie && (kept & 1U) != 0));
}

} // namespace zrHalfFloat

/** The nearest half, ties to even. What is too large becomes infinity; a NaN becomes quiet and
 * loses its payload. */
constexpr std::uint16_t zrFloatToHalf(float value) {
    using namespace zrHalfFloat;
    const auto bits = __builtin_bit_cast(std::uint32_t, value);
    const std::uint32_t sign = bits >> 16 & 0x8000;
    const std::uint32_t mantissa = bits & 0x7FFFFF;
    const std::uint32_t field = bits >> 23 & 0xFF;
    std::uint32_t half = 0;
    if (field == 255)
        half = infinity | (mantissa != 0 ? quietBit : 0);
    else if (field > exponentShift + 30)
        half = infinity;
    else if (field > exponentShift) // a carry out of the mantissa goes into the exponent as it must
        half = shiftRounded((field - exponentShift) << 23 | mantissa, 13);
    else if (field + 10 >= exponentShift) // subnormal
        half = shiftRounded(mantissa | 0x800000, 14 + exponentShift - field);
    return static_cast<std::uint16_t>(sign | half);
}

/** Exactly; a signalling NaN stays one. */
constexpr float zrHalfToFloat(std::uint16_t half) {
    using namespace zrHalfFloat;
    const std::uint32_t sign = std::uint32_t{half} >> 15 << 31;
    const std::uint32_t exponent = half >> 10 & 31U;
    const std::uint32_t mantissa = half & 0x3FFU;
    if (exponent == 31)
        return __builtin_bit_cast(float, sign | 255U << 23 | mantissa << 13);
    if (exponent != 0)
        return __builtin_bit_cast(float, sign | (exponent + exponentShift) << 23 | mantissa << 13);
    if (mantissa == 0)
        return __builtin_bit_cast(float, sign);
    // Subnormal: moved up until the leading one stands in bit 10, which a float does not store.
    const auto shifts = static_cast<std::uint32_t>(__builtin_clz(mantissa)) - 21;
    return __builtin_bit_cast(float, sign | (exponentShift + 1 - shifts) << 23 |
                                         (mantissa << shifts & 0x3FFU) << 13);
}

/** @} */

#endif
