// A stream of sound in another codec.
#pragma once

#include "sound/sound.h"

#include <cstdint>
#include <deque>
#include <limits>

// What is taken of the sound, in times of the file in base `base`.
struct SoundWindow {
    std::int64_t origin = 0; // which the result's times are counted from
    AVRational base{1, 1};
    std::int64_t from = std::numeric_limits<std::int64_t>::min();
    std::int64_t to = std::numeric_limits<std::int64_t>::max(); // as far as it is known
};

class SoundTranscoder {
public:
    SoundTranscoder(const Input& input, const AVStream& from, const AVCodec& codec,
                    const AVOutputFormat& muxer)
        : m_encoder(codec, muxer, *from.codecpar), m_decoder(input, from, m_encoder.shape()) {}

    const AVCodecContext& context() const { return m_encoder.context(); }

    // The next packet, or null at the end. What lies behind the window waits for it to grow.
    void transcode(const AVPacket* packet, const SoundWindow& window,
                   const SoundEncoder::Take& take);

private:
    void encode(SoundBlock block, const SoundWindow& window, const SoundEncoder::Take& take);

    SoundEncoder m_encoder;
    SoundDecoder m_decoder;
    std::deque<SoundBlock> m_waiting;
};
