// The option --contact: a contact sheet of a clip in the place of its result.
#pragma once

#include "clip_road.h"
#include "contact/contact_sheet.h"

#include <functional>
#include <optional>
#include <string>

void addContactOption(CLI::App& command, std::optional<std::string>& text);

// Refuses, before any work, what does not go with a sheet. Nothing if none is asked for.
std::optional<ContactGrid> contactGrid(const std::optional<std::string>& text,
                                       const ClipOptions& options);

// Draws on the frames that are shown, and writes the sheet as the options have it.
void makeContactSheet(ClipRoad& road, const ContactGrid& grid, const ClipOptions& options,
                      const std::function<void(Frame&)>& draw);
