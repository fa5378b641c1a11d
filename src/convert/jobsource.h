// A job as the command line names it: an unpacked folder, or an archive, which is unpacked into a private
// folder that is gone with this object.
#pragma once

#include <QString>
#include <QTemporaryDir>

#include <atomic>
#include <filesystem>
#include <memory>
#include <stdexcept>

namespace convert {

// Somebody wants the program to end.
struct Cancelled
{
};

class JobSource
{
public:
    // `path` as given.
    explicit JobSource(const QString &path) : m_path(path) {}

    const QString &path() const { return m_path; }
    // The job's name in lower case: the folder's, or the archive's without ".tgz" or ".tar.gz".
    QString name() const;

    // SHA-256 in hexadecimal: of the archive, or of all names and contents of the folder. Throws
    // std::runtime_error for what cannot be read, Cancelled.
    QString hash(const std::atomic<bool> &cancelled) const;

    // Unpacks an archive, by the rules of archive/. Throws std::exception for one that is refused, or holds
    // no job or several, Cancelled.
    void open(const std::atomic<bool> &cancelled);
    // Removes what was unpacked.
    void close() { m_unpacked.reset(); }
    // The job's folder, which bears the job's name; after open().
    const std::filesystem::path &folder() const { return m_folder; }

private:
    QString baseName() const;

    QString m_path;
    std::filesystem::path m_folder;
    std::unique_ptr<QTemporaryDir> m_unpacked;
};

std::filesystem::path localPath(const QString &path);
QString lowerCase(const std::string &text); // as names of jobs and layers are written

// SHA-256 of a file, in hexadecimal. Throws std::runtime_error when it cannot be read.
QString hashOfFile(const QString &path);

} // namespace convert
