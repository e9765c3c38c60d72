#include "script/runner.h"

#include <fmt/format.h>

#include <algorithm>

void ScriptRunner::run(ZRDraw& draw, int width, int height) {
    for (const Command& command : m_script)
        if (command.run(draw) == -1 && m_refused.insert(&command).second)
            warn(command, width, height);
}

void ScriptRunner::warn(const Command& command, int width, int height) {
    const Operation& operation = *command.operation;
    std::string reason(operation.refusal);
    if (reason.empty())
        reason = fmt::format("it does not lie wholly on the {}x{} canvas", width, height);
    m_warn(fmt::format("{}: {} was refused: {}", command.place, operation.name, reason));
}

bool blends(const Script& script) {
    return std::any_of(
        script.begin(), script.end(),
        [](const Command& command) { return command.operation->blends; });
}
