// What a result takes over of the file it comes from, beside the pictures.
#pragma once

#include "media/output.h"
#include "media/reader.h"
#include "sound/sound_transcoder.h"

#include <memory>
#include <string>
#include <vector>

// Which of the other streams pass.
enum class Streams { All, AudioAndVideo, Video };

// What became of a source's other streams.
struct PassedStreams {
    struct Stream {
        int from;        // by index in the source; a second source's are counted on from there
        AVRational base; // of its packets
        const AVStream* to;
        std::shared_ptr<SoundTranscoder> transcoder; // of sound that comes out in another codec
    };
    std::vector<Stream> streams;
    std::vector<std::string> lost; // what the format cannot hold, for people
};

struct PassOptions {
    Streams wanted = Streams::All;
    bool sound = true;
    std::string audioCodec = {}; // of all sound; empty: as it is
};

// Adds those that the format can hold. Sound that it could hold in another codec is a Failure.
PassedStreams passStreams(const Input& from, Output& to, const PassOptions& options);

// Adds the sound of a second source, whose streams are counted from `firstIndex` on.
void passSound(const Input& from, Output& to, const std::string& audioCodec, int firstIndex,
               PassedStreams& passed);

// Language, title and the like of a stream, whatever its codec.
void copyStreamDescription(const AVStream& from, AVStream& to);

// Title, chapters and the like of the file, and of the stream of its pictures. Times are counted
// from `origin`, in the base of the source's pictures. Returns what the format cannot hold.
std::vector<std::string> copyDescription(const Input& from, const AVFrame& first,
                                         std::int64_t origin, Output& to, AVStream& pictures);

// "subtitles (subrip), chapters"; empty if nothing.
std::string listLost(const std::vector<std::string>& lost);
