#include "script/language/expression_check.h"

#include "common/near_names.h"
#include "common/utf8.h"

#include <fmt/format.h>

extern "C" {
#include <libavutil/eval.h>
}

#include <algorithm>
#include <cctype>

namespace {

// libavutil goes down into an expression by calling itself, and ends at a hundred levels of some.
constexpr std::size_t longest = 1000;
constexpr std::size_t deepest = 40;

bool isLetter(char c) {
    return std::isalpha(static_cast<unsigned char>(c)) != 0 || c == '_';
}

bool isDigit(char c) {
    return std::isdigit(static_cast<unsigned char>(c)) != 0;
}

const FunctionName* functionNamed(std::string_view name) {
    const auto all = expressionFunctions();
    const auto found = std::find_if(all.begin(), all.end(), [name](const FunctionName& function) {
        return function.name == name;
    });
    return found != all.end() ? &*found : nullptr;
}

std::string hintFor(char c) {
    constexpr struct {
        char character;
        const char* hint;
    } hints[] = {
        {'<', "; write lt(a,b) or lte(a,b)"},
        {'>', "; write gt(a,b) or gte(a,b)"},
        {'=', "; write eq(a,b)"},
        {'%', "; write mod(a,b)"},
        {'&', "; write a*b, or bitand(a,b)"},
        {'|', "; write max(a,b), or bitor(a,b)"},
        {'?', "; write if(condition,then,else)"},
        {'!', "; write not(a)"},
    };
    for (const auto& row : hints)
        if (row.character == c)
            return row.hint;
    return "";
}

// Reads an expression from left to right: operands and operators in turns, in brackets that close.
class Check {
public:
    Check(std::string_view text, const Names& names) : m_text(text), m_names(names) {}

    ExpressionFacts run() {
        if (m_text.size() > longest)
            fail(longest, fmt::format("an expression has at most {} characters", longest));
        while (skipBlanks(), m_next < m_text.size())
            step();
        if (!m_open.empty())
            fail(m_open.back().offset, "the bracket is not closed");
        if (m_wantsOperand)
            fail(m_text.size(),
                 m_text.empty() ? "the expression is empty" : "a value is missing at the end");
        return m_facts;
    }

private:
    struct Bracket {
        std::size_t offset;
        const FunctionName* function; // null: none stands before it
        int arguments = 1;
    };

    [[noreturn]] static void fail(std::size_t offset, std::string message) {
        throw PartError{offset, std::move(message)};
    }

    char at() const { return m_text[m_next]; }

    void skipBlanks() {
        while (m_next < m_text.size() && std::isspace(static_cast<unsigned char>(at())) != 0)
            ++m_next;
    }

    void step() {
        const char c = at();
        if (isLetter(c))
            takeName();
        else if (isDigit(c) || c == '.')
            takeNumber();
        else if (c == '(')
            open(nullptr, m_next++);
        else if (c == ')')
            close();
        else
            takeOperator();
    }

    void startOperand(std::size_t offset) {
        if (!m_wantsOperand)
            fail(offset, "an operator is missing before it");
        m_wantsOperand = false;
    }

    // Powers of ten and decibels may follow digits: 10k, -6dB.
    void takeNumber() {
        startOperand(m_next);
        const std::string number(m_text.substr(m_next));
        char* end = nullptr;
        av_strtod(number.c_str(), &end);
        const auto length = static_cast<std::size_t>(end - number.c_str());
        const std::size_t begin = m_next;
        m_next += length;
        const bool goesOn =
            m_next < m_text.size() && (isLetter(at()) || isDigit(at()) || at() == '.');
        if (length != 0 && !goesOn)
            return;
        while (m_next < m_text.size() && (isLetter(at()) || isDigit(at()) || at() == '.'))
            ++m_next;
        fail(begin, fmt::format("\"{}\" is no number", m_text.substr(begin, m_next - begin)));
    }

