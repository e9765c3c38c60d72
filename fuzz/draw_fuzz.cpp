// Draws by an input's bytes on a small guarded frame of one of the served layouts.
#include "operations.h"

#include <cstdint>

namespace {

// Keeps the slowest input far below the fuzzer's time limit.
constexpr int mostOperations = 40;

std::vector<const zrLayout*> servedLayouts() {
    std::vector<const zrLayout*> served;
    for (const zrLayout& layout : zrLayouts) {
        ZRDraw* draw = nullptr;
        if (GetDraw(layout.code, 1, 1, 0, nullptr, draw) != 0)
            continue;
        ReleaseDraw(draw);
        served.push_back(&layout);
    }
    return served;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    static const std::vector<const zrLayout*> layouts = servedLayouts();
    Input input({bytes, count});
    const int chosen = input.below(static_cast<int>(layouts.size()));
    Session session(*layouts[static_cast<std::size_t>(chosen)], input);
    const std::span<const Operation> table = operations();
    for (int i = 0; i < mostOperations && !session.input.empty(); ++i) {
        const int next = session.input.below(static_cast<int>(table.size()));
        table[static_cast<std::size_t>(next)](session);
    }
    session.checkFrame();
    return 0;
}
