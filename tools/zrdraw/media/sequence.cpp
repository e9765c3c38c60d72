#include "media/sequence.h"

#include "common/tool_error.h"
#include "media/output_file.h"

#include <fmt/format.h>

#include <cerrno>
#include <charconv>
#include <cstring>
#include <set>
#include <string_view>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

// "in%04d.dpx" in its three parts.
struct Pattern {
    std::string before;
    int digits = 1;
    std::string after;
};

bool isDigit(char letter) {
    return letter >= '0' && letter <= '9';
}

std::optional<Pattern> patternOf(const std::string& path) {
    const std::size_t percent = path.find('%');
    if (percent == path.npos || path.find('%', percent + 1) != path.npos)
        return std::nullopt;
    std::size_t end = percent + 1;
    while (end < path.size() && isDigit(path[end]))
        ++end;
    const std::string_view digits(path.data() + percent + 1, end - percent - 1);
    const bool valid = end < path.size() && path[end] == 'd' && digits.size() <= 3 &&
                       (digits.empty() || digits.front() == '0') &&
                       path.find('/', percent) == path.npos;
    if (!valid)
        return std::nullopt;
    Pattern pattern{path.substr(0, percent), 1, path.substr(end + 1)};
    std::from_chars(digits.data(), digits.data() + digits.size(), pattern.digits);
    return pattern;
}

std::string nameIn(const Pattern& pattern, int number) {
    return fmt::format("{}{:0{}}{}", pattern.before, number, pattern.digits, pattern.after);
}

std::set<int> numbersOf(const Pattern& pattern) {
    const fs::path before(pattern.before);
    const fs::path folder = before.has_parent_path() ? before.parent_path() : fs::path(".");
    std::set<int> numbers;
    std::error_code error;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder, error)) {
        const std::string name = entry.path().filename();
        const std::string head = before.filename();
        if (name.size() <= head.size() + pattern.after.size() || !name.starts_with(head) ||
            !name.ends_with(pattern.after))
            continue;
        int number = 0;
        const char* end = name.data() + name.size() - pattern.after.size();
        const auto [stop, status] = std::from_chars(name.data() + head.size(), end, number);
        const bool isNumber = status == std::errc() && stop == end && number >= 0;
        if (isNumber && fs::path(nameIn(pattern, number)).filename() == name)
            numbers.insert(number);
    }
    return numbers;
}

} // namespace

bool isSequenceName(const std::string& path) {
    return patternOf(path).has_value();
}

bool isSequenceToRead(const std::string& path) {
    std::error_code ignored;
    return isSequenceName(path) && !fs::exists(path, ignored);
}

int firstOfSequence(const std::string& path, std::optional<int> wanted) {
    const Pattern pattern = *patternOf(path);
    const std::set<int> numbers = numbersOf(pattern);
    if (numbers.empty())
        throw Failure(fmt::format("no picture is named as '{}'", path));
    const int first = wanted.value_or(*numbers.begin());
    for (int number = first; number <= *numbers.rbegin(); ++number)
        if (!numbers.contains(number))
            throw Failure(fmt::format("'{}' lacks picture {}: {} is not there", path, number,
                                      nameIn(pattern, number)));
    if (first > *numbers.rbegin())
        throw Failure(fmt::format("'{}' ends at picture {}, before --start-number {}", path,
                                  *numbers.rbegin(), first));
    return first;
}

PictureFiles::PictureFiles(const std::string& path, int firstNumber, bool force)
    : m_path(path), m_force(force), m_first(firstNumber), m_next(firstNumber) {
    OutputFile::checkPath(nameOf(m_first), force);
    const fs::path first(nameOf(m_first));
    const fs::path folder = first.has_parent_path() ? first.parent_path() : fs::path(".");
    std::string pattern =
        folder / fmt::format(".{}.XXXXXX", fs::path(path).filename().string().substr(0, 200));
    if (!::mkdtemp(pattern.data()))
        failAt(path, errno);
    m_folder = pattern;
}

PictureFiles::~PictureFiles() {
    std::error_code ignored;
    fs::remove_all(m_folder, ignored);
}

std::string PictureFiles::nameOf(int number) const {
    return nameIn(*patternOf(m_path), number);
}

void PictureFiles::requireFree(int number) const {
    OutputFile::checkPath(nameOf(number), m_force);
}

void PictureFiles::write(const AVPacket& picture) {
    const int number = m_next++;
    requireFree(number);
    const std::string name = nameOf(number);
    OutputFile file(m_folder / fs::path(name).filename(), true, fmt::format("'{}'", name));
    avio_write(file.io(), picture.data, picture.size);
    file.commit();
}

// All are looked at first, so that the renaming itself has no more reason to fail; what fails all
// the same takes back what was renamed, unless that has replaced another.
void PictureFiles::commit() {
    for (int number = m_first; number < m_next; ++number)
        requireFree(number);
    if (m_force)
        makeSafe();
    for (int number = m_first; number < m_next; ++number) {
        const std::string name = nameOf(number);
        const fs::path part = m_folder / fs::path(name).filename();
        const int error = renameInto(part, name, m_force);
        if (error == 0)
            continue;
        for (int done = m_first; done < number && !m_force; ++done)
            ::unlink(nameOf(done).c_str());
        failAt(name, error);
    }
}

// What is replaced is not let go before the new ones are safe from a loss of power.
void PictureFiles::makeSafe() const {
    const int folder = ::open(m_folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const int synced = folder < 0 ? -1 : ::syncfs(folder);
    const int error = errno;
    if (folder >= 0)
        ::close(folder);
    if (synced != 0)
        failAt(m_path, error);
}

void PictureFiles::failAt(const std::string& name, int systemError) const {
    throw Failure(fmt::format("cannot write '{}': {}", name, std::strerror(systemError)));
}
