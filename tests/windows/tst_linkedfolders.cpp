// Junctions in the job root: nothing is written through one, and what it leads to stays as it is.
#include "archive/archive.h"
#include "archive/localpath.h"
#include "tests/archive/archivebuilder.h"

#include <QTemporaryDir>
#include <QtTest>

#include <memory>

#include <windows.h>
#include <winioctl.h>

using namespace archive;
using Tree = QMap<QString, QByteArray>;

namespace {

// Makes the folder `path` a junction to `target`, as "mklink /J" does, which takes no privilege.
bool makeJunction(const QString &path, const QString &target)
{
    // What Windows' driver development kit calls REPARSE_DATA_BUFFER, for mount points; offsets and lengths
    // are in bytes.
    struct MountPoint
    {
        DWORD tag = IO_REPARSE_TAG_MOUNT_POINT;
        WORD length = 0; // of what follows `reserved`
        WORD reserved = 0;
        WORD nameOffset = 0;
        WORD nameLength = 0;
        WORD shownNameOffset = 0;
        WORD shownNameLength = 0;
        wchar_t names[MAX_PATH + 16] = {}; // the name, 0, the shown name (none), 0
    } data;
    const std::wstring name = L"\\??\\" + QDir::toNativeSeparators(target).toStdWString();
    if (name.size() > MAX_PATH)
        return false;
    std::copy(name.begin(), name.end(), data.names);
    data.nameLength = WORD(name.size() * sizeof(wchar_t));
    data.shownNameOffset = WORD(data.nameLength + sizeof(wchar_t));
    data.length = WORD(4 * sizeof(WORD) + data.nameLength + 2 * sizeof(wchar_t));

    QDir().mkpath(path);
    const HANDLE folder =
        CreateFileW(QDir::toNativeSeparators(path).toStdWString().c_str(), GENERIC_WRITE, 0, nullptr,
                    OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT, nullptr);
    if (folder == INVALID_HANDLE_VALUE)
        return false;
    DWORD unused = 0;
    const bool isMade = DeviceIoControl(folder, FSCTL_SET_REPARSE_POINT, &data, DWORD(8 + data.length),
                                        nullptr, 0, &unused, nullptr);
    CloseHandle(folder);
    return isMade;
}

// A folder that leads somewhere else. Wine before 10 makes no junctions ("mklink /J" ends without an error
// and makes nothing), but shows the symbolic links of the machine it runs on, when they lead to folders, with
// the attribute that junctions have.
bool makeLinkedFolder(const QString &path, const QString &target)
{
    if (makeJunction(path, target))
        return true;
    QDir().rmdir(path);
    const auto unixPath = [](QString text) { return text.remove(0, 2); }; // "Z:" is "/"
    // Wine does not tell when a program of that machine has ended.
    return QProcess::startDetached("Z:\\bin\\ln", {"-s", unixPath(target), unixPath(path)}) &&
           QTest::qWaitFor([&path] { return QFileInfo::exists(path); }, 30000);
}

} // namespace

class tst_LinkedFolders : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void theyHaveATypeOfTheirOwn();
    void ordinaryFoldersAndFilesKeepTheirs();
    void aJobIsNotUnpackedThroughOne_data();
    void aJobIsNotUnpackedThroughOne();
    void aFileDoesNotReplaceOne();
    void oneOfATakenNameIsLeftAlone();
    void aGzipMemberDoesNotReplaceOne();
    void theJobRootMayBeOne();

private:
    QString path(const QString &name) const { return m_folder->filePath(name); }
    // The reason why the archive, which may be merged into the job ABC, is refused; empty when it is not.
    QString refusal(const BitInFormat &format, const QString &name, const QByteArray &bytes) const
    {
        writeFile(path(name), bytes);
        try {
            const Bit7zLibrary library;
            BitExtractor(library, format)
                .extract(path(name).toStdWString(), path("jobs/").toStdWString(), L"ABC");
        } catch (const std::exception &error) {
            return QString::fromUtf8(error.what());
        }
        return {};
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

// "elsewhere" is what the links lead to.
void tst_LinkedFolders::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(QDir().mkpath(path("jobs")));
    QVERIFY(writeFile(path("elsewhere/kept"), "kept"));
}

void tst_LinkedFolders::theyHaveATypeOfTheirOwn()
{
    QVERIFY(makeLinkedFolder(path("jobs/ABC"), path("elsewhere")));
    QCOMPARE(readFile(path("jobs/ABC/kept")), QByteArray("kept"));
    QCOMPARE(int(statusOfItself(path("jobs/ABC").toStdWString()).type()),
             int(std::filesystem::file_type::unknown));
}

