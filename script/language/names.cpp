#include "script/language/names.h"

#include "common/near_names.h"

#include <fmt/format.h>

#include <algorithm>

Names::Names() {
    for (const ConstantName& constant : constantNames)
        m_names.push_back({constant.name});
    for (unsigned channel = 1; channel <= mostMeters; ++channel)
        m_names.push_back({fmt::format("{}{}", peakName, channel)});
}

std::optional<std::size_t> Names::find(std::string_view name) const {
    const auto found = std::find_if(m_names.begin(), m_names.end(), [name](const Name& known) {
        return known.isVisible && known.text == name;
    });
    if (found == m_names.end())
        return std::nullopt;
    return static_cast<std::size_t>(found - m_names.begin());
}

std::vector<std::string> Names::visible() const {
    std::vector<std::string> result;
    for (const Name& name : m_names)
        if (name.isVisible)
            result.push_back(name.text);
    return result;
}

std::string Names::near(const std::string& name) const {
    std::vector<std::string> candidates = visible();
    std::erase_if(candidates, [](const std::string& other) { return other.size() == 1; });
    return nearNames(name, candidates);
}

const std::vector<const char*>& Names::list() const {
    constexpr const char* nothing = " "; // expressions are matched without their blanks
    m_list.clear();
    for (const Name& name : m_names)
        m_list.push_back(name.isVisible ? name.text.c_str() : nothing);
    m_list.push_back(nullptr);
    return m_list;
}

std::size_t Names::define(const std::string& name) {
    if (const auto known = find(name))
        return *known;
    m_names.push_back({name});
    return m_names.size() - 1;
}

void Names::closeBlock() {
    for (std::size_t i = m_blocks.back(); i < m_names.size(); ++i)
        m_names[i].isVisible = false;
    m_blocks.pop_back();
}
