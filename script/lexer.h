// Splits a script into commands and words.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

// A place in a script; line and column count from 1, columns in characters.
struct Position {
    std::size_t line = 1;
    std::size_t column = 1;
};

struct Word {
    std::string text; // without quotes, escapes resolved
    bool quoted = false;
    Position position;
    std::vector<std::size_t> columns; // where each byte of the text stands on the line
};

// The words of one command, at least one.
using Statement = std::vector<Word>;

// Whether a byte of UTF-8 starts a character, so that characters can be counted.
constexpr bool startsCharacter(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U;
}

// `source` is the script's name in error messages.
std::vector<Statement> splitScript(std::string_view text, const std::string& source);

// Throws a UsageError "source:line:column: message".
[[noreturn]] void failAt(const std::string& source, Position position, const std::string& message);
