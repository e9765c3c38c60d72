// What goes wrong with a configuration store, told in one line for the person who has to mend it.
#pragma once

#include <stdexcept>
#include <string>

namespace zrhost {

inline std::string aboutStore(const std::string& file, const std::string& text) {
    return "settings store '" + file + "': " + text;
}

// The store cannot be used now.
class StoreError : public std::runtime_error {
public:
    StoreError(const std::string& file, const std::string& problem, const std::string& mend)
        : std::runtime_error(aboutStore(file, problem + "; " + mend)) {}
};

// What the file holds is no store, or no longer a whole one.
class DamageError : public StoreError {
public:
    DamageError(const std::string& file, const std::string& problem)
        : StoreError(file, problem, "remove the file, or name another one by ZRDRAW_STORE"),
          m_problem(problem) {}

    const std::string& problem() const { return m_problem; }

private:
    std::string m_problem;
};

} // namespace zrhost
