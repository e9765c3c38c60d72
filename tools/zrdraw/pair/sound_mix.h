// The sound of a transition: that of A before it, a cross-fade of equal power, that of B behind it.
#pragma once

#include "media/writer.h"
#include "sound/sound.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

// One clip's sound, read on from its packets. What lies before it, in gaps and behind it is silent.
class ClipSound {
public:
    ClipSound(const Reader& reader, const AVStream& stream, const SoundShape& shape)
        : m_channels(shape.channels()), m_decoder(reader.input(), stream, shape) {}

    void add(PacketPtr packet) { m_packets.push_back(std::move(packet)); }
    void end() { m_ended = true; }

    // The samples from a place on, which never goes back. False, and nothing done, as long as
    // packets of them are still to come.
    bool read(std::int64_t place, std::int64_t count, std::vector<double>& samples);

private:
    bool decodeUntil(std::int64_t place);

    std::size_t m_channels;
    SoundDecoder m_decoder;
    std::deque<PacketPtr> m_packets; // not decoded before they are needed
    std::deque<SoundBlock> m_blocks;
    std::int64_t m_known = INT64_MIN; // behind the last sample that was decoded
    bool m_ended = false;
    bool m_flushed = false;
};

// In frames of the result.
struct TransitionSpan {
    std::int64_t begin;
    std::int64_t end;
    std::int64_t all;
    AVRational rate;
};

class SoundMix {
public:
    // The stream of sound that the result's is like; null if there is none.
    static const AVStream* model(const Reader& first, const Reader& second);

    // Null if there is no sound, or the format takes none. The readers then pass theirs.
    static std::unique_ptr<SoundMix> make(Reader& first, Reader& second, const OutputFormat& format,
                                          const std::string& codec, const TransitionSpan& span);

    MadeSound describe() const { return {&m_encoder.context(), &m_like}; }

    // Packets of the two.
    void addFirst(PacketPtr packet) { m_first.sound->add(std::move(packet)); }
    void addSecond(PacketPtr packet) { m_second.sound->add(std::move(packet)); }

    // No further ones come.
    void endFirst() { m_first.end(); }
    void endSecond() { m_second.end(); }

    // The sound of as many frames, as far as its packets have come; once the first frames have.
    void mixUntil(std::int64_t frames, const SoundEncoder::Take& take);

    // All of it.
    void finish(const SoundEncoder::Take& take);

private:
    struct Source {
        Source(Reader& reader, const AVStream* stream, const SoundShape& shape);
        bool read(std::int64_t place, std::int64_t count);
        void end();

        const Reader& reader;
        std::optional<ClipSound> sound; // nothing: it is silent
        std::vector<double> samples;
    };

    SoundMix(Reader& first, Reader& second, const AVStream& like, const OutputFormat& format,
             const AVCodec& codec, const TransitionSpan& span);

    std::int64_t placeOf(std::int64_t frame) const;
    bool mix(std::int64_t count);
    bool readSources(std::int64_t count);

    const AVStream& m_like;
    SoundEncoder m_encoder;
    TransitionSpan m_span;
    std::int64_t m_begin, m_end; // of the transition, in samples
    Source m_first, m_second;
    SoundBlock m_mixed;
    std::int64_t m_place = 0; // of the next sample
};
