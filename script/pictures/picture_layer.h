// A picture on frames in their own layout.
#pragma once

#include "common/picture_view.h"
#include "script/pictures/blended_picture.h"
#include "script/pictures/pictures.h"
#include "script/pictures/stamped_picture.h"
#include "zrdraw/zrdraw.h"

#include <memory>

// Whether alpha of a frame's pixels says how much they cover. Formats that have a byte of nothing
// in its place share a layout with those that have alpha.
enum class FrameAlpha { Counts, Unused };

// Whether any of a picture there is on the frame.
bool isOnFrame(const PictureView& frame, int x, int y, int width, int height);

// One image command's picture, made ready for the frames it goes on. What was made stays as long as
// it is of use, so that a picture that stands still costs nothing but the blend.
class PictureLayer {
public:
    // Puts the picture with its left top pixel at (x, y); any part of it off the frame is left out.
    // Width and height are what it is scaled to, 0 is its own. `draw` is the object that draws on
    // the frame, whose matrix mode says how Y, Cb and Cr stand for colours; it is not changed.
    void put(ZRDraw& draw, const PictureView& frame,
             const std::shared_ptr<const ScriptPicture>& picture, int x, int y, int width,
             int height, double opacity, FrameAlpha alpha = FrameAlpha::Counts);

private:
    // What a picture was made ready for.
    struct Form {
        const zrLayout* layout = nullptr;
        cmYCbCr mode = cmRec601;
        int phase = 0;      // of its first column among the pixels that the layout keeps together
        double opacity = 0; // where it decides which pixels are left out, else 1
        bool operator==(const Form&) const = default;
    };

    void take(const std::shared_ptr<const ScriptPicture>& picture, int width, int height);
    void prepare(const Form& form);

    std::shared_ptr<const ScriptPicture> m_picture; // as it came
    std::shared_ptr<const ScriptPicture> m_scaled;
    Form m_form; // without a layout if nothing was made
    BlendedPicture m_blended;
    StampedPicture m_stamped;
};

// Whether alpha is blended in a layout; else pixels with alpha * opacity of at least one half are
// opaque and the others are left out.
bool blendsPictures(const zrLayout& layout);
