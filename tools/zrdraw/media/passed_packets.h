// The packets of streams that pass through as they are, cut to the time of the frames that are
// taken.
#pragma once

#include "media/frame.h"
#include "media/input.h"

#include <deque>
#include <map>
#include <optional>
#include <set>
#include <vector>

class PassedPackets {
public:
    // All of them pass, at once, unless a range is taken.
    explicit PassedPackets(const Input& input) : m_input(input) {}

    void takeRange() { m_whole = false; }

    void choose(const std::vector<int>& streams);

    // Of those among them that are decoded later, packets from a little before the range on pass
    // too, and whole ones at its ends.
    void leadIn(const std::vector<int>& streams) { m_decoded = {streams.begin(), streams.end()}; }

    bool passes(int stream) const { return m_ends.contains(stream); }

    void add(PacketPtr packet);

    // What is known of the range, as frames are read: the time of a frame before it, of its first,
    // of one in it, of the first behind it. In the time base of the pictures.
    void frameBefore(std::int64_t time);
    void begin(std::int64_t time);
    void frameWithin(std::int64_t time);
    void end(std::int64_t time);

    // Whether sound of the range may still come, behind its last picture in the file.
    bool awaitsMore() const;

    // Moves what is known to lie in the range to the end of `ready`; at the end of the file all.
    void release(std::deque<Item>& ready, bool fileEnded);

private:
    bool endsBefore(const AVPacket& packet, std::int64_t time) const;
    int compare(const AVPacket& packet, std::int64_t time) const;
    bool cut(AVPacket& packet) const;
    bool cutSamples(AVPacket& packet, std::int64_t bytesPerSample) const;
    std::int64_t firstSampleFrom(const AVPacket& packet, std::int64_t time) const;

    const Input& m_input;
    bool m_whole = true;
    std::map<int, std::int64_t> m_ends; // where each stream's last packet ended, in its time base
    std::set<int> m_decoded;
    std::deque<PacketPtr> m_waiting;
    std::int64_t m_seen = INT64_MIN; // the latest frame's time
    std::optional<std::int64_t> m_from;
    std::optional<std::int64_t> m_to;
};
