// Drawing scripts as the tool takes them: read, and if they are sound run on a small canvas. The
// first byte chooses the layout.
#include "common/tool_error.h"
#include "draw_object.h"
#include "script/language/parser.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <string_view>

namespace {

// Keep the slowest input, of the largest shapes, far below the fuzzer's time limit.
constexpr std::size_t mostBytes = 2048;
constexpr std::size_t mostCommands = 20;

constexpr int width = 22, height = 14;

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    if (count == 0 || count > mostBytes)
        return -1;
    const std::string_view text(reinterpret_cast<const char*>(bytes) + 1, count - 1);
    Script script;
    try {
        script = parseScript(text, "script");
    } catch (const UsageError&) {
        return 0;
    }
    Canvas canvas(zrLayouts[bytes[0] % std::size(zrLayouts)], width, height);
    const DrawPtr draw = makeDraw(canvas);
    script.erase(script.begin() +
                     static_cast<std::ptrdiff_t>(std::min(script.size(), mostCommands)),
                 script.end());
    for (const Command& command : script)
        command.run(*draw);
    return 0;
}
