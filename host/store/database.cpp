#include "database.h"

#include "store_error.h"
#include "store_files.h"

#include <sqlite3.h>

namespace zrhost {

namespace {

constexpr const char* createTable =
    "CREATE TABLE IF NOT EXISTS settings (path TEXT NOT NULL, name TEXT NOT NULL,"
    " value TEXT NOT NULL, PRIMARY KEY (path, name)) WITHOUT ROWID";

const char* mendOf(int code) {
    switch (code & 0xFF) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return "end the process that holds it, or try again later";
    case SQLITE_FULL:
        return "free space on its disk";
    case SQLITE_ERROR:
        return "it belongs to another program, name another file by ZRDRAW_STORE";
    case SQLITE_NOMEM:
        return "free memory";
    default:
        return "make file and folder writable, check the disk, or name another file by "
               "ZRDRAW_STORE";
    }
}

} // namespace

class Database::Statement {
public:
    Statement(const Database& database, const char* sql) : m_database(database) {
        sqlite3_stmt* statement = nullptr;
        const int code = sqlite3_prepare_v2(database.m_handle.get(), sql, -1, &statement, nullptr);
        m_statement.reset(statement);
        database.expectDone(code);
    }

    // The text has to live until the next step.
    Statement& bind(int index, const std::string& text) {
        m_database.expectDone(sqlite3_bind_text64(m_statement.get(), index, text.data(),
                                                  text.size(), SQLITE_STATIC, SQLITE_UTF8));
        return *this;
    }

    // @return whether there is a row
    bool step() {
        const int code = sqlite3_step(m_statement.get());
        if (code != SQLITE_ROW)
            m_database.expectDone(code);
        return code == SQLITE_ROW;
    }

    void reset() { sqlite3_reset(m_statement.get()); }

    // @return the text in the row's first column
    std::string text() const {
        const unsigned char* const text = sqlite3_column_text(m_statement.get(), 0);
        const int bytes = sqlite3_column_bytes(m_statement.get(), 0);
        return {reinterpret_cast<const char*>(text), static_cast<std::size_t>(bytes)};
    }

private:
    struct Finalize {
        void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
    };

    const Database& m_database;
    std::unique_ptr<sqlite3_stmt, Finalize> m_statement;
};

class Database::Transaction {
public:
    explicit Transaction(const Database& database) : m_database(database) {
        m_database.run("BEGIN IMMEDIATE");
    }
    ~Transaction() {
        sqlite3* const handle = m_database.m_handle.get();
        if (sqlite3_get_autocommit(handle) == 0)
            sqlite3_exec(handle, "ROLLBACK", nullptr, nullptr, nullptr);
    }
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    void commit() { m_database.run("COMMIT"); }

private:
    const Database& m_database;
};

void Database::Close::operator()(sqlite3* handle) const {
    sqlite3_close(handle);
}

Database::Database(const std::string& file) : m_file(file) {
    open();
    run("PRAGMA synchronous = FULL");
    checkWhole();
}

void Database::open() {
    sqlite3* handle = nullptr;
    const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX;
    const int code = sqlite3_open_v2(m_file.c_str(), &handle, flags, nullptr);
    m_handle.reset(handle);
    expectDone(code);
    sqlite3_busy_timeout(handle, static_cast<int>(patience.count()));
    // The last one to close would remove the log of changes by its name, which may be that of a new
    // store when this one was set aside meanwhile: not before it is known that it was not.
    sqlite3_db_config(handle, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
}

void Database::checkWhole() const {
    Statement check(*this, "PRAGMA quick_check(1)");
    if (check.step() && check.text() != "ok")
        throw DamageError(m_file, check.text());
}

bool Database::hasMoved() const {
    int moved = 0;
    sqlite3_file_control(m_handle.get(), nullptr, SQLITE_FCNTL_HAS_MOVED, &moved);
    return moved != 0;
}

void Database::tidyAtEnd() {
    sqlite3_db_config(m_handle.get(), SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 0, nullptr);
}

bool Database::hasTable() const {
    return Statement(*this,
                     "SELECT 1 FROM sqlite_master WHERE type = 'table' AND name = 'settings'")
        .step();
}

bool Database::holdsPath(const std::string& path) const {
    return hasTable() &&
           Statement(*this, "SELECT 1 FROM settings WHERE path = ?1 LIMIT 1").bind(1, path).step();
}

std::optional<std::string> Database::text(const StoreKey& key) const {
    if (!hasTable())
        return std::nullopt;
    Statement find(*this, "SELECT value FROM settings WHERE path = ?1 AND name = ?2");
    return find.bind(1, key.first).bind(2, key.second).step() ? std::optional(find.text())
                                                              : std::nullopt;
}

void Database::save(const StoreTexts& texts) {
    // Refused while another program reads a database without it, which does as well, slower.
    sqlite3_exec(m_handle.get(), "PRAGMA journal_mode = WAL", nullptr, nullptr, nullptr);
    Transaction transaction(*this);
    run(createTable);
    {
        Statement put(*this, "INSERT OR REPLACE INTO settings VALUES (?1, ?2, ?3)");
        for (const auto& [key, text] : texts) {
            put.bind(1, key.first).bind(2, key.second).bind(3, text).step();
            put.reset();
        }
    }
    transaction.commit();
    // The texts are safe in the log of changes; a copy of the main file alone has them as well now.
    sqlite3_wal_checkpoint_v2(m_handle.get(), nullptr, SQLITE_CHECKPOINT_PASSIVE, nullptr, nullptr);
}

void Database::run(const char* sql) const {
    expectDone(sqlite3_exec(m_handle.get(), sql, nullptr, nullptr, nullptr));
}

void Database::expectDone(int code) const {
    switch (code & 0xFF) {
    case SQLITE_OK:
    case SQLITE_DONE:
        return;
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
        throw DamageError(m_file, sqlite3_errmsg(m_handle.get()));
    default:
        throw StoreError(m_file, sqlite3_errmsg(m_handle.get()), mendOf(code));
    }
}

} // namespace zrhost
