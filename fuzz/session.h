// What one input of the draw fuzzer works on: a drawing object and its frame of the moment.
#pragma once

#include "guarded_frame.h"
#include "input.h"
#include "zrdraw/zrdraw.h"

#include <memory>

class Session {
public:
    Session(const zrLayout& layout, Input choices);

    Input input;
    ZRDraw& draw() { return *m_draw; }

    // Moves the object to a new frame of another size or, one time in eight, to none.
    void changeFrame();

    // A colour slot for an operation to write in; the foreground is true.
    bool slot();

    // A switch that makes foreground writes look at what is there.
    bool mixing();

    void notePaintedWhole();

    // Readers of these layouts test no coordinate.
    bool mayReadAnywhere() const { return !readsUntested(); }

    // A pixel on the canvas, for reads that do not test it; false without a canvas.
    bool pixelOnCanvas(_POINT& at);

    void checkFrame() { m_frame->check(m_linesApart); }

private:
    struct Release {
        void operator()(ZRDraw* draw) const { ReleaseDraw(draw); }
    };

    bool is32() const { return m_layout.code <= ptABGR32; }
    bool hasWords() const { return is32() || m_layout.code == ptRGB30DPX; }
    bool is24() const { return m_layout.code == ptRGB24 || m_layout.code == ptBGR24; }
    bool readsUntested() const { return m_layout.isMosaic() || m_layout.code == ptRGB30DPX; }
    bool hasPairs() const { return m_layout.pair.y0 >= 0; }
    // By contract: these take height, width and pitch with their signs.
    bool keepsSigns() const { return hasPairs() || m_layout.code >= ptUV8; }
    bool writesBehindLines(int width) const { return hasPairs() && width % 2 != 0; }
    void makeFrame();

    const zrLayout& m_layout;
    std::unique_ptr<GuardedFrame> m_frame;
    std::unique_ptr<ZRDraw, Release> m_draw;
    bool m_linesApart = true; // nothing so far may write behind the end of a line
};
