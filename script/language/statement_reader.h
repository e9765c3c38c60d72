// Reads the words of one command by the parameters of its operation.
#pragma once

#include "script/language/parser.h"

#include <string>

// What a command of this operation has for its arguments; a fault is a UsageError. `names` are what
// its expressions may use; names of files are taken from the folder.
Command readStatement(const Statement& words, const Operation& operation,
                      const std::shared_ptr<const std::string>& source, const Names& names,
                      const std::string& folder);

// What a parameter takes, for messages: "a number from 0 to 1".
std::string expectation(const Parameter& parameter);
