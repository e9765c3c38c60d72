// A file of given content, for as long as it is in scope.
#pragma once

#include <cstdlib>
#include <fstream>
#include <string>

#include <unistd.h>

class TempFile {
public:
    explicit TempFile(const std::string& content) {
        const int file = mkstemp(m_path.data());
        if (file >= 0)
            close(file);
        std::ofstream(m_path, std::ios::binary) << content;
    }
    ~TempFile() { unlink(m_path.c_str()); }
    TempFile(const TempFile&) = delete;
    TempFile& operator=(const TempFile&) = delete;

    const char* path() const { return m_path.c_str(); }

private:
    std::string m_path = (getenv("TMPDIR") != nullptr ? std::string(getenv("TMPDIR")) : "/tmp") +
                         "/zrdraw_test_XXXXXX";
};
