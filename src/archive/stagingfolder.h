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
    // Removes the folder with all that is left in it, unless a commit that failed could not be undone.
    ~StagingFolder();
    StagingFolder(const StagingFolder &) = delete;
    StagingFolder &operator=(const StagingFolder &) = delete;

    // Where the content is built.
    const std::filesystem::path &content() const { return m_content; }

    // Where something at the top of the content came to stand in the output folder.
    struct Placed
    {
        std::filesystem::path name;     // in the content
        std::filesystem::path placedAs; // in the output folder
        bool isMerged = false;          // into what was there
    };

    // Moves the content into the output folder, where nothing is touched but `replaceable`: a folder of that
    // name is merged with it, files and links in it take the place of files and links of the same name, and
    // so does a file of that name itself. What comes with another name that is taken gets a free one
    // ("odb~1"). When something is not possible, everything is moved back and the reason thrown. What cannot
    // be moved back stays in this folder, which the reason then names: what was replaced under "old", with
    // its path.
    std::vector<Placed> commit(const std::filesystem::path &replaceable = {});

    // Whether commit() would merge or replace what is in the output folder with the content's `name`: it is
    // `replaceable`, or another spelling of the same folder.
    static bool isReplaceable(const std::filesystem::path &output, const std::filesystem::path &name,
                              const std::filesystem::path &replaceable);

private:
    struct Move
    {
        std::filesystem::path from;
        std::filesystem::path to;
    };

    std::filesystem::path placeBeside(const std::filesystem::path &name,
                                      const std::vector<std::filesystem::path> &taken);
    void place(const std::filesystem::path &relative);
    void keepReplaced(const std::filesystem::path &relative);
    bool move(const std::filesystem::path &from, const std::filesystem::path &to);
    bool undoMoves() noexcept;

    std::filesystem::path m_output;
    std::filesystem::path m_folder;
    std::filesystem::path m_content;
    std::filesystem::path m_replaced; // holds what the content took the place of, until the commit is done
    std::vector<Move> m_moves;
    bool m_isKept = false; // it holds what could not be moved back
};

} // namespace archive
