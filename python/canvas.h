// The class Draw of the module: a drawing object on an array that it keeps alive.
#pragma once

#include "python/frame_array.h"
#include "zrdraw/zrdraw.h"

#include <memory>
#include <mutex>

class Canvas {
public:
    Canvas(const py::array& array, const std::string& layout, std::optional<int> width);

    // Works on the drawing object, which one thread at a time has; other threads of Python run
    // meanwhile.
    template <typename Work>
    auto with(Work work) {
        const py::gil_scoped_release released;
        const std::lock_guard<std::mutex> lock(m_mutex);
        return work(*m_draw);
    }

    // Whether an operation was done and not refused.
    template <typename Operation>
    bool run(Operation operation) {
        return with(operation) == 0;
    }

    const py::array& array() const { return m_frame.array; }
    const zrLayout& layout() const { return *m_frame.view.layout; }
    int width() const { return m_frame.view.width; }
    int height() const { return m_frame.view.height; }
    int pitch() const { return m_frame.view.pitch; }

    // Whether lines follow each other without gaps, as which fills of a whole 32-bit canvas take
    // them.
    bool isPacked() const;

    // Refuses what writes four bytes a pixel on a 24-bit array without the room for it: the
    // background slot, blends and additions.
    void requireRoom(bool isNeeded) const;

    // Readers do not test coordinates in every layout. Off the canvas is an IndexError.
    void requireInside(Coordinate x, Coordinate y) const;

private:
    struct Release {
        void operator()(ZRDraw* draw) const { ReleaseDraw(draw); }
    };

    FrameArray m_frame;
    std::unique_ptr<ZRDraw, Release> m_draw;
    std::mutex m_mutex;
};

using CanvasClass = py::class_<Canvas>;
CanvasClass bindCanvas(py::module_& module);
void bindState(CanvasClass& canvas);
void bindPixels(CanvasClass& canvas);
void bindLines(CanvasClass& canvas);
void bindCurves(CanvasClass& canvas);
void bindAreas(CanvasClass& canvas);
void bindText(CanvasClass& canvas);

// An operation whose numbers are all coordinates.
template <typename... Number>
auto byCoordinates(int (ZRDraw::*operation)(Number...)) {
    return [operation](Canvas& canvas, std::conditional_t<true, Coordinate, Number>... numbers) {
        return canvas.run([&](ZRDraw& draw) { return (draw.*operation)(numbers.value...); });
    };
}

// An operation through points.
inline auto byPoints(int (ZRDraw::*operation)(const _POINT*, unsigned int)) {
    return [operation](Canvas& canvas, const Points& points) {
        return canvas.run([&](ZRDraw& draw) {
            return (draw.*operation)(points.points.data(),
                                     static_cast<unsigned>(points.points.size()));
        });
    };
}
