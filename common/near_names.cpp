#include "common/near_names.h"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <numeric>
#include <utility>

namespace {

std::string lowered(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return result;
}

// Characters to insert, drop or change to get from one text to the other.
std::size_t distance(std::string_view from, std::string_view to) {
    std::vector<std::size_t> row(to.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < from.size(); ++i) {
        std::size_t diagonal = std::exchange(row[0], i + 1);
        for (std::size_t j = 0; j < to.size(); ++j) {
            const std::size_t changed = diagonal + (from[i] != to[j]);
            diagonal = row[j + 1];
            row[j + 1] = std::min({row[j] + 1, row[j + 1] + 1, changed});
        }
    }
    return row.back();
}

} // namespace

std::string nearNames(std::string_view name, const std::vector<std::string>& candidates) {
    constexpr std::size_t most = 3;
    const std::string wanted = lowered(name);
    std::vector<std::pair<std::size_t, std::string>> near;
    for (const std::string& candidate : candidates) {
        const std::string other = lowered(candidate);
        const bool contained = wanted.size() > 2 && other.find(wanted) != std::string::npos;
        const std::size_t far = contained ? 1 : distance(wanted, other);
        const std::size_t shorter = std::min(wanted.size(), other.size());
        if (far <= (shorter < 4 ? 1U : 2U))
            near.emplace_back(far, candidate);
    }
    if (near.empty())
        return "";
    std::stable_sort(near.begin(), near.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    near.resize(std::min(near.size(), most));
    std::vector<std::string> names;
    names.reserve(near.size());
    for (auto& [far, candidate] : near)
        names.push_back(candidate);
    return fmt::format("; did you mean {}?", fmt::join(names, " or "));
}
