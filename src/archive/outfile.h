// A new file that is written at given offsets, from any thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>

namespace archive {

class OutFile
{
public:
    // Makes the file; fails when there is anything of that name. Throws BitException, as all operations do.
    explicit OutFile(const std::filesystem::path &path);
    ~OutFile();
    OutFile(const OutFile &) = delete;
    OutFile &operator=(const OutFile &) = delete;

    void write(std::uint64_t offset, const void *data, std::size_t size);
    // `modified` becomes the time of the last change (100 ns since 1601-01-01 UTC) when it is given.
    void close(const std::optional<std::uint64_t> &modified);

private:
    std::filesystem::path m_path;
#ifdef _WIN32
    void *m_handle;
#else
    int m_descriptor;
#endif
};

// Makes the folder `path`, whose parent exists and which does not itself. Throws BitException.
void makeFolder(const std::filesystem::path &path);

// Gives the existing folder `path` the time `modified`; a failure changes nothing and is not reported.
void setFolderTime(const std::filesystem::path &path, std::uint64_t modified);

} // namespace archive
