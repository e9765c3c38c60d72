// The file that a result goes to: its muxer, or its pictures, and the streams in it.
#pragma once

#include "media/av_messages.h"
#include "media/encoder.h"
#include "media/input.h"
#include "media/output_file.h"
#include "media/output_format.h"
#include "media/sequence.h"

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

// What stands beside a stream in its container and stays true when its pictures are drawn on.
void copySideData(const AVStream& from, AVStream& to);

class Output {
public:
    // The path "-" is standard output. Nothing is opened before begin().
    Output(const std::string& path, const OutputFormat& format);

    AVFormatContext& muxer() const { return *m_muxer; }
    const OutputFormat& format() const { return m_format; }

    // The stream of the encoder's packets. Descriptions may be added to it until begin().
    AVStream& addFrames(const Encoder& encoder);

    // A stream whose packets pass as they are, described like the one they come from.
    AVStream& addCopy(const AVStream& from);

    // A file that the source carries beside its streams.
    void addAttachment(const AVStream& from);

    // A stream of packets in a time base of their own, for write().
    AVStream& addStream(const AVCodecContext& encoder);

    // Opens the file and writes its header. Pictures with numbers begin with `firstNumber`.
    void begin(bool force, int firstNumber, bool lowDelay);

    // Packets in time base `base` of a stream of ours.
    void write(AVPacket& packet, AVRational base, const AVStream& stream);

    // Ends a write that waits, from another thread.
    void stop() {
        if (m_file)
            m_file->stop();
    }

    // Completes the file and gives it its name. Without it nothing is left behind.
    void finish();

private:
    struct MuxerFree {
        void operator()(AVFormatContext* muxer) const { avformat_free_context(muxer); }
    };

    AVStream& newStream();
    [[noreturn]] void fail(const std::string& action, int error);

    std::string m_path;
    std::string m_name; // as messages call it
    OutputFormat m_format;
    std::optional<OutputFile> m_file; // opened last, when nothing else can be refused
    std::optional<PictureFiles> m_pictures;
    AvMessages m_messages; // of the present call
    std::unique_ptr<AVFormatContext, MuxerFree> m_muxer;
};
