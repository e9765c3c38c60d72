#include "script/language/parser.h"

#include "common/near_names.h"
#include "script/language/script_file.h"
#include "script/language/statement_reader.h"

#include <fmt/format.h>

#include <algorithm>

namespace {

using Flow = Operation::Flow;

std::string unknownCommand(const std::string& name) {
    const std::vector<std::string> names = operationNames();
    const std::string near = nearNames(name, names);
    return fmt::format(
        "unknown command \"{}\"{}", name,
        !near.empty() ? near : fmt::format("; the commands are {}", fmt::join(names, ", ")));
}

// Adds the commands of one source to a script.
class ScriptReader {
public:
    ScriptReader(Script& script, const std::string& source, const std::string& folder)
        : m_script(script), m_source(std::make_shared<std::string>(source)), m_folder(folder) {}

    void read(std::string_view text) {
        for (const Statement& words : splitScript(text, *m_source))
            add(words);
        if (!m_open.empty()) {
            const Command& open = m_script.commands[m_open.back()];
            failAt(*m_source, open.position,
                   fmt::format("{}: its end is missing", open.operation->name));
        }
    }

private:
    void add(const Statement& words) {
        const Word& name = words.front();
        const Operation* operation = operationNamed(name.text);
        if (!operation)
            failAt(*m_source, name.position, unknownCommand(name.text));
        Command command = readStatement(words, *operation, m_source, m_script.names, m_folder);
        follow(command);
        for (const LiveNumber& number : command.numbers)
            m_script.usesPeaks |= number.expression->usesPeaks();
        for (const LiveText& text : command.texts)
            m_script.usesPeaks |= text.text->usesPeaks();
        m_script.commands.push_back(std::move(command));
    }

    void follow(Command& command) {
        switch (command.operation->flow) {
        case Flow::None:
            break;
        case Flow::Let:
            command.variable = m_script.names.define(command.arguments.text(0));
            break;
        case Flow::Open:
            m_open.push_back(m_script.commands.size());
            m_script.names.openBlock();
            break;
        case Flow::Close:
            if (m_open.empty())
                failAt(*m_source, command.position, "end: there is no when or from to end");
            m_script.commands[m_open.back()].end = m_script.commands.size();
            m_open.pop_back();
            m_script.names.closeBlock();
            break;
        }
    }

    Script& m_script;
    std::shared_ptr<const std::string> m_source;
    const std::string& m_folder;
    std::vector<std::size_t> m_open; // commands that wait for their end
};

} // namespace

std::string Command::placeOf(Position at) const {
    return fmt::format("{}:{}:{}", *source, at.line, at.column);
}

void Script::read(std::string_view text, const std::string& source, const std::string& folder) {
    ScriptReader(*this, source, folder).read(text);
}

void Script::readFile(const std::string& path) {
    read(readScriptFile(path), path, folderOf(path));
}

Script parseScript(std::string_view text, const std::string& source) {
    Script script;
    script.read(text, source);
    return script;
}

bool blends(const Script& script) {
    return std::any_of(
        script.commands.begin(), script.commands.end(),
        [](const Command& command) { return command.operation->blends; });
}

bool hasPictures(const Script& script) {
    return std::any_of(
        script.commands.begin(), script.commands.end(),
        [](const Command& command) {
            const auto& parameters = command.operation->parameters;
            return std::any_of(
                parameters.begin(), parameters.end(),
                [](const Parameter& parameter) { return parameter.kind == Parameter::Kind::File; });
        });
}
