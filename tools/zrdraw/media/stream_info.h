// What is known of the pictures of a stream before they are worked on.
#pragma once

#include "media/input.h"

#include <cstdint>
#include <string>

struct StreamInfo {
    int width = 0;
    int height = 0;
    AVRational frameRate{25, 1};
    AVRational timeBase{1, 25};
    std::int64_t start = 0; // time of the first picture in that base
    AVRational sampleAspect{0, 1};
    AVPixelFormat pixelFormat = AV_PIX_FMT_NONE;
    AVColorSpace colorSpace = AVCOL_SPC_UNSPECIFIED;
    AVColorRange colorRange = AVCOL_RANGE_UNSPECIFIED;
    AVColorPrimaries colorPrimaries = AVCOL_PRI_UNSPECIFIED;
    AVColorTransferCharacteristic colorTransfer = AVCOL_TRC_UNSPECIFIED;
    AVChromaLocation chromaLocation = AVCHROMA_LOC_UNSPECIFIED;
    AVFieldOrder fieldOrder = AV_FIELD_UNKNOWN;
    AVCodecID codec = AV_CODEC_ID_NONE;
    unsigned codecTag = 0;
    int codecProfile = FF_PROFILE_UNKNOWN;
    std::int64_t bitRate = 0;    // 0: unknown
    std::string formatName;      // the demuxer's
    std::string timeCode;        // of the first frame, as the file has it; empty if it has none
    bool picture = false;        // a single still picture
    bool unevenRate = false;     // the header already tells that frames are not evenly spaced
    std::int64_t frameCount = 0; // 0: unknown
};

// `first` says more than the file's header; it is in `pixelFormat` even where it is bare.
StreamInfo describeStream(const Input& input, const AVFrame& first, AVPixelFormat pixelFormat);

// From a time in the stream's base on, the number of whole frames since the first, as if they were
// evenly spaced.
std::int64_t framesSinceStart(const StreamInfo& info, std::int64_t time);
