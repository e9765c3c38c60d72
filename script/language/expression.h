// Expressions in FFmpeg's language, evaluated by libavutil.
#pragma once

#include "script/language/names.h"

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <string_view>

struct AVExpr;

// What is wrong with a part of a script, and at which of its bytes.
struct PartError {
    std::size_t offset;
    std::string message;
};

struct FunctionName {
    std::string_view name;
    int least, most;      // arguments
    bool isPure = true;   // the same arguments give the same result
    bool isHeavy = false; // evaluates an argument a thousand times
};

// The functions of libavutil 57, but for while, which might never end, and print.
std::span<const FunctionName> expressionFunctions();

// What libavutil takes for a number wherever it stands: PI, inf...
bool isNumberName(std::string_view name);

// Letters, digits and _.
bool isVariableName(std::string_view name);

// Whether libavutil takes a name for something else than a variable, or its beginning: info is
// infinity and an o.
bool hasOwnMeaning(const std::string& name);

class Expression {
public:
    // Throws a PartError.
    Expression(const std::string& text, const Names& names);

    // Registers of st(), and the state of random(), stay from one evaluation to the next.
    double evaluate(const Values& values) const;

    // Always gives the same number.
    bool isConstant() const { return m_isConstant; }
    bool usesPeaks() const { return m_usesPeaks; }

private:
    struct Free {
        void operator()(AVExpr* expression) const;
    };
    std::unique_ptr<AVExpr, Free> m_expression;
    bool m_isConstant = true;
    bool m_usesPeaks = false;
};
