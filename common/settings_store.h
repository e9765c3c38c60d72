// The settings store that a command works on.
#pragma once

#include <string>

// Uses the store in this file; with an empty name the user's own. A file that is no store is a
// Failure: the store would set it aside as a damaged one, which is no help when the name is wrong.
void useSettingsStore(const std::string& file);
