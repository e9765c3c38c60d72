// `zrdraw font`: reads a font bitmap as the library's reader does.
#include "common/tool_error.h"
#include "draw_object.h"
#include "option_values.h"
#include "subcommand.h"
#include "zrdraw/font_files.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>

#include <unistd.h>

namespace {

// The library ends the process for more pixels than its buffer holds, so they are counted before.
void requireRoom(const std::string& path, const zrBitmapHeader& header) {
    const auto counted = static_cast<std::uint32_t>(header.width * header.height * 3LL);
    const std::uint32_t bytes = header.imageSize != 0 ? header.imageSize : counted;
    if (bytes > sizeof data)
        throw Failure(fmt::format("'{}' holds {} bytes of pixels; at most {} can be read", path,
                                  bytes, sizeof data));
}

// All zeros for a file that is no bitmap, which the library's reader turns down.
zrBitmapHeader headerOf(const std::string& path) {
    constexpr std::size_t headerAt = 18; // behind the file's header and a size
    char start[headerAt + sizeof(zrBitmapHeader)] = {};
    std::ifstream(path, std::ios::binary).read(start, sizeof start);
    zrBitmapHeader header{};
    if (start[0] == 'B' && start[1] == 'M')
        std::memcpy(&header, start + headerAt, sizeof header);
    return header;
}

void addOptions(CLI::App& command, std::string& path) {
    command.add_option(valueName::file, path, "A 24-bit uncompressed bitmap file")
        ->type_name("")
        ->required();
}

std::string run(const std::string& path) {
    if (std::filesystem::is_directory(path))
        throw Failure(fmt::format("'{}' is a folder, not a font bitmap", path));
    if (access(path.c_str(), R_OK | W_OK) != 0)
        throw Failure(fmt::format("cannot open '{}' for reading and updating: {}", path,
                                  std::strerror(errno)));
    requireRoom(path, headerOf(path));
    ZRDraw* reader = nullptr;
    GetDraw(ptBGRA32, 0, 0, 0, nullptr, reader);
    const DrawPtr owner(reader);
    if (reader->ExtractBMPData(path.c_str()) != 0)
        throw Failure(fmt::format(
            "'{}' is no font bitmap: save it as a 24-bit uncompressed bitmap file", path));
    return fmt::format("width   {}\nheight  {}\nbits    {}\npixels  {} bytes\n", pImgHdr.width,
                       pImgHdr.height, pImgHdr.bitsPerPixel, pImgHdr.imageSize);
}

} // namespace

Subcommand fontCommand() {
    return makeSubcommand(
        "font", "Tell what a font bitmap holds",
        "The size of its picture, as the library reads it. The file is opened for "
        "updating, as the library\ndoes, so it has to be writable.",
        addOptions, run);
}
