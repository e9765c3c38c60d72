#include "media/output_file.h"

#include "common/tool_error.h"
#include "interrupt.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <new>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

extern "C" {
#include <libavutil/error.h>
#include <libavutil/mem.h>
}

namespace fs = std::filesystem;

namespace {

constexpr int ioBufferBytes = 1 << 12;
constexpr std::size_t gatheredBytes = 1 << 18;

// A result that replaces a link replaces what the link points to.
fs::path linkTarget(const fs::path& path) {
    std::error_code ignored;
    return fs::is_symlink(path, ignored) ? fs::weakly_canonical(path, ignored) : path;
}

fs::path folderOf(const fs::path& path) {
    return path.has_parent_path() ? path.parent_path() : fs::path(".");
}

// Devices and named pipes are written to where they are: they cannot be replaced.
bool isWrittenInPlace(const fs::path& path) {
    std::error_code ignored;
    const fs::file_status status = fs::status(path, ignored);
    return fs::exists(status) && !fs::is_regular_file(status) && !fs::is_directory(status);
}

void checkFolder(const std::string& name, const fs::path& folder) {
    std::error_code error;
    const fs::file_status status = fs::status(folder, error);
    if (status.type() == fs::file_type::not_found)
        throw Failure(fmt::format("cannot write '{}': the folder '{}' does not exist", name,
                                  folder.string()));
    if (error)
        throw Failure(fmt::format("cannot write '{}': {}", name, error.message()));
    if (!fs::is_directory(status))
        throw Failure(
            fmt::format("cannot write '{}': '{}' is not a folder", name, folder.string()));
    if (::access(folder.c_str(), W_OK | X_OK) != 0)
        throw Failure(fmt::format("cannot write '{}': no new file in folder '{}': {}", name,
                                  folder.string(), std::strerror(errno)));
}

// The permissions that an ordinary program gives a new file, or those of the file it replaces.
mode_t permissionsFor(const fs::path& path) {
    struct stat existing {};
    if (::stat(path.c_str(), &existing) == 0)
        return existing.st_mode & 0777;
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return 0666 & ~mask;
}

} // namespace

int renameInto(const fs::path& part, const fs::path& path, bool replace) {
    const unsigned flags = replace ? 0 : RENAME_NOREPLACE;
    int renamed = ::renameat2(AT_FDCWD, part.c_str(), AT_FDCWD, path.c_str(), flags);
    if (renamed != 0 && errno == EINVAL) // the file system cannot promise that
        renamed = ::rename(part.c_str(), path.c_str());
    return renamed == 0 ? 0 : errno;
}

void OutputFile::checkPath(const std::string& path, bool force) {
    if (path == "-") {
        if (::isatty(STDOUT_FILENO))
            throw UsageError("standard output is a terminal: redirect it or name an output file");
        return;
    }
    if (path.empty())
        throw UsageError("the output has no name: use a name such as out.png");
    const fs::path target = linkTarget(path);
    if (isWrittenInPlace(target))
        return;
    std::error_code ignored;
    if (fs::is_directory(target, ignored))
        throw Failure(fmt::format("'{}' is a folder: name a file in it", path));
    if (!force && fs::exists(target, ignored))
        throw UsageError(fmt::format("'{}' exists; use --force to replace it", path));
    checkFolder(path, folderOf(target));
}

OutputFile::OutputFile(const std::string& path, bool force, std::string name)
    : m_name(std::move(name)), m_replace(force) {
    checkPath(path, force);
    if (path == "-") {
        m_descriptor = STDOUT_FILENO;
    } else {
        m_path = linkTarget(path);
        open();
    }
    // Only a file of our own is sure to start at offset 0, which a muxer that seeks relies on.
    const auto seeker = m_temporary.empty() ? nullptr : &OutputFile::seek;
    auto* buffer = static_cast<unsigned char*>(av_malloc(ioBufferBytes));
    m_io.reset(avio_alloc_context(buffer, ioBufferBytes, 1, this, nullptr, &OutputFile::writePacket,
                                  seeker));
    if (!m_io) {
        av_free(buffer);
        discard();
        throw std::bad_alloc();
    }
    // Whole frames come through without a copy.
    m_io->direct = AVIO_FLAG_DIRECT;
    m_gathered.reserve(gatheredBytes);
}

OutputFile::~OutputFile() {
    discard();
}

