#include "archive/entrylist.h"

#include "archive/bitexception.h"

#include <algorithm>

namespace archive {

namespace {

template <typename T>
T valueOr(const PropertyValue &value, T otherwise)
{
    const T *held = std::get_if<T>(&value);
    return held ? *held : otherwise;
}

// Bits of a POSIX mode that tell the kind of a file.
const std::uint64_t modeKindMask = 0170000;
const std::uint64_t modeRegular = 0100000;
const std::uint64_t modeFolder = 0040000;
const std::uint64_t modeLink = 0120000;

// Remarks of a tar entry, as 7-Zip words them: the type flag ("0", or "[00]" for a zero byte), then words.
struct Remarks
{
    std::string typeFlag;
    bool isDamaged = false;
    bool isGnu = false;     // its header is in GNU's old form
    bool hasPrefix = false; // its name stands in two fields

    explicit Remarks(const std::wstring &text)
    {
        const std::string remarks(text.begin(), text.end()); // all of it is ASCII
        std::size_t end = 0;
        const auto nextWord = [&] {
            const std::size_t begin = std::min(remarks.find_first_not_of(' ', end), remarks.size());
            end = std::min(remarks.find(' ', begin), remarks.size());
            return remarks.substr(begin, end - begin);
        };
        typeFlag = nextWord();
        for (std::string word = nextWord(); !word.empty(); word = nextWord()) {
            isDamaged = isDamaged || word == "ERROR" || word == "METHOD_ERROR" || word == "PAX_error";
            isGnu = isGnu || word == "GNU";
            hasPrefix = hasPrefix || word == "PREFIX";
        }
    }
};

// Why a tar entry cannot be unpacked faithfully, or an empty text.
std::string flawOf(const InArchive &archive, std::uint32_t index, std::uint64_t mode)
{
    const Remarks remarks(valueOr(archive.entryProperty(index, Property::Characteristics), std::wstring()));
    if (remarks.isDamaged)
        return "its header is damaged";
    // What stands there is a time, in an incremental backup, and the 7-Zip library takes it for a folder.
    if (remarks.isGnu && remarks.hasPrefix)
        return "its header, of GNU's own form, has text where other forms have the begin of the name";
    const std::uint64_t kind = mode & modeKindMask;
    if (kind != 0 && kind != modeRegular && kind != modeFolder && kind != modeLink)
        return "it is a device, a pipe or a socket";
    // "7" is a contiguous file, "D" a folder with the list of what was in it; old archives have letters for
    // whole disks and for parts of files.
    static const std::string known = "0 1 2 5 7 D S [00]";
    if (!remarks.typeFlag.empty() && known.find(remarks.typeFlag) == std::string::npos)
        return "its type \"" + remarks.typeFlag + "\" is not known";
    // An entry of type 5 has no content, whatever its size. One that is a folder by the slash at its name's
    // end is another matter.
    if (remarks.typeFlag != "5" && remarks.typeFlag != "D" &&
        valueOr(archive.entryProperty(index, Property::IsFolder), false) &&
        valueOr(archive.entryProperty(index, Property::Size), std::uint64_t(0)) > 0)
        return "it is a folder with a size, after which some programs expect content and others do not";
    if (valueOr(archive.entryProperty(index, Property::Comment), std::wstring()).find(L"GNU.sparse.") !=
        std::wstring::npos)
        return "it is a sparse file in the extended form that 7-Zip does not read";
    return {};
}

// Whether a tar's global extended header says something about its entries that the 7-Zip library, which shows
// a record of it a line in the archive's comment, does not apply to them.
bool changesEntries(const std::wstring &globalHeader)
{
    for (const wchar_t *record : {L"\npath=", L"\nlinkpath=", L"\nsize=", L"\nGNU.sparse."}) {
        if (globalHeader.find(record) != std::wstring::npos)
            return true;
    }
    return false;
}

// A path as archives write it. On Windows 7-Zip has put "\" for every "/"; a "\" that stands in the archive
// comes as another character, so nothing is lost.
std::wstring withArchiveSeparators(std::wstring path)
{
#ifdef _WIN32
    std::replace(path.begin(), path.end(), L'\\', L'/');
#endif
    return path;
}

Entry readEntry(const InArchive &archive, std::uint32_t index, bool isTar)
{
    const auto text = [&](Property property) {
        return withArchiveSeparators(valueOr(archive.entryProperty(index, property), std::wstring()));
    };
    Entry entry;
    entry.index = index;
    entry.path = text(Property::Path);
    entry.size = valueOr(archive.entryProperty(index, Property::Size), std::uint64_t(0));
    const PropertyValue modified = archive.entryProperty(index, Property::Modified);
    if (const FileTime *time = std::get_if<FileTime>(&modified))
        entry.modified = time->ticks;
    if (!isTar)
        return entry;

    const std::uint64_t mode = valueOr(archive.entryProperty(index, Property::PosixMode), std::uint64_t(0));
    entry.flaw = flawOf(archive, index, mode);
    const std::wstring symbolic = text(Property::SymbolicLink);
    const std::wstring hard = text(Property::HardLink);
    if (!entry.flaw.empty()) {
        entry.kind = Entry::Kind::Unsupported;
    } else if (!symbolic.empty() || (mode & modeKindMask) == modeLink) {
        entry.kind = Entry::Kind::SymbolicLink;
        entry.linkTarget = symbolic;
    } else if (!hard.empty()) {
        entry.kind = Entry::Kind::HardLink;
        entry.linkTarget = hard;
    } else if (valueOr(archive.entryProperty(index, Property::IsFolder), false)) {
        entry.kind = Entry::Kind::Folder;
    }
    return entry;
}

} // namespace

std::vector<Entry> readEntries(const InArchive &archive, const BitInFormat &format)
{
    const bool isTar = format.number == BitFormat::Tar.number;
    const std::uint64_t errors = valueOr(archive.archiveProperty(Property::ErrorFlags), std::uint64_t(0));
    if (errors & UnexpectedEnd)
        throw BitException("the archive ends before its end marker");
    if (errors & (IsNotArchive | HeadersError))
        throw BitException("the archive's headers are damaged");
    if (isTar && changesEntries(valueOr(archive.archiveProperty(Property::Comment), std::wstring())))
        throw BitException("the archive has a global header that changes the names or sizes of its entries");

    std::vector<Entry> entries;
    const std::uint32_t count = archive.entryCount();
    entries.reserve(count);
    for (std::uint32_t index = 0; index < count; ++index)
        entries.push_back(readEntry(archive, index, isTar));
    return entries;
}

} // namespace archive
