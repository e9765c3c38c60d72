// Scripts from files.
#pragma once

#include <string>

// "-" is standard input. A file that cannot be read is a Failure.
std::string readScriptFile(const std::string& path);
