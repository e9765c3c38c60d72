#include "script/pictures/picture_layer.h"

#include "script/pictures/picture_scaler.h"
#include "script/pictures/sample_groups.h"

#include <algorithm>
#include <cstdint>

namespace {

// Whether any of `count` pixels from `first` on is among those from 0 to `end`.
bool overlaps(int first, int count, int end) {
    return first < end && std::int64_t{first} + count > 0;
}

const MatrixRule& matrixRuleOf(cmYCbCr mode) {
    const MatrixRule* rule = findMatrixRule(mode);
    return rule ? *rule : *matrixRules;
}

int phaseOf(int x, int pixels) {
    return (x % pixels + pixels) % pixels;
}

} // namespace

bool isOnFrame(const PictureView& frame, int x, int y, int width, int height) {
    return overlaps(x, width, frame.width) && overlaps(y, height, frame.height);
}

bool blendsPictures(const zrLayout& layout) {
    return hasSampleGroups(layout);
}

void PictureLayer::put(ZRDraw& draw, const PictureView& frame,
                       const std::shared_ptr<const ScriptPicture>& picture, int x, int y, int width,
                       int height, double opacity, FrameAlpha alpha) {
    const int columns = width == 0 ? picture->width : width;
    const int lines = height == 0 ? picture->height : height;
    if (!isOnFrame(frame, x, y, columns, lines))
        return;
    take(picture, columns, lines);
    const zrLayout& layout = *frame.layout;
    const bool blends = blendsPictures(layout);
    const int phase = blends ? phaseOf(x, BlendedPicture::groupPixels(layout)) : 0;
    const double shown = std::clamp(opacity, 0.0, 1.0);
    prepare({&layout, draw.yCbCrMode, phase, blends ? 1.0 : shown});
    if (blends)
        m_blended.blend(frame, x, y, opacityWeight(shown), alpha == FrameAlpha::Counts);
    else
        m_stamped.stamp(frame, x, y);
}

void PictureLayer::take(const std::shared_ptr<const ScriptPicture>& picture, int width,
                        int height) {
    if (picture == m_picture && m_scaled->width == width && m_scaled->height == height)
        return;
    m_form = {};
    m_scaled = width == picture->width && height == picture->height
                   ? picture
                   : std::make_shared<const ScriptPicture>(scaled(*picture, width, height));
    m_picture = picture;
}

void PictureLayer::prepare(const Form& form) {
    if (form == m_form)
        return;
    m_form = {};
    if (blendsPictures(*form.layout))
        m_blended.prepare(*m_scaled, *form.layout, matrixRuleOf(form.mode), form.phase);
    else
        m_stamped.prepare(m_scaled, *form.layout, form.mode, form.opacity);
    m_form = form;
}
