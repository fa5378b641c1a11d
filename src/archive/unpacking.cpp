#include "archive/unpacking.h"

#include "archive/backend.h"
#include "archive/bitexception.h"
#include "archive/entryname.h"
#include "archive/extractionplan.h"
#include "archive/filecopier.h"
#include "archive/filesystem.h"
#include "archive/filewriter.h"
#include "archive/localpath.h"
#include "archive/outfile.h"
#include "archive/stagingfolder.h"

#include <system_error>

namespace archive {

namespace fs = std::filesystem;

namespace {

std::wstring withoutEnding(const std::wstring &name)
{
    const std::size_t dot = name.rfind(L'.');
    return dot == std::wstring::npos || dot == 0 ? name : name.substr(0, dot);
}

bool isTaken(const fs::path &path)
{
    return statusOfItself(path).type() != fs::file_type::not_found;
}

// Gives the files of a plan, which the back end decodes in the plan's order, to the file writer.
class WritingSink : public EntrySink
{
public:
    WritingSink(const std::vector<ExtractionPlan::File> &files, const fs::path &folder, const Check &check)
        : m_next(files.begin()), m_end(files.end()), m_folder(folder), m_check(check)
    {
    }

    void begin(std::uint32_t index) override
    {
        if (m_next == m_end || m_next->index != index)
            throw BitException("the 7-Zip library gave the content of an entry that was not asked for");
        m_writer.beginFile(m_folder / localRelativePath(m_next->path), m_next->modified);
    }

    void write(const void *data, std::size_t size) override
    {
        m_check();
        m_writer.write(data, size);
    }

    void end() override
    {
        m_writer.endFile();
        ++m_next;
    }

