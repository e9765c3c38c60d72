#include "script/language/statement_reader.h"

#include "common/numbers.h"
#include "script/language/script_file.h"
#include "script/operations/argument_reader.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

namespace {

using Kind = Parameter::Kind;

constexpr std::string_view timeCodeForm = "dd:dd:dd?dd";

bool isTimeCode(std::string_view text) {
    const auto matches = [](char c, char form) {
        return form == 'd' ? c >= '0' && c <= '9' : form == '?' ? c == ':' || c == ';' : c == form;
    };
    return text.size() >= timeCodeForm.size() && text.size() <= timeCodeForm.size() + 1 &&
           std::equal(timeCodeForm.begin(), timeCodeForm.end(), text.begin(),
                      [&](char form, char c) { return matches(c, form); }) &&
           matches(text.back(), 'd');
}

class StatementReader : public ArgumentReader {
public:
    StatementReader(const Statement& words, const Operation& what, const Names& names,
                    const std::string& folder, Command& command)
        : ArgumentReader(what), m_words(words), m_names(names), m_folder(folder),
          m_command(command) {}

    void read() {
        m_command.places.resize(operation().parameters.size());
        m_command.arguments = Arguments(readAll());
        requireSound();
    }

private:
    bool atEnd() const override { return m_next == m_words.size(); }
    bool isNext(std::string_view word) const override {
        return m_words[m_next].isPlain() && m_words[m_next].text == word;
    }
    void skip() override { ++m_next; }

    [[noreturn]] void failUnexpectedNext() const override {
        const Word& word = m_words[m_next];
        fail(word.position,
             fmt::format("unexpected \"{}\"; write {}", word.text, usage(operation())));
    }

    [[noreturn]] void fail(Position position, const std::string& message) const {
        failAt(*m_command.source, position, fmt::format("{}: {}", operation().name, message));
    }

    void requireSound() const {
        if (operation().fault == nullptr || !m_command.numbers.empty())
            return;
        const std::string fault = operation().fault(m_command.arguments);
        if (!fault.empty())
            fail(m_command.position, fault);
    }

    [[noreturn]] void failMissing(const std::string& what) const {
        fail(m_command.position, fmt::format("{} is missing; write {}", what, usage(operation())));
    }

    [[noreturn]] void failUnexpected(const Parameter& expected, std::string_view name,
                                     const Word& word, const std::string& hint = "") const {
        fail(word.position, fmt::format("expected {} for {}, got \"{}\"{}", expectation(expected),
                                        name, word.text, hint));
    }

    void readParameter(std::size_t i, Argument& argument) override {
        if (parameter(i).kind == Kind::Points)
            return readPoints(i, argument);
        if (isLeftOut(i))
            return;
        if (atEnd())
            failMissing(std::string(parameter(i).name));
        const Word& word = m_words[m_next++];
        m_command.places[i] = word.position;
        argument.given = true;
        switch (parameter(i).kind) {
        case Kind::Text:
            return readText(i, word, argument);
        case Kind::File:
            return readFile(parameter(i), word, argument);
        case Kind::Variable:
            return readVariable(word, argument);
        case Kind::TimeCode:
            return readTimeCode(parameter(i), word, argument);
        case Kind::Sign:
            return readSign(parameter(i), word);
        case Kind::Whole:
        case Kind::Number:
        case Kind::Choice:
        case Kind::Points:
        case Kind::Flag:
            break;
        }
        if (!readWord(parameter(i), word, argument))
            argument.number = readNumber({i, 0, nameOf(i), {}, {}}, word);
    }

    // A variable stands for what it is set to.
    std::string nameOf(std::size_t i) const {
        return operation().flow == Operation::Flow::Let ? m_words[1].text
                                                        : std::string(parameter(i).name);
    }

    void readFile(const Parameter& expected, const Word& word, Argument& argument) const {
        if (word.quotes == Word::Quotes::Single || word.text.empty())
            failUnexpected(expected, expected.name, word);
        argument.text = besideScript(m_folder, word.text);
    }

    void readTimeCode(const Parameter& expected, const Word& word, Argument& argument) const {
        if (word.quotes == Word::Quotes::Single || !isTimeCode(word.text))
            failUnexpected(expected, expected.name, word);
        argument.text = word.text;
    }

    void readSign(const Parameter& expected, const Word& word) const {
        if (!word.isPlain() || word.text != expected.name)
            fail(word.position, fmt::format("expected {}, got \"{}\"; write {}", expected.name,
                                            word.text, usage(operation())));
    }

    void readVariable(const Word& word, Argument& argument) const {
        if (!word.isPlain() || !isVariableName(word.text))
            fail(word.position,
                 fmt::format("expected a name of letters, digits and _ for a variable, got \"{}\"",
                             word.text));
        const auto place = m_names.find(word.text);
        if (hasOwnMeaning(word.text) || (place && *place < firstVariable))
            fail(word.position, fmt::format("\"{}\" has a meaning of its own in expressions; take "
                                            "another name",
                                            word.text));
        argument.text = word.text;
    }

