#include "python/frame_array.h"

#include "common/layout_names.h"

#include <fmt/format.h>

#include <limits>
#include <vector>

namespace {

// How an array holds a layout.
struct Form {
    const char* type; // as numpy writes it
    const char* name; // and as people do
    int itemBytes;
    int channels; // of a pixel; 0: an array of lines, by their bytes
};

constexpr Form bytes(unsigned channels) {
    return {"|u1", "uint8", 1, static_cast<int>(channels)};
}

constexpr Form words(unsigned channels, const char* type = "<u2", const char* name = "uint16") {
    return {type, name, 2, static_cast<int>(channels)};
}

Form formOf(const zrLayout& layout) {
    const unsigned pixelBytes = layout.line.groupBytes;
    if (layout.bytes.r >= 0 || layout.code == ptUV8)
        return bytes(pixelBytes);
    if (layout.isPairs() || layout.isMosaic() || layout.code == ptV210)
        return bytes(0);
    if (layout.code == ptRGB30DPX)
        return {">u4", "big-endian uint32 ('>u4')", 4, 1};
    if (layout.code == ptRGBHalf48 || layout.code == ptRGBAHalf)
        return words(pixelBytes / 2, "<f2", "float16");
    return words(pixelBytes / 2);
}

std::string lineBytesText(const zrLayout& layout) {
    if (layout.isPairs())
        return "width * 2";
    return layout.isMosaic() ? "width * 3 / 2" : "128 for each started 48 pixels";
}

std::string shapeText(const py::array& array) {
    std::string text = py::str(array.dtype()).cast<std::string>() + "[";
    for (py::ssize_t i = 0; i < array.ndim(); ++i)
        text += fmt::format("{}{}", i == 0 ? "" : ", ", array.shape(i));
    return text + "]";
}

std::string expectation(const zrLayout& layout, const py::array& array) {
    return fmt::format("{} expects an array {}, got {}", layoutName(layout), expectedArray(layout),
                       shapeText(array));
}

bool isOfType(const py::array& array, const char* type) {
    return array.dtype().equal(py::dtype(type));
}

// v210 is words as well.
bool hasForm(const zrLayout& layout, const Form& form, const py::array& array) {
    const py::ssize_t dimensions = form.channels > 1 ? 3 : 2;
    const bool hasType =
        isOfType(array, form.type) || (layout.code == ptV210 && isOfType(array, "<u4"));
    if (!hasType)
        throw py::type_error(expectation(layout, array));
    return array.ndim() == dimensions && (dimensions < 3 || array.shape(2) == form.channels);
}

int widthOfLines(const zrLayout& layout, const py::array& array, std::optional<int> width) {
    const py::ssize_t lineBytes = array.shape(1) * array.itemsize();
    if (!width && layout.isPairs() && lineBytes % 2 == 0)
        width = static_cast<int>(lineBytes / 2);
    if (!width && layout.isMosaic() && lineBytes % 3 == 0)
        width = static_cast<int>(lineBytes / 3 * 2);
    if (!width)
        throw py::value_error(fmt::format("{}: lines of {} bytes do not tell how many pixels they "
                                          "have; give width=",
                                          layoutName(layout), lineBytes));
    const auto natural = zrLineBytes(layout.line, static_cast<unsigned>(std::max(*width, 0)));
    if (lineBytes < static_cast<py::ssize_t>(natural))
        throw py::value_error(fmt::format("{}: a line of {} pixels has {} bytes, the array's have "
                                          "{}",
                                          layoutName(layout), *width, natural, lineBytes));
    return *width;
}

int widthOf(const zrLayout& layout, const Form& form, const py::array& array,
            std::optional<int> width) {
    if (form.channels == 0)
        return widthOfLines(layout, array, width);
    if (width && *width != array.shape(1))
        throw py::value_error(
            fmt::format("the array is {} pixels wide, not width={}", array.shape(1), *width));
    return static_cast<int>(std::min<py::ssize_t>(array.shape(1), farthest + 1));
}

void requireSize(py::ssize_t width, py::ssize_t height) {
    if (width < 1 || height < 1 || width > farthest || height > farthest)
        throw py::value_error(fmt::format("a frame has 1 to {} pixels and lines, not {} x {}",
                                          farthest, width, height));
}

void requireContiguousLines(const py::array& array) {
    py::ssize_t step = array.itemsize();
    for (py::ssize_t i = array.ndim() - 1; i > 0; --i) {
        if (array.shape(i) > 1 && array.strides(i) != step)
            throw py::value_error(fmt::format("the pixels of a line must follow each other: axis "
                                              "{} has a stride of {} bytes, not {}; copy the array",
                                              i, array.strides(i), step));
        step *= array.shape(i);
    }
}

int pitchOf(const zrLayout& layout, const py::array& array, int width) {
    constexpr py::ssize_t wordBytes = 4;
    const py::ssize_t natural = zrLineBytes(layout.line, static_cast<unsigned>(width));
    const py::ssize_t pitch = array.shape(0) > 1 ? array.strides(0) : natural;
    if (pitch < natural)
        throw py::value_error(fmt::format("lines must follow each other downwards, {} bytes or "
                                          "more from one to the next, not {}; copy the array",
                                          natural, pitch));
    if (layout.bytes.a >= 0 && pitch % wordBytes != 0)
        throw py::value_error(fmt::format("lines of {} must be a multiple of 4 bytes apart, not "
                                          "{}; copy the array",
                                          layoutName(layout), pitch));
    if (pitch * array.shape(0) > std::numeric_limits<unsigned>::max() ||
        pitch > std::numeric_limits<int>::max())
        throw py::value_error("a frame is smaller than 4 GiB");
    return static_cast<int>(pitch);
}

// zrFrameRoom without the padding of the last line, which a view may lack.
py::ssize_t touchedBytes(const PictureView& view) {
    const zrLayout& layout = *view.layout;
    auto last = static_cast<py::ssize_t>(zrFrameRoom(layout, view.width, 1, 0));
    if (layout.isMosaic()) // of which the line behind the last is counted
        last += view.pitch -
                static_cast<int>(zrLineBytes(layout.line, static_cast<unsigned>(view.width)));
    return static_cast<py::ssize_t>(view.pitch) * (view.height - 1) + last;
}

} // namespace

