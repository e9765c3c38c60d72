#include "store_files.h"

#include "store_error.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <thread>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zrhost {

namespace {

namespace fs = std::filesystem;

constexpr const char* mendAccess = "make its folder writable, or name another file by ZRDRAW_STORE";

std::string environmentText(const char* name) {
    const char* const text = std::getenv(name); // NOLINT(concurrency-mt-unsafe)
    return text != nullptr ? text : "";
}

[[noreturn]] void throwSystemError(const std::string& file, const std::string& action) {
    throw StoreError(file, action + ": " + std::strerror(errno), mendAccess);
}

bool anythingAt(const std::string& file) {
    struct stat status;
    return lstat(file.c_str(), &status) == 0;
}

// The files of a database. Itself comes last: until it has moved, the rest of the move is due.
constexpr const char* databaseSuffixes[] = {"-wal", "-shm", ""};

bool isFree(const std::string& file) {
    for (const char* suffix : databaseSuffixes)
        if (anythingAt(file + suffix))
            return false;
    return true;
}

} // namespace

std::string environmentStoreFile() {
    if (const std::string file = environmentText("ZRDRAW_STORE"); !file.empty())
        return absoluteFile(file);
    if (const std::string folder = environmentText("XDG_CONFIG_HOME"); folder.starts_with('/'))
        return absoluteFile(folder + "/zrdraw/settings.db");
    const std::string home = environmentText("HOME");
    if (home.empty()) {
        throw StoreError("~/.config/zrdraw/settings.db", "HOME is not set",
                         "set it, or name a file by ZRDRAW_STORE");
    }
    return absoluteFile(home + "/.config/zrdraw/settings.db");
}

std::string absoluteFile(const std::string& file) {
    std::error_code error;
    const fs::path real = fs::weakly_canonical(fs::absolute(file, error), error);
    return error ? file : real.string();
}

bool storeFileExists(const std::string& file) {
    struct stat status;
    if (stat(file.c_str(), &status) != 0) {
        if (errno == ENOENT || errno == ENOTDIR)
            return false;
        throwSystemError(file, "cannot look at it");
    }
    if (!S_ISREG(status.st_mode))
        throw StoreError(file, "it is not a file", "name another one by ZRDRAW_STORE");
    return true;
}

void makeFoldersOf(const std::string& file) {
    for (std::size_t end = file.find('/', 1); end != file.npos; end = file.find('/', end + 1)) {
        const std::string folder = file.substr(0, end);
        std::error_code ignored;
        if (mkdir(folder.c_str(), S_IRWXU) != 0 && !fs::is_directory(folder, ignored))
            throwSystemError(file, "cannot make the folder '" + folder + "'");
    }
}

StoreLock::StoreLock(const std::string& file)
    : m_descriptor(open((file + ".lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644)) {
    if (m_descriptor < 0)
        throwSystemError(file, "cannot make its .lock file");
    const auto end = std::chrono::steady_clock::now() + patience;
    while (flock(m_descriptor, LOCK_EX | LOCK_NB) != 0) {
        const bool isBusy = errno == EWOULDBLOCK || errno == EINTR;
        if (!isBusy || std::chrono::steady_clock::now() > end) {
            const std::string reason = std::strerror(errno);
            close(m_descriptor);
            throw StoreError(file, "cannot lock its .lock file: " + reason,
                             "end the process that holds it, or try again later");
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

StoreLock::~StoreLock() {
    close(m_descriptor);
}

std::string setAside(const std::string& file, const StoreLock& /*lock*/) {
    std::string aside;
    for (int number = 1; aside.empty() || !isFree(aside); ++number)
        aside = file + ".damaged-" + std::to_string(number);
    for (const char* suffix : databaseSuffixes)
        if (rename((file + suffix).c_str(), (aside + suffix).c_str()) != 0 && errno != ENOENT)
            throwSystemError(file, "it is damaged and cannot be set aside");
    return aside;
}

} // namespace zrhost
