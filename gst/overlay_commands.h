// The overlay's control commands as structures: "audio, enable=(uint)1, x=(uint)40".
#pragma once

#include <string>

#include <gst/gst.h>

class LiveOverlay;

// The names of all commands with their fields, a line each.
std::string listOverlayCommands();

// Sets the fields that the structure has and answers with all fields of the command. Null, with the
// problem told, for a command or a field that there is not, and for a number that has no place.
GstStructure* runOverlayCommand(LiveOverlay& overlay, const GstStructure& structure,
                                std::string& problem);
