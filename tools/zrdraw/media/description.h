// What a result takes over of the file it comes from, beside the pictures.
#pragma once

#include "media/output.h"
#include "media/reader.h"

#include <string>
#include <vector>

// Which of the other streams pass.
enum class Streams { All, AudioAndVideo, Video };

// What became of a source's other streams.
struct PassedStreams {
    struct Stream {
        int from;        // by index in the source
        AVRational base; // of its packets
        const AVStream* to;
    };
    std::vector<Stream> streams;
    std::vector<std::string> lost; // what the format cannot hold, for people
};

// Adds those that the format can hold. Sound that it could hold in another codec is a Failure.
PassedStreams passStreams(const Input& from, Output& to, Streams wanted);

// Title, chapters and the like of the file, and of the stream of its pictures. Times are counted
// from `origin`, in the base of the source's pictures. Returns what the format cannot hold.
std::vector<std::string> copyDescription(const Input& from, const AVFrame& first,
                                         std::int64_t origin, Output& to, AVStream& pictures);

// "subtitles (subrip), chapters"; empty if nothing.
std::string listLost(const std::vector<std::string>& lost);
