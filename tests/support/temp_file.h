// Files as strings, and one of given content for as long as it is in scope.
#pragma once

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>

#include <unistd.h>

inline std::string readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

inline void writeFile(const std::string& path, const std::string& content) {
    std::ofstream(path, std::ios::binary) << content;
}

class TempFile {
public:
    explicit TempFile(const std::string& content) {
        const int file = mkstemp(m_path.data());
        if (file >= 0)
            close(file);
        writeFile(m_path, content);
    }
    ~TempFile() { unlink(m_path.c_str()); }
    TempFile(const TempFile&) = delete;
    TempFile& operator=(const TempFile&) = delete;

    const char* path() const { return m_path.c_str(); }

private:
    std::string m_path = (getenv("TMPDIR") != nullptr ? std::string(getenv("TMPDIR")) : "/tmp") +
                         "/zrdraw_test_XXXXXX";
};
