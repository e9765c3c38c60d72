// `zrdraw config`: the overlay's settings in the configuration store.
#include "common/setting_names.h"
#include "common/settings_store.h"
#include "common/tool_error.h"
#include "media/output_file.h"
#include "option_values.h"
#include "subcommand.h"
#include "zrdraw/platform/config_store.h"
#include "zrdraw/zrhost.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace {

struct Options {
    std::string store; // file; empty for the user's own
    std::string key;
    std::vector<std::string> assignments;
    std::string file;
    bool force = false;
    std::string (*action)(const Options& options) = nullptr;
};

constexpr std::string_view section = "[zroverlay]";

std::optional<std::string> storedValue(const SettingKey& key) {
    char text[zrOverlayTextLimit + 1] = {};
    unsigned int length = sizeof text;
    const int status =
        zrCFGValueString(zrCFGDefaultStore, zrOverlayKeyPath, key.name.c_str(), text, &length, 0);
    return status == 0 ? std::optional<std::string>(text) : std::nullopt;
}

// A store with any settings has to have them all: a key that is missing loads as the one before it.
void completeStore() {
    for (const SettingKey& key : settingKeys()) {
        if (storedValue(key))
            continue;
        std::string initial = key.initial;
        unsigned int length = static_cast<unsigned int>(initial.size() + 1);
        zrCFGValueString(zrCFGDefaultStore, zrOverlayKeyPath, key.name.c_str(), initial.data(),
                         &length, 1);
    }
}

void store(const std::vector<Assignment>& assignments) {
    completeStore();
    for (const auto& [key, value] : assignments) {
        std::string text = value;
        unsigned int length = static_cast<unsigned int>(text.size() + 1);
        zrCFGValueString(zrCFGDefaultStore, zrOverlayKeyPath, key->name.c_str(), text.data(),
                         &length, 1);
    }
    if (zrCFGSave(zrCFGDefaultStore, 0, 0) != 0)
        throw Failure("the settings could not be saved, see above; nothing was changed");
}

std::string list(const Options&) {
    std::string text =
        fmt::format("{:<24} {:<12} {:<8} {}\n", "SETTING", "VALUE", "INITIAL", "WHAT IT DOES");
    for (const SettingKey& key : settingKeys())
        text += fmt::format("{:<24} {:<12} {:<8} {}\n", key.name,
                            storedValue(key).value_or(key.initial), key.initial, key.help);
    return text;
}

std::string exported() {
    std::string text = fmt::format("{}\n", section);
    for (const SettingKey& key : settingKeys())
        text += fmt::format("{} = {}\n", key.name, storedValue(key).value_or(key.initial));
    return text;
}

void writeFile(const std::string& path, const std::string& text, bool force) {
    OutputFile file(path, force);
    avio_write(file.io(), reinterpret_cast<const unsigned char*>(text.data()),
               static_cast<int>(text.size()));
    file.commit();
}

std::string trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(" \t\r");
    if (first == text.npos)
        return "";
    return std::string(text.substr(first, text.find_last_not_of(" \t\r") - first + 1));
}

// Lines "Key = value" of the section; nothing is stored unless all of them are right.
std::vector<Assignment> imported(const std::string& path) {
    std::ifstream file(path);
    if (!file)
        throw Failure(fmt::format("cannot read '{}': {}", path, std::strerror(errno)));
    std::vector<Assignment> assignments;
    bool inSection = false;
    int number = 0;
    for (std::string line; std::getline(file, line);) {
        ++number;
        const std::string text = trimmed(line);
        if (text.starts_with('[')) {
            inSection = text == section;
            continue;
        }
        if (!inSection || text.empty())
            continue;
        const std::size_t sign = text.find('=');
        if (sign == std::string::npos)
            throw UsageError(
                fmt::format("{}:{}: expected Key = value, got '{}'", path, number, text));
        try {
            assignments.push_back(parseAssignment(trimmed(text.substr(0, sign)) + "=" +
                                                  trimmed(text.substr(sign + 1))));
        } catch (const UsageError& error) {
            throw UsageError(fmt::format("{}:{}: {}", path, number, error.what()));
        }
    }
    if (assignments.empty())
        throw UsageError(
            fmt::format("'{}' holds no settings: they stand below a line {}", path, section));
    return assignments;
}

std::string get(const Options& options) {
    const SettingKey& key = settingKeyNamed(options.key);
    return storedValue(key).value_or(key.initial) + "\n";
}

std::string set(const Options& options) {
    std::vector<Assignment> assignments;
    for (const std::string& text : options.assignments)
        assignments.push_back(parseAssignment(text));
    store(assignments);
    return "";
}

std::string exportAll(const Options& options) {
    if (options.file == "-")
        return exported();
    writeFile(options.file, exported(), options.force);
    return "";
}

std::string importFrom(const Options& options) {
    store(imported(options.file));
    return "";
}

void addOptions(CLI::App& command, Options& options) {
    command.require_subcommand(1);
    command
        .add_option("--settings-store", options.store,
                    "File of settings, in the place of the user's own")
        ->type_name(valueName::file);
    const auto add = [&](const char* name, const char* help, decltype(Options::action) action) {
        CLI::App* added = command.add_subcommand(name, help);
        added->callback([&options, action] { options.action = action; });
        return added;
    };
    add("list", "All settings with what they do", list);
    const auto takes = [](CLI::App* added, const char* name, auto& value, const char* help) {
        added->add_option(name, value, help)->type_name("")->required();
    };
    takes(add("get", "The value of one", get), valueName::setting, options.key, "Its name");
    takes(add("set", "Change some", set), valueName::assignment, options.assignments,
          "Names and values");
    CLI::App* save = add("export", "Write all into a text file", exportAll);
    takes(save, valueName::file, options.file, "The file; - is standard output");
    save->add_flag("--force", options.force, "Replace an existing file");
    takes(add("import", "Read some from a text file", importFrom), valueName::file, options.file,
          "The file");
}

std::string run(const Options& options) {
    useSettingsStore(options.store);
    return options.action(options);
}

} // namespace

Subcommand configCommand() {
    return makeSubcommand(
        "config", "Show and change the overlay's stored settings",
        "zrdraw overlay reads them. A change is made wholly or not at all. Text "
        "files have a line Key = value\nfor each setting, below a line [zroverlay].",
        addOptions, run);
}
