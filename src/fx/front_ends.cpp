// Transitions of 4:2:2 frames, by way of planes of three bytes a pixel in one scratch allocation.
#include "fx/kernel_args.h"
#include "fx/planes.h"
#include "zrdraw/layouts.h"
#include "zrdraw/platform/files.h"
#include "zrdraw/platform/memory.h"
#include "zrdraw/platform/threads.h"

#include <algorithm>
#include <cstdint>

namespace {

constexpr unsigned int failed = 0xFFFFFFFFU;
constexpr unsigned int planeAlignment = 512;
constexpr unsigned int planeSlack = 3072;

// By contract: both front ends say the same name.
constexpr const char* noMemory = "No Memory ZRDraw_DisplayWipeYCbCr";

// The calling thread runs at priority 15 while a front end works.
class Priority {
public:
    Priority() : m_thread(zrOSGetCurrentThread()), m_before(zrOSGetThreadPriority(m_thread)) {
        constexpr int during = 15;
        zrOSSetThreadPriority(m_thread, during);
    }
    void restore() { zrOSSetThreadPriority(m_thread, m_before); }

private:
    void* m_thread;
    int m_before;
};

template <typename Number>
Number roundedUp(Number value) {
    return (value + planeAlignment - 1) / planeAlignment * planeAlignment;
}

// Three planes in one allocation, as addresses that wrap: a pointer that is not null stays so for
// the compiler, whatever is added to it. Sizes are 32-bit numbers that wrap.
struct Planes {
    Planes(const unsigned char* memory, unsigned int pixels)
        : first(roundedUp(reinterpret_cast<std::uintptr_t>(memory))),
          second(first + roundedUp(PlaneCopy::pixelBytes * pixels)),
          result(second + roundedUp(PlaneCopy::pixelBytes * pixels)) {}

    bool arePlaced() const { return first != 0 && second != 0 && result != 0; }

    std::uintptr_t first, second, result;
};

unsigned char* bytesAt(std::uintptr_t address) {
    return reinterpret_cast<unsigned char*>(address);
}

unsigned int scratchBytes(unsigned int pixels) {
    return 3 * PlaneCopy::pixelBytes * pixels + planeSlack;
}

// By contract: no message when the allocator throws, and the priority stays raised.
bool allocate(unsigned int bytes, unsigned char*& memory) {
    try {
        memory = static_cast<unsigned char*>(ZRAlloc(bytes));
        return true;
    } catch (...) {
        return false;
    }
}

unsigned int wipePlanes(KernelArgs f, const Planes& planes) {
    f.srcA = bytesAt(planes.first);
    f.srcB = bytesAt(planes.second);
    f.dst = bytesAt(planes.result);
    f.pitchA = f.pitchB = f.pitchDst = f.width * PlaneCopy::pixelBytes;
    f.pixelType = zrWipeByte3;
    return callWith(ZRDraw_DisplayWipe, f);
}

// What the two front ends differ in.
struct Layout {
    void (*expand)(const PlaneCopy&);
    void (*pack)(const PlaneCopy&);
};

void expandSources(const Layout& layout, const KernelArgs& f, const Planes& planes) {
    layout.expand({f.srcA, f.pitchA, bytesAt(planes.first), f.width, f.height});
    layout.expand({f.srcB, f.pitchB, bytesAt(planes.second), f.width, f.height});
}

void packResult(const Layout& layout, const KernelArgs& f, const Planes& planes) {
    layout.pack({f.dst, f.pitchDst, bytesAt(planes.result), f.width, f.height});
}

// The frame of a transition through planes. `wipe` answers whether there is a result to pack.
template <typename Wipe>
unsigned int throughPlanes(const Layout& layout, const KernelArgs& f, Wipe wipe) {
    Priority priority;
    const unsigned int pixels = f.width * f.height;
    unsigned char* memory = nullptr;
    if (!allocate(scratchBytes(pixels), memory))
        return failed;
    const Planes planes(memory, pixels);
    if (memory == nullptr || !planes.arePlaced()) {
        if (memory != nullptr)
            ZRFree(memory);
        ErrOut(noMemory);
        priority.restore();
        return failed;
    }
    expandSources(layout, f, planes);
    unsigned int result = 0;
    if (wipe(planes, result))
        packResult(layout, f, planes);
    ZRFree(memory);
    priority.restore();
    return result;
}

constexpr Layout pairs{expandPairs, packPairs};
constexpr Layout groups{expandGroups, packGroups};

} // namespace

unsigned int ZRDraw_DisplayWipeYCbCr(ZRFX_FRAME_PARAMETERS) {
    const KernelArgs f = ZRFX_FRAME_ARGUMENTS;
    return throughPlanes(pairs, f, [&f](const Planes& planes, unsigned int& result) {
        try {
            result = wipePlanes(f, planes);
            return true;
        } catch (...) {
            ErrOut("Exception Error ZRDraw_DisplayWipeYCbCr");
            return false;
        }
    });
}

// By contract: an exception of the transition passes, and the memory is lost.
unsigned int ZRDraw_DisplayWipeV210(ZRFX_FRAME_PARAMETERS) {
    KernelArgs f = ZRFX_FRAME_ARGUMENTS;
    const unsigned int line = zrLineBytes(zrFindLayout(ptV210)->line, width);
    for (unsigned int* pitch : {&f.pitchA, &f.pitchB, &f.pitchDst})
        *pitch = std::max(*pitch, line);
    return throughPlanes(groups, f, [&f](const Planes& planes, unsigned int& result) {
        result = wipePlanes(f, planes);
        return true;
    });
}
