// What a stream tells of the light of the display it was made on, for high dynamic range.
#pragma once

#include "media/av.h"

#include <string>

// For the encoder's own stream, where it has a way to say it.
void addLight(AvOptions& settings, const AVCodec& codec, const AVFrame& first);

// For the container, from the frame where the stream itself does not have it.
void copyLight(const AVFrame& first, AVStream& to);
