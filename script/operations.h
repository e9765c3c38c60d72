// The commands of scripts: one table, from which parser, help and execution all read.
#pragma once

#include "zrdraw/zrdraw.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

struct Parameter {
    enum class Kind {
        Whole,  // a whole number from low to high
        Number, // a number from low to high
        Choice, // one of the words
        Text,   // characters 1 to 127 in double quotes
        Points, // two or more pairs of coordinates, up to the end of the command
        Flag    // its name or nothing; flags stand last, in any order
    };
    Kind kind;
    std::string_view name;
    double low = 0;
    double high = 0;
    std::vector<std::string_view> words = {}; // of Choice; Number takes them beside numbers
    bool optional = false;
};

// What a command has for one parameter. Nothing is set for one that was left out.
struct Argument {
    static constexpr std::size_t noWord = static_cast<std::size_t>(-1);
    bool given = false;
    double number = 0;
    std::size_t word = noWord; // index into the words
    std::string text = {};
    std::vector<_POINT> points = {};
};

// One for each parameter, in order.
class Arguments {
public:
    explicit Arguments(std::vector<Argument> arguments) : m_arguments(std::move(arguments)) {}

    bool given(std::size_t i) const { return m_arguments[i].given; }
    int whole(std::size_t i) const { return static_cast<int>(m_arguments[i].number); }
    double number(std::size_t i) const { return m_arguments[i].number; }
    double numberOr(std::size_t i, double other) const { return given(i) ? number(i) : other; }
    std::size_t word(std::size_t i) const { return m_arguments[i].word; }
    const std::string& text(std::size_t i) const { return m_arguments[i].text; }
    const std::vector<_POINT>& points(std::size_t i) const { return m_arguments[i].points; }

private:
    std::vector<Argument> m_arguments;
};

struct Operation {
    std::string_view name;
    std::vector<Parameter> parameters;
    std::string help;
    int (*run)(ZRDraw& draw, const Arguments& arguments); // -1: refused, nothing was drawn
    std::string_view refusal = {}; // why run() answers -1; empty: it is not wholly on the canvas
    // What is wrong with arguments that are right one by one; empty for nothing. Null: no such
    // rule.
    std::string (*fault)(const Arguments& arguments) = nullptr;
    bool blends = false; // which only drawing in 8 bits of RGB does
};

// Positions of the library are 16.16 fixed point, so larger coordinates would overflow.
inline constexpr double coordinateLimit = 32767;

const std::vector<Operation>& operations();

// The command with its parameters, such as "point X Y [back]".
std::string usage(const Operation& operation);

// Name, parameters and help of every command, a line each.
std::string listOperations();
