// What the manual pages tell that the parser does not know.
#pragma once

#include <string>
#include <string_view>
#include <vector>

struct Example {
    std::string what;
    std::string lines; // tests/manuals runs these on clips of such names
};

struct PageText {
    std::string_view subcommand; // "zrdraw" for the whole tool
    std::vector<Example> examples;
    std::vector<std::string> seeAlso; // names of pages
    bool usesStore = false;
};

extern const char* const toolDescription;

// Every subcommand has one: it is an error when there is none.
const PageText& pageTextOf(std::string_view subcommand);
