#include "manuals/completion.h"
#include "manuals/options.h"
#include "manuals/values.h"
#include "option_values.h"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <string>
#include <string_view>
#include <vector>

namespace {

std::string shellQuoted(std::string_view text) {
    std::string result = "'";
    for (const char c : text)
        result += c == '\'' ? "'\\''" : std::string(1, c);
    return result + '\'';
}

// So that signs with a meaning have none.
std::string escaped(std::string_view text, std::string_view signs) {
    std::string result;
    for (const char c : text) {
        if (signs.find(c) != signs.npos)
            result += '\\';
        result += c;
    }
    return result;
}

std::string functionName(const char* kind, std::string name) {
    std::replace_if(
        name.begin(), name.end(), [](unsigned char c) { return std::isalnum(c) == 0; }, '_');
    return fmt::format("_zrdraw_{}_{}", kind, name);
}

// "word:what it is" lines of an array.
std::string described(const std::vector<Word>& words) {
    std::string lines;
    for (const Word& word : words)
        lines += "        " + shellQuoted(escaped(word.text, ":\\") + ':' + word.help) + '\n';
    return lines;
}

std::string valueFunction(const ValueWords& value) {
    const std::string suffix = value.goesOn ? " -S " + shellQuoted(value.end) : "";
    return fmt::format("{}() {{\n    local -a words=(\n{}    )\n    _describe {} words{}\n}}\n",
                       functionName("value", value.name), described(value.words),
                       shellQuoted(value.name), suffix);
}

// What completes a value, as _arguments takes it.
std::string actionOf(const std::string& value) {
    if (value == valueName::file)
        return "_files";
    if (value == valueName::folder)
        return "_files -/";
    for (const ValueWords& known : valueWords())
        if (known.name == value)
            return functionName("value", value);
    const std::vector<std::string> choices = choicesIn(value);
    return choices.empty() ? " " : fmt::format("({})", fmt::join(choices, " ")); // else a message
}

std::string takes(const std::string& message, const std::string& value) {
    return fmt::format(":{}:{}", escaped(message, ":"), actionOf(value));
}

std::string optionArgument(const OptionText& option, const std::string& name) {
    std::vector<std::string> apart = option.excludes;
    if (!option.repeats)
        apart.insert(apart.end(), option.names.begin(), option.names.end());
    std::string argument = apart.empty() ? "" : fmt::format("({})", fmt::join(apart, " "));
    argument += (option.repeats ? "*" : "") + name;
    if (!option.value.empty() && name.starts_with("--"))
        argument += '='; // or the next word
    argument += fmt::format("[{}]", escaped(option.help, "[]:\\"));
    return option.value.empty() ? argument : argument + takes(option.value, option.value);
}

std::string argumentsOf(const CLI::App& command) {
    std::string text;
    const auto add = [&](const std::string& argument) {
        text += " \\\n        " + shellQuoted(argument);
    };
    for (const OptionText& option : optionsOf(command))
        for (const std::string& name : option.names)
            add(optionArgument(option, name));
    int number = 0;
    for (const OptionText& place : placesOf(command)) {
        const std::string at = place.repeats ? "*" : std::to_string(++number);
        add(at + takes(place.names.front(), place.value));
    }
    return text;
}

std::string commandFunctions(const CLI::App& command) {
    const std::string name = functionName("command", pathOf(command));
    std::string text;
    std::vector<Word> names;
    for (const CLI::App* subcommand : subcommandsOf(command)) {
        names.push_back({subcommand->get_name(), subcommand->get_description()});
        text += commandFunctions(*subcommand);
    }
    if (names.empty())
        return text + fmt::format("{}() {{\n    _arguments{}\n}}\n", name, argumentsOf(command));
    return text + fmt::format("{0}() {{\n    local -a subcommands=(\n{1}    )\n"
                              "    _zrdraw_subcommands {0}{2}\n}}\n",
                              name, described(names), argumentsOf(command));
}

} // namespace

std::string zshFunctions(const CLI::App& app) {
    std::string text = "#compdef zrdraw\n"
                       "# Completion of zrdraw in zsh, made of the tables of the tool when it was "
                       "built.\n";
    for (const ValueWords& value : valueWords())
        text += valueFunction(value);
    return text + commandFunctions(app) + '\n';
}
