// An opened media file, picture, sequence of pictures, pipe or file of bare lines.
#pragma once

#include "media/av.h"

#include <atomic>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

// A file of bare lines, which says nothing about itself.
struct RawLines {
    int bytesPerLine;
    int lines; // of a picture
    AVRational frameRate;
};

// What happens where a file is cut off or damaged.
enum class Damage { Fail, Skip };

struct InputOptions {
    std::optional<RawLines> raw = {};
    Damage damage = Damage::Fail;
    std::optional<int> startNumber = {}; // of a sequence of pictures
    std::optional<AVRational> sequenceRate = {};
};

class Input {
public:
    // The path "-" is standard input.
    Input(const std::string& path, const InputOptions& options);

    const std::string& name() const { return m_name; } // as messages call it
    AVFormatContext& format() const { return *m_format; }
    AVStream& pictures() const { return *m_pictures; }
    bool isPicture() const; // a single still picture
    const InputOptions& options() const { return m_options; }
    Damage damage() const { return m_options.damage; }

    // The next packet of any stream, in the file's order; null at the end.
    PacketPtr next();

    // Goes to packet `index` of the pictures where each packet is a frame and the file says where
    // it stands; else nothing happens, and false is returned. Before the first packet only.
    bool seekToFrame(std::int64_t index);

    // Ends a read that waits, from another thread: it fails. An interrupt does so too.
    void stop() { m_stopped = true; }

    // Damaged packets that were left out.
    std::int64_t skipped() const { return m_skipped; }

    [[noreturn]] void failAtFrame(const std::string& reason) const;

    // The streams of sound, in the file's order.
    std::vector<AVStream*> sound() const;

private:
    void open(const std::string& path);
    void useRaw(AvOptions& options);
    void findPictures();
    bool read(AVPacket& packet);
    const char* damageOf(const AVPacket& packet) const;
    void notePacket(const AVPacket& packet);

    std::string m_name;
    InputOptions m_options;
    std::atomic<bool> m_stopped{false};
    InputPtr m_format;
    AVStream* m_pictures = nullptr;
    bool m_ended = false;
    std::int64_t m_frames = 0; // packets of the pictures
    std::int64_t m_skipped = 0;
    std::int64_t m_bytesEnd = 0; // where the last packet ended in the file
    std::int64_t m_timeEnd = 0;  // and in time, in AV_TIME_BASE units
};
