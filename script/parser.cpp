#include "script/parser.h"

#include "common/near_names.h"
#include "common/numbers.h"
#include "script/lexer.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>

namespace {

using Kind = Parameter::Kind;

std::string unknownCommand(const std::string& name) {
    std::vector<std::string> names;
    for (const Operation& operation : operations())
        names.emplace_back(operation.name);
    const std::string near = nearNames(name, names);
    return fmt::format(
        "unknown command \"{}\"{}", name,
        !near.empty() ? near : fmt::format("; the commands are {}", fmt::join(names, ", ")));
}

std::string expectation(const Parameter& parameter) {
    switch (parameter.kind) {
    case Kind::Choice:
        return fmt::format("one of {}", fmt::join(parameter.words, ", "));
    case Kind::Text:
        return "a text in double quotes";
    case Kind::Whole:
    case Kind::Number:
    case Kind::Points:
    case Kind::Flag:
        break;
    }
    std::string result =
        fmt::format("a {}number from {} to {}", parameter.kind == Kind::Number ? "" : "whole ",
                    parameter.low, parameter.high);
    for (const auto word : parameter.words)
        result += fmt::format(" or {}", word);
    return result;
}

// Reads the words of one command by the parameters of its operation.
class StatementReader {
public:
    StatementReader(const Statement& words, const Operation& operation, const std::string& source)
        : m_words(words), m_operation(operation), m_source(source) {}

    Arguments read() {
        std::vector<Argument> arguments;
        for (const Parameter& parameter : m_operation.parameters)
            if (parameter.kind == Kind::Flag)
                arguments.emplace_back();
            else
                arguments.push_back(readParameter(parameter));
        readFlags(arguments);
        Arguments result(std::move(arguments));
        requireSound(result);
        return result;
    }

private:
    bool atEnd() const { return m_next == m_words.size(); }

    [[noreturn]] void fail(Position position, const std::string& message) const {
        failAt(m_source, position, fmt::format("{}: {}", m_operation.name, message));
    }

    void requireSound(const Arguments& arguments) const {
        if (m_operation.fault == nullptr)
            return;
        const std::string fault = m_operation.fault(arguments);
        if (!fault.empty())
            fail(m_words.front().position, fault);
    }

    [[noreturn]] void failMissing(const std::string& what) const {
        fail(m_words.front().position,
             fmt::format("{} is missing; write {}", what, usage(m_operation)));
    }

    [[noreturn]] void failUnexpected(const Parameter& parameter, std::string_view name,
                                     const Word& word) const {
        fail(word.position, fmt::format("expected {} for {}, got \"{}\"", expectation(parameter),
                                        name, word.text));
    }

    Argument readParameter(const Parameter& parameter) {
        if (parameter.kind == Kind::Points)
            return readPoints(parameter);
        if (atEnd() && parameter.optional)
            return {};
        if (atEnd())
            failMissing(std::string(parameter.name));
        const Word& word = m_words[m_next++];
        Argument argument{true};
        if (parameter.kind == Kind::Text)
            argument.text = readText(parameter, word);
        else if (!readWord(parameter, word, argument))
            argument.number = readNumber(parameter, parameter.name, word);
        return argument;
    }

    bool readWord(const Parameter& parameter, const Word& word, Argument& argument) const {
        const auto& words = parameter.words;
        const auto found = std::find(words.begin(), words.end(), word.text);
        if (found == words.end() || word.quoted)
            return false;
        argument.word = static_cast<std::size_t>(found - words.begin());
        return true;
    }

    double readNumber(const Parameter& parameter, std::string_view name, const Word& word) const {
        std::optional<double> value;
        if (parameter.kind == Kind::Number && !word.quoted)
            value = numberIn<double>(word.text);
        else if (parameter.kind != Kind::Choice && !word.quoted)
            value = numberIn<int>(word.text);
        if (!value || !(*value >= parameter.low && *value <= parameter.high))
            failUnexpected(parameter, name, word);
        return *value;
    }

    // The font has glyphs for the codes to 127 only, and 0 would end the text.
    std::string readText(const Parameter& parameter, const Word& word) const {
        if (!word.quoted)
            failUnexpected(parameter, parameter.name, word);
        std::size_t character = 0;
        for (std::size_t i = 0; i < word.text.size(); ++i) {
            ++character;
            if (static_cast<unsigned char>(word.text[i]) - 1U < 127U)
                continue;
            std::size_t end = i + 1;
            while (end < word.text.size() && !startsCharacter(word.text[end]))
                ++end;
            fail({word.position.line, word.columns[i]},
                 fmt::format("character {} of {} is {}; only the codes 1 to 127 can be drawn",
                             character, parameter.name,
                             word.text[i] == '\0' ? "code 0"
                                                  : '"' + word.text.substr(i, end - i) + '"'));
        }
        return word.text;
    }

    Argument readPoints(const Parameter& parameter) {
        Argument argument{true};
        const std::size_t numbers = m_words.size() - m_next;
        if (numbers < 4)
            failMissing("a point");
        for (std::size_t i = 0; i < numbers / 2; ++i) {
            _POINT point{};
            point.x = readCoordinate(parameter, fmt::format("x{}", i));
            point.y = readCoordinate(parameter, fmt::format("y{}", i));
            argument.points.push_back(point);
        }
        if (!atEnd())
            failMissing(fmt::format("y{}", numbers / 2));
        return argument;
    }

    int readCoordinate(const Parameter& parameter, const std::string& name) {
        return static_cast<int>(readNumber(parameter, name, m_words[m_next++]));
    }

    void readFlags(std::vector<Argument>& arguments) {
        for (; !atEnd(); ++m_next) {
            const Word& word = m_words[m_next];
            std::size_t i = 0;
            while (i < arguments.size() && !isFreeFlag(i, arguments[i], word))
                ++i;
            if (i == arguments.size())
                fail(word.position,
                     fmt::format("unexpected \"{}\"; write {}", word.text, usage(m_operation)));
            arguments[i].given = true;
        }
    }

    bool isFreeFlag(std::size_t i, const Argument& argument, const Word& word) const {
        const Parameter& parameter = m_operation.parameters[i];
        return parameter.kind == Kind::Flag && !argument.given && !word.quoted &&
               parameter.name == word.text;
    }

    const Statement& m_words;
    const Operation& m_operation;
    const std::string& m_source;
    std::size_t m_next = 1;
};

Command parseStatement(const Statement& words, const std::string& source) {
    const Word& name = words.front();
    const auto& table = operations();
    const auto found = std::find_if(table.begin(), table.end(), [&](const Operation& operation) {
        return operation.name == name.text;
    });
    if (found == table.end())
        failAt(source, name.position, unknownCommand(name.text));
    return {&*found, StatementReader(words, *found, source).read(),
            fmt::format("{}:{}:{}", source, name.position.line, name.position.column)};
}

} // namespace

Script parseScript(std::string_view text, const std::string& source) {
    Script script;
    for (const Statement& words : splitScript(text, source))
        script.push_back(parseStatement(words, source));
    return script;
}
