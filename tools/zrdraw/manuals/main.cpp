// Writes the manual pages and the completion of the tool, of the tool's own tables.
#include "command_line.h"
#include "manuals/completion.h"
#include "manuals/page.h"

#include <fmt/format.h>

#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

namespace fs = std::filesystem;

namespace {

void writeFile(const fs::path& path, const std::string& text) {
    fs::create_directories(path.parent_path());
    std::ofstream file(path, std::ios::binary);
    file << text;
    if (!file.flush())
        throw std::runtime_error(fmt::format("cannot write '{}'", path.string()));
}

std::string readFile(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file)
        throw std::runtime_error(fmt::format("cannot read '{}'", path.string()));
    return {std::istreambuf_iterator<char>(file), {}};
}

// Tables of the tool, then the functions of the shell that read them.
void writeManuals(const fs::path& sources, const fs::path& folder) {
    const CommandLine line;
    const auto write = [&](const CLI::App& command, const std::string& page) {
        writeFile(folder / "man1" / (pageName(command) + ".1"), page);
    };
    fs::remove_all(folder / "man1"); // a page of a command that is no more
    write(line.app(), toolPage(line));
    for (const auto& [command, entry] : line.entries())
        write(*command, subcommandPage(*command, entry));
    writeFile(folder / "bash" / "zrdraw",
              bashTables(line.app()) + readFile(sources / "completion.bash"));
    writeFile(folder / "zsh" / "_zrdraw",
              zshFunctions(line.app()) + readFile(sources / "completion.zsh"));
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fputs("usage: zrdraw_manuals SOURCES FOLDER\n", stderr);
        return 2;
    }
    try {
        writeManuals(argv[1], argv[2]);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "zrdraw_manuals: %s\n", error.what());
        return 1;
    }
    return 0;
}
