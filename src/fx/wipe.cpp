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

// A half-open range of lines or columns; 64 bits, so that one behind the last number has a place.
struct Range {
    unsigned long first, end;

    bool has(unsigned int at) const { return at >= first && at < end; }
};

constexpr unsigned long unbounded = 1UL << 32;

// The size of a frame in one direction, and how far the transition is.
struct Axis {
    unsigned int size, position, scale;

    unsigned int edge() const { return size * position / scale; }
    unsigned int halfEdge() const { return (size >> 1) * position / scale; }
};

// Wrapped differences are 32-bit numbers.
unsigned int wrapped(unsigned long value) {
    return static_cast<unsigned int>(value);
}

Range everywhere(const Axis&) {
    return {0, unbounded};
}

// at < edge
Range beforeEdge(const Axis& axis) {
    return {0, axis.edge()};
}

// at > edge
Range behindEdge(const Axis& axis) {
    return {axis.edge() + 1UL, unbounded};
}

// at < size - edge
Range beforeFarEdge(const Axis& axis) {
    return {0, wrapped(axis.size - axis.edge())};
}

// at > size - edge
Range behindFarEdge(const Axis& axis) {
    return {wrapped(axis.size - axis.edge()) + 1UL, unbounded};
}

// size - at <= edge
Range withinEdgeOfEnd(const Axis& axis) {
    const unsigned int edge = axis.edge();
    return {axis.size - std::min(edge, axis.size), axis.size + 1UL};
}

// size - at < edge
Range closerThanEdgeToEnd(const Axis& axis) {
    const unsigned int edge = axis.edge();
    return {edge > axis.size ? 0 : axis.size - edge + 1UL, axis.size + 1UL};
}

// halfEdge < at, and at < size - halfEdge
Range middle(const Axis& axis) {
    const unsigned int edge = axis.halfEdge();
    return {edge + 1UL, wrapped(axis.size - edge)};
}

// at >= centre - halfEdge, and at <= halfEdge + size - centre
Range aboutCentre(const Axis& axis) {
    const unsigned int edge = axis.halfEdge();
    const unsigned int centre = axis.size >> 1;
    return {wrapped(centre - edge), wrapped(edge + axis.size - centre) + 1UL};
}

// at > centre - halfEdge, and at < halfEdge + size - centre
Range withinCentre(const Axis& axis) {
    const unsigned int edge = axis.halfEdge();
    const unsigned int centre = axis.size >> 1;
    return {wrapped(centre - edge) + 1UL, wrapped(edge + axis.size - centre)};
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

constexpr Wipe horizontal{everywhere, beforeEdge, Incoming::InBoth};
constexpr Wipe topLeft{beforeEdge, beforeEdge, Incoming::InBoth};
constexpr Wipe topRight{beforeEdge, withinEdgeOfEnd, Incoming::InBoth};
constexpr Wipe bottomRight{behindFarEdge, behindFarEdge, Incoming::InBoth};
constexpr Wipe bottomLeft{closerThanEdgeToEnd, beforeEdge, Incoming::InBoth};
constexpr Wipe rectangle{withinCentre, aboutCentre, Incoming::InBoth};
constexpr Wipe fourCorners{middle, middle, Incoming::InNeither};
constexpr Wipe fourSquare{middle, middle, Incoming::NotInBoth};
constexpr Wipe barnDoorVertical{everywhere, middle, Incoming::NotInBoth};
constexpr Wipe barnDoorHorizontal{middle, everywhere, Incoming::NotInBoth};
constexpr Wipe topCenter{beforeFarEdge, middle, Incoming::NotInBoth};
constexpr Wipe bottomCenter{behindEdge, middle, Incoming::NotInBoth};
constexpr Wipe rightCenter{middle, behindEdge, Incoming::NotInBoth};
constexpr Wipe leftCenter{middle, beforeFarEdge, Incoming::NotInBoth};

// Copies the columns of a band, those of the range from one source and the others from the other.
void copyLine(unsigned char* to, const unsigned char* inside, const unsigned char* outside,
              const Range& range, const KernelArgs& band, unsigned long pixelBytes) {
    const unsigned long start = band.xStart, end = std::max(band.xEnd, band.xStart);
    const unsigned long first = std::clamp(range.first, start, end);
    const unsigned long last = std::clamp(range.end, first, end);
    const auto copy = [=](const unsigned char* from, unsigned long begin, unsigned long behind) {
        if (from == to) // drawn over one of its sources, where that source's pixels are already
            return;
        std::memcpy(to + begin * pixelBytes, from + begin * pixelBytes,
                    (behind - begin) * pixelBytes);
    };
    copy(outside, start, first);
    copy(inside, first, last);
    copy(outside, last, end);
}

unsigned int draw(const Wipe& wipe, const KernelArgs& args) {
    const PixelGroup group = pixelGroup(args.pixelType);
    if (!group.isKnown())
        return 0;
    const Range lines = wipe.lines({args.height, args.position, args.scale()});
    const Range columns = wipe.columns({args.width, args.position, args.scale()});
    constexpr Range nowhere{0, 0}, all{0, unbounded};
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

#define ZRFX_WIPE(name, row)                                                                       \
    extern "C" unsigned int zrfxSMPTE_##name(ZRFX_PARAMETERS) {                                    \
        return draw(row, ZRFX_ARGUMENTS);                                                          \
    }

ZRFX_WIPE(Horizontal, horizontal)
ZRFX_WIPE(TopLeft, topLeft)
ZRFX_WIPE(TopRight, topRight)
ZRFX_WIPE(BottomRight, bottomRight)
ZRFX_WIPE(BottomLeft, bottomLeft)
ZRFX_WIPE(FourCorners, fourCorners)
ZRFX_WIPE(FourSquare, fourSquare)
ZRFX_WIPE(BarnDoorVertical, barnDoorVertical)
ZRFX_WIPE(BarnDoorHorizontal, barnDoorHorizontal)
ZRFX_WIPE(TopCenter, topCenter)
ZRFX_WIPE(RightCenter, rightCenter)
ZRFX_WIPE(BottomCenter, bottomCenter)
ZRFX_WIPE(LeftCenter, leftCenter)
ZRFX_WIPE(Rectangle, rectangle)

extern "C" unsigned int zrfxSMPTE_Vertical(ZRFX_PARAMETERS) {
    return drawVertical(ZRFX_ARGUMENTS);
}
