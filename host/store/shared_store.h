// A store's file as several processes use it at once: opened when it is needed, and replaced by a
// new one when it is damaged.
#pragma once

#include "database.h"

#include <functional>
#include <vector>

namespace zrhost {

// Every operation throws StoreError when it fails. One thread at a time.
class SharedStore {
public:
    // @param notices gets a line when a damaged file was set aside. It outlives the store
    SharedStore(std::string file, std::vector<std::string>& notices);
    ~SharedStore() { close(); }
    SharedStore(const SharedStore&) = delete;
    SharedStore& operator=(const SharedStore&) = delete;

    // Learns whether the file can be used. One that is not there can.
    void check();

    bool holdsPath(const std::string& path);
    std::optional<std::string> text(const StoreKey& key);
    void save(const StoreTexts& texts);

    // Lets go of the file until it is needed again. The last of all processes to do so leaves the
    // file alone, without its log of changes.
    void close() noexcept;

private:
    using Operation = std::function<void(Database&)>;

    bool isOpen() const { return m_database && !m_database->hasMoved(); }
    bool tryOpenOne(const Operation& operation);
    void read(const Operation& operation);
    void runLocked(const Operation& operation);
    void reopen();
    void drop() { m_database.reset(); } // as the files are

    std::string m_file;
    std::vector<std::string>& m_notices;
    std::optional<Database> m_database;
};

} // namespace zrhost
