// Transitions between two frames.
#include "common/layout_names.h"
#include "common/near_names.h"
#include "common/transition.h"
#include "common/wipe_names.h"
#include "python/frame_array.h"
#include "python/module.h"
#include "python/wipe_code.h"

#include <fmt/format.h>

#include <cmath>
#include <cstring>
#include <vector>

#include <pybind11/stl.h>

using namespace py::literals;

namespace {

constexpr int wordBytes = 4;

bool isSlide(unsigned code) {
    return zrWipeOf(code).kernel == zrfxSLIDE_Basic;
}

void requireKnown(const zrLayout& layout) {
    if (Transition::isKnown(layout))
        return;
    std::vector<std::string> names;
    for (const zrLayout& known : zrLayouts)
        if (Transition::isKnown(known))
            names.push_back(layoutName(known));
    throw py::value_error(fmt::format("there are no transitions in layout {}; use one of: {}",
                                      layoutName(layout), fmt::join(names, ", ")));
}

// The library's slides take lines of whole words, and its 4:2:2 writes whole pairs.
void requireWidth(const PictureView& view, unsigned code) {
    const zrLayout& layout = *view.layout;
    if (layout.isPairs() && view.width % 2 != 0)
        throw py::value_error(fmt::format("transitions in {} need an even width, not {}",
                                          layoutName(layout), view.width));
    if (isSlide(code) && view.pitch % wordBytes != 0)
        throw py::value_error(fmt::format("slides in {} need lines of a multiple of 4 bytes, not "
                                          "{}: take another width, or bgra",
                                          layoutName(layout), view.pitch));
}

void requireApart(const PictureView& out, const PictureView& from, const PictureView& to,
                  unsigned code) {
    for (const PictureView* source : {&from, &to}) {
        const bool isSame = source->data == out.data;
        if (isSame && isSlide(code) && source == &from)
            throw py::value_error("a slide cannot be drawn over its first frame: give another out");
        if (!isSame && overlap(*source, out))
            throw py::value_error("out shares memory with a source and is not the same array");
    }
}

// A frame of 4:2:2 in memory of its own, behind which the library may read.
class Roomy {
public:
    explicit Roomy(const PictureView& view) : m_view(view) {
        constexpr std::size_t readBehind = 6;
        const auto bytes =
            static_cast<std::size_t>(view.pitch) * static_cast<std::size_t>(view.height);
        m_memory.resize(bytes + readBehind);
        std::memcpy(m_memory.data(), view.data, bytes);
        m_view.data = m_memory.data();
    }
    const PictureView& view() const { return m_view; }

private:
    PictureView m_view;
    std::vector<unsigned char> m_memory;
};

void draw(const PictureView& from, const PictureView& to, const PictureView& out, unsigned code,
          bool swap, unsigned position) {
    constexpr int readTogether = 4; // pixels of 4:2:2
    Transition transition(*out.layout, out.width, out.height, code, swap, false);
    if (out.layout->isPairs() && out.width % readTogether != 0)
        transition.draw(Roomy(from).view(), Roomy(to).view(), out, position);
    else
        transition.draw(from, to, out, position);
}

void wipe(const py::array& a, const py::array& b, const py::array& out, const std::string& name,
          const WipeCode& code, Fraction position, bool swap, std::optional<int> width) {
    const zrLayout& layout = layoutOf(name);
    requireKnown(layout);
    const unsigned number = numberOf(code);
    const PictureView from = wholeFrameIn(a, layout, width, Access::Read).view;
    const PictureView to = wholeFrameIn(b, layout, width, Access::Read).view;
    const PictureView result = wholeFrameIn(out, layout, width, Access::Write).view;
    requireSameSize(from, to, result);
    requireWidth(result, number);
    requireApart(result, from, to, number);
    if (swap && isSlide(number))
        throw py::value_error("slides have no swapped form: give the frames the other way round");
    const auto step = static_cast<unsigned>(std::lround(position.value * Transition::scale));
    const py::gil_scoped_release released;
    draw(from, to, result, number, swap, step);
}

py::dict wipes() {
    py::dict all;
    for (const zrWipe& wipe : namedWipes())
        all[py::str(wipe.name)] = py::dict("code"_a = wipe.first, "help"_a = wipe.help);
    return all;
}

} // namespace

unsigned numberOf(const WipeCode& code) {
    if (const auto* number = std::get_if<int>(&code)) {
        if (*number < 0)
            throw py::value_error(fmt::format("there is no transition {}", *number));
        return static_cast<unsigned>(*number);
    }
    const auto& name = std::get<std::string>(code);
    std::vector<std::string> names;
    for (const zrWipe& wipe : namedWipes()) {
        if (name == wipe.name)
            return wipe.first;
        names.emplace_back(wipe.name);
    }
    throw py::value_error(fmt::format("there is no transition '{}'{} (zrdraw.wipes() has all)",
                                      name, nearNames(name, names)));
}

void requireSameSize(const PictureView& a, const PictureView& b, const PictureView& out) {
    for (const PictureView* other : {&b, &out})
        if (other->width != a.width || other->height != a.height)
            throw py::value_error(fmt::format("the frames must be of one size, not {} x {} and "
                                              "{} x {}",
                                              a.width, a.height, other->width, other->height));
}

void bindWipe(py::module_& module) {
    module.def("wipe", &wipe, "a"_a, "b"_a, "out"_a, "layout"_a, "code"_a, "position"_a,
               "swap"_a = false, "width"_a = py::none(),
               "Draw the frame of a transition from `a` to `b` into `out`. All are frames of one "
               "layout and size whose lines have no gaps; `out` may be one of the two, but for "
               "the first of a slide. v210 keeps its ten bits.\n\n"
               "code: a name of wipes(), or a number\n"
               "position: progress, 0 to 1\n"
               "swap: `b` is the frame that the transition leaves; the geometry stays\n"
               "width: of v210, whose shape does not tell");
    module.def("wipes", &wipes, "The transitions by name: the code and what each does.");
}