    void takeName() {
        const std::size_t begin = m_next;
        while (m_next < m_text.size() && (isLetter(at()) || isDigit(at())))
            ++m_next;
        const std::string_view name = m_text.substr(begin, m_next - begin);
        skipBlanks();
        if (m_next < m_text.size() && at() == '(') {
            takeFunction(name, begin);
            return;
        }
        startOperand(begin);
        if (isNumberName(name))
            return;
        const auto place = m_names.find(name);
        if (!place)
            failUnknown(name, begin);
        m_facts.isConstant = false;
        m_facts.usesPeaks |= *place >= firstPeak && *place < firstVariable;
    }

    [[noreturn]] void failUnknown(std::string_view name, std::size_t offset) const {
        if (const FunctionName* function = functionNamed(name))
            fail(offset, fmt::format("{} is a function: write {}(...)", name, function->name));
        fail(offset, fmt::format("there is no \"{}\"{}", name, m_names.near(std::string(name))));
    }

    void takeFunction(std::string_view name, std::size_t begin) {
        if (!m_wantsOperand)
            fail(begin, "an operator is missing before it");
        const FunctionName* function = functionNamed(name);
        if (name == "while")
            fail(begin, "while might never end: use a program in Lua");
        if (!function)
            failNoFunction(name, begin);
        const auto isHeavy = [](const Bracket& bracket) {
            return bracket.function && bracket.function->isHeavy;
        };
        if (function->isHeavy && std::any_of(m_open.begin(), m_open.end(), isHeavy))
            fail(begin, fmt::format("{} within root or taylor takes too long", name));
        m_facts.isConstant &= function->isPure;
        open(function, begin);
        ++m_next;
    }

    [[noreturn]] static void failNoFunction(std::string_view name, std::size_t offset) {
        std::vector<std::string> names;
        for (const FunctionName& known : expressionFunctions())
            names.emplace_back(known.name);
        fail(offset,
             fmt::format("there is no function {}(){}", name, nearNames(std::string(name), names)));
    }

    void open(const FunctionName* function, std::size_t offset) {
        if (!m_wantsOperand)
            fail(offset, "an operator is missing before it");
        if (m_open.size() == deepest)
            fail(offset, "brackets stand too deep within each other");
        m_open.push_back({offset, function});
    }

    void close() {
        if (m_open.empty())
            fail(m_next, "there is no bracket to close");
        if (m_wantsOperand)
            fail(m_next, "a value is missing before it");
        requireArguments(m_open.back());
        m_open.pop_back();
        ++m_next;
    }

    static void requireArguments(const Bracket& bracket) {
        const FunctionName* function = bracket.function;
        if (!function ||
            (bracket.arguments >= function->least && bracket.arguments <= function->most))
            return;
        const std::string count = function->least == function->most
                                      ? std::to_string(function->most)
                                      : fmt::format("{} or {}", function->least, function->most);
        fail(bracket.offset, fmt::format("{} takes {} argument{}, not {}", function->name, count,
                                         function->most == 1 ? "" : "s", bracket.arguments));
    }

    void takeOperator() {
        const char c = at();
        const bool isSign = c == '+' || c == '-';
        if (std::string_view("+-*/^;,").find(c) == std::string_view::npos)
            failCharacter();
        if (m_wantsOperand && !isSign)
            fail(m_next, "a value is missing before it");
        if (c == ',') {
            if (m_open.empty() || !m_open.back().function)
                fail(m_next, "a comma stands between the arguments of a function only");
            ++m_open.back().arguments;
        }
        m_wantsOperand = true;
        ++m_next;
    }

    [[noreturn]] void failCharacter() const {
        std::size_t end = m_next + 1;
        while (end < m_text.size() && !startsCharacter(m_text[end]))
            ++end;
        fail(m_next, fmt::format("unexpected \"{}\"{}", m_text.substr(m_next, end - m_next),
                                 hintFor(at())));
    }

    std::string_view m_text;
    const Names& m_names;
    std::size_t m_next = 0;
    bool m_wantsOperand = true;
    std::vector<Bracket> m_open;
    ExpressionFacts m_facts;
};

} // namespace

ExpressionFacts checkExpression(std::string_view text, const Names& names) {
    return Check(text, names).run();
}
