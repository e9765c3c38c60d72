/**
 * The configuration store: texts that wait in this process until they are saved, over a file that
 * all processes share.
 */
#include "platform/config_store.h"

#include "platform/files.h"
#include "store/database.h"
#include "zrhost.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <mutex>

#include <unistd.h>

namespace {

using zrhost::Database;
using zrhost::StoreError;
using zrhost::Texts;

std::string variable(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr ? value : "";
}

std::string usersFile() {
    constexpr const char* name = "/zrdraw/settings.db";
    if (const std::string file = variable("ZRDRAW_STORE"); !file.empty())
        return file;
    if (const std::string folder = variable("XDG_CONFIG_HOME"); !folder.empty())
        return folder + name;
    return variable("HOME") + "/.config" + name;
}

class Store {
public:
    bool hasPath(const std::string& path) {
        const auto waits = [&](const auto& text) { return text.first.first == path; };
        return std::any_of(m_waiting.begin(), m_waiting.end(), waits) ||
               (open(Database::Open::IfThere) && m_database->hasPath(path));
    }

    std::optional<std::string> read(const std::string& path, const std::string& name) {
        const auto waiting = m_waiting.find({path, name});
        if (waiting != m_waiting.end())
            return waiting->second;
        return open(Database::Open::IfThere) ? m_database->read(path, name) : std::nullopt;
    }

    void write(const std::string& path, const std::string& name, const std::string& text) {
        m_waiting[{path, name}] = text;
    }

    void save() {
        if (m_waiting.empty())
            return;
        open(Database::Open::Make);
        m_database->write(m_waiting);
        m_waiting.clear();
    }

    void use(const char* file) {
        m_waiting.clear();
        m_database.reset();
        m_chosen = file != nullptr ? file : "";
        open(Database::Open::IfThere);
    }

private:
    // A connection is of one process: a forked one opens its own and leaves this one alone.
    bool open(Database::Open how) {
        const std::string file = m_chosen.empty() ? usersFile() : m_chosen;
        if (m_database && m_process != getpid())
            (void)m_database.release();
        if (m_database && (!m_database->isOpen() || m_file != file))
            m_database.reset();
        if (!m_database) {
            m_database = std::make_unique<Database>(file, how);
            m_file = file;
            m_process = getpid();
        }
        return m_database->isOpen();
    }

    std::string m_chosen; // empty: the user's own
    std::string m_file;   // that is open
    pid_t m_process = 0;
    std::unique_ptr<Database> m_database;
    Texts m_waiting;
};

std::mutex storeMutex;

Store& store() {
    static Store instance;
    return instance;
}

/** Runs an operation on the store; what fails is logged and answered with -1. */
template <class Operation>
int withStore(Operation operation) {
    const std::lock_guard lock(storeMutex);
    try {
        return operation(store());
    } catch (const std::exception& error) {
        ErrOut("%s", error.what());
        return -1;
    }
}

/** Copies a text as far as there is room. */
void give(const std::string& text, char* buffer, unsigned int* length) {
    if (buffer != nullptr && *length > 0) {
        const std::size_t room = *length - 1;
        const std::size_t bytes = std::min(text.size(), room);
        std::memcpy(buffer, text.data(), bytes);
        buffer[bytes] = '\0';
    }
    *length = static_cast<unsigned int>(text.size() + 1);
}

} // namespace

extern "C" {

ZRDRAW_API int zrCFGKeyExists(int, const char* path) {
    return withStore([=](Store& s) { return s.hasPath(path) ? 1 : 0; }) == 1 ? 1 : 0;
}

ZRDRAW_API int zrCFGValueString(int, const char* path, const char* name, char* buffer,
                                unsigned int* length, int write) {
    return withStore([=](Store& s) {
        if (write != 0) {
            s.write(path, name, buffer != nullptr ? buffer : "");
            return 0;
        }
        const std::optional<std::string> text = s.read(path, name);
        if (!text)
            return -1;
        give(*text, buffer, length);
        return 0;
    });
}

ZRDRAW_API int zrCFGSave(int, int, int) {
    return withStore([](Store& s) {
        s.save();
        return 0;
    });
}

ZRDRAW_API int zrCFGUseStore(const char* file, char* reason, unsigned int reasonBytes) {
    const std::lock_guard lock(storeMutex);
    try {
        store().use(file);
        return 0;
    } catch (const std::exception& error) {
        if (reason != nullptr)
            std::snprintf(reason, reasonBytes, "%s", error.what());
        return -1;
    }
}

} // extern "C"
