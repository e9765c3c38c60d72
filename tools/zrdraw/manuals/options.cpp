#include "manuals/options.h"

#include <CLI/CLI.hpp>

#include <algorithm>

namespace {

std::vector<std::string> namesOf(const std::set<CLI::Option*>& options) {
    std::vector<std::string> names;
    names.reserve(options.size());
    for (const CLI::Option* option : options)
        names.push_back(option->get_name());
    return names;
}

// What is shown of a list of values is in brackets.
std::string unbracketed(const std::string& text) {
    return text.starts_with('[') ? text.substr(1, text.size() - 2) : text;
}

OptionText textOf(const CLI::Option& option) {
    OptionText text;
    for (const std::string& name : option.get_snames())
        text.names.push_back("-" + name);
    for (const std::string& name : option.get_lnames())
        text.names.push_back("--" + name);
    if (option.get_positional())
        text.names.push_back(option.get_name(true));
    if (option.get_items_expected_max() > 0)
        text.value = option.get_type_name();
    if (option.get_positional() && text.value.empty())
        text.value = text.names.front();
    text.help = option.get_description();
    text.initial = unbracketed(option.get_default_str());
    text.excludes = namesOf(option.get_excludes());
    text.needs = namesOf(option.get_needs());
    text.required = option.get_required();
    text.repeats = option.get_expected_max() == CLI::detail::expected_max_vector_size;
    return text;
}

std::vector<OptionText> textsOf(const CLI::App& command, bool places) {
    std::vector<OptionText> texts;
    for (const CLI::Option* option : command.get_options())
        if (option->get_positional() == places)
            texts.push_back(textOf(*option));
    return texts;
}

} // namespace

std::vector<OptionText> optionsOf(const CLI::App& command) {
    return textsOf(command, false);
}

std::vector<OptionText> placesOf(const CLI::App& command) {
    return textsOf(command, true);
}

std::vector<const CLI::App*> subcommandsOf(const CLI::App& command) {
    return command.get_subcommands([](const CLI::App*) { return true; });
}

std::string pathOf(const CLI::App& command) {
    const CLI::App* parent = command.get_parent();
    return parent == nullptr ? command.get_name() : pathOf(*parent) + ' ' + command.get_name();
}
