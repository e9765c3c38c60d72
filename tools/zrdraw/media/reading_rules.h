// What the tool takes for media, and for sound media: where the libraries say too much or too
// little, the answer stands here.
#pragma once

#include "media/av.h"

#include <string>

// Of the libraries' ways to reach data: a playlist must not reach for the network.
inline constexpr const char* allowedProtocols = "file,pipe";

// Any text passes for "tty" media, a picture of a terminal, which nobody means.
bool isPlainText(const AVFormatContext& input);

// Whether a file is a single picture.
bool holdsOnePicture(const AVFormatContext& input);

// Whether a file that has a length is as long as it says.
bool isAsLongAsItSays(const AVFormatContext& input, const std::string& path);

// These demuxers take a stream that is cut off for one that ends. `bytesEnd` is where the last
// packet ended in the file, `timeEnd` in time, in AV_TIME_BASE units.
bool endedEarly(AVFormatContext& input, AVStream& pictures, std::int64_t bytesEnd,
                std::int64_t timeEnd);

// Whether a packet of the pictures is whole.
bool isWhole(const AVFormatContext& input, const AVPacket& packet);

// What a decoder refuses, rather than hand out a picture with a damaged part.
int errorChecks(AVCodecID codec);
