#include "shared_store.h"

#include "store_error.h"
#include "store_files.h"

#include <utility>

namespace zrhost {

SharedStore::SharedStore(std::string file, std::vector<std::string>& notices)
    : m_file(std::move(file)), m_notices(notices) {}

void SharedStore::check() {
    read([](Database&) {});
}

bool SharedStore::holdsPath(const std::string& path) {
    bool holds = false;
    read([&](const Database& database) { holds = database.holdsPath(path); });
    return holds;
}

std::optional<std::string> SharedStore::text(const StoreKey& key) {
    std::optional<std::string> text;
    read([&](const Database& database) { text = database.text(key); });
    return text;
}

void SharedStore::close() noexcept {
    std::optional<StoreLock> lock;
    try {
        if (isOpen())
            lock.emplace(m_file);
    } catch (const std::exception&) { // the log of changes stays, for the next to close
    }
    if (lock)
        m_database->tidyAtEnd();
    drop();
}

void SharedStore::save(const StoreTexts& texts) {
    makeFoldersOf(m_file);
    runLocked([&](Database& database) { database.save(texts); });
}

// Without a file the operation is left out: to read makes none.
void SharedStore::read(const Operation& operation) {
    if (!tryOpenOne(operation) && storeFileExists(m_file))
        runLocked(operation);
}

// The file is judged and replaced under the lock, so that no other process does either meanwhile.
void SharedStore::runLocked(const Operation& operation) {
    const StoreLock lock(m_file);
    if (tryOpenOne(operation))
        return;
    try {
        reopen();
        operation(*m_database);
    } catch (const DamageError& damage) {
        drop();
        const std::string aside = setAside(m_file, lock);
        m_notices.push_back(aboutStore(m_file, "it is damaged (" + damage.problem() +
                                                   "), is kept as '" + aside +
                                                   "' and a new one begun; set it up again"));
        reopen();
        operation(*m_database);
    }
}

// Runs the operation on the file that is open already. Damage is not believed yet: what this
// process has of the file may be out of date.
// @return false when it has to run on a file that is opened anew
bool SharedStore::tryOpenOne(const Operation& operation) {
    if (!isOpen())
        return false;
    try {
        operation(*m_database);
        return true;
    } catch (const DamageError&) {
        drop();
        return false;
    }
}

void SharedStore::reopen() {
    drop();
    m_database.emplace(m_file);
}

} // namespace zrhost
