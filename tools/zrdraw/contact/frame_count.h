// How many frames a contact sheet is made of.
#pragma once

#include "media/reader.h"

#include <string>

// Of the range that the reader of that path takes. Where the header has no count a file is read
// through for it, and what can be read once only is a Failure unless the range says it.
std::int64_t countFrames(const std::string& path, const Reader& reader);