void tst_LinkedFolders::ordinaryFoldersAndFilesKeepTheirs()
{
    using std::filesystem::file_type;
    const auto typeOf = [this](const QString &name) {
        return int(statusOfItself(path(name).toStdWString()).type());
    };
    QCOMPARE(typeOf("jobs"), int(file_type::directory));
    QCOMPARE(typeOf("elsewhere/kept"), int(file_type::regular));
    QCOMPARE(typeOf("nothing"), int(file_type::not_found));
    QCOMPARE(typeOf("nothing/in it"), int(file_type::not_found));
}

void tst_LinkedFolders::aJobIsNotUnpackedThroughOne_data()
{
    QTest::addColumn<QString>("link");
    QTest::newRow("the job") << "jobs/ABC";
    QTest::newRow("a folder of the job") << "jobs/ABC/steps";
    QTest::newRow("a folder in it") << "jobs/ABC/steps/pcb";
}

void tst_LinkedFolders::aJobIsNotUnpackedThroughOne()
{
    QFETCH(QString, link);
    QVERIFY(QDir().mkpath(QFileInfo(path(link)).path()));
    QVERIFY(makeLinkedFolder(path(link), path("elsewhere")));
    const QByteArray tar =
        TarBuilder().file("ABC/matrix/matrix", "rows").file("ABC/steps/pcb/kept", "evil").bytes();
    const QString reason = refusal(BitFormat::Tar, "x.tar", tar);
    QVERIFY2(reason.contains("link"), qPrintable(reason));
    QCOMPARE(treeOf(path("elsewhere")), (Tree{{"kept", "kept"}}));
    QVERIFY(!QFileInfo::exists(path("jobs/ABC/matrix")));
}

void tst_LinkedFolders::aFileDoesNotReplaceOne()
{
    QVERIFY(QDir().mkpath(path("jobs/ABC")));
    QVERIFY(makeLinkedFolder(path("jobs/ABC/x"), path("elsewhere")));
    QVERIFY(!refusal(BitFormat::Tar, "x.tar", TarBuilder().file("ABC/x", "new").bytes()).isEmpty());
    QCOMPARE(treeOf(path("elsewhere")), (Tree{{"kept", "kept"}}));
    QCOMPARE(readFile(path("jobs/ABC/x/kept")), QByteArray("kept")); // the link is there still
}

// Not even when it leads to the job that may be merged into.
void tst_LinkedFolders::oneOfATakenNameIsLeftAlone()
{
    QVERIFY(writeFile(path("jobs/ABC/x"), "old"));
    QVERIFY(makeLinkedFolder(path("jobs/odb"), path("jobs/ABC")));
    const QString reason = refusal(BitFormat::Tar, "x.tar", TarBuilder().file("odb/x", "new").bytes());
    QVERIFY2(reason.isEmpty(), qPrintable(reason));
    QCOMPARE(readFile(path("jobs/ABC/x")), QByteArray("old"));
    QCOMPARE(readFile(path("jobs/odb~1/x")), QByteArray("new"));
}

void tst_LinkedFolders::aGzipMemberDoesNotReplaceOne()
{
    QVERIFY(makeLinkedFolder(path("jobs/ABC.tar"), path("elsewhere")));
    QVERIFY(!refusal(BitFormat::GZip, "ABC.tgz", gzip("content")).isEmpty());
    QVERIFY(!refusal(BitFormat::GZip, "ABC.tgz", gzip("content", "ABC.tar")).isEmpty());
    QCOMPARE(treeOf(path("elsewhere")), (Tree{{"kept", "kept"}}));
    QCOMPARE(readFile(path("jobs/ABC.tar/kept")), QByteArray("kept"));
}

// Whoever configures the job root decides where jobs go.
void tst_LinkedFolders::theJobRootMayBeOne()
{
    QVERIFY(QDir().rmdir(path("jobs")));
    QVERIFY(makeLinkedFolder(path("jobs"), path("elsewhere")));
    const QString reason = refusal(BitFormat::Tar, "x.tar", TarBuilder().file("ABC/x", "new").bytes());
    QVERIFY2(reason.isEmpty(), qPrintable(reason));
    QCOMPARE(readFile(path("elsewhere/ABC/x")), QByteArray("new"));
}

QTEST_GUILESS_MAIN(tst_LinkedFolders)
#include "tst_linkedfolders.moc"
