#include "manuals/page.h"

#include "common/tool_error.h"
#include "manuals/options.h"
#include "manuals/page_texts.h"
#include "manuals/roff.h"
#include "manuals/tables.h"
#include "zrdraw/version.h"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <string_view>

namespace {

// From a capital letter, unless it begins with a name such as v210 or biWidth, to a full stop.
std::string sentence(std::string text) {
    const auto space = std::find(text.begin(), text.end(), ' ');
    const auto isOfName = [](unsigned char c) { return std::isupper(c) || std::isdigit(c); };
    if (std::none_of(text.begin(), space, isOfName))
        text[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(text[0])));
    return text.ends_with('.') ? text : text + '.';
}

std::string optionsText(const std::vector<std::string>& names) {
    std::vector<std::string> shown;
    shown.reserve(names.size());
    for (const std::string& name : names)
        shown.push_back(bold(name));
    return fmt::format("{}", fmt::join(shown, ", "));
}

bool hasOwnOptions(const CLI::App& command) {
    const std::vector<OptionText> options = optionsOf(command);
    return std::any_of(options.begin(), options.end(), [](const OptionText& option) {
        return option.names.back() != "--help" && option.names.back() != "--version";
    });
}

// "zrdraw config [OPTIONS] set KEY=VALUE ..."
std::string usageOf(const CLI::App& command) {
    const CLI::App* parent = command.get_parent();
    std::string usage =
        (parent == nullptr ? "" : usageOf(*parent) + ' ') + bold(command.get_name());
    if (hasOwnOptions(command))
        usage += fmt::format(" [{}]", italic("OPTIONS"));
    for (const OptionText& place : placesOf(command)) {
        const std::string shown = italic(place.names.front()) + (place.repeats ? "\\ ..." : "");
        usage += place.required ? ' ' + shown : fmt::format(" [{}]", shown);
    }
    return usage;
}

// A line for each that is called in a way of its own.
void writeSynopsis(RoffPage& page, const CLI::App& command) {
    std::vector<const CLI::App*> commands = subcommandsOf(command);
    if (commands.empty())
        commands.push_back(&command);
    std::vector<std::string> usages;
    for (const CLI::App* last : commands) {
        const bool goesOn = !subcommandsOf(*last).empty();
        usages.push_back(usageOf(*last) + (goesOn ? ' ' + italic("SUBCOMMAND") + "\\ ..." : ""));
    }
    page.lines(usages);
}

void writeOption(RoffPage& page, const OptionText& option) {
    std::string tag = optionsText(option.names);
    const bool isPlace = !option.names.front().starts_with('-');
    if (isPlace)
        tag = italic(option.names.front());
    else if (!option.value.empty())
        tag += ' ' + italic(option.value);
    std::string text = roffProse(sentence(option.help));
    if (option.repeats && !isPlace)
        text += " May be given more than once.";
    if (!option.initial.empty())
        text += fmt::format(" Unless told, {}.", roffLiteral(option.initial));
    if (!option.needs.empty())
        text += fmt::format(" Only with {}.", optionsText(option.needs));
    if (!option.excludes.empty())
        text += fmt::format(" Not with {}.", optionsText(option.excludes));
    page.item(tag, text);
}

void writeOptions(RoffPage& page, const CLI::App& command) {
    const std::vector<OptionText> places = placesOf(command);
    if (!places.empty())
        page.section("ARGUMENTS");
    for (const OptionText& place : places)
        writeOption(page, place);
    page.section("OPTIONS");
    for (const OptionText& option : optionsOf(command))
        writeOption(page, option);
}

// Those that have no page of their own.
void writeInnerSubcommands(RoffPage& page, const CLI::App& command) {
    const std::vector<const CLI::App*> subcommands = subcommandsOf(command);
    if (!subcommands.empty())
        page.section("SUBCOMMANDS");
    for (const CLI::App* subcommand : subcommands) {
        page.subsection(usageOf(*subcommand));
        page.paragraph(roffProse(sentence(subcommand->get_description())));
        for (const OptionText& place : placesOf(*subcommand))
            writeOption(page, place);
        for (const OptionText& option : optionsOf(*subcommand))
            if (option.names.back() != "--help")
                writeOption(page, option);
    }
}

