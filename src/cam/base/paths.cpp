// Case folding by Qt, and walks down a path, folder by folder.
#include "cam/base/paths.h"

#include <QString>

#include <algorithm>
#include <iterator>
#include <system_error>

namespace cam {

namespace fs = std::filesystem;

namespace {

bool isAscii(std::string_view text)
{
    return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

std::string asciiLowerCase(std::string_view text)
{
    std::string lower(text);
    for (char &c : lower) {
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c + ('a' - 'A'));
    }
    return lower;
}

} // namespace

std::string lowerCase(std::string_view text)
{
    if (isAscii(text))
        return asciiLowerCase(text);
    const auto length = static_cast<int>(text.size());
    const QString decoded = QString::fromUtf8(text.data(), length);
    // What is no UTF-8 decodes to one and the same character: names that differ must not become equal.
    if (decoded.toUtf8() != QByteArray::fromRawData(text.data(), length))
        return asciiLowerCase(text);
    return decoded.toLower().toStdString();
}

bool isPlainName(std::string_view name)
{
    const auto isForbidden = [](char c) {
        return c == '/' || c == '\\' || c == ':' || static_cast<unsigned char>(c) < 0x20;
    };
    return name != "." && name != ".." && std::none_of(name.begin(), name.end(), isForbidden);
}

namespace {

// Whether the file system takes `entry` for the same thing when its name is written in the other case.
bool ignoresCase(const fs::path &folder, std::string_view name)
{
    std::string other = asciiLowerCase(name);
    if (other == name) {
        for (char &c : other) {
            if (c >= 'a' && c <= 'z')
                c = static_cast<char>(c - ('a' - 'A'));
        }
    }
    std::error_code missing;
    return other != name &&
           fs::equivalent(folder / fs::u8path(name.begin(), name.end()), folder / fs::u8path(other), missing);
}

} // namespace

std::vector<fs::path> findEntries(const fs::path &folder, std::string_view name)
{
    std::vector<fs::path> found;
    if (name.empty() || !isPlainName(name))
        return found;
    std::error_code failure;
    const fs::path exact = folder / fs::u8path(name.begin(), name.end());
    if (fs::exists(exact, failure)) {
        found.push_back(exact);
        if (ignoresCase(folder, name))
            return found;
    }
    const auto others = static_cast<std::ptrdiff_t>(found.size());
    const std::string wanted = lowerCase(name);
    for (fs::directory_iterator entry(folder, failure), end; !failure && entry != end;
         entry.increment(failure)) {
        const std::string candidate = entry->path().filename().u8string();
        if (candidate != name && lowerCase(candidate) == wanted)
            found.push_back(entry->path());
    }
    // The order of a folder's entries is the file system's.
    std::sort(found.begin() + others, found.end());
    return found;
}

std::optional<fs::path> findEntry(const fs::path &folder, std::string_view name)
{
    if (name.empty() || !isPlainName(name))
        return std::nullopt;
    std::error_code failure;
    fs::path exact = folder / fs::u8path(name.begin(), name.end());
    if (fs::exists(exact, failure))
        return exact;
    const std::vector<fs::path> found = findEntries(folder, name);
    return found.empty() ? std::nullopt : std::optional<fs::path>(found.front());
}

namespace {

fs::path localPath(const std::string &path)
{
    std::string slashed = path;
    std::replace(slashed.begin(), slashed.end(), '\\', '/');
    return fs::u8path(slashed).lexically_normal();
}

fs::path inFolder(const fs::path &folder)
{
    return folder.empty() ? fs::path(".") : folder;
}

// The folders on disk that `path` names but for case; an exact match first.
std::vector<fs::path> findFolders(const fs::path &path)
{
    std::vector<fs::path> found{path.root_path()};
    for (const fs::path &part : path.relative_path()) {
        std::vector<fs::path> next;
        for (const fs::path &folder : found) {
            if (part == "." || part == "..") {
                next.push_back(folder / part);
                continue;
            }
            std::error_code ignored;
            for (const fs::path &entry : findEntries(inFolder(folder), part.u8string())) {
                if (fs::is_directory(entry, ignored))
                    next.push_back(folder / entry.filename());
            }
        }
        found = std::move(next);
    }
    return found;
}

fs::file_time_type changed(const fs::path &folder)
{
    std::error_code failure;
    const fs::file_time_type time = fs::last_write_time(inFolder(folder), failure);
    return failure ? fs::file_time_type::min() : time;
}

} // namespace

fs::path resolveIgnoringCase(const std::string &path)
{
    const fs::path wanted = localPath(path);
    fs::path resolved = wanted.root_path();
    const fs::path relative = wanted.relative_path();
    for (auto part = relative.begin(); part != relative.end(); ++part) {
        const bool isLast = std::next(part) == relative.end();
        const auto entry =
            *part == ".." || *part == "." ? std::nullopt : findEntry(inFolder(resolved), part->u8string());
        std::error_code ignored;
        if (entry && (isLast || fs::is_directory(*entry, ignored)))
            resolved = resolved.empty() ? entry->filename() : resolved / entry->filename();
        else
            resolved /= *part;
    }
    return resolved;
}

fs::path resolveOutputPath(const std::string &path)
{
    const fs::path wanted = localPath(path);
    std::vector<fs::path> folders = findFolders(wanted.parent_path());
    if (folders.empty())
        return resolveIgnoringCase(path);
    std::error_code ignored;
    fs::path folder = wanted.parent_path();
    if (lowerCase(path) == path || !fs::is_directory(inFolder(folder), ignored))
        folder = *std::max_element(folders.begin(), folders.end(),
                                   [](const auto &a, const auto &b) { return changed(a) < changed(b); });
    const auto file = findEntry(inFolder(folder), wanted.filename().u8string());
    return folder / (file ? file->filename() : wanted.filename());
}

} // namespace cam
