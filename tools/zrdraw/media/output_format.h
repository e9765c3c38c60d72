// Which container, encoder and kind of frame a result gets.
#pragma once

#include "media/av.h"

#include <string>

struct OutputFormat {
    const AVOutputFormat* muxer = nullptr;
    const AVCodec* codec = nullptr;
    bool picture = false; // takes one frame
};

// Throws a UsageError that names the mend if a name is unknown or the two do not go together. An
// empty format is found from the path, "-" being a pipe; an empty codec is the format's own.
OutputFormat chooseOutputFormat(const std::string& path, const std::string& format,
                                const std::string& codec);

// The encoder's kind of frame that loses least of the source, or AV_PIX_FMT_NONE. Bare frames are
// written in the working layout.
AVPixelFormat chooseFramePixels(const AVCodec& codec, AVPixelFormat source, AVPixelFormat working);
