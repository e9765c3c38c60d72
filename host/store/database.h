/**
 * The file of a configuration store: an SQLite database of texts by path and name.
 */
#ifndef ZRDRAW_HOST_STORE_DATABASE_H
#define ZRDRAW_HOST_STORE_DATABASE_H

#include <sqlite3.h>

#include <map>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

namespace zrhost {

/** What is wrong with the file of a store, and the mend, in one line. */
struct StoreError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/** The texts of a store by path and name. */
using Texts = std::map<std::pair<std::string, std::string>, std::string>;

class Database {
public:
    enum class Open { IfThere, Make };

    /** Opens a file, which is set aside first if it is damaged. */
    Database(const std::string& file, Open how);

    /** False where the file was only to be opened if it is there. */
    bool isOpen() const { return m_connection != nullptr; }

    bool hasPath(const std::string& path);
    std::optional<std::string> read(const std::string& path, const std::string& name);

    /** All of them in one transaction, which has reached the disk when this returns. */
    void write(const Texts& texts);

private:
    struct Close {
        void operator()(sqlite3* connection) const { sqlite3_close_v2(connection); }
    };
    struct Finalize {
        void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
    };
    using Statement = std::unique_ptr<sqlite3_stmt, Finalize>;

    void connect(Open how);
    bool isSound();
    void execute(const char* sql);
    Statement prepare(const char* sql);
    bool step(sqlite3_stmt* statement);
    [[noreturn]] void fail();

    std::string m_file;
    std::unique_ptr<sqlite3, Close> m_connection;
};

} // namespace zrhost

#endif
