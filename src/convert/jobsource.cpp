#include "convert/jobsource.h"

#include "archive/archive.h"
#include "cam/base/paths.h"

#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

#include <vector>

namespace convert {

namespace fs = std::filesystem;

namespace {

[[noreturn]] void fail(const QString &message)
{
    throw std::runtime_error(message.toStdString());
}

void addFile(const QString &path, QCryptographicHash &hash)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || !hash.addData(&file))
        fail(QString("%1: cannot be read: %2").arg(path, file.errorString()));
}

QString onlyFileIn(const QString &folder)
{
    const QStringList files = QDir(folder).entryList(QDir::Files | QDir::Hidden);
    return files.size() == 1 ? QDir(folder).filePath(files[0]) : QString();
}

bool isJob(const fs::path &folder)
{
    return cam::findEntry(folder, "matrix").has_value();
}

// The job among what an archive held.
fs::path findJob(const fs::path &unpacked)
{
    if (isJob(unpacked))
        return unpacked;
    std::vector<fs::path> jobs;
    for (const fs::directory_entry &entry : fs::directory_iterator(unpacked)) {
        if (entry.is_directory() && isJob(entry.path()))
            jobs.push_back(entry.path());
    }
    if (jobs.size() != 1)
        fail(QString("expected one job, a folder that holds a folder matrix; found %1").arg(jobs.size()));
    return jobs[0];
}

} // namespace

fs::path localPath(const QString &path)
{
    return fs::u8path(path.toStdString());
}

QString lowerCase(const std::string &text)
{
    return QString::fromStdString(cam::lowerCase(text));
}

QString hashOfFile(const QString &path)
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    addFile(path, hash);
    return QString::fromLatin1(hash.result().toHex());
}

QString JobSource::baseName() const
{
    // The name of "job/" and of "." is that of the folder itself.
    QString name = QFileInfo(QDir::cleanPath(QDir::current().absoluteFilePath(m_path))).fileName();
    if (QFileInfo(m_path).isDir())
        return name;
    for (const char *ending : {".tgz", ".tar.gz"}) {
        if (name.endsWith(ending, Qt::CaseInsensitive)) {
            name.chop(int(qstrlen(ending)));
            break;
        }
    }
    return name;
}

QString JobSource::name() const
{
    return lowerCase(baseName().toStdString());
}

QString JobSource::hash(const std::atomic<bool> &cancelled) const
{
    if (!QFileInfo(m_path).isDir())
        return hashOfFile(m_path);
    const QDir folder(QDir::current().absoluteFilePath(m_path));
    QStringList files;
    QDirIterator walk(folder.path(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (walk.hasNext())
        files << folder.relativeFilePath(walk.next());
    files.sort();
    QCryptographicHash hash(QCryptographicHash::Sha256);
    for (const QString &file : files) {
        if (cancelled)
            throw Cancelled();
        const QString path = folder.filePath(file);
        const QByteArray size = QByteArray::number(QFileInfo(path).size());
        hash.addData(file.toUtf8() + '\0' + size + '\0');
        addFile(path, hash);
    }
    return QString::fromLatin1(hash.result().toHex());
}

void JobSource::open(const std::atomic<bool> &cancelled)
{
    if (!QFileInfo::exists(m_path))
        fail("there is no such file or folder");
    if (QFileInfo(m_path).isDir()) {
        m_folder = localPath(QDir::cleanPath(QDir::current().absoluteFilePath(m_path)));
        return;
    }
    const QString name = baseName();
    if (name.isEmpty() || !cam::isPlainName(name.toStdString()))
        fail("expected an archive whose name can be that of a job");
    m_unpacked = std::make_unique<QTemporaryDir>(QDir::tempPath() + "/camconvert-XXXXXX");
    if (!m_unpacked->isValid())
        fail(QString("%1: cannot be made: %2").arg(m_unpacked->path(), m_unpacked->errorString()));
    const QDir work(m_unpacked->path());
    const auto stop = [&cancelled] {
        if (cancelled)
            throw Cancelled();
    };
    const archive::Bit7zLibrary library;
    work.mkdir("gzip");
    const QString archivePath = QDir::current().absoluteFilePath(m_path);
    archive::BitExtractor gzip(library, archive::BitFormat::GZip), tars(library, archive::BitFormat::Tar);
    gzip.setCheck(stop);
    tars.setCheck(stop);
    gzip.extract(QDir::toNativeSeparators(archivePath).toStdWString(),
                 QDir::toNativeSeparators(work.filePath("gzip")).toStdWString());
    stop();
    const QString tar = onlyFileIn(work.filePath("gzip"));
    if (tar.isEmpty())
        fail("expected a gzip file of one tar");
    work.mkdir("tar");
    tars.extract(QDir::toNativeSeparators(tar).toStdWString(),
                 QDir::toNativeSeparators(work.filePath("tar")).toStdWString());
    QDir(work.filePath("gzip")).removeRecursively();
    stop();
    // Files name their job: as an import does, by the archive.
    const fs::path found = findJob(localPath(work.filePath("tar")));
    work.mkdir("job");
    m_folder = localPath(work.filePath("job")) / localPath(name);
    fs::rename(found, m_folder);
}

} // namespace convert
