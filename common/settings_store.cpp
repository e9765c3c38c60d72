#include "common/settings_store.h"

#include "common/tool_error.h"
#include "zrdraw/zrhost.h"

#include <fmt/format.h>

#include <array>
#include <fstream>
#include <string_view>

namespace {

constexpr std::string_view databaseMark = "SQLite format 3"; // and a zero: how every one begins

bool isOtherFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::array<char, databaseMark.size()> start{};
    file.read(start.data(), start.size());
    const auto length = static_cast<std::size_t>(file.gcount());
    return length > 0 && std::string_view(start.data(), length) != databaseMark;
}

} // namespace

void useSettingsStore(const std::string& file) {
    if (file.empty())
        return;
    if (isOtherFile(file))
        throw Failure(fmt::format("'{}' is not a settings store: name another file by "
                                  "--settings-store",
                                  file));
    char reason[512] = {};
    if (zrCFGUseStore(file.c_str(), static_cast<char*>(reason), sizeof reason) != 0)
        throw Failure(static_cast<const char*>(reason));
}
