// The time code in the header of a DPX picture (SMPTE 268M, television header).
#pragma once

#include "media/av.h"

#include <string>

// Of a whole file; empty if it has none.
std::string dpxTimeCode(const AVPacket& file);

// Into a whole file, which the encoder leaves without one.
void putDpxTimeCode(AVPacket& file, const std::string& text);
