// Numbers as users write them.
#pragma once

#include "common/tool_error.h"

#include <fmt/format.h>

#include <charconv>
#include <optional>
#include <string_view>

// The number that a whole text is; nothing for any other text, and for one beyond the type.
template <typename Number>
std::optional<Number> numberIn(std::string_view text) {
    Number number{};
    const char* const end = text.data() + text.size();
    const auto [after, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc{} || after != end)
        return std::nullopt;
    return number;
}

// The value of an option; a text that is no number from `low` to `high` is a UsageError.
template <typename Number>
Number numberIn(std::string_view text, std::string_view option, Number low, Number high) {
    const std::optional<Number> number = numberIn<Number>(text);
    if (!number || !(*number >= low && *number <= high)) // so that not-a-number is refused
        throw UsageError(
            fmt::format("{}: expected a number from {} to {}, got '{}'", option, low, high, text));
    return *number;
}

// As many numbers as the array has, with a separator between them; false for any other text.
template <typename Number, std::size_t count>
bool readNumbers(std::string_view text, char separator, int base, Number (&numbers)[count]) {
    const char* next = text.data();
    const char* const end = next + text.size();
    for (std::size_t i = 0; i < count; ++i) {
        if (i > 0 && (next == end || *next++ != separator))
            return false;
        const auto [after, error] = std::from_chars(next, end, numbers[i], base);
        if (error != std::errc{})
            return false;
        next = after;
    }
    return next == end;
}
