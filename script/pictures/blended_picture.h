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
                 int phase);

    // Puts it onto a frame of the layout with its first pixel at (x, y), where x has the phase.
    // `opacity` is a weight. `alphaCounts` where alpha of the frame's pixels, if they have any,
    // says how much they cover.
    void blend(const PictureView& frame, int x, int y, int opacity, bool alphaCounts);

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
    // How much of it shows on the frame at hand.
    struct Manner {
        int opacity;
        bool alphaCounts;
    };
    void blendRun(const PictureView& frame, const Run& run, unsigned char* line,
                  std::int64_t origin, Manner manner);
    void blendGroups(unsigned char* under, const Run& run, std::size_t skipped, std::size_t count,
                     Manner manner);
    void blendPart(unsigned char* under, const Run& run, std::size_t skipped, int pixels,
                   int opacity) const;
    const std::int16_t* fadedWeights(const std::int16_t* weights, std::size_t count, int opacity);

    const zrLayout* m_layout = nullptr;
    int m_phase = 0;
    std::vector<Run> m_runs;
    std::vector<std::uint8_t> m_samples;
    std::vector<std::int16_t> m_weights;

    std::vector<std::int16_t> m_faded; // of a run

    // Of a line while it is made ready, in whole groups; pixels off the picture have the weight 0.
    std::vector<std::int16_t> m_lineWeights;
    std::vector<Kind> m_kinds;
    std::vector<WeightedPixel> m_pixels;
};
