// How loud sound is over time: one thread feeds it, another asks for a picture's part of it.
#pragma once

#include "common/meter_levels.h"

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <mutex>
#include <vector>

#include <gst/gst.h>

// Samples that follow each other, as amplitudes of 16 bits, channel by channel in turns.
struct LevelBlock {
    GstClockTime begin; // running time
    double rate;        // samples in a second of running time
    unsigned channels;
    std::vector<std::uint16_t> amplitudes;

    std::size_t samples() const { return amplitudes.size() / channels; }
    GstClockTime end() const;
    // The sample next to a running time; before and behind the block the nearest one.
    std::size_t sampleAt(GstClockTime time) const;
};

class LevelTrack {
public:
    // Sound will come; without this nobody waits for it. False: somebody else brings it already.
    bool begin();
    void feed(LevelBlock block);
    // There is nothing to hear up to a running time.
    void skipTo(GstClockTime time);
    // No more comes, until all times begin anew.
    void end();
    // All times begin anew.
    void reset();
    // Who brought the sound has gone.
    void leave();

    // Channels of the sound that came last; 0 before any.
    unsigned channels() const;

    struct Patience {
        std::chrono::nanoseconds most{0};
        bool everAnew = false; // also once it was in vain and no more sound has come since
    };

    // The peaks from `begin` up to but excluding `end`, once the sound has come so far or patience
    // has ended.
    MeterLevels between(GstClockTime begin, GstClockTime end, const Patience& patience);

    // Ends a wait, and lets no other begin until it is called again with false.
    void setImpatient(bool impatient);
    bool isImpatient() const;

private:
    static constexpr GstClockTime mostKept = 10 * GST_SECOND;

    void restart();
    void drop(GstClockTime before);

    mutable std::mutex m_mutex;
    std::condition_variable m_more;
    std::deque<LevelBlock> m_blocks;
    GstClockTime m_known = 0; // sound has come up to this running time
    unsigned m_channels = 0;
    bool m_isFed = false;
    bool m_ended = true;
    bool m_vain = false;
    bool m_impatient = false;
};
