// Places in the file system and loading at run time.
#include "zrdraw/platform/files.h"

#include "zrdraw/types.h"

#include <string>
#include <string_view>

#include <dlfcn.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr std::size_t pathBytes = 4096;

// Where a library lies that the system does not find by its bare name: among the package's own
// ones, or beside this one where all of them are built.
constexpr std::string_view privateFolders[] = {"zrdraw/", ""};

// With a slash at its end; empty when it is not known.
std::string folderOfThisLibrary() {
    Dl_info info{};
    if (dladdr(&privateFolders, &info) == 0)
        return "";
    const std::string_view path(info.dli_fname);
    return std::string(path.substr(0, path.rfind('/') + 1));
}

// A library that is given back stays for the next who asks: the reader of media files brings a
// dozen others along, and the loader never gets all of their memory back.
void* open(const char* name, int mode) {
    return dlopen(name, mode | RTLD_NODELETE);
}

} // namespace

ZRDRAW_API int zrOSGetAppDir(char* path) {
    const ssize_t length = readlink("/proc/self/exe", path, pathBytes);
    // A full buffer may hold a path that was cut, whose last slash is not the right one.
    const bool isWhole = length > 0 && static_cast<std::size_t>(length) < pathBytes;
    const std::string_view program(path, isWhole ? static_cast<std::size_t>(length) : 0);
    const std::size_t folderLength = program.rfind('/') + 1; // 0 when there is no slash
    path[folderLength] = 0;
    return folderLength != 0 ? 1 : 0;
}

ZRDRAW_API int zrOSFileExists(const char* path) {
    struct stat status;
    return stat(path, &status) == 0 && S_ISREG(status.st_mode) ? 1 : 0;
}

ZRDRAW_API void* zrOSLoadLibrary(const char* name, int mode) {
    void* library = open(name, mode);
    if (library != nullptr || std::string_view(name).find('/') != std::string_view::npos)
        return library;
    for (const std::string_view folder : privateFolders) {
        const std::string path = folderOfThisLibrary().append(folder) + name;
        library = open(path.c_str(), mode);
        if (library != nullptr)
            break;
    }
    return library;
}

ZRDRAW_API void* zrOSGetProcAddress(void* library, const char* name) {
    // The loader takes a null handle for the whole program, where a stranger may have the name.
    return library == nullptr ? nullptr : dlsym(library, name);
}

ZRDRAW_API int zrOSFreeLibrary(void* library) {
    return library != nullptr && dlclose(library) == 0 ? 1 : 0;
}
