#include "zrdraw/layouts.h"
#include "zrdraw/span.h"
#include "zrdraw/zrdraw.h"

namespace {

// Codes 15 and 16 are relatives of v210 that no class serves; they are only sized.
constexpr unsigned int sizedAs(unsigned int code) {
    return code == 15 || code == 16 ? static_cast<unsigned int>(ptV210) : code;
}

} // namespace

unsigned int GetDrawSize(unsigned int pixelType, int width, int height, int pitch) {
    if (width < 1 || height == 0)
        return 0;
    const zrLayout* layout = zrFindLayout(sizedAs(pixelType));
    // By contract: the Bayer layouts have no size by code, although they have a line length.
    if (layout == nullptr || !layout->has(zrSizedByCode))
        return 0;
    const unsigned int lines = static_cast<unsigned int>(height < 0 ? -height : height);
    // By contract: a pitch below the natural line is taken at its word here; SetCanvas raises it.
    const unsigned int lineBytes =
        pitch > 0 ? static_cast<unsigned int>(pitch)
                  : zrLineBytes(layout->line, static_cast<unsigned int>(width));
    return lines * lineBytes;
}

unsigned int zrdraw_packed_pixel_bytes(unsigned int pixelType) {
    const zrLayout* layout = zrFindLayout(pixelType);
    return layout != nullptr && layout->has(zrPackedRuns) ? layout->line.groupBytes : 0;
}
