// The wipes: fifteen rows of a table over one loop that copies runs of pixels.
//
// Each wipe is a range of lines and a range of columns, worked out once a call, and a rule that
// tells which of the two frames has the pixels in both, and in one only. Edges are 32-bit products
// and differences that wrap.
#include "fx/kernel_args.h"
#include "fx/pixel_groups.h"
#include "zrdraw/platform/memory.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr unsigned long allNumbers = 1UL << 32;

// A run of lines or columns by their 32-bit numbers, which are a ring: behind the last comes 0.
struct Range {
    unsigned int first;
    unsigned long count;

    bool has(unsigned int at) const { return at - first < count; }

    // How many numbers from `at` on are in the range, or out of it, as that one is.
    unsigned long alikeFrom(unsigned int at) const {
        const unsigned int passed = at - first;
        return (passed < count ? count : allNumbers) - passed;
    }
};

// Half-open on the line of the numbers; empty where the end is not behind the first.
Range between(unsigned long first, unsigned long end) {
    return {static_cast<unsigned int>(first), end > first ? end - first : 0};
}

// The size of a frame in one direction, and how far the transition is.
struct Axis {
    unsigned int size, position, scale;

    unsigned int edge() const { return size * position / scale; }
    unsigned int halfEdge() const { return (size >> 1) * position / scale; }
    unsigned int farEdge() const { return size - edge(); }
};

Range everywhere(const Axis&) {
    return {0, allNumbers};
}

// at < edge
Range beforeEdge(const Axis& axis) {
    return {0, axis.edge()};
}

// at > edge
Range behindEdge(const Axis& axis) {
    return between(axis.edge() + 1UL, allNumbers);
}

// at < size - edge
Range beforeFarEdge(const Axis& axis) {
    return {0, axis.farEdge()};
}

// at > size - edge
Range behindFarEdge(const Axis& axis) {
    return between(axis.farEdge() + 1UL, allNumbers);
}

// size - at <= edge, the difference being one that wraps
Range withinEdgeOfEnd(const Axis& axis) {
    return {axis.farEdge(), axis.edge() + 1UL};
}

// size - at < edge, likewise
Range closerThanEdgeToEnd(const Axis& axis) {
    return {axis.farEdge() + 1, axis.edge()};
}

// halfEdge < at, and at < size - halfEdge
Range middle(const Axis& axis) {
    const unsigned int edge = axis.halfEdge(), farEdge = axis.size - edge;
    return between(edge + 1UL, farEdge);
}

// at >= centre - halfEdge, and at <= halfEdge + size - centre
Range aboutCentre(const Axis& axis) {
    const unsigned int edge = axis.halfEdge(), centre = axis.size >> 1;
    const unsigned int first = centre - edge, last = edge + axis.size - centre;
    return between(first, last + 1UL);
}

// at > centre - halfEdge, and at < halfEdge + size - centre
Range withinCentre(const Axis& axis) {
    const unsigned int edge = axis.halfEdge(), centre = axis.size >> 1;
    const unsigned int before = centre - edge, end = edge + axis.size - centre;
    return between(before + 1UL, end);
}

enum class Incoming {
    InBoth,    // where line and column are in their ranges
    NotInBoth, // everywhere else
    InNeither  // where neither is
};

struct Wipe {
    Range (*lines)(const Axis&);
    Range (*columns)(const Axis&);
    Incoming incoming;
};

// Copies the columns of a band, those of the range from one source and the others from the other.
void copyLine(unsigned char* to, const unsigned char* inside, const unsigned char* outside,
              const Range& range, const KernelArgs& band, unsigned long pixelBytes) {
    for (unsigned long x = band.xStart; x < band.xEnd;) {
        const auto column = static_cast<unsigned int>(x);
        const unsigned char* const from = range.has(column) ? inside : outside;
        const unsigned long pixels = std::min(range.alikeFrom(column), band.xEnd - x);
        if (from != to) // else it is drawn over this source, where the pixels are already
            std::memcpy(to + x * pixelBytes, from + x * pixelBytes, pixels * pixelBytes);
        x += pixels;
    }
}

unsigned int draw(const Wipe& wipe, const KernelArgs& args) {
    const PixelGroup group = pixelGroup(args.pixelType);
    if (!group.isKnown())
        return 0;
    const Range lines = wipe.lines({args.height, args.position, args.scale()});
    const Range columns = wipe.columns({args.width, args.position, args.scale()});
    constexpr Range nowhere{0, 0}, all{0, allNumbers};
    const bool incomingInside = wipe.incoming == Incoming::InBoth;
    const bool whole = wipe.incoming == Incoming::InNeither;
    for (unsigned int y = args.yStart; y < args.yEnd; ++y) {
        const FrameLines frame(args, y);
        const bool inLines = lines.has(y);
        const Range& range = whole ? (inLines ? all : columns) : (inLines ? columns : nowhere);
        if (incomingInside)
            copyLine(frame.destination, frame.incoming, frame.outgoing, range, args, group.bytes);
        else
            copyLine(frame.destination, frame.outgoing, frame.incoming, range, args, group.bytes);
    }
    return 0;
}

// Whole lines, in the threads of the left bands only. By contract: a line of the incoming frame has
// the first source's pitch for its length, one of the outgoing frame the second's.
unsigned int drawVertical(const KernelArgs& args) {
    if (!pixelGroup(args.pixelType).isKnown() || args.xStart != 0 || args.yStart >= args.yEnd)
        return 0;
    const Range incoming = beforeEdge({args.height, args.position, args.scale()});
    for (unsigned int y = args.yStart; y < args.yEnd; ++y) {
        const FrameLines frame(args, y);
        if (incoming.has(y))
            CopyMemoryFast(frame.destination, frame.incoming, args.pitchA);
        else
            CopyMemoryFast(frame.destination, frame.outgoing, args.pitchB);
    }
    return 0;
}

} // namespace

#define ZRFX_WIPE(name, lines, columns, incoming)                                                  \
    unsigned int zrfxSMPTE_##name(ZRFX_PARAMETERS) {                                               \
        return draw({lines, columns, Incoming::incoming}, ZRFX_ARGUMENTS);                         \
    }

ZRFX_WIPE(Horizontal, everywhere, beforeEdge, InBoth)
ZRFX_WIPE(TopLeft, beforeEdge, beforeEdge, InBoth)
ZRFX_WIPE(TopRight, beforeEdge, withinEdgeOfEnd, InBoth)
ZRFX_WIPE(BottomRight, behindFarEdge, behindFarEdge, InBoth)
ZRFX_WIPE(BottomLeft, closerThanEdgeToEnd, beforeEdge, InBoth)
ZRFX_WIPE(FourCorners, middle, middle, InNeither)
ZRFX_WIPE(FourSquare, middle, middle, NotInBoth)
ZRFX_WIPE(BarnDoorVertical, everywhere, middle, NotInBoth)
ZRFX_WIPE(BarnDoorHorizontal, middle, everywhere, NotInBoth)
ZRFX_WIPE(TopCenter, beforeFarEdge, middle, NotInBoth)
ZRFX_WIPE(RightCenter, middle, behindEdge, NotInBoth)
ZRFX_WIPE(BottomCenter, behindEdge, middle, NotInBoth)
ZRFX_WIPE(LeftCenter, middle, beforeFarEdge, NotInBoth)
ZRFX_WIPE(Rectangle, withinCentre, aboutCentre, InBoth)

unsigned int zrfxSMPTE_Vertical(ZRFX_PARAMETERS) {
    return drawVertical(ZRFX_ARGUMENTS);
}
