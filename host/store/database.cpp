#include "store/database.h"

#include "platform/files.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace zrhost {

namespace {

constexpr int busyMilliseconds = 5000;

/** Held while a file is looked at and perhaps set aside, so that of several processes one does it.
 */
class FileLock {
public:
    explicit FileLock(const std::string& file)
        : m_descriptor(::open((file + ".lock").c_str(), O_CREAT | O_RDWR | O_CLOEXEC, 0600)) {
        if (m_descriptor >= 0)
            ::flock(m_descriptor, LOCK_EX);
    }
    ~FileLock() {
        if (m_descriptor >= 0)
            ::close(m_descriptor);
    }
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

private:
    int m_descriptor;
};

/** Moves the database and its companions to a name that is free. */
std::string setAside(const std::string& file) {
    std::string aside;
    for (int number = 1; aside.empty() || fs::exists(aside); ++number)
        aside = file + ".damaged-" + std::to_string(number);
    for (const char* companion : {"", "-wal", "-shm"}) {
        std::error_code ignored;
        fs::rename(file + companion, aside + companion, ignored);
    }
    return aside;
}

void makeFolder(const std::string& file) {
    const fs::path folder = fs::path(file).parent_path();
    std::error_code error;
    if (folder.empty() || fs::exists(folder, error))
        return;
    fs::create_directories(folder, error);
    if (error)
        throw StoreError("cannot make the folder '" + folder.string() + "' for settings: " +
                         error.message() + "; name another file in ZRDRAW_STORE");
    fs::permissions(folder, fs::perms::owner_all, error);
}

bool isDamage(int code) {
    return code == SQLITE_CORRUPT || code == SQLITE_NOTADB;
}

/** The texts of the statements, which have the lifetime of the call. */
void bind(sqlite3_stmt* statement, int index, const std::string& text) {
    sqlite3_bind_text(statement, index, text.data(), static_cast<int>(text.size()), SQLITE_STATIC);
}

} // namespace

Database::Database(const std::string& file, Open how) : m_file(file) {
    std::error_code ignored;
    if (how == Open::IfThere && !fs::exists(file, ignored))
        return;
    if (how == Open::Make)
        makeFolder(file);
    connect(how);
    if (isSound())
        return;
    m_connection.reset();
    {
        const FileLock lock(file);
        connect(how); // another process may have put it right meanwhile
        if (isSound())
            return;
        m_connection.reset();
        const std::string aside = setAside(file);
        ErrOut("the settings in '%s' are damaged; the file is kept as '%s' and a new one begun",
               file.c_str(), aside.c_str());
    }
    connect(Open::Make);
}

void Database::connect(Open how) {
    const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_FULLMUTEX |
                      (how == Open::Make ? SQLITE_OPEN_CREATE : 0);
    sqlite3* connection = nullptr;
    const int opened = sqlite3_open_v2(m_file.c_str(), &connection, flags, nullptr);
    m_connection.reset(connection);
    if (opened != SQLITE_OK)
        fail();
    sqlite3_busy_timeout(connection, busyMilliseconds);
}

/** Prepares the file on the way. Failures that are no damage are thrown. */
bool Database::isSound() {
    static constexpr const char* preparation[] = {
        "PRAGMA journal_mode = WAL",
        "PRAGMA synchronous = FULL",
        "CREATE TABLE IF NOT EXISTS settings (path TEXT NOT NULL, name TEXT NOT NULL, "
        "value TEXT NOT NULL, PRIMARY KEY (path, name)) WITHOUT ROWID",
    };
    for (const char* sql : preparation) {
        const int done = sqlite3_exec(m_connection.get(), sql, nullptr, nullptr, nullptr);
        if (isDamage(done))
            return false;
        if (done != SQLITE_OK)
            fail();
    }
    const Statement check = prepare("PRAGMA quick_check");
    const int stepped = sqlite3_step(check.get());
    if (isDamage(stepped))
        return false;
    if (stepped != SQLITE_ROW)
        fail();
    const auto* answer = reinterpret_cast<const char*>(sqlite3_column_text(check.get(), 0));
    return std::strcmp(answer, "ok") == 0;
}

bool Database::hasPath(const std::string& path) {
    const Statement statement = prepare("SELECT 1 FROM settings WHERE path = ? LIMIT 1");
    bind(statement.get(), 1, path);
    return step(statement.get());
}

std::optional<std::string> Database::read(const std::string& path, const std::string& name) {
    const Statement statement = prepare("SELECT value FROM settings WHERE path = ? AND name = ?");
    bind(statement.get(), 1, path);
    bind(statement.get(), 2, name);
    if (!step(statement.get()))
        return std::nullopt;
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement.get(), 0));
    return std::string(text, static_cast<std::size_t>(sqlite3_column_bytes(statement.get(), 0)));
}

void Database::write(const Texts& texts) {
    execute("BEGIN IMMEDIATE");
    try {
        const Statement statement =
            prepare("INSERT OR REPLACE INTO settings (path, name, value) VALUES (?, ?, ?)");
        for (const auto& [key, value] : texts) {
            bind(statement.get(), 1, key.first);
            bind(statement.get(), 2, key.second);
            bind(statement.get(), 3, value);
            step(statement.get());
            sqlite3_reset(statement.get());
        }
        execute("COMMIT");
    } catch (const StoreError&) {
        sqlite3_exec(m_connection.get(), "ROLLBACK", nullptr, nullptr, nullptr);
        throw;
    }
}

void Database::execute(const char* sql) {
    if (sqlite3_exec(m_connection.get(), sql, nullptr, nullptr, nullptr) != SQLITE_OK)
        fail();
}

Database::Statement Database::prepare(const char* sql) {
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(m_connection.get(), sql, -1, &statement, nullptr) != SQLITE_OK)
        fail();
    return Statement(statement);
}

/** Whether there is a row. */
bool Database::step(sqlite3_stmt* statement) {
    const int stepped = sqlite3_step(statement);
    if (stepped != SQLITE_ROW && stepped != SQLITE_DONE)
        fail();
    return stepped == SQLITE_ROW;
}

void Database::fail() {
    throw StoreError("the settings in '" + m_file +
                     "' cannot be used: " + sqlite3_errmsg(m_connection.get()) +
                     "; see to the file and its folder, or name another file in ZRDRAW_STORE");
}

} // namespace zrhost
