#include "shared_store.h"

#include "store_error.h"
#include "store_files.h"

#include <utility>

namespace zrhost {

SharedStore::SharedStore(std::string file, std::vector<std::string>& notices)
    : file_(std::move(file)), notices_(notices) {}

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

void SharedStore::save(const StoreTexts& texts) {
    makeFoldersOf(file_);
    runLocked([&](Database& database) { database.save(texts); });
}

/** Without a file the operation is left out: to read makes none. */
void SharedStore::read(const Operation& operation) {
    if (!tryOpenOne(operation) && storeFileExists(file_)) {
        runLocked(operation);
    }
}

/** The file is judged and replaced under the lock, so that no other process does either meanwhile.
 */
void SharedStore::runLocked(const Operation& operation) {
    const StoreLock lock(file_);
    if (tryOpenOne(operation)) {
        return;
    }
    try {
        reopen();
        operation(*database_);
    } catch (const DamageError& damage) {
        close();
        const std::string aside = setAside(file_, lock);
        notices_.push_back(aboutStore(file_, "it is damaged (" + damage.problem() +
                                                 "), is kept as '" + aside +
                                                 "' and a new one begun; set it up again"));
        reopen();
        operation(*database_);
    }
}

/**
 * Runs the operation on the file that is open already. Damage is not believed yet: what this
 * process has of the file may be out of date.
 * @return false when it has to run on a file that is opened anew
 */
bool SharedStore::tryOpenOne(const Operation& operation) {
    if (!isOpen()) {
        return false;
    }
    try {
        operation(*database_);
        return true;
    } catch (const DamageError&) {
        close();
        return false;
    }
}

void SharedStore::reopen() {
    close();
    database_.emplace(file_);
}

} // namespace zrhost
