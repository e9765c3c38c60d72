// What somebody may have meant who wrote a name that does not exist.
#pragma once

#include <string>
#include <string_view>
#include <vector>

// "; did you mean A or B?", or nothing when no candidate is near.
std::string nearNames(std::string_view name, const std::vector<std::string>& candidates);
