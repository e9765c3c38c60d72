// The configuration store: texts that wait in this process until they are saved, over a file that
// all processes share.
#include "zrdraw/platform/config_store.h"

#include "shared_store.h"
#include "store_files.h"
#include "zrdraw/platform/files.h"
#include "zrdraw/zrhost.h"

#include <charconv>
#include <cstdio>
#include <cstring>
#include <mutex>
#include <utility>

#include <pthread.h>

namespace {

using zrhost::SharedStore;
using zrhost::StoreKey;
using zrhost::StoreTexts;

class Store {
public:
    bool holdsPath(const std::string& path) {
        const auto waiting = m_waiting.lower_bound({path, {}});
        return (waiting != m_waiting.end() && waiting->first.first == path) ||
               shared().holdsPath(path);
    }

    std::optional<std::string> text(const StoreKey& key) {
        const auto waiting = m_waiting.find(key);
        return waiting != m_waiting.end() ? waiting->second : shared().text(key);
    }

    void put(StoreKey key, std::string text) {
        m_waiting.insert_or_assign(std::move(key), std::move(text));
    }

    void save() {
        if (!m_waiting.empty()) {
            shared().save(m_waiting);
            m_waiting.clear();
        }
    }

    // Leaves everything as it is when it throws.
    void use(const char* file) {
        auto next =
            open(file != nullptr ? zrhost::absoluteFile(file) : zrhost::environmentStoreFile());
        next->check();
        m_shared = std::move(next);
        m_waiting.clear();
    }

    // @return what the log has to say of the operations since the last call
    std::vector<std::string> takeNotices() { return std::exchange(m_notices, {}); }

    // @return whether the problem of an operation, or its success, is that of the one before
    bool isRepeated(const std::string& problem) {
        return std::exchange(m_lastProblem, problem) == problem;
    }

    void close() {
        if (m_shared)
            m_shared->close();
    }

    // What waits is the parent's to save: saved from here, it might undo what the parent saved.
    void beginChild() { m_waiting.clear(); }

private:
    std::unique_ptr<SharedStore> open(std::string file) {
        return std::make_unique<SharedStore>(std::move(file), m_notices);
    }

    SharedStore& shared() {
        if (!m_shared)
            m_shared = open(zrhost::environmentStoreFile());
        return *m_shared;
    }

    std::vector<std::string> m_notices;
    std::string m_lastProblem;
    std::unique_ptr<SharedStore> m_shared;
    StoreTexts m_waiting;
};

std::mutex storeMutex;
Store& store = *new Store; // never destroyed: threads may use it while the process ends

[[gnu::destructor]] void closeStore() {
    const std::unique_lock lock(storeMutex, std::try_to_lock);
    if (lock) // else a thread is in the middle of using it, and never comes to an end
        store.close();
}

// The child of a fork gets a store that no thread is in the middle of changing. A database must not
// be open in two processes by one opening.
const int forkHandlers = pthread_atfork(
    [] {
        storeMutex.lock();
        store.close();
    },
    [] { storeMutex.unlock(); },
    [] {
        store.beginChild();
        storeMutex.unlock();
    });

// How an operation ended. It is logged without the lock: a sink may use the store, or fork.
struct Outcome {
    std::string problem; // empty when there is none
    bool isRepeated = false;
    std::vector<std::string> notices;
};

template <class Operation>
Outcome outcomeOf(const Operation& operation) {
    const std::lock_guard guard(storeMutex);
    Outcome outcome;
    try {
        operation();
    } catch (const std::exception& error) {
        outcome.problem = error.what();
    }
    outcome.isRepeated = store.isRepeated(outcome.problem);
    outcome.notices = store.takeNotices();
    return outcome;
}

void logNotices(const Outcome& outcome) {
    for (const std::string& notice : outcome.notices)
        ErrOut("%s", notice.c_str());
}

// A program reads dozens of texts in a row: what is wrong with the store is said once.
enum class Repeats { Silent, Logged };

// @return 0, or -1 with one line in the log
template <class Operation>
int run(Repeats repeats, const Operation& operation) {
    const Outcome outcome = outcomeOf(operation);
    logNotices(outcome);
    if (outcome.problem.empty())
        return 0;
    if (!outcome.isRepeated || repeats == Repeats::Logged)
        ErrOut("%s", outcome.problem.c_str());
    return -1;
}

void copyText(const std::string& text, char* buffer, unsigned int* length) {
    if (buffer != nullptr && *length > 0)
        buffer[text.copy(buffer, *length - 1)] = 0;
    *length = static_cast<unsigned int>(text.size() + 1);
}

int writeText(StoreKey key, const char* text, std::size_t bytes) {
    std::string copy(text, strnlen(text, bytes));
    return run(Repeats::Logged, [&] { store.put(std::move(key), std::move(copy)); });
}

int readText(const StoreKey& key, char* buffer, unsigned int* length) {
    std::optional<std::string> text;
    run(Repeats::Silent, [&] { text = store.text(key); });
    if (!text)
        return -1;
    copyText(*text, buffer, length);
    return 0;
}

} // namespace

ZRDRAW_API int zrCFGKeyExists(int, const char* path) {
    bool holds = false;
    if (path == nullptr)
        return 0;
    run(Repeats::Silent, [&] { holds = store.holdsPath(path); });
    return holds ? 1 : 0;
}

ZRDRAW_API int zrCFGValueString(int, const char* path, const char* name, char* buffer,
                                unsigned int* length, int write) {
    if (path == nullptr || name == nullptr || length == nullptr)
        return -1;
    if (write == 0)
        return readText({path, name}, buffer, length);
    return buffer != nullptr ? writeText({path, name}, buffer, *length) : -1;
}

ZRDRAW_API int zrCFGSave(int, int, int) {
    return run(
        Repeats::Logged, [] { store.save(); });
}

ZRDRAW_API int zrCFGUseStore(const char* file, char* reason, unsigned int reasonBytes) {
    const Outcome outcome = outcomeOf([=] { store.use(file); });
    logNotices(outcome);
    if (reason != nullptr && reasonBytes > 0)
        std::snprintf(reason, reasonBytes, "%s", outcome.problem.c_str());
    return outcome.problem.empty() ? 0 : -1;
}

ZRDRAW_API char* itoa(int value, char* text, int base) {
    constexpr std::size_t longest = 32; // the digits in base 2
    char* end = text;
    if (base == 10) {
        end = std::to_chars(text, text + longest, value).ptr;
    } else if (base >= 2 && base <= 36) {
        const auto pattern = static_cast<unsigned int>(value);
        end = std::to_chars(text, text + longest, pattern, base).ptr;
    }
    *end = 0;
    return text;
}
