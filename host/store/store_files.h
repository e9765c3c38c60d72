// A store's file among the others: where it is, who may change it, and where damaged ones go.
#pragma once

#include <chrono>
#include <string>

namespace zrhost {

// How long one process waits for another before it gives up.
constexpr std::chrono::milliseconds patience{5000};

// @return the store's file that the environment names
std::string environmentStoreFile();

// @return the file's place, which no change of the working folder and no symbolic link alters
std::string absoluteFile(const std::string& file);

// @return false when nothing is there. Throws StoreError when it is something else than a file
bool storeFileExists(const std::string& file);

// Makes the folders down to the file, for their owner alone.
void makeFoldersOf(const std::string& file);

// Held by the one process that opens a store, saves to it or sets it aside, so that a file that is
// found damaged is still the one that is moved away, and nothing is saved to a file that was moved.
// It is a file of its own: to close any descriptor of a database would drop the database's locks.
class StoreLock {
public:
    explicit StoreLock(const std::string& file);
    ~StoreLock();
    StoreLock(const StoreLock&) = delete;
    StoreLock& operator=(const StoreLock&) = delete;

private:
    int m_descriptor;
};

// Moves a damaged store out of the way, over no other file. @return its new name
std::string setAside(const std::string& file, const StoreLock& lock);

} // namespace zrhost
