// The tables of the manual pages: commands of scripts, transitions, modes, settings, layouts.
#pragma once

#include "manuals/roff.h"

#include <string_view>

// Those of a subcommand's page; none for most.
void writeTables(RoffPage& page, std::string_view subcommand);
