// The packets of a media file, a picture or a pipe: those of its pictures in turn, and those of its
// sound on the way.
#pragma once

#include "media/av.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <string>
#include <vector>

// A file of bare lines, which says nothing about itself.
struct RawLines {
    int bytesPerLine;
    int lines; // of a picture
    AVRational frameRate;
};

class PacketReader {
public:
    // The path "-" is standard input. The callback is asked while a read waits; by an answer other
    // than 0 the read fails.
    PacketReader(const std::string& path, const std::optional<RawLines>& raw,
                 const AVIOInterruptCB& interrupt);

    const std::string& name() const { return m_name; } // as messages call it
    AVFormatContext& input() const { return *m_input; }
    AVStream& pictures() const { return *m_stream; }
    bool isPicture() const; // a single still picture

    // The packet that was read last.
    AVPacket& packet() { return *m_packet; }

    // The next packet of the pictures; false at the end.
    bool readPicture();

    // Lets the next read give the present packet once more.
    void readAgain() { m_packetWaits = true; }

    // The streams of sound. Their packets are kept until they are taken or dropped for good.
    std::vector<AVStream*> keepAudio();
    void dropAudio();

    // The next packet of sound that was read on the way, with times counted from the first picture;
    // null when there is none.
    PacketPtr takeAudio();

    // Reads on until all sound of the first `seconds` has been read, if there is any. Pictures that
    // stand before it in the file wait in memory.
    void readAudioUntil(double seconds);

    // Where the first picture stands, in AV_TIME_BASE units.
    void setStartTime(std::int64_t time) { m_startTime = time; }

    // Frames that came out of the packets are counted, because messages name the next one.
    void countFrame() { ++m_frames; }
    std::int64_t frames() const { return m_frames; }
    [[noreturn]] void failAtFrame(const std::string& reason) const;

private:
    void open(const std::string& path, const std::optional<RawLines>& raw,
              const AVIOInterruptCB& interrupt);
    void findPictures();
    bool readAny();
    bool isAudio(const AVPacket& packet) const;
    PacketPtr moveOut();
    void keepAudioPacket();
    void notePacket();
    void noteAudioEnd(const AVPacket& packet);

    std::string m_name;
    InputPtr m_input;
    AVStream* m_stream = nullptr;
    PacketPtr m_packet;
    bool m_packetWaits = false; // it was read to look at, and is still to be used
    bool m_ended = false;
    std::deque<PacketPtr> m_picturesAhead;
    std::size_t m_bytesAhead = 0;
    std::deque<PacketPtr> m_audio;
    bool m_audioKept = true;           // until it is known whether anybody wants it
    std::map<int, double> m_audioEnds; // by stream, seconds
    std::int64_t m_startTime = 0;
    std::int64_t m_frames = 0;
    std::int64_t m_bytesEnd = 0; // where the last packet ended in the file
    std::int64_t m_timeEnd = 0;  // and in time, in AV_TIME_BASE units
};
