// The modes of the mux.
#pragma once

#include "mux/mux_args.h"

// Of single pixels: pixel_modes.cpp
void muxAnaglyph(const MuxArgs& m);
void muxHalves(const MuxArgs& m);
void muxByte0(const MuxArgs& m);
void muxBytes02(const MuxArgs& m);
void muxAverage(const MuxArgs& m);
void muxDifference(const MuxArgs& m);
void muxKey(const MuxArgs& m);
void muxMix(const MuxArgs& m);
void muxChannel(const MuxArgs& m);

// Of whole lines and runs: area_modes.cpp
void muxInterleave(const MuxArgs& m);
void muxFields(const MuxArgs& m);
void muxSplit(const MuxArgs& m);
void muxMirror(const MuxArgs& m);
void muxChecker(const MuxArgs& m);
void muxBlocks(const MuxArgs& m);

// Of smaller pictures side by side: window_modes.cpp
void muxSqueeze(const MuxArgs& m);
void muxTwoUp(const MuxArgs& m);
void muxWindows(const MuxArgs& m);
