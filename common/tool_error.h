// How the tool fails: one line for the user and an exit status.
#pragma once

#include <stdexcept>
#include <string>

enum class ExitStatus { Done = 0, Failed = 1, BadUsage = 2 };

// The message is one line that names the thing and the mend, without the program's name.
class ToolError : public std::runtime_error {
public:
    ToolError(ExitStatus exitStatus, const std::string& message)
        : std::runtime_error(message), status(exitStatus) {}
    const ExitStatus status;
};

struct Failure : ToolError {
    explicit Failure(const std::string& message) : ToolError(ExitStatus::Failed, message) {}
};

struct UsageError : ToolError {
    explicit UsageError(const std::string& message) : ToolError(ExitStatus::BadUsage, message) {}
};
