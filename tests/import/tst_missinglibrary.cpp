// The import on a machine without 7-Zip's shared library.

#include "archive/archive.h"
#include "archive/sevenzip/library.h"
#include "tests/archive/archivebuilder.h"
#include "tests/support/fileprocessaccess.h"
#include "tests/support/logcapture.h"
#include "tests/support/modalresponder.h"
#include "tests/support/temporaryworkingfolder.h"
#include "tests/support/withoutoverride.h"

#include <QTest>

using archive::sevenzip::searchFolders;

class tst_MissingLibrary : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_folders = searchFolders(); }
    void cleanup() { searchFolders() = m_folders; }

    void theSearchBeginsBesideTheModule();
    void theErrorNamesTheLibrary();
    void anUnreadableLibraryIsAnError();
    void aFileThatIsNoLibraryIsAnError();
    void anotherLibraryIsAnError();
    void theImportFailsAsWithABrokenArchive();

private:
    std::vector<std::filesystem::path> m_folders;
};

void tst_MissingLibrary::theSearchBeginsBesideTheModule()
{
    QCOMPARE(QDir(QString::fromStdString(searchFolders().at(0).string())).canonicalPath(),
             QDir(QCoreApplication::applicationDirPath()).canonicalPath());
}

void tst_MissingLibrary::theErrorNamesTheLibrary()
{
    searchFolders().clear();
    try {
        archive::Bit7zLibrary library(L"7z.dll");
        QFAIL("the library was found");
    } catch (const archive::BitException &error) {
        QVERIFY2(std::string(error.what()).find("\"7z.dll\"") != std::string::npos, error.what());
    }
}

void tst_MissingLibrary::anUnreadableLibraryIsAnError()
{
    const TemporaryWorkingFolder folder;
    QVERIFY(folder.write("7z.so", "whatever it is"));
    QVERIFY(QFile::setPermissions(folder.filePath("7z.so"), QFile::Permissions()));
    searchFolders() = {folder.path().toStdString()};
    const WithoutOverride plainUser;
    QVERIFY(!QFile(folder.filePath("7z.so")).open(QIODevice::ReadOnly));
    try {
        archive::Bit7zLibrary library(L"7z.dll");
        QFAIL("the library was read");
    } catch (const archive::BitException &error) {
        QVERIFY2(std::string(error.what()).find("ermission") != std::string::npos, error.what());
    }
}

void tst_MissingLibrary::aFileThatIsNoLibraryIsAnError()
{
    const TemporaryWorkingFolder folder;
    QVERIFY(folder.write("7z.so", "this is no library"));
    searchFolders() = {folder.path().toStdString()};
    QVERIFY_EXCEPTION_THROWN(archive::Bit7zLibrary(L"7z.dll"), archive::BitException);
}

void tst_MissingLibrary::anotherLibraryIsAnError()
{
    QVERIFY_EXCEPTION_THROWN(archive::Bit7zLibrary(L"libm.so.6"), archive::BitException);
}

void tst_MissingLibrary::theImportFailsAsWithABrokenArchive()
{
    const TemporaryWorkingFolder folder;
    QVERIFY(folder.write("job/ABC/matrix/matrix", "old"));
    QVERIFY(folder.write("ABC.tgz", gzip(TarBuilder().file("ABC/matrix/matrix", "new").bytes())));
    searchFolders().clear();
    FileProcess plugin;
    ModalResponder user;
    user.expectMessageBox(QMessageBox::Yes);
    user.expectMessageBox(QMessageBox::Yes);
    const LogCapture log;
    QString name = "ABC";
    QVERIFY(!FileProcessAccess::copyDirectory(plugin, folder.filePath("ABC.tgz"), name));
    QCOMPARE(user.boxes.size(), std::size_t(2));
    QCOMPARE(user.boxes[1].text, QString("The job unzipped failed, please check your files!"));
    QCOMPARE(log.find("Progress", 139).severity, google::GLOG_ERROR);
    QCOMPARE(treeOf(folder.filePath("job")),
             (QMap<QString, QByteArray>{{"ABC/", ""}, {"ABC/matrix/", ""}, {"ABC/matrix/matrix", "old"}}));
}

QTEST_MAIN(tst_MissingLibrary)
#include "tst_missinglibrary.moc"