void writeParagraphs(RoffPage& page, const std::string& text) {
    std::string rest = text;
    for (std::size_t end; (end = rest.find("\n\n")) != rest.npos; rest.erase(0, end + 2))
        page.paragraph(roffProse(rest.substr(0, end)));
    page.paragraph(roffProse(rest));
}

void writeStatus(RoffPage& page) {
    const auto item = [&](ExitStatus status, const char* text) {
        page.item(std::to_string(static_cast<int>(status)), text);
    };
    page.section("EXIT STATUS");
    item(ExitStatus::Done, "All is done.");
    item(ExitStatus::Failed, "The work failed or was interrupted. One line on standard error tells "
                             "why, and nothing is left of a result.");
    item(ExitStatus::BadUsage, "The command line, a script or a setting is wrong. One line on "
                               "standard error names the place, and nothing is written.");
}

void writeStore(RoffPage& page) {
    page.section("ENVIRONMENT");
    page.item(bold("ZRDRAW_STORE"), "The file of settings.");
    page.item(bold("XDG_CONFIG_HOME"),
              "Where that is not set: the folder of the user's configuration, an absolute path.");
    page.item(bold("HOME"), "Where neither is set: the user's folder.");
    page.section("FILES");
    page.item(italic("$XDG_CONFIG_HOME/zrdraw/settings.db"), "");
    page.item(italic("~/.config/zrdraw/settings.db"), "The user's settings.");
}

void writeExamples(RoffPage& page, const PageText& text) {
    page.section("EXAMPLES");
    for (const Example& example : text.examples) {
        page.paragraph(roffProse(example.what));
        page.example(example.lines);
    }
}

void writeSeeAlso(RoffPage& page, const std::vector<std::string>& pages) {
    std::vector<std::string> references;
    references.reserve(pages.size());
    for (const std::string& name : pages)
        references.push_back(reference(name));
    page.section("SEE ALSO");
    page.paragraph(fmt::format("{}", fmt::join(references, ", ")));
}

RoffPage beginPage(const CLI::App& command, std::string help) {
    const std::string name = pageName(command);
    RoffPage page(name, ZRDRAW_VERSION_STRING);
    page.section("NAME");
    help[0] = static_cast<char>(std::tolower(static_cast<unsigned char>(help[0])));
    if (help.ends_with('.'))
        help.pop_back();
    page.lines({fmt::format("{} \\- {}", roffLiteral(name), roffProse(help))});
    page.section("SYNOPSIS");
    writeSynopsis(page, command);
    return page;
}

void endPage(RoffPage& page, const PageText& text) {
    writeStatus(page);
    if (text.usesStore)
        writeStore(page);
    writeExamples(page, text);
    writeSeeAlso(page, text.seeAlso);
}

} // namespace

std::string pageName(const CLI::App& command) {
    std::string name = pathOf(command);
    std::replace(name.begin(), name.end(), ' ', '-');
    return name;
}

std::string toolPage(const CommandLine& line) {
    RoffPage page = beginPage(line.app(), line.app().get_description());
    page.section("DESCRIPTION");
    writeParagraphs(page, toolDescription);
    page.section("SUBCOMMANDS");
    PageText text = pageTextOf(line.app().get_name());
    for (const auto& [command, entry] : line.entries()) {
        page.item(reference(pageName(*command)), roffProse(sentence(entry.help)));
        text.seeAlso.push_back(pageName(*command));
    }
    writeOptions(page, line.app());
    endPage(page, text);
    return page.text();
}

std::string subcommandPage(const CLI::App& command, const Subcommand& entry) {
    RoffPage page = beginPage(command, entry.help);
    page.section("DESCRIPTION");
    writeParagraphs(page, sentence(entry.help) + ' ' + entry.about);
    writeInnerSubcommands(page, command);
    writeOptions(page, command);
    writeTables(page, entry.name);
    endPage(page, pageTextOf(entry.name));
    return page.text();
}