    bool readWord(const Parameter& expected, const Word& word, Argument& argument) const {
        const auto& words = expected.words;
        const auto found = std::find(words.begin(), words.end(), word.text);
        if (found == words.end() || !word.isPlain())
            return false;
        argument.word = static_cast<std::size_t>(found - words.begin());
        return true;
    }

    // A number as it stands, or for now 0 of an expression. What is a plain number is never taken
    // for an expression, so that it can be refused as one.
    double readNumber(LiveNumber number, const Word& word) {
        const Parameter& expected = parameter(number.argument);
        const std::optional<double> plain =
            word.isPlain() ? numberIn<double>(word.text) : std::nullopt;
        const bool isName = word.isPlain() && isVariableName(word.text) &&
                            !isNumberName(word.text) && !m_names.find(word.text);
        if (word.quotes == Word::Quotes::Double || expected.kind == Kind::Choice)
            failUnexpected(expected, number.name, word);
        if (isName)
            failUnexpected(expected, number.name, word, m_names.near(word.text));
        if (plain) {
            const bool isWhole = expected.kind != Kind::Whole ||
                                 expected.role != Parameter::Role::Plain ||
                                 *plain == std::trunc(*plain);
            if (!isWhole || !(*plain >= expected.low && *plain <= expected.high))
                failUnexpected(expected, number.name, word);
            return *plain;
        }
        number.expression = readExpression(number, word);
        number.position = word.position;
        if (!number.expression->isConstant()) {
            m_command.numbers.push_back(std::move(number));
            return 0;
        }
        const double value = number.expression->evaluate(Values(m_names.size()));
        if (!(value >= expected.low && value <= expected.high))
            fail(word.position, fmt::format("expected {} for {}, got {:g}", expectation(expected),
                                            number.name, value));
        return value;
    }

    std::shared_ptr<const Expression> readExpression(const LiveNumber& number,
                                                     const Word& word) const {
        try {
            return std::make_shared<Expression>(word.text, m_names);
        } catch (const PartError& error) {
            fail(word.positionOf(error.offset), fmt::format("{}: {}", number.name, error.message));
        }
    }

    void readText(std::size_t i, const Word& word, Argument& argument) {
        if (word.quotes != Word::Quotes::Double)
            failUnexpected(parameter(i), parameter(i).name, word);
        std::shared_ptr<const FieldText> text;
        try {
            text = std::make_shared<FieldText>(word.text, m_names);
        } catch (const PartError& error) {
            fail(word.positionOf(error.offset), error.message);
        }
        if (text->isConstant())
            argument.text = text->rest();
        else
            m_command.texts.push_back({i, text, word});
    }

    void readPoints(std::size_t i, Argument& argument) {
        argument.given = true;
        const std::size_t numbers = m_words.size() - m_next;
        if (numbers < 4)
            failMissing("a point");
        for (std::size_t k = 0; k < numbers / 2 * 2; ++k) {
            const std::string name = fmt::format("{}{}", k % 2 == 0 ? 'x' : 'y', k / 2);
            argument.coordinates.push_back(readNumber({i, k, name, {}, {}}, m_words[m_next++]));
        }
        if (!atEnd())
            failMissing(fmt::format("y{}", numbers / 2));
        argument.points.resize(numbers / 2);
    }

    const Statement& m_words;
    const Names& m_names;
    const std::string& m_folder;
    Command& m_command;
    std::size_t m_next = 1;
};

} // namespace

Command readStatement(const Statement& words, const Operation& operation,
                      const std::shared_ptr<const std::string>& source, const Names& names,
                      const std::string& folder) {
    Command command{&operation, Arguments({}), {}, {}, source, words.front().position, {}};
    StatementReader(words, operation, names, folder, command).read();
    return command;
}

std::string expectation(const Parameter& parameter) {
    switch (parameter.kind) {
    case Kind::Choice:
        return fmt::format("one of {}", fmt::join(parameter.words, ", "));
    case Kind::Text:
        return "a text in double quotes";
    case Kind::File:
        return "the name of a file, in double quotes if it has blanks";
    case Kind::TimeCode:
        return "a time code such as 10:00:00:00";
    case Kind::Whole:
    case Kind::Number:
    case Kind::Points:
    case Kind::Flag:
    case Kind::Variable:
    case Kind::Sign:
        break;
    }
    if (parameter.high == std::numeric_limits<double>::max())
        return "a number";
    // What lies on the frame is rounded to its pixels.
    const bool isWhole = parameter.kind == Kind::Whole && parameter.role == Parameter::Role::Plain;
    std::string result = fmt::format("a {}number from {} to {}", isWhole ? "whole " : "",
                                     parameter.low, parameter.high);
    for (const auto word : parameter.words)
        result += fmt::format(" or {}", word);
    return result;
}
