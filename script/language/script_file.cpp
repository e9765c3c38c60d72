#include "script/language/script_file.h"

#include "common/tool_error.h"

#include <fmt/format.h>

#include <cerrno>
#include <cstring>
#include <fstream>
#include <iostream>
#include <string_view>

std::string readScriptFile(const std::string& path) {
    std::ifstream opened;
    if (path != "-")
        opened.open(path, std::ios::binary);
    std::istream& file = path == "-" ? std::cin : opened;
    std::string text;
    for (char part[4096]; file.read(part, sizeof part), file.gcount() > 0;)
        text.append(part, static_cast<std::size_t>(file.gcount()));
    if (file.bad() || (path != "-" && !opened.is_open()))
        throw Failure(fmt::format("cannot read script '{}': {}", path, std::strerror(errno)));
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (text.starts_with(byteOrderMark))
        text.erase(0, byteOrderMark.size());
    return text;
}

std::string folderOf(const std::string& path) {
    return path.substr(0, path.find_last_of('/') + 1);
}

std::string besideScript(const std::string& folder, const std::string& name) {
    return name.starts_with('/') ? name : folder + name;
}
