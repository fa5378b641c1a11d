// A disk that is full, or a file-size limit that stands for it, while an archive is unpacked.

#include "archive/archive.h"
#include "tests/archive/archivebuilder.h"
#include "tests/support/fileprocessaccess.h"
#include "tests/support/modalresponder.h"
#include "tests/support/temporaryworkingfolder.h"

#include <QTest>

#include <csignal>
#include <sys/resource.h>

using Tree = QMap<QString, QByteArray>;

namespace {

// No file may grow beyond `bytes` while this lives: writing more fails, as on a full disk.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t bytes)
    {
        ::signal(SIGXFSZ, SIG_IGN);
        ::getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit limit{bytes, m_before.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() { ::setrlimit(RLIMIT_FSIZE, &m_before); }

private:
    rlimit m_before;
};

} // namespace

class tst_FullDisk : public QObject
{
    Q_OBJECT

private slots:
    void aBombFailsAndGivesItsSpaceBack();
    void aFullDiskInTheSecondStageGivesTheJobsSpaceBack();
    void theOldJobSurvives();

private:
    bool import(const TemporaryWorkingFolder &folder, const QByteArray &archive, int answers)
    {
        folder.write("ABC.tgz", archive);
        FileProcess plugin;
        ModalResponder user;
        for (int i = 0; i < answers; ++i)
            user.expectMessageBox(QMessageBox::Yes);
        QString name = "ABC";
        const FileSizeLimit limit(1000000);
        return FileProcessAccess::copyDirectory(plugin, folder.filePath("ABC.tgz"), name);
    }
};

void tst_FullDisk::aBombFailsAndGivesItsSpaceBack()
{
    const TemporaryWorkingFolder folder;
    // Some kilobytes that become twenty megabytes.
    const QByteArray bomb = gzip(TarBuilder().file("ABC/x", QByteArray(20000000, '\0')).bytes());
    QVERIFY(bomb.size() < 100000);
    QVERIFY(!import(folder, bomb, 1));
    QCOMPARE(treeOf(folder.filePath("job")), Tree());
}

// The tar, which holds the zeros only as a number, is small enough; the job's file is not.
void tst_FullDisk::aFullDiskInTheSecondStageGivesTheJobsSpaceBack()
{
    QByteArray header = TarBuilder::header(TarBuilder::Type('S'), "ABC/x", TarBuilder::octal(512));
    header.replace(257, 8, QByteArray("ustar  \0", 8));
    header.replace(386, 12, TarBuilder::octal(0));
    header.replace(398, 12, TarBuilder::octal(512));
    header.replace(410, 12, TarBuilder::octal(5000000));
    header.replace(422, 12, TarBuilder::octal(0));
    header.replace(483, 12, TarBuilder::octal(5000000));
    TarBuilder::setChecksum(header);
    const TemporaryWorkingFolder folder;
    QVERIFY(!import(folder,
                    gzip(TarBuilder().file("ABC/a", "a").raw(header).raw(QByteArray(512, 's')).bytes()), 1));
    QCOMPARE(treeOf(folder.filePath("job")).keys(), QStringList{"ABC.tar"});
}

void tst_FullDisk::theOldJobSurvives()
{
    const TemporaryWorkingFolder folder;
    folder.write("job/ABC/matrix/matrix", "old");
    const Tree before = treeOf(folder.filePath("job"));
    QVERIFY(
        !import(folder, gzip(TarBuilder().file("ABC/matrix/matrix", QByteArray(20000000, 'n')).bytes()), 2));
    QCOMPARE(treeOf(folder.filePath("job")), before);
}

QTEST_MAIN(tst_FullDisk)
#include "tst_fulldisk.moc"
