// The transitions by name and code.
#pragma once

#include "zrdraw/wipes.h"

#include <string>
#include <vector>

// One for each picture that a transition can give.
std::vector<zrWipe> namedWipes();

// By name or number; anything else is a UsageError that names near ones.
unsigned wipeCodeOf(const std::string& text);

std::string listWipes();
