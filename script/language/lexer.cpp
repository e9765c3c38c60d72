#include "script/language/lexer.h"

#include "common/tool_error.h"
#include "common/utf8.h"

#include <fmt/format.h>

#include <cctype>
#include <utility>

namespace {

class Lexer {
public:
    Lexer(std::string_view text, const std::string& source) : m_text(text), m_source(source) {}

    std::vector<Statement> run() {
        while (!atEnd())
            step();
        endStatement();
        return std::move(m_statements);
    }

private:
    bool atEnd() const { return m_next == m_text.size(); }
    bool at(std::string_view characters) const {
        return !atEnd() && characters.find(m_text[m_next]) != std::string_view::npos;
    }

    char take() {
        const char byte = m_text[m_next++];
        if (byte == '\n') {
            ++m_position.line;
            m_position.column = 1;
        } else if (atEnd() || startsCharacter(m_text[m_next])) {
            ++m_position.column;
        }
        return byte;
    }

    void step() {
        if (at(blanks)) {
            take();
        } else if (at("\n;")) {
            take();
            endStatement();
        } else if (at("#")) {
            skipComment();
        } else if (at("\"'")) {
            takeQuoted();
        } else {
            takePlain();
        }
    }

    void endStatement() {
        if (!m_words.empty())
            m_statements.push_back(std::exchange(m_words, {}));
    }

    void skipComment() {
        while (!atEnd() && !at("\n"))
            take();
    }

    void appendTo(Word& word) {
        word.columns.push_back(m_position.column);
        word.text += take();
    }

    // The semicolon of a time code such as 10:00:00;02 ends no command.
    bool isDropFrame(const Word& word) const {
        constexpr std::size_t before = 8; // characters of hours, minutes and seconds
        return at(";") && word.text.size() == before && word.text[2] == ':' &&
               word.text[5] == ':' && m_next + 1 < m_text.size() &&
               std::isdigit(static_cast<unsigned char>(m_text[m_next + 1])) != 0;
    }

    void takePlain() {
        requireText();
        Word word{{}, Word::Quotes::None, m_position, {}};
        while (!atEnd() && !at(blanks) && (!at("\n;#\"'") || isDropFrame(word)))
            appendTo(word);
        if (at("\"'"))
            failAt(m_source, m_position, "a quote inside a word; put a blank before it");
        m_words.push_back(std::move(word));
    }

    void requireText() const {
        const auto byte = static_cast<unsigned char>(m_text[m_next]);
        if (byte < ' ')
            failAt(m_source, m_position,
                   fmt::format("the byte 0x{:02x} is no text: is this a script?", byte));
    }

    // Only what is in double quotes has escapes.
    void takeQuoted() {
        const bool isDouble = at("\"");
        const std::string_view quote = isDouble ? "\"" : "'";
        Word word{{}, isDouble ? Word::Quotes::Double : Word::Quotes::Single, m_position, {}};
        take();
        while (!at(quote)) {
            if (isDouble && at("\\"))
                takeEscape();
            if (atEnd() || at("\n"))
                failAt(m_source, word.position, "the quote is not closed on its line");
            appendTo(word);
        }
        take();
        if (!atEnd() && !at(blanks) && !at("\n;#"))
            failAt(m_source, m_position, "put a blank after the closing quote");
        m_words.push_back(std::move(word));
    }

    // Leaves the escaped character to be taken as it stands.
    void takeEscape() {
        const Position position = m_position;
        take();
        if (!at("\"\\"))
            failAt(m_source, position, R"(a backslash in quotes must be \\ or \")");
    }

    static constexpr std::string_view blanks = " \t\r";

    std::string_view m_text;
    const std::string& m_source;
    std::size_t m_next = 0;
    Position m_position;
    Statement m_words;
    std::vector<Statement> m_statements;
};

} // namespace

std::vector<Statement> splitScript(std::string_view text, const std::string& source) {
    return Lexer(text, source).run();
}

void failAt(const std::string& source, Position position, const std::string& message) {
    throw UsageError(fmt::format("{}:{}:{}: {}", source, position.line, position.column, message));
}
