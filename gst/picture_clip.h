// Pictures and clips that scripts put on frames, from any file that GStreamer decodes.
#pragma once

#include "script/pictures/pictures.h"

#include <memory>
#include <string>

// With their alpha, if they have any. A file that cannot be read is a Failure that names it.
std::unique_ptr<PictureClip> openPictureClip(const std::string& path);
