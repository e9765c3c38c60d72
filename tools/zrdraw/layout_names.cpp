#include "layout_names.h"

#include "error.h"
#include "media/working_frame.h"
#include "zrdraw/zrdraw.h"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <iterator>
#include <string_view>
#include <vector>

namespace {

// Both the library must draw on the layout and the media side convert to it.
bool isDrawable(const zrLayout& layout) {
    if (!workingPixelFormat(layout.code))
        return false;
    ZRDraw* draw = nullptr;
    const bool served = GetDraw(layout.code, 1, 1, 0, nullptr, draw) == 0;
    if (draw != nullptr)
        ReleaseDraw(draw);
    return served;
}

std::string namesOfDrawable() {
    std::vector<std::string> names;
    for (const zrLayout& layout : zrLayouts) {
        if (isDrawable(layout))
            names.push_back(layoutName(layout));
    }
    return fmt::format("{}", fmt::join(names, ", "));
}

} // namespace

std::string layoutName(const zrLayout& layout) {
    std::string_view name = layout.name;
    name.remove_prefix(std::string_view("pt").size());
    if (name.ends_with("32"))
        name.remove_suffix(2);
    std::string result;
    std::transform(name.begin(), name.end(), std::back_inserter(result),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return result;
}

const zrLayout& drawableLayout(const std::string& name) {
    for (const zrLayout& layout : zrLayouts) {
        if (layoutName(layout) != name)
            continue;
        if (!isDrawable(layout))
            throw Failure(
                fmt::format("layout {} cannot be drawn on by this version; use one of: {}", name,
                            namesOfDrawable()));
        return layout;
    }
    throw UsageError(
        fmt::format("there is no layout '{}'; use one of: {}", name, namesOfDrawable()));
}
