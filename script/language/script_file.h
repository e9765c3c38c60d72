// Scripts from files.
#pragma once

#include <string>

// "-" is standard input. A file that cannot be read is a Failure.
std::string readScriptFile(const std::string& path);

// With its stroke at the end; empty for a name without one.
std::string folderOf(const std::string& path);

// A name of a file as a script in a folder means it.
std::string besideScript(const std::string& folder, const std::string& name);
