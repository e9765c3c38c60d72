#include "common/layout_names.h"

#include "common/tool_error.h"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <iterator>
#include <string_view>
#include <vector>

namespace {

std::string allNames() {
    std::vector<std::string> names;
    for (const zrLayout& layout : zrLayouts)
        names.push_back(layoutName(layout));
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

const zrLayout& layoutNamed(const std::string& name) {
    for (const zrLayout& layout : zrLayouts)
        if (layoutName(layout) == name)
            return layout;
    throw UsageError(fmt::format("there is no layout '{}'; use one of: {}", name, allNames()));
}
