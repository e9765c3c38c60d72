// The choice of a default font file. No font but the built-in one can be active, so a file is only
// looked for and noted.
#include "pixel/fatal.h"
#include "zrdraw/platform/files.h"
#include "zrdraw/zrdraw.h"

#include <array>
#include <string_view>

namespace {

// The size of path that the platform layer works on.
using PathBuffer = std::array<char, 4096>;

const char* fontFileFor(unsigned int width) {
    if (width <= 720)
        return "deffont_sd.bmp";
    return width <= 1280 ? "deffont_720.bmp" : "deffont_1080.bmp";
}

// Appends a name to a path. One that does not fit is a fatal fault.
void append(PathBuffer& path, std::string_view name) {
    const std::size_t used = std::string_view(path.data()).size();
    if (used + name.size() >= path.size())
        fatalBounds("the path of a font file");
    name.copy(path.data() + used, name.size());
    path[used + name.size()] = '\0';
}

// Folders of another platform; here they are plain strings that name nothing as a rule.
constexpr std::string_view fixedFolders[] = {"E:\\zorvane\\bin\\",
                                             "C:\\Program Files (x86)\\Zorvane\\"};

// Leaves the path of the font file in `path`, from the first folder that has it.
bool findFontFile(PathBuffer& path, const char* name) {
    zrOSGetAppDir(path.data());
    append(path, name);
    if (zrOSFileExists(path.data()) != 0)
        return true;
    for (const std::string_view folder : fixedFolders) {
        path.fill('\0');
        append(path, folder);
        append(path, name);
        if (zrOSFileExists(path.data()) != 0)
            return true;
    }
    return false;
}

} // namespace

int ZRDraw::UseDefaultFont(bool builtIn) {
    if (builtIn) {
        useDefaultFont = true;
        return 1;
    }
    PathBuffer path{};
    const bool found = findFontFile(path, fontFileFor(width));
    if (found)
        SetFont(path.data());
    useDefaultFont = !found;
    return useDefaultFont ? 1 : 0;
}

int ZRDraw::SetFont(char*) {
    return 0;
}

int ZRDraw::HaveFont() {
    return 0;
}

int UseDefaultFont(ZRDraw*& draw, bool builtIn) {
    if (draw->HaveFont() != 0) {
        draw->UseDefaultFont(builtIn);
        return 1;
    }
    draw->UseDefaultFont(true);
    return 0;
}

int SetFont(ZRDraw*& draw, char* path) {
    draw->SetFont(path);
    return draw->HaveFont() != 0 ? 1 : 0;
}
