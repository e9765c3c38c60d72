// The transitions by name and code.
#pragma once

#include <span>
#include <string>

struct WipeName {
    unsigned code;
    const char* name;
    const char* help;
};

// One name for each picture that a transition can give.
std::span<const WipeName> wipeNames();

// By name or number; anything else is a UsageError that names near ones.
unsigned wipeCodeOf(const std::string& text);

std::string listWipes();
