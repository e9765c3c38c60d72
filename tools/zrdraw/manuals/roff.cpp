#include "manuals/roff.h"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <utility>

namespace {

std::string escaped(std::string_view text, bool typed) {
    std::string result;
    for (const char c : text)
        switch (c) {
        case '\\':
            result += "\\e";
            break;
        case '-':
            result += typed ? "\\-" : "-";
            break;
        case '\'':
            result += "\\(aq";
            break;
        case '`':
            result += "\\(ga";
            break;
        case '^':
            result += "\\(ha";
            break;
        case '~':
            result += "\\(ti";
            break;
        default:
            result += c;
        }
    return result;
}

bool isOfName(char c) {
    return c == '-' || std::isalnum(static_cast<unsigned char>(c)) != 0;
}

} // namespace

std::string roffLiteral(std::string_view text) {
    return escaped(text, true);
}

std::string roffProse(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        const std::string_view word = text.substr(0, text.find_first_of(" \n") + 1);
        const std::string_view whole = word.empty() ? text : word;
        const auto end = std::find_if_not(whole.begin(), whole.end(), isOfName);
        const auto length = static_cast<std::size_t>(end - whole.begin());
        const bool option = length > 1 && whole[0] == '-';
        if (option)
            result += bold(whole.substr(0, length));
        result += escaped(whole.substr(option ? length : 0), false);
        text.remove_prefix(whole.size());
    }
    return result;
}

std::string upperCase(std::string_view text) {
    std::string upper(text);
    std::transform(upper.begin(), upper.end(), upper.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return upper;
}

std::string bold(std::string_view literal) {
    return fmt::format("\\fB{}\\fP", roffLiteral(literal));
}

std::string italic(std::string_view literal) {
    return fmt::format("\\fI{}\\fP", roffLiteral(literal));
}

std::string reference(std::string_view page) {
    return bold(page) + "(1)";
}

RoffPage::RoffPage(std::string_view name, std::string_view version) {
    m_text = fmt::format(".TH {} 1 \"\" \"zrdraw {}\" \"User Commands\"\n",
                         roffLiteral(upperCase(name)), version);
    m_text += ".nh\n.ad l\n"; // names are not cut, and lines of them not stretched
}

void RoffPage::section(std::string_view name) {
    m_text += fmt::format(".SH {}\n", name);
    m_sectionBegins = true;
}

void RoffPage::subsection(std::string_view name) {
    m_text += fmt::format(".SS {}\n", name);
    m_sectionBegins = true;
}

void RoffPage::paragraph(std::string_view text) {
    gap();
    line(text);
}

void RoffPage::lines(const std::vector<std::string>& texts) {
    m_sectionBegins = false;
    bool first = true;
    for (const std::string& text : texts) {
        if (!std::exchange(first, false))
            m_text += ".br\n";
        line(text);
    }
}

void RoffPage::item(std::string_view tag, std::string_view text) {
    m_sectionBegins = false;
    m_text += ".TP\n";
    line(tag);
    line(text);
    if (std::exchange(m_tableBegins, false))
        m_text += ".PD 0\n";
}

void RoffPage::endTable() {
    m_text += ".PD\n";
}

void RoffPage::example(std::string_view lines) {
    gap();
    m_text += ".nf\n.RS 4\n";
    while (!lines.empty()) {
        const std::string_view first = lines.substr(0, lines.find('\n'));
        line(roffLiteral(first));
        lines.remove_prefix(std::min(first.size() + 1, lines.size()));
    }
    m_text += ".RE\n.fi\n";
}

void RoffPage::gap() {
    if (!std::exchange(m_sectionBegins, false))
        m_text += ".PP\n";
}

// A point or an apostrophe at its beginning would make it a request.
void RoffPage::line(std::string_view text) {
    const bool request = text.starts_with('.') || text.starts_with('\'');
    m_text += fmt::format("{}{}\n", request ? "\\&" : "", text);
}
