// Case folding by code-point ranges, and a walk down the path, folder by folder.
#include "host/cam/paths.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <system_error>
#include <vector>

namespace cam {

namespace fs = std::filesystem;

namespace {

// Two-byte UTF-8 sequences hold all the alphabets that are folded: U+0080 to U+07FF.
std::uint32_t foldTwoByte(std::uint32_t letter)
{
    const auto in = [letter](std::uint32_t first, std::uint32_t last) {
        return letter >= first && letter <= last;
    };
    if (in(0xC0, 0xDE) && letter != 0xD7)
        return letter + 0x20;
    if (in(0x100, 0x12F) || in(0x132, 0x137) || in(0x14A, 0x177))
        return letter | 1; // capitals are even
    if (in(0x139, 0x148) || in(0x179, 0x17E))
        return letter + (letter & 1); // capitals are odd
    if (letter == 0x178)
        return 0xFF;
    if (in(0x391, 0x3A9))
        return letter + 0x20;
    if (in(0x410, 0x42F))
        return letter + 0x20;
    if (in(0x400, 0x40F))
        return letter + 0x50;
    return letter;
}

} // namespace

std::string lowerCase(std::string_view text)
{
    std::string lower(text);
    for (std::size_t i = 0; i < lower.size(); ++i) {
        const auto byte = static_cast<unsigned char>(lower[i]);
        if (byte >= 'A' && byte <= 'Z') {
            lower[i] = static_cast<char>(byte + ('a' - 'A'));
        } else if ((byte & 0xE0u) == 0xC0u && i + 1 < lower.size()) {
            const auto next = static_cast<unsigned char>(lower[i + 1]);
            const std::uint32_t folded = foldTwoByte(((byte & 0x1Fu) << 6) | (next & 0x3Fu));
            lower[i] = static_cast<char>(0xC0u | (folded >> 6));
            lower[++i] = static_cast<char>(0x80u | (folded & 0x3Fu));
        }
    }
    return lower;
}

bool isPlainName(std::string_view name)
{
    const auto isForbidden = [](char c) {
        return c == '/' || c == '\\' || c == ':' || static_cast<unsigned char>(c) < 0x20;
    };
    return name != "." && name != ".." && std::none_of(name.begin(), name.end(), isForbidden);
}

std::optional<fs::path> findEntry(const fs::path &folder, std::string_view name)
{
    if (name.empty() || !isPlainName(name))
        return std::nullopt;
    std::error_code failure;
    const fs::path exact = folder / fs::u8path(name.begin(), name.end());
    if (fs::exists(exact, failure))
        return exact;
    const std::string wanted = lowerCase(name);
    std::optional<fs::path> found;
    for (fs::directory_iterator entry(folder, failure), end; !failure && entry != end;
         entry.increment(failure)) {
        const fs::path candidate = entry->path();
        // The order of a folder's entries is the file system's: the smallest of several matches is taken.
        if (lowerCase(candidate.filename().u8string()) == wanted && (!found || candidate < *found))
            found = candidate;
    }
    return found;
}

fs::path resolveIgnoringCase(const std::string &path)
{
    std::string slashed = path;
    std::replace(slashed.begin(), slashed.end(), '\\', '/');
    const fs::path wanted = fs::u8path(slashed).lexically_normal();
    fs::path resolved = wanted.root_path();
    const fs::path relative = wanted.relative_path();
    for (auto part = relative.begin(); part != relative.end(); ++part) {
        const fs::path folder = resolved.empty() ? fs::path(".") : resolved;
        const bool isLast = std::next(part) == relative.end();
        const auto entry = *part == ".." || *part == "." ? std::nullopt : findEntry(folder, part->u8string());
        std::error_code ignored;
        if (entry && (isLast || fs::is_directory(*entry, ignored)))
            resolved = resolved.empty() ? entry->filename() : resolved / entry->filename();
        else
            resolved /= *part;
    }
    return resolved;
}

} // namespace cam