const zrLayout& layoutOf(const std::string& name) {
    return layoutNamed(name);
}

std::string expectedArray(const zrLayout& layout) {
    const Form form = formOf(layout);
    if (form.channels == 0)
        return fmt::format("{}[height, bytes of a line: {}]{}", form.name, lineBytesText(layout),
                           layout.code == ptV210 ? " or uint32[height, words of a line]" : "");
    return form.channels == 1 ? fmt::format("{}[height, width]", form.name)
                              : fmt::format("{}[height, width, {}]", form.name, form.channels);
}

Memory memoryOf(const py::array& array) {
    py::array owner = array;
    for (py::object base = owner.base(); base && py::isinstance<py::array>(base);
         base = owner.base())
        owner = py::reinterpret_borrow<py::array>(base);
    const char* begin = static_cast<const char*>(owner.data());
    const char* end = begin + owner.itemsize();
    for (py::ssize_t i = 0; i < owner.ndim(); ++i) {
        const py::ssize_t reach = (owner.shape(i) - 1) * owner.strides(i);
        (reach < 0 ? begin : end) += reach;
    }
    return {begin, end};
}

FrameArray frameIn(const py::array& array, const zrLayout& layout, std::optional<int> width,
                   Access access) {
    const Form form = formOf(layout);
    if (!hasForm(layout, form, array))
        throw py::value_error(expectation(layout, array));
    const int columns = widthOf(layout, form, array, width);
    requireSize(columns, array.shape(0));
    if (access == Access::Write && !array.writeable())
        throw py::value_error("the array is read-only: draw on a copy of it");
    requireContiguousLines(array);
    const int lines = static_cast<int>(array.shape(0));
    auto* const data = static_cast<unsigned char*>(const_cast<void*>(array.data()));
    const PictureView view{&layout, data, columns, lines, pitchOf(layout, array, columns)};
    const auto behind =
        memoryOf(array).end - static_cast<const char*>(static_cast<const void*>(data));
    return {array, view, behind >= touchedBytes(view)};
}

FrameArray wholeFrameIn(const py::array& array, const zrLayout& layout, std::optional<int> width,
                        Access access) {
    FrameArray frame = frameIn(array, layout, width, access);
    const auto natural = zrLineBytes(layout.line, static_cast<unsigned>(frame.view.width));
    if (frame.view.pitch != static_cast<int>(natural))
        throw py::value_error(fmt::format("the lines of the array must follow each other without "
                                          "gaps, {} bytes from one to the next, not {}: take "
                                          "numpy.ascontiguousarray",
                                          natural, frame.view.pitch));
    return frame;
}

py::array makeFrame(const zrLayout& layout, int width, int height) {
    requireSize(width, height);
    const Form form = formOf(layout);
    const int pitch = wholeLineBytes(layout, width);
    const auto room = static_cast<py::ssize_t>(zrFrameRoom(layout, width, height, pitch));
    if (room > std::numeric_limits<unsigned>::max())
        throw py::value_error("a frame is smaller than 4 GiB");
    const py::object memory =
        py::module_::import("numpy").attr("zeros")(room, py::dtype(bytes(1).type));
    std::vector<py::ssize_t> shape{height, width}, strides{pitch, form.itemBytes};
    if (form.channels == 0)
        shape[1] = zrLineBytes(layout.line, static_cast<unsigned>(width));
    if (form.channels > 1) {
        shape.push_back(form.channels);
        strides[1] *= form.channels;
        strides.push_back(form.itemBytes);
    }
    const auto owner = py::reinterpret_borrow<py::array>(memory);
    return {py::dtype(form.type), shape, strides, owner.data(), owner};
}

bool overlap(const PictureView& a, const PictureView& b) {
    const auto endOf = [](const PictureView& view) {
        return view.line(view.height - 1) + wholeLineBytes(*view.layout, view.width);
    };
    return a.data < endOf(b) && b.data < endOf(a);
}
