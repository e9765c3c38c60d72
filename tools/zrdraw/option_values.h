// How options name their values. The help shows these names; the manual pages and the completion
// also tell by them what may stand there.
#pragma once

#include <CLI/App.hpp>
#include <fmt/format.h>

#include <string>
#include <vector>

namespace valueName {

inline constexpr const char* file = "FILE";
inline constexpr const char* folder = "DIR";
inline constexpr const char* layout = "LAYOUT";
inline constexpr const char* transition = "TRANSITION";
inline constexpr const char* mode = "MODE";
inline constexpr const char* setting = "KEY";
inline constexpr const char* assignment = "KEY=VALUE"; // of settings
inline constexpr const char* commands = "COMMANDS";
inline constexpr const char* count = "N";
inline constexpr const char* fraction = "0..1";

} // namespace valueName

inline constexpr char choiceMark = '|';

// The name of a value that is one of these words, such as "all|av|v".
inline std::string oneOf(const std::vector<std::string>& words) {
    return fmt::format("{}", fmt::join(words, std::string(1, choiceMark)));
}

template <class Rows>
std::string oneOfNames(const Rows& rows) {
    std::vector<std::string> names;
    for (const auto& row : rows)
        names.emplace_back(row.name);
    return oneOf(names);
}

// Whole numbers only, from `low` to `high`.
inline CLI::Option* takeRange(CLI::Option* option, int low, int high) {
    return option->type_name(fmt::format("{}..{}", low, high))
        ->check(CLI::Range(low, high).description(""));
}

inline CLI::Option* takeCount(CLI::Option* option) {
    return option->type_name(valueName::count)->check(CLI::NonNegativeNumber.description(""));
}
