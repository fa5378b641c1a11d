// A folder inside the output folder in which the content of an archive is built, and from which it is moved
// to its place as a whole. Moving within one file system is quick, and until it has succeeded nothing of the
// output folder changes.
#pragma once

#include <filesystem>
#include <vector>

namespace archive {

class StagingFolder
{
public:
    // Makes the folder in `output`, and `output` itself when it is missing. Throws BitException or
    // filesystem_error.
    explicit StagingFolder(const std::filesystem::path &output);
    // Removes the folder with all that is left in it.
    ~StagingFolder();
    StagingFolder(const StagingFolder &) = delete;
    StagingFolder &operator=(const StagingFolder &) = delete;

    // Where the content is built.
    const std::filesystem::path &content() const { return m_content; }

    // Moves the content into the output folder. Folders are merged; files and links take the place of files
    // and links of the same name. When that is not possible, everything is moved back and the reason thrown.
    void commit();

private:
    struct Move
    {
        std::filesystem::path from;
        std::filesystem::path to;
    };

    void place(const std::filesystem::path &from, const std::filesystem::path &to);
    void move(const std::filesystem::path &from, const std::filesystem::path &to);
    void undoMoves() noexcept;

    std::filesystem::path m_output;
    std::filesystem::path m_folder;
    std::filesystem::path m_content;
    std::filesystem::path m_replaced; // holds what the content took the place of, until the commit is done
    std::vector<Move> m_moves;
};

} // namespace archive
