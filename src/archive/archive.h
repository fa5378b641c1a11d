// Reading and unpacking archives. The names follow bit7z, the archive library that can stand in for this
// layer's own back end; texts are wide, as the plug-in's import parameters are.
//
// An archive is unpacked completely or not at all: every entry's name is checked before the first write, the
// content is built in a folder of its own inside the output folder, and only a complete content is moved to
// its place. After a failure the output folder is what it was. After a success, what was in it is what it
// was, but for one folder that the caller may name.
//
//     Bit7zLibrary library;
//     BitExtractor(library, BitFormat::GZip).extract(L"C:\\mail\\job.tgz", L"C:\\jobs\\");
#pragma once

#include "archive/bitexception.h"
#include "archive/entry.h"
#include "archive/format.h"
#include "archive/unpacking.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace archive {

class Backend;
class InArchive;

// The loaded 7-Zip library.
class Bit7zLibrary
{
public:
    // Loads the library `name`, a file name or a path; throws BitException when there is none.
    explicit Bit7zLibrary(const std::wstring &name = L"7z.dll");

    const Backend &backend() const { return *m_backend; }

private:
    std::shared_ptr<const Backend> m_backend;
};

// One entry of an archive's list.
class BitArchiveItem
{
public:
    explicit BitArchiveItem(Entry entry) : m_entry(std::move(entry)) {}

    // The path as the archive stores it, without a "/" at its end; empty for a gzip member without a stored
    // name.
    const std::wstring &path() const { return m_entry.path; }
    // The last part of the path.
    std::wstring name() const;
    // The folder at the top of the archive that the entry is or lies in; empty for anything else.
    std::wstring topFolder() const;

private:
    Entry m_entry;
};

// The list of an archive's entries.
class BitArchiveInfo
{
public:
    // Opens `file`, which must be of the format `format`; throws BitException otherwise. `password` must be
    // empty: the formats known here have none.
    BitArchiveInfo(const Bit7zLibrary &library, const std::wstring &file, const BitInFormat &format,
                   const std::wstring &password = std::wstring());
    ~BitArchiveInfo();

    // The entries in archive order.
    std::vector<BitArchiveItem> items() const;

    struct Properties
    {
        std::uint64_t physicalSize = 0; // bytes of the file that belong to the archive, 0 when not known
    };
    Properties archiveProperties() const;

private:
    std::unique_ptr<InArchive> m_archive;
    std::vector<Entry> m_entries;
};

// Unpacks archives of one format.
class BitExtractor
{
public:
    // Both arguments must outlive the extractor.
    BitExtractor(const Bit7zLibrary &library, const BitInFormat &format);

    // Has `check` called often while content is written, on any thread. What it throws ends the unpacking,
    // which leaves the output folder as it was, and comes out of extract().
    void setCheck(Check check) { m_check = std::move(check); }

    using Unpacked = archive::Unpacked;

    // Unpacks all of `file` into `folder`, which is made when it is missing. Throws BitException (or another
    // std::exception) when anything is wrong with the archive, one of its names would leave `folder`, or
    // writing fails.
    //
    // A tar touches nothing that is in `folder` but the folder `mergeFolder` of it: a folder of the archive
    // that has its name is unpacked over it. An item at the top whose name is taken otherwise gets a free one
    // ("odb~1"). A gzip member replaces a file of its name that ends in ".tar", and nothing else. Without a
    // stored name it gets the archive's base name, or that and ".tar" when one of the two is taken.
    Unpacked extract(const std::wstring &file, const std::wstring &folder,
                     const std::wstring &mergeFolder = std::wstring()) const;

private:
    const Bit7zLibrary &m_library;
    const BitInFormat &m_format;
    Check m_check = [] {};
};

} // namespace archive
