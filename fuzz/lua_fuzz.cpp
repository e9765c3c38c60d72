// Programs in Lua that draw, run on the frames of a small stream. The first byte chooses the
// layout.
#include "script_stage.h"

#include <cstdint>
#include <string>

namespace {

constexpr std::size_t mostBytes = 2048;

// Low, so that the slowest input ends far below the fuzzer's time limit.
constexpr LuaLimits limits{2000, std::size_t{4} << 20};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    if (count == 0 || count > mostBytes)
        return -1;
    const std::string text(reinterpret_cast<const char*>(bytes) + 1, count - 1);
    ScriptSource source;
    try {
        source.program = std::make_unique<LuaProgram>("/dev/null/program.lua", text, limits);
    } catch (const ToolError&) {
        return 0;
    }
    script_stage::play(std::move(source), bytes[0]);
    return 0;
}
