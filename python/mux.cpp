// The display mux on frames of 32-bit RGB.
#include "zrdraw/mux.h"

#include "common/mux_modes.h"
#include "common/near_names.h"
#include "python/frame_array.h"
#include "python/module.h"
#include "python/wipe_code.h"

#include <fmt/format.h>

#include <cmath>
#include <cstring>
#include <utility>
#include <vector>

#include <pybind11/stl.h>

using namespace py::literals;

namespace {

// Pixels of both, or a part of the picture in percent.
using Grid = std::variant<int, std::pair<int, int>>;

constexpr unsigned flipsOfA = zrMuxFlipAHorizontal | zrMuxFlipAVertical;
constexpr unsigned flipsOfB = zrMuxFlipBHorizontal | zrMuxFlipBVertical;

const MuxModeName& modeNamed(const std::string& name) {
    std::vector<std::string> names;
    for (const MuxModeName& mode : muxModeNames()) {
        if (name == mode.name)
            return mode;
        names.emplace_back(mode.name);
    }
    throw py::value_error(fmt::format("there is no mode '{}'{} (zrdraw.mux_modes() has all)", name,
                                      nearNames(name, names)));
}

unsigned flips(const std::string& text, const char* name, unsigned all, unsigned horizontal) {
    unsigned flags = 0;
    for (const char letter : text) {
        if (letter != 'h' && letter != 'v')
            throw py::value_error(
                fmt::format("{}: expected 'h', 'v' or 'hv', got '{}'", name, text));
        flags |= letter == 'h' ? horizontal : all & ~horizontal;
    }
    return flags;
}

unsigned ranged(Whole number, const char* name, int low, int high) {
    return static_cast<unsigned>(withinRange(number, name, low, high));
}

void setGrid(const Grid& grid, MuxParameters& p, const PictureView& view) {
    if (const auto* pixels = std::get_if<std::pair<int, int>>(&grid)) {
        p.gridMode = 2;
        p.gridX = ranged({pixels->first}, "grid", 1, farthest);
        p.gridY = ranged({pixels->second}, "grid", 1, farthest);
        return;
    }
    p.gridMode = 1;
    p.gridX = ranged({std::get<int>(grid)}, "grid in percent", 1, 100);
    const int parts = static_cast<int>(100 / p.gridX);
    if (view.width < parts || view.height < parts)
        throw py::value_error(fmt::format("grid: a picture of {} x {} cannot be cut into {} parts",
                                          view.width, view.height, parts));
}

// A source, in memory of its own where flips would change it.
class Source {
public:
    Source(const PictureView& view, bool isFlipped) : m_view(view) {
        if (!isFlipped)
            return;
        m_memory.resize(static_cast<std::size_t>(view.pitch) *
                        static_cast<std::size_t>(view.height));
        std::memcpy(m_memory.data(), view.data, m_memory.size());
        m_view.data = m_memory.data();
    }
    const PictureView& view() const { return m_view; }

private:
    PictureView m_view;
    std::vector<unsigned char> m_memory;
};

struct Parameters {
    Fraction position;
    WipeCode code;
    Whole gain, threshold, block;
    std::optional<Whole> channel, split;
    bool divider, swap;
    std::string flipA, flipB;
    std::optional<Grid> grid;
};

unsigned paramOf(unsigned mode, const Parameters& given) {
    const unsigned gain = ranged(given.gain, "gain", 1, 255);
    const unsigned threshold = ranged(given.threshold, "threshold", 0, 255);
    if (mode == zrMuxChannel)
        return given.channel ? 0xFFU << 8 * ranged(*given.channel, "channel", 0, 3) : 0;
    return mode == zrMuxDifference ? gain : threshold;
}

void setSplit(Whole split, MuxParameters& p, const PictureView& view) {
    const bool isOfLines = (p.flags & zrMuxSecondForm) != 0;
    const int most = isOfLines ? view.height : view.width;
    const bool isMarked = (p.flags & zrMuxDivider) != 0;
    // At the very end it would be drawn behind the picture.
    p.splitX = p.splitY = ranged(split, "split", 0, isMarked ? most - 1 : most);
}

MuxParameters parametersOf(unsigned mode, const Parameters& given, const PictureView& view) {
    constexpr double scale = 65536.0;
    constexpr int largestBlock = 100;
    MuxParameters p;
    p.flags = mode | (given.divider ? unsigned{zrMuxDivider} : 0) | (given.swap ? zrMuxSwap : 0) |
              flips(given.flipA, "flip_a", flipsOfA, zrMuxFlipAHorizontal) |
              flips(given.flipB, "flip_b", flipsOfB, zrMuxFlipBHorizontal);
    p.wipeCode = numberOf(given.code);
    p.position = mode == zrMuxBlocks
                     ? ranged(given.block, "block", 1, largestBlock) << 8
                     : static_cast<unsigned>(std::lround(given.position.value * scale));
    p.param = paramOf(mode, given);
    if (given.split)
        setSplit(*given.split, p, view);
    if (given.grid)
        setGrid(*given.grid, p, view);
    return p;
}

void compose(const py::array& a, const py::array& b, const py::array& out, const std::string& name,
             const Parameters& given) {
    const zrLayout& layout = *zrFindLayout(ptBGRA32);
    const unsigned mode = modeNamed(name).mode;
    const PictureView first = wholeFrameIn(a, layout, {}, Access::Read).view;
    const PictureView second = wholeFrameIn(b, layout, {}, Access::Read).view;
    const PictureView result = wholeFrameIn(out, layout, {}, Access::Write).view;
    requireSameSize(first, second, result);
    if (overlap(result, first) || overlap(result, second))
        throw py::value_error("out shares memory with a source");
    if (mode == zrMuxSqueeze && result.width % 2 != 0)
        throw py::value_error(fmt::format("squeeze needs an even width, not {}", result.width));
    const MuxParameters p = parametersOf(mode, given, result);
    const py::gil_scoped_release released;
    composeMux(p, Source(first, (p.flags & flipsOfA) != 0).view(),
               Source(second, (p.flags & flipsOfB) != 0).view(), result);
}

py::dict muxModes() {
    py::dict all;
    for (const MuxModeName& mode : muxModeNames())
        all[py::str(mode.name)] = mode.mode;
    return all;
}

constexpr char about[] = R"(Compose two pictures into a third.

All are uint8[height, width, 4], of one size and without gaps between lines; `out` is none of the
two, which stay as they are. Bytes of a pixel count from the first: byte 0 is blue in "bgra".

mode: a name of mux_modes()
position: 0 to 1, of "mix" and "wipe"
code: of "wipe", a name or number as wipe() takes it
gain: of "difference", from 2 to 255 times as strong
threshold: of "key", 0 to 255: how far a byte of B may be from that of A
block: of "blocks", the side of a square, 1 to 100 pixels
channel: of "channel", 0 to 3; None is the mean of three
split: of "split" and "windows" a column, of "split-lines" and "windows-lines" a line; None is the
    middle
divider: a grey line at the split
swap: exchange the pictures
flip_a, flip_b: "h", "v" or "hv"
grid: a grid over the picture, in pixels as (x, y), or in percent of the size)";

} // namespace

void bindMux(py::module_& module) {
    module.def(
        "mux",
        [](const py::array& a, const py::array& b, const py::array& out, const std::string& mode,
           Fraction position, const WipeCode& code, Whole gain, Whole threshold, Whole block,
           std::optional<Whole> channel, std::optional<Whole> split, bool divider, bool swap,
           const std::string& flipA, const std::string& flipB, const std::optional<Grid>& grid) {
            compose(a, b, out, mode,
                    {position, code, gain, threshold, block, channel, split, divider, swap, flipA,
                     flipB, grid});
        },
        "a"_a, "b"_a, "out"_a, "mode"_a, "position"_a = 0.5, "code"_a = "horizontal", "gain"_a = 1,
        "threshold"_a = 16, "block"_a = 16, "channel"_a = py::none(), "split"_a = py::none(),
        "divider"_a = false, "swap"_a = false, "flip_a"_a = "", "flip_b"_a = "",
        "grid"_a = py::none(), about);
    module.def("mux_modes", &muxModes, "The modes of mux() by name, with the number of each.");
}
