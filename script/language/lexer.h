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
    enum class Quotes {
        None,
        Single, // around an expression
        Double  // around a text or a file's name
    };
    std::string text; // without quotes, escapes resolved
    Quotes quotes = Quotes::None;
    Position position;
    std::vector<std::size_t> columns; // where each byte of the text stands on the line

    bool isPlain() const { return quotes == Quotes::None; }
    // Of a byte of the text, or of its end.
    Position positionOf(std::size_t byte) const {
        return {position.line, byte < columns.size() ? columns[byte] : endColumn()};
    }
    std::size_t endColumn() const { return columns.empty() ? position.column : columns.back() + 1; }
};

// The words of one command, at least one.
using Statement = std::vector<Word>;

// `source` is the script's name in error messages.
std::vector<Statement> splitScript(std::string_view text, const std::string& source);

// Throws a UsageError "source:line:column: message".
[[noreturn]] void failAt(const std::string& source, Position position, const std::string& message);
