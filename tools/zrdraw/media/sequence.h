// Pictures with numbers in their names, as frames/in%04d.dpx: one of them a frame.
#pragma once

#include "media/av.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

// Whether a name holds one place for a number, as %d or %04d.
bool isSequenceName(const std::string& path);

// The same, and no file has that very name.
bool isSequenceToRead(const std::string& path);

// The number to begin with: the one wished for, or the least there is. None at all, and numbers
// missing between it and the greatest, are Failures.
int firstOfSequence(const std::string& path, std::optional<int> wanted);

// The files of a result, which appear under their names together or not at all: they are written
// into a folder beside, whose name begins with a dot.
class PictureFiles {
public:
    PictureFiles(const std::string& path, int firstNumber, bool force);
    ~PictureFiles();
    PictureFiles(const PictureFiles&) = delete;
    PictureFiles& operator=(const PictureFiles&) = delete;

    // The next picture, whole.
    void write(const AVPacket& picture);
    void commit();

private:
    std::string nameOf(int number) const;
    void requireFree(int number) const;
    void makeSafe() const;
    [[noreturn]] void failAt(const std::string& name, int systemError) const;

    std::string m_path;
    std::filesystem::path m_folder; // of parts
    bool m_force;
    int m_first;
    int m_next;
};