    void finish()
    {
        m_writer.finish();
        if (m_next != m_end)
            throw BitException("\"" + utf8(m_next->path) + "\": the 7-Zip library gave no content for it");
    }

private:
    std::vector<ExtractionPlan::File>::const_iterator m_next;
    std::vector<ExtractionPlan::File>::const_iterator m_end;
    fs::path m_folder;
    const Check &m_check;
    FileWriter m_writer;
};

// Refuses a plan that would write through a link that is already in the output folder, or into a file. Only
// what is merged into `mergeFolder` meets anything there.
void checkFoldersThere(const ExtractionPlan &plan, const fs::path &output, const fs::path &mergeFolder)
{
    std::wstring top;
    bool isMerged = false; // everything in `top`
    std::wstring missing;  // a folder that is not there, with a "/": nothing in it needs a look
    for (const ExtractionPlan::Folder &folder : plan.folders) {
        if (firstPart(folder.path) != top) {
            top = firstPart(folder.path);
            isMerged = StagingFolder::isReplaceable(output, localRelativePath(top), mergeFolder);
        }
        if (!isMerged || (!missing.empty() && folder.path.compare(0, missing.size(), missing) == 0))
            continue;
        const fs::path path = output / localRelativePath(folder.path);
        const fs::file_type type = statusOfItself(path).type();
        if (type == fs::file_type::not_found)
            missing = folder.path + L'/';
        if (type == fs::file_type::directory || type == fs::file_type::not_found)
            continue;
        throw BitException("\"" + utf8(folder.path) + "\": the output folder has a " +
                           (type == fs::file_type::regular ? "file" : "link") + " of this name");
    }
}

void checkSpace(std::uint64_t needed, const fs::path &output)
{
    std::error_code unknown;
    const fs::space_info space = fs::space(output, unknown);
    if (!unknown && needed > space.available)
        throw BitException("the content takes " + std::to_string(needed) + " bytes, but only " +
                           std::to_string(space.available) + " are free");
}

void makePlannedFolders(const ExtractionPlan &plan, const fs::path &folder)
{
    for (const ExtractionPlan::Folder &planned : plan.folders)
        makeFolder(folder / localRelativePath(planned.path));
}

// Links come after all files, so that nothing is ever written through one.
void makePlannedLinks(const ExtractionPlan &plan, const fs::path &folder)
{
    for (const ExtractionPlan::Link &link : plan.hardLinks)
        makeHardLink(folder / localRelativePath(link.target), folder / localRelativePath(link.path));
    for (const ExtractionPlan::Link &link : plan.symbolicLinks)
        makeSymbolicLink(localRelativePath(link.target), folder / localRelativePath(link.path),
                         link.toFolder);
}

// Inner folders first: making something in a folder changes its time.
void setFolderTimes(const ExtractionPlan &plan, const fs::path &folder)
{
    for (auto it = plan.folders.rbegin(); it != plan.folders.rend(); ++it) {
        if (it->modified)
            setFolderTime(folder / localRelativePath(it->path), *it->modified);
    }
}

// Has the back end decode `files` into `folder`.
void decodeFiles(const InArchive &archive, const std::vector<ExtractionPlan::File> &files,
                 const fs::path &folder, const Check &check)
{
    std::vector<std::uint32_t> indices;
    indices.reserve(files.size());
    for (const ExtractionPlan::File &file : files)
        indices.push_back(file.index);
    WritingSink sink(files, folder, check);
    archive.extract(indices, sink);
    sink.finish();
}

// A tar holds most files as they are: these are copied from the archive file `source` without a decoder
// between.
void unpackFiles(const InArchive &archive, const std::vector<ExtractionPlan::File> &files,
                 const std::wstring &source, const fs::path &folder, const Check &check)
{
    std::vector<FilePart> plain;
    std::vector<ExtractionPlan::File> others;
    plain.reserve(files.size());
    for (const ExtractionPlan::File &file : files) {
        const std::optional<std::uint64_t> offset =
            file.size > 0 ? archive.contentOffset(file.index, file.size) : std::uint64_t(0);
        if (offset)
            plain.push_back({folder / localRelativePath(file.path), *offset, file.size, file.modified});
        else
            others.push_back(file);
    }
    copyParts(InFile(source), plain, check);
    if (!others.empty())
        decodeFiles(archive, others, folder, check);
}

// Whether a file of this name may be the tar of an earlier import.
bool isTarName(const std::wstring &name)
{
    const std::size_t endingLength = 4;
    if (name.size() < endingLength)
        return false;
    return foldedName(name.substr(name.size() - endingLength), NameRules::Windows) == L".TAR";
}

// The file that a gzip member becomes. Without a stored name it is the archive's base name; when something of
// that name is there (the job of an earlier import), or the tar that it is going to be renamed to, it gets
// its ".tar" at once.
std::wstring memberFileName(const std::wstring &storedName, const std::wstring &baseName,
                            const fs::path &output)
{
    if (!storedName.empty()) {
        checkMemberName(storedName, nativeNameRules());
        return storedName;
    }
    if (isTaken(output / localRelativePath(baseName)) ||
        isTaken(output / localRelativePath(baseName + L".tar")))
        return baseName + L".tar";
    return baseName;
}

} // namespace

Unpacked unpackTar(const InArchive &archive, const std::vector<Entry> &entries,
                   const std::wstring &archiveFile, const fs::path &output, const fs::path &mergeFolder,
                   const Check &check)
{
    const ExtractionPlan plan = planExtraction(entries, nativeNameRules());
    checkFoldersThere(plan, output, mergeFolder);
    StagingFolder staging(output);
    checkSpace(plan.totalSize, output);
    makePlannedFolders(plan, staging.content());
    unpackFiles(archive, plan.files, archiveFile, staging.content(), check);
    makePlannedLinks(plan, staging.content());
    setFolderTimes(plan, staging.content());

    Unpacked unpacked;
    for (const StagingFolder::Placed &placed : staging.commit(mergeFolder)) {
        unpacked.names[wideFromLocal(placed.name)] = wideFromLocal(placed.placedAs);
        unpacked.isMerged = unpacked.isMerged || placed.isMerged;
    }
    return unpacked;
}

void unpackGZip(const InArchive &archive, const std::vector<Entry> &entries, const std::wstring &archiveFile,
                const fs::path &output, const Check &check)
{
    if (entries.size() != 1)
        throw BitException("the gzip file has " + std::to_string(entries.size()) + " members");
    const std::wstring baseName = withoutEnding(lastPart(archiveFile));
    const std::wstring name = memberFileName(entries[0].path, baseName, output);
    const fs::path place = output / localRelativePath(name);
    if (fs::is_directory(statusOfItself(place)))
        throw BitException("\"" + utf8(name) + "\": the output folder has a folder of this name");
    if (isSame(place, localPath(archiveFile)))
        throw BitException("\"" + utf8(name) + "\": the gzip member would replace its own archive");
    if (isTaken(place) && !isTarName(name))
        throw BitException("\"" + utf8(name) +
                           "\": the output folder has a file of this name, which is no tar");

    StagingFolder staging(output);
    decodeFiles(archive, {{0, name, entries[0].size, entries[0].modified}}, staging.content(), check);
    staging.commit(localRelativePath(name));
}

} // namespace archive
