// The dissolve.
#include "fx/kernel_args.h"
#include "fx/mix.h"

unsigned int zrfxDISSOLVE2(ZRFX_PARAMETERS) {
    const KernelArgs args = ZRFX_ARGUMENTS;
    const PixelGroup group = pixelGroup(pixelType);
    if (!group.isKnown() || xEnd <= xStart)
        return 0;
    const Mix mix = chooseMix(group.type, static_cast<double>(position) / args.scale());
    const std::size_t start = std::size_t{xStart} * group.bytes;
    const std::size_t bytes = std::size_t{xEnd - xStart} * group.bytes;
    for (unsigned int y = yStart; y < yEnd; ++y) {
        const FrameLines line(args, y), next(args, y + 1);
        mix(line.destination + start, line.incoming + start, line.outgoing + start, bytes,
            {next.destination + start, next.incoming + start, next.outgoing + start});
    }
    return 0;
}

unsigned int zrfxDISSOLVE(ZRFX_PARAMETERS) {
    return pixelGroup(pixelType).isKnown() ? zrfxDISSOLVE2(ZRFX_VALUES) : 0;
}
