#include "script/language/expression.h"

#include "script/language/expression_check.h"

extern "C" {
#include <libavutil/eval.h>
}

#include <algorithm>
#include <cctype>
#include <iterator>

namespace {

// In the order of FFmpeg's documentation.
constexpr FunctionName functions[] = {
    {"abs", 1, 1},
    {"acos", 1, 1},
    {"asin", 1, 1},
    {"atan", 1, 1},
    {"atan2", 2, 2},
    {"between", 3, 3},
    {"bitand", 2, 2},
    {"bitor", 2, 2},
    {"ceil", 1, 1},
    {"clip", 3, 3},
    {"cos", 1, 1},
    {"cosh", 1, 1},
    {"eq", 2, 2},
    {"exp", 1, 1},
    {"floor", 1, 1},
    {"gauss", 1, 1},
    {"gcd", 2, 2},
    {"gt", 2, 2},
    {"gte", 2, 2},
    {"hypot", 2, 2},
    {"if", 2, 3},
    {"ifnot", 2, 3},
    {"isinf", 1, 1},
    {"isnan", 1, 1},
    {"ld", 1, 1, false},
    {"lerp", 3, 3},
    {"log", 1, 1},
    {"lt", 2, 2},
    {"lte", 2, 2},
    {"max", 2, 2},
    {"min", 2, 2},
    {"mod", 2, 2},
    {"not", 1, 1},
    {"pow", 2, 2},
    {"random", 1, 1, false},
    {"root", 2, 2, true, true},
    {"round", 1, 1},
    {"sgn", 1, 1},
    {"sin", 1, 1},
    {"sinh", 1, 1},
    {"sqrt", 1, 1},
    {"squish", 1, 1},
    {"st", 2, 2, false},
    {"tan", 1, 1},
    {"tanh", 1, 1},
    {"taylor", 2, 3, true, true},
    {"time", 1, 1, false},
    {"trunc", 1, 1},
};

// What libavutil takes for a number in any case.
constexpr std::string_view numberNames[] = {"E",   "PHI",      "PI", "QP2LAMBDA",
                                            "inf", "infinity", "nan"};

// Above all levels, so that nothing is printed: the check tells more.
constexpr int silence = 1000;

} // namespace

std::span<const FunctionName> expressionFunctions() {
    return functions;
}

bool isNumberName(std::string_view name) {
    return std::find(std::begin(numberNames), std::end(numberNames), name) != std::end(numberNames);
}

bool isVariableName(std::string_view name) {
    const auto isLetter = [](unsigned char c) { return std::isalpha(c) != 0 || c == '_'; };
    return !name.empty() && isLetter(static_cast<unsigned char>(name.front())) &&
           std::all_of(name.begin(), name.end(),
                       [&](unsigned char c) { return isLetter(c) || std::isdigit(c) != 0; });
}

bool hasOwnMeaning(const std::string& name) {
    if (name == "while" || name == "print") // which are left out
        return true;
    char* end = nullptr;
    av_strtod(name.c_str(), &end);
    return end != name.c_str() || isNumberName(name) ||
           std::any_of(std::begin(functions), std::end(functions),
                       [&](const FunctionName& function) { return function.name == name; });
}

Expression::Expression(const std::string& text, const Names& names) {
    const ExpressionFacts facts = checkExpression(text, names);
    m_isConstant = facts.isConstant;
    m_usesPeaks = facts.usesPeaks;
    AVExpr* made = nullptr;
    const int status = av_expr_parse(&made, text.c_str(), names.list().data(), nullptr, nullptr,
                                     nullptr, nullptr, silence, nullptr);
    m_expression.reset(made);
    if (status < 0)
        throw PartError{0, "FFmpeg reads no expression from it: it may have a sign too many, or "
                           "more than a hundred operations, which let can set apart"};
}

double Expression::evaluate(const Values& values) const {
    return av_expr_eval(m_expression.get(), values.data(), nullptr);
}

void Expression::Free::operator()(AVExpr* expression) const {
    av_expr_free(expression);
}
