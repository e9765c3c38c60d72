// How loud each channel of sound is, picture by picture.
#pragma once

#include "common/meter_levels.h"
#include "media/av.h"

#include <map>
#include <vector>

class AudioLevels {
public:
    static constexpr std::size_t mostChannels = 16;

    // Channels are counted through all streams, in order.
    explicit AudioLevels(const std::vector<AVStream*>& streams);

    // How many channels there are, the most at most.
    unsigned channels() const { return m_channels; }

    // The streams by their indexes in the file.
    std::vector<int> streams() const;

    void feed(const AVPacket& packet);

    // Of the time up to but excluding `seconds`, since the last call.
    MeterLevels takeUntil(double seconds);

private:
    // Samples that no picture has taken yet, channel by channel in turns.
    struct Stream {
        CodecPtr decoder;
        AVRational timeBase{0, 1};
        std::size_t firstChannel = 0;
        std::size_t channels = 0;
        double begin = 0.0; // of the waiting samples, seconds
        std::vector<float> waiting;
    };

    void take(Stream& stream, const AVFrame& frame);

    std::map<int, Stream> m_streams; // by index in the file
    unsigned m_channels = 0;
    FramePtr m_frame;
};
