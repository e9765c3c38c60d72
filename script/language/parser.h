// Reads scripts into commands that are ready to run.
#pragma once

#include "script/language/expression.h"
#include "script/language/field_text.h"
#include "script/language/lexer.h"
#include "script/operations/operations.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

// A number of a command that each frame gives anew.
struct LiveNumber {
    std::size_t argument;
    std::size_t coordinate; // of points
    std::string name;
    std::shared_ptr<const Expression> expression;
    Position position;
};

// A text likewise.
struct LiveText {
    std::size_t argument;
    std::shared_ptr<const FieldText> text;
    Word word; // as it is written
};

struct Command {
    const Operation* operation;
    Arguments arguments; // but for the live ones
    std::vector<LiveNumber> numbers;
    std::vector<LiveText> texts;
    std::shared_ptr<const std::string> source;
    Position position;
    std::vector<Position> places; // of the arguments, where they are written
    std::size_t end = 0;          // of Open: its end, among the commands
    std::size_t variable = 0;     // of Let: its place among the values

    bool isLive() const { return !numbers.empty() || !texts.empty(); }
    std::string place() const { return placeOf(position); } // "source:line:column"
    std::string placeOf(Position at) const;
};

struct Script {
    std::vector<Command> commands;
    Names names;
    bool usesPeaks = false;

    // Commands stand one a line or between semicolons; a # starts a comment. `source` is the
    // script's name in messages. A fault anywhere is a UsageError, so that a script runs whole or
    // not at all. Variables of what was read before are known. Names of files are taken from the
    // folder.
    void read(std::string_view text, const std::string& source, const std::string& folder = "");
    void readFile(const std::string& path);
};

Script parseScript(std::string_view text, const std::string& source);

// Whether a script draws what only 8 bits of RGB show.
bool blends(const Script& script);
// Whether it puts pictures on frames.
bool hasPictures(const Script& script);
