// The display mux's modes by name, and one composed frame.
#pragma once

#include "common/picture_view.h"
#include "zrdraw/mux.h"
#include "zrdraw/wipes.h"

#include <span>
#include <string>

// What a mode moves as it is. Lines, and parts of lines, are moved in any layout in which they are
// words of 32 bits.
enum class MuxPieces { Pixels, Lines, PartsOfLines };

struct MuxModeName {
    unsigned mode; // with zrMuxSecondForm where that is another picture
    const char* name;
    const char* help;
    MuxPieces pieces = MuxPieces::Pixels; // these only in 32-bit RGB
};

std::span<const MuxModeName> muxModeNames();

// A name that does not exist is a UsageError that names near ones.
const MuxModeName& muxModeNamed(const std::string& name);

std::string listMuxModes();

// The parameters of ZRDraw_DisplayMuxRGBA beside its pictures.
struct MuxParameters {
    unsigned flags = 0;
    unsigned wipeCode = 0;
    unsigned position = 32768;
    unsigned param = 0;
    unsigned splitX = 0xFFFFFFFF; // beyond the picture: the middle
    unsigned splitY = 0xFFFFFFFF;
    unsigned gridMode = 0;
    unsigned gridX = 0;
    unsigned gridY = 0;
};

// What a user sets, from which the parameters follow.
struct MuxSettings {
    unsigned mode = zrMuxSplit;
    unsigned code = zrWipeHorizontal; // of the mode wipe
    double position = 0.5;            // of mix and wipe
    int split = -1;                   // column or line; below 0 the middle
    int gain = 1;                     // of difference
    int threshold = 16;               // of key
    int block = 16;                   // of blocks, pixels
    unsigned channels = 0;            // mask of channel; 0: the mean
    unsigned flips = 0;
    bool divider = false;
    bool swap = false;
};

// But for the grid, which each caller reads in its own way.
MuxParameters parametersOf(const MuxSettings& settings);

// Whether a picture in the layout can be composed: in 32-bit RGB always.
bool canMuxIn(const zrLayout& layout, MuxPieces pieces, const MuxParameters& parameters, int width);

// All in one layout that this can be done in, of one size and at wordPitch(). Flips change the
// sources.
void composeMux(const MuxParameters& parameters, const PictureView& a, const PictureView& b,
                const PictureView& result);
