// What wipe and mux both take.
#pragma once

#include "common/picture_view.h"

#include <string>
#include <variant>

// A transition by number or name.
using WipeCode = std::variant<int, std::string>;

// A name that does not exist is a ValueError that names near ones.
unsigned numberOf(const WipeCode& code);

// Frames of different sizes are a ValueError.
void requireSameSize(const PictureView& a, const PictureView& b, const PictureView& out);
