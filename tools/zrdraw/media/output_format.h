// Which container, encoder and kind of frame a result gets.
#pragma once

#include "media/stream_info.h"

#include <string>
#include <string_view>

struct OutputFormat {
    const AVOutputFormat* muxer = nullptr;
    const AVCodec* codec = nullptr;
    bool picture = false;      // takes one frame
    bool sequence = false;     // a picture a frame, with numbers in their names
    bool sourcesCodec = false; // the encoder was chosen for being that of the source
    std::string note;          // why it was not, where one might expect it; empty if no word is due

    bool isNamed(std::string_view name) const { return name == muxer->name; }
};

// Throws a UsageError that names the mend if a name is unknown or the two do not go together. An
// empty format is found from the path, "-" being a pipe; an empty codec is the source's where there
// is an encoder and the format takes it, else the format's own.
OutputFormat chooseOutputFormat(const std::string& path, const std::string& format,
                                const std::string& codec, const StreamInfo& source);

// Whether a format has a place for a stream, for any sound, for sound of a codec.
bool canHold(const OutputFormat& format, const AVCodecParameters& stream);
bool takesSound(const OutputFormat& format);
bool holdsSound(const OutputFormat& format, AVCodecID codec);

// The encoder's kind of frame that loses least of the source, or AV_PIX_FMT_NONE. Bare frames are
// written in the working layout.
AVPixelFormat chooseFramePixels(const OutputFormat& format, AVPixelFormat source,
                                AVPixelFormat working);
