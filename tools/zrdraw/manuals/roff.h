// A manual page in the making, in the macros of man(7).
#pragma once

#include <string>
#include <string_view>
#include <vector>

// Text that stands for itself, with every hyphen one that can be typed: names, options, examples.
std::string roffLiteral(std::string_view text);

// Prose, of which a word that begins with a hyphen is an option and shown in bold.
std::string roffProse(std::string_view text);

std::string upperCase(std::string_view text);
std::string bold(std::string_view literal);
std::string italic(std::string_view literal);

// "zrdraw-draw(1)"
std::string reference(std::string_view page);

// Everything that it takes as text is as roffLiteral() and the like return it.
class RoffPage {
public:
    RoffPage(std::string_view name, std::string_view version);

    void section(std::string_view name);
    void subsection(std::string_view name);
    void paragraph(std::string_view text);
    void lines(const std::vector<std::string>& texts); // each stays one
    void item(std::string_view tag, std::string_view text);

    // The items between follow each other without a gap.
    void beginTable() { m_tableBegins = true; }
    void endTable();

    // Lines that stay as they are.
    void example(std::string_view lines);

    const std::string& text() const { return m_text; }

private:
    void gap();
    void line(std::string_view text);

    std::string m_text;
    bool m_sectionBegins = false;
    bool m_tableBegins = false;
};
