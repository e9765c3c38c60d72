// Pictures and clips that scripts put on frames, from any file that GStreamer decodes.
#pragma once

#include "script/pictures/pictures.h"

#include <functional>
#include <memory>
#include <string>

// With their alpha, if they have any. A file that cannot be read is a Failure that names it, and so
// is one that is waited for when `isStopped` says so.
std::unique_ptr<PictureClip> openPictureClip(const std::string& path,
                                             const std::function<bool()>& isStopped = {});
