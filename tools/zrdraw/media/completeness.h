// Whether a file is whole, for the kinds of file of which a part passes for the whole.
#pragma once

#include <cstdint>
#include <span>
#include <string>

// Whether the picture in a JPEG file is followed by its end marker.
bool jpegReachesItsEnd(std::span<const std::uint8_t> jpeg);

// Whether a file is as long as it says; true if it does not say.
bool aviReachesItsEnd(const std::string& path);
bool matroskaReachesItsEnd(const std::string& path);
