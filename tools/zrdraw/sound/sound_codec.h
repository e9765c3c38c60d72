// Which encoder the sound of a result gets.
#pragma once

#include "media/output_format.h"

#include <string>

// By the encoder's name or its codec's; an unknown name is a UsageError.
const AVCodec& soundEncoderNamed(const std::string& name);

// The one named, or if the name is empty the stream's own where there is one and the format holds
// it, else the format's. Null where the format takes no sound at all. What the format cannot hold
// is a UsageError.
const AVCodec* soundEncoderFor(const OutputFormat& format, const std::string& name,
                               const AVCodecParameters& stream);
