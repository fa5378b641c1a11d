#include "archive/archive.h"

#include "archive/backend.h"
#include "archive/entrylist.h"
#include "archive/entryname.h"
#include "archive/localpath.h"
#include "platform/paths.h"

#include <filesystem>

namespace archive {

Bit7zLibrary::Bit7zLibrary(const std::wstring &name) : m_backend(loadBackend(name)) {}

std::wstring BitArchiveItem::name() const
{
    return lastPart(m_entry.path);
}

std::wstring BitArchiveItem::topFolder() const
{
    std::wstring path = m_entry.path;
    while (path.compare(0, 2, L"./") == 0)
        path.erase(0, path.find_first_not_of(L'/', 1));
    const std::wstring first = firstPart(path);
    return first.size() < path.size() || m_entry.kind == Entry::Kind::Folder ? first : std::wstring();
}

BitArchiveInfo::BitArchiveInfo(const Bit7zLibrary &library, const std::wstring &file,
                               const BitInFormat &format, const std::wstring &password)
    : m_archive(library.backend().open(platform::toLocal(file), format))
{
    if (!password.empty())
        throw BitException("gzip and tar files have no password");
    m_entries = readEntries(*m_archive, format);
}

BitArchiveInfo::~BitArchiveInfo() = default;

std::vector<BitArchiveItem> BitArchiveInfo::items() const
{
    return std::vector<BitArchiveItem>(m_entries.begin(), m_entries.end());
}

BitArchiveInfo::Properties BitArchiveInfo::archiveProperties() const
{
    Properties properties;
    const PropertyValue size = m_archive->archiveProperty(Property::PhysicalSize);
    if (const std::uint64_t *bytes = std::get_if<std::uint64_t>(&size))
        properties.physicalSize = *bytes;
    return properties;
}

BitExtractor::BitExtractor(const Bit7zLibrary &library, const BitInFormat &format)
    : m_library(library), m_format(format)
{
}

BitExtractor::Unpacked BitExtractor::extract(const std::wstring &file, const std::wstring &folder,
                                             const std::wstring &mergeFolder) const
{
    const std::wstring localFile = platform::toLocal(file);
    const std::filesystem::path output = localPath(platform::toLocal(folder));
    const std::unique_ptr<InArchive> archive = m_library.backend().open(localFile, m_format);
    const std::vector<Entry> entries = readEntries(*archive, m_format);
    if (m_format.number == BitFormat::Tar.number)
        return unpackTar(*archive, entries, localFile, output, localRelativePath(mergeFolder), m_check);
    unpackGZip(*archive, entries, localFile, output, m_check);
    return {};
}

} // namespace archive
