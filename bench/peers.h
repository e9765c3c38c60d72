// Other libraries that do comparable work. Each has a file peer_NAME.cpp, built only where the
// library is found, which puts itself on one of these lists before main starts.
#pragma once

#include "comparison.h"
#include "fixtures.h"

// Lays a whole picture over a frame.
struct BlendPeer {
    const char* name;
    Job (*over)(Frame& dst, Frame& src);
};

struct DrawPeer {
    const char* line;
    const char* smoothLine;
    const char* label;
    Job (*drawLine)(Frame& frame, _POINT from, _POINT to, bool smooth);
    Job (*drawLabel)(Frame& frame, _POINT bottomLeft, const char* text, int scale, int stroke);
};

enum class Ink { Outline, Filled };

// Shapes and areas on a frame of 32-bit pixels.
struct AreaPeer {
    const char* circle;
    const char* ellipse;
    const char* rectangle;
    const char* flood;
    Job (*drawCircle)(Frame& frame, _POINT centre, int radius, Ink ink);
    Job (*drawEllipse)(Frame& frame, _POINT centre, int rx, int ry);
    Job (*fillRectangle)(Frame& frame, const RECT& rect); // both corners belong to it
    Job (*floodFrame)(Frame& frame, _POINT seed);         // in two colours by turns
};

// Mixes two pictures of 32-bit pixels into a third.
struct MixPeer {
    const char* name;
    bool isExact; // weighs in more than eight bits
    Job (*mix)(unsigned char* to, unsigned char* a, unsigned char* b, int width, int height,
               double weight);
};

template <typename Peer>
std::vector<Peer>& peers() {
    static std::vector<Peer> list;
    return list;
}

// Exists to be constructed: adds a peer to its list.
template <typename Peer>
struct AddPeer {
    explicit AddPeer(Peer peer) { peers<Peer>().push_back(peer); }
};
