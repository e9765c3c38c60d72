// Drawing scripts: read, and if they are sound run on the frames of a small stream. The first byte
// chooses the layout.
#include "script_stage.h"

#include <algorithm>
#include <cstdint>
#include <string_view>

namespace {

// Keep the slowest input, of the largest shapes, far below the fuzzer's time limit.
constexpr std::size_t mostBytes = 2048;
constexpr std::size_t mostCommands = 20;

// Memory for pictures is the user's to spend, not the fuzzer's: what they are scaled to stays
// small, also where a cell of the grid is the whole canvas.
bool scalesFar(const Command& command) {
    constexpr int most = 64;
    const auto& parameters = command.operation->parameters;
    for (std::size_t i = 0; i < parameters.size(); ++i)
        if (parameters[i].name == "scale" && parameters[i].takes == 2) {
            const Arguments& a = command.arguments;
            const bool isLive = std::any_of(
                command.numbers.begin(), command.numbers.end(), [i](const LiveNumber& number) {
                    return number.argument == i + 1 || number.argument == i + 2;
                });
            return a.given(i) && (isLive || a.number(i + 1) > most || a.number(i + 2) > most);
        }
    return false;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    if (count == 0 || count > mostBytes)
        return -1;
    const std::string_view text(reinterpret_cast<const char*>(bytes) + 1, count - 1);
    ScriptSource source;
    try {
        source.script = parseScript(text, "script");
    } catch (const UsageError&) {
        return 0;
    }
    const std::vector<Command>& commands = source.script.commands;
    if (commands.size() > mostCommands || std::any_of(commands.begin(), commands.end(), scalesFar))
        return -1;
    script_stage::play(std::move(source), bytes[0]);
    return 0;
}
