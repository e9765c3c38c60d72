// The file, or standard output, that a result goes to.
#pragma once

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

extern "C" {
#include <libavformat/avio.h>
}

// Renames a finished part. Without `replace` a file that came into being under the name meanwhile
// is not replaced. Returns 0 or an errno.
int renameInto(const std::filesystem::path& part, const std::filesystem::path& path, bool replace);

// A result appears under its name only when it is complete: it is written beside that name and
// renamed by commit(). Without commit() nothing is left behind and an older file stays untouched.
class OutputFile {
public:
    // The path "-" is standard output.
    OutputFile(const std::string& path, bool force)
        : OutputFile(path, force, path == "-" ? "standard output" : "'" + path + "'") {}
    // With another name for messages.
    OutputFile(const std::string& path, bool force, std::string name);
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    // Refuses what can be known to fail before any work is done, and changes nothing.
    static void checkPath(const std::string& path, bool force);

    AVIOContext* io() const { return m_io.get(); }

    // A packet is whole: who reads a pipe or device gets it at once. Throws as check() does.
    void endPacket();

    // Ends a write that waits, from another thread: it fails. An interrupt does so too.
    void stop() { m_stopped = true; }

    // Throws the first write error that was met so far, if any.
    void check();
    void commit();

private:
    struct IoFree {
        void operator()(AVIOContext* io) const;
    };

    void open();
    void publish();
    void discard();
    [[noreturn]] void failWith(int systemError) const;
    int write(const std::uint8_t* bytes, std::size_t count);
    bool writeGathered(const std::uint8_t* more, std::size_t count);
    static int writePacket(void* self, std::uint8_t* bytes, int count);
    static std::int64_t seek(void* self, std::int64_t offset, int whence);

    std::string m_name; // as messages call it
    std::filesystem::path m_path;
    std::filesystem::path m_temporary; // empty: written in place, or renamed already
    bool m_replace;
    int m_descriptor = -1;
    std::atomic<bool> m_stopped{false};
    int m_error = 0;                      // errno of the first write that failed
    std::vector<std::uint8_t> m_gathered; // small pieces, not yet written
    std::unique_ptr<AVIOContext, IoFree> m_io;
};
