// A picture as it is put onto frames of a layout where nothing is blended: its pixels of at least
// half the opacity, and nothing of the others.
#pragma once

#include "common/picture_view.h"
#include "script/pictures/pictures.h"
#include "zrdraw/zrdraw.h"

#include <memory>
#include <vector>

class StampedPicture {
public:
    void prepare(const std::shared_ptr<const ScriptPicture>& picture, const zrLayout& layout,
                 cmYCbCr mode, double opacity);

    // Puts it onto a frame of the layout with its first pixel at (x, y).
    void stamp(const PictureView& frame, int x, int y);

private:
    struct Run {
        int line;
        int first; // pixel
        int count;
    };
    struct Release {
        void operator()(ZRDraw* draw) const { ReleaseDraw(draw); }
    };

    void findRuns(double opacity);
    void drawOnCanvas();
    void drawRun(const Run& run, int from, int to, int x, int y);

    std::shared_ptr<const ScriptPicture> m_picture;
    const zrLayout* m_layout = nullptr;
    std::vector<Run> m_runs;
    std::vector<unsigned char> m_canvas; // empty where pixels are no whole bytes
    std::unique_ptr<ZRDraw, Release> m_draw;
};
