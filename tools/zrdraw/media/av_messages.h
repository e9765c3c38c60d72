// Every message of the tool is one line of its own; the media libraries must not add theirs, which
// are often the better reason for a failure.
#pragma once

#include <string>

// The libraries print nothing any more.
void quietAv();

// While it lives nothing is printed on standard error: some encoders write there themselves, past
// the libraries. Only while no other thread is at work.
class SilentStderr {
public:
    SilentStderr();
    ~SilentStderr();
    SilentStderr(const SilentStderr&) = delete;
    SilentStderr& operator=(const SilentStderr&) = delete;

private:
    int m_kept;
};

// From its beginning on, what the libraries complain of in this thread is kept.
class AvMessages {
public:
    AvMessages();

    // The last complaint, or what the error number means where there is none.
    std::string cause(int error) const;
};
