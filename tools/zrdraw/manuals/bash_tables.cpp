#include "manuals/completion.h"
#include "manuals/options.h"
#include "manuals/values.h"

#include <fmt/format.h>

#include <map>
#include <string>
#include <vector>

namespace {

// Of words that follow each other, by a key of words.
using Table = std::map<std::string, std::vector<std::string>>;

struct Tables {
    Table commands; // of a command its subcommands
    Table options;
    Table values; // of a command and an option of it the value's name
    Table places; // of a command the names of what stands behind it
    Table words;  // of a value's name what may stand there
};

void addCommand(Tables& tables, const CLI::App& command) {
    const std::string path = pathOf(command);
    for (const OptionText& option : optionsOf(command))
        for (const std::string& name : option.names) {
            tables.options[path].push_back(name);
            if (!option.value.empty())
                tables.values[fmt::format("{} {}", path, name)] = {option.value};
        }
    for (const OptionText& place : placesOf(command)) {
        tables.places[path].push_back(place.value);
        if (place.repeats)
            tables.places[path].emplace_back("...");
    }
    for (const CLI::App* subcommand : subcommandsOf(command)) {
        tables.commands[path].push_back(subcommand->get_name());
        addCommand(tables, *subcommand);
    }
}

// Every name of a value once, as options share them.
void addWords(Tables& tables) {
    for (const auto& [option, value] : tables.values)
        if (const std::vector<std::string> choices = choicesIn(value.front()); !choices.empty())
            tables.words[value.front()] = choices;
    for (const ValueWords& value : valueWords())
        for (const Word& word : value.words)
            tables.words[value.name].push_back(word.text + value.end);
}

std::string shown(const char* name, const Table& table) {
    std::string text = fmt::format("declare -gA _zrdraw_{}=(\n", name);
    for (const auto& [key, words] : table)
        text += fmt::format("    ['{}']='{}'\n", key, fmt::join(words, " "));
    return text + ")\n";
}

std::string goingOn() {
    std::string text;
    for (const ValueWords& value : valueWords())
        if (value.goesOn)
            text += fmt::format("    ['{}']=1\n", value.name);
    return fmt::format("declare -gA _zrdraw_goes_on=(\n{})\n", text);
}

} // namespace

std::string bashTables(const CLI::App& app) {
    Tables tables;
    addCommand(tables, app);
    addWords(tables);
    return "# Completion of zrdraw in bash, made of the tables of the tool when it was built.\n" +
           shown("commands", tables.commands) + shown("options", tables.options) +
           shown("values", tables.values) + shown("places", tables.places) +
           shown("words", tables.words) + goingOn() + '\n';
}
