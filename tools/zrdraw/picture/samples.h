// The samples of a picture, line by line, for formats that have each in bytes of
// its own.
#pragma once

#include "media/av.h"

#include <cstdint>

extern "C" {
#include <libavutil/pixdesc.h>
}

bool hasOwnBytes(AVPixelFormat format);

// Values as the picture has them: as many bits as the component is deep. Samples may be bytes where
// that is no more than eight.
template <typename Sample>
void readSamples(const AVFrame& picture, const AVComponentDescriptor& component, bool bigEndian,
                 int y, Sample* samples, int count);
template <typename Sample>
void writeSamples(const Sample* samples, AVFrame& picture, const AVComponentDescriptor& component,
                  bool bigEndian, int y, int count);

// From one depth to another: made deeper by repeating the high bits, and less deep by dropping the
// low ones, so that what was made deeper comes back.
template <typename Sample>
void changeDepth(const std::uint16_t* samples, int from, Sample* changed, int to, int count);