void OutputFile::discard() {
    if (m_descriptor > STDERR_FILENO)
        ::close(m_descriptor);
    m_descriptor = -1;
    if (!m_temporary.empty())
        ::unlink(m_temporary.c_str());
    m_temporary.clear();
}

void OutputFile::IoFree::operator()(AVIOContext* io) const {
    av_freep(&io->buffer);
    avio_context_free(&io);
}

void OutputFile::open() {
    if (isWrittenInPlace(m_path)) {
        m_descriptor = ::open(m_path.c_str(), O_WRONLY | O_CLOEXEC);
        if (m_descriptor < 0)
            failWith(errno);
        return;
    }
    // Shortened, so that a name of the greatest length leaves room for the rest.
    const std::string stem = m_path.filename().string().substr(0, 200);
    constexpr std::string_view suffix = ".part";
    std::string pattern = (folderOf(m_path) / fmt::format(".{}.XXXXXX{}", stem, suffix)).string();
    m_descriptor = ::mkostemps(pattern.data(), static_cast<int>(suffix.size()), O_CLOEXEC);
    if (m_descriptor < 0)
        failWith(errno);
    m_temporary = pattern;
    ::fchmod(m_descriptor, permissionsFor(m_path));
}

void OutputFile::endPacket() {
    if (m_temporary.empty())
        check();
}

void OutputFile::check() {
    avio_flush(m_io.get());
    writeGathered(nullptr, 0);
    if (m_error != 0)
        failWith(m_error);
}

void OutputFile::commit() {
    check();
    if (m_temporary.empty())
        return;
    // What is replaced is not let go before the new one is safe from a loss of power.
    if (fs::exists(m_path) && ::fsync(m_descriptor) != 0)
        failWith(errno);
    const int closed = ::close(m_descriptor);
    m_descriptor = -1;
    if (closed != 0)
        failWith(errno);
    publish();
}

void OutputFile::publish() {
    if (const int error = renameInto(m_temporary, m_path, m_replace))
        failWith(error);
    m_temporary.clear();
}

void OutputFile::failWith(int systemError) const {
    throw Failure(fmt::format("cannot write {}: {}", m_name, std::strerror(systemError)));
}

// Small pieces wait for each other; a large one goes out from where it lies.
int OutputFile::write(const std::uint8_t* bytes, std::size_t count) {
    if (m_gathered.size() + count <= gatheredBytes) {
        m_gathered.insert(m_gathered.end(), bytes, bytes + count);
        return 0;
    }
    return writeGathered(bytes, count) ? 0 : m_error;
}

bool OutputFile::writeGathered(const std::uint8_t* more, std::size_t count) {
    iovec pieces[] = {{m_gathered.data(), m_gathered.size()},
                      {const_cast<std::uint8_t*>(more), count}};
    while (pieces[0].iov_len + pieces[1].iov_len > 0) {
        const ssize_t written = ::writev(m_descriptor, pieces, std::size(pieces));
        if (written < 0 && errno == EINTR && !m_stopped && !isInterrupted())
            continue;
        if (written < 0) {
            m_error = m_error ? m_error : errno;
            break;
        }
        auto left = static_cast<std::size_t>(written);
        for (iovec& piece : pieces) {
            const std::size_t done = std::min(left, piece.iov_len);
            piece.iov_base = static_cast<std::uint8_t*>(piece.iov_base) + done;
            piece.iov_len -= done;
            left -= done;
        }
    }
    m_gathered.clear();
    return m_error == 0;
}

int OutputFile::writePacket(void* self, std::uint8_t* bytes, int count) {
    auto& file = *static_cast<OutputFile*>(self);
    const int error = file.write(bytes, static_cast<std::size_t>(count));
    return error == 0 ? count : AVERROR(error);
}

std::int64_t OutputFile::seek(void* self, std::int64_t offset, int whence) {
    auto& file = *static_cast<OutputFile*>(self);
    if (!file.writeGathered(nullptr, 0))
        return AVERROR(file.m_error);
    const int descriptor = file.m_descriptor;
    if (whence & AVSEEK_SIZE) {
        struct stat status {};
        return ::fstat(descriptor, &status) == 0 ? status.st_size : AVERROR(errno);
    }
    const off_t position = ::lseek(descriptor, offset, whence & ~AVSEEK_FORCE);
    return position >= 0 ? position : AVERROR(errno);
}
