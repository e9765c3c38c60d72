// A picture as it is blended onto frames of one layout: its samples in the frames' own order, each
// with a weight.
#pragma once

#include "common/picture_view.h"
#include "common/sample_rules.h"
#include "script/pictures/pictures.h"
#include "script/pictures/sample_groups.h"

#include <cstddef>
#include <cstdint>
#include <vector>

class BlendedPicture {
public:
    // Pixels that a layout keeps together: the place of a picture in them is part of its form.
    static int groupPixels(const zrLayout& layout);

    // `phase` is the column of the picture's first pixel in its group.
    void prepare(const ScriptPicture& picture, const zrLayout& layout, const MatrixRule& matrix,
                 int phase, double opacity);

    // Puts it onto a frame of the layout with its first pixel at (x, y), where x has the phase.
    // `alphaCounts` where alpha of the frame's pixels, if they have any, says how much they cover.
    void blend(const PictureView& frame, int x, int y, bool alphaCounts) const;

private:
    // Groups of a line that are wholly transparent belong to no run, and those of an opaque run
    // have no weights.
    struct Run {
        int line;
        int first; // group
        int count;
        bool opaque;
        std::size_t samples, weights; // where they begin
    };
    enum class Kind : std::uint8_t { Transparent, Soft, Opaque };

    void sortGroups();
    void appendRun(const ScriptPicture& picture, int line, int first, int end,
                   const SampleConversion& conversion);
    void readPixels(const ScriptPicture& picture, int line, int first, int end,
                    const SampleConversion& conversion);
    void blendRun(const PictureView& frame, const Run& run, unsigned char* line,
                  std::int64_t origin, bool alphaCounts) const;
    void blendGroups(unsigned char* under, const Run& run, std::size_t skipped, std::size_t count,
                     bool alphaCounts) const;
    void blendPart(unsigned char* under, const Run& run, std::size_t skipped, int pixels) const;

    const zrLayout* m_layout = nullptr;
    int m_phase = 0;
    std::vector<Run> m_runs;
    std::vector<std::uint8_t> m_samples;
    std::vector<std::int16_t> m_weights;

    // Of a line while it is made ready, in whole groups; pixels off the picture have the weight 0.
    std::vector<std::int16_t> m_lineWeights;
    std::vector<Kind> m_kinds;
    std::vector<WeightedPixel> m_pixels;
};
