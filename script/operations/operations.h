// The commands of scripts: one table, from which parser, help, programs in Lua and execution all
// read.
#pragma once

#include "zrdraw/zrdraw.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

struct Scene;

struct Parameter {
    enum class Kind {
        Whole,    // a whole number from low to high
        Number,   // a number from low to high
        Choice,   // one of the words
        Text,     // characters 1 to 127 in double quotes, and fields
        Points,   // two or more pairs of coordinates, up to the end of the command
        Flag,     // its name or nothing; flags stand last, in any order
        File,     // name of a file
        Variable, // name of a variable
        TimeCode, // such as 10:00:00:00
        Sign      // its name, always
    };
    // What places and grids do with a number.
    enum class Role { Plain, X, Y, Right, Bottom, Width, Height, Length };

    Kind kind;
    std::string_view name;
    double low = 0;
    double high = 0;
    std::vector<std::string_view> words = {}; // of Choice; Number takes them beside numbers
    bool optional = false;
    Role role = Role::Plain;
    std::size_t takes = 0; // of Flag: so many parameters behind it come with it
};

// What a command has for one parameter. Nothing is set for one that was left out.
struct Argument {
    static constexpr std::size_t noWord = static_cast<std::size_t>(-1);
    bool given = false;
    double number = 0;
    std::size_t word = noWord; // index into the words
    std::string text = {};
    std::vector<double> coordinates = {}; // of points, as the script has them: x, y, x, y...
    std::vector<_POINT> points = {};      // in pixels
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

    std::size_t size() const { return m_arguments.size(); }
    Argument& at(std::size_t i) { return m_arguments[i]; }
    const Argument& at(std::size_t i) const { return m_arguments[i]; }

private:
    std::vector<Argument> m_arguments;
};

struct Operation {
    std::string_view name;
    std::vector<Parameter> parameters;
    std::string help;
    int (*run)(Scene& scene, const Arguments& arguments); // -1: refused, nothing was drawn
    std::string_view refusal = {}; // why run() answers -1; empty: it is not wholly on the canvas
    // What is wrong with arguments that are right one by one; empty for nothing. Null: no such
    // rule.
    std::string (*fault)(const Arguments& arguments) = nullptr;
    bool blends = false; // which only drawing in 8 bits of RGB does
    // Those that choose what is run are for lists of commands only.
    enum class Flow { None, Let, Open, Close } flow = Flow::None;
};

// Positions of the library are 16.16 fixed point, so larger coordinates would overflow.
inline constexpr double coordinateLimit = 32767;

const std::vector<Operation>& operations();

// Null for a name that no command has.
const Operation* operationNamed(std::string_view name);
std::vector<std::string> operationNames();

// The command with its parameters, such as "point X Y [back]".
std::string usage(const Operation& operation);
