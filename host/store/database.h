// A store's file: an SQLite database with one table of texts.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>

struct sqlite3;

namespace zrhost {

// A key path and the name of a text below it.
using StoreKey = std::pair<std::string, std::string>;
using StoreTexts = std::map<StoreKey, std::string>;

// Every operation throws DamageError or StoreError when it fails. One thread at a time.
class Database {
public:
    // Opens a file, which is made when it is not there, and checks all of it.
    explicit Database(const std::string& file);

    // @return whether the file has another name by now, or none
    bool hasMoved() const;

    // The end removes the log of changes, unless others use it or the file has moved. Nobody may
    // set the file aside meanwhile: the log goes by its name.
    void tidyAtEnd();

    bool holdsPath(const std::string& path) const;
    std::optional<std::string> text(const StoreKey& key) const;

    // Makes all of the texts lasting, or none when it throws.
    void save(const StoreTexts& texts);

private:
    class Statement;
    class Transaction;

    struct Close {
        void operator()(sqlite3* handle) const;
    };

    void open();
    void checkWhole() const;
    void run(const char* sql) const;
    void expectDone(int code) const;
    bool hasTable() const;

    const std::string m_file;
    std::unique_ptr<sqlite3, Close> m_handle;
};

} // namespace zrhost
