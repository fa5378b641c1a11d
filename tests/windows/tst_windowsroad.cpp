// The whole road on Windows' own file system, from the file dialog to the exported file: drive letters and
// backslashes, blanks, names outside ASCII, long paths, names in another case.
#include "cam/jobroot.h"
#include "export/export.h"
#include "import/unzipprogress.h"
#include "plugin/interface/messages.h"
#include "tests/archive/archivebuilder.h"
#include "tests/support/fileprocessaccess.h"
#include "tests/support/modalresponder.h"
#include "tests/support/temporaryworkingfolder.h"

#include <QComboBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QTest>

#include <memory>

#include <windows.h>

class tst_WindowsRoad : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void fromTheFileDialogToTheExportedFile();
    void aJobRootWithABlankKeepsItsTarAndLosesOthers();
    void anOldJobUnderABlankIsNotReplaced();
    void namesOutsideAsciiAreUnpacked();
    void aSecondDownloadLeavesTheOtherJobAlone_data();
    void aSecondDownloadLeavesTheOtherJobAlone();
    void aJobRootWithSlashesLosesNothing();
    void pathsLongerThan260CharactersAreUnpacked();
    void aDeepJobCanBeImportedAgain();
    void anArchiveMayLieDeep();
    void oneFolderUnderTwoSpellingsIsNotRemoved();
    void aNameOfDotsNamesNoJob();
    void aJobOfTheSameNameInAnotherCaseIsTheSameJob();
    void twoSpellingsOfOneNameAreRefused();
    void reservedNamesAreRefused_data();
    void reservedNamesAreRefused();

private:
    // A path that begins with `top` and is longer than `length`.
    static QByteArray deepPath(QByteArray top, int length)
    {
        while (top.size() < length)
            top += "/steps_" + QByteArray(40, 'x');
        return top;
    }
    QString native(const QString &name) const { return QDir::toNativeSeparators(m_folder->filePath(name)); }
    bool import(const QString &archive, const QByteArray &bytes,
                QMessageBox::StandardButton answer = QMessageBox::NoButton);

    std::unique_ptr<TemporaryWorkingFolder> m_folder;
    std::unique_ptr<FileProcess> m_plugin;
    std::unique_ptr<QWidget> m_parent;
    std::unique_ptr<ModalResponder> m_user;
    QStringList m_sent; // the payloads of the messages about imported files
};

void tst_WindowsRoad::init()
{
    m_folder = std::make_unique<TemporaryWorkingFolder>();
    m_plugin = std::make_unique<FileProcess>();
    m_parent = std::make_unique<QWidget>();
    m_user = std::make_unique<ModalResponder>();
    FileProcessAccess::setImportParent(*m_plugin, m_parent.get());
    m_sent.clear();
    connect(m_plugin.get(), &FileProcess::sendMsgToManager, this, [this](const PluginMetaData &data) {
        if (data.msgType == messages::FileReady)
            m_sent << *static_cast<QString *>(data.payload);
    });
}

void tst_WindowsRoad::cleanup()
{
    QCOMPARE(m_user->pending(), 0);
    m_user.reset();
    m_parent.reset();
    m_plugin.reset();
    m_folder.reset();
}

// Writes an archive to the folder "mail" and chooses it in the Import command's file dialog, typed as a
// Windows path. The message box that follows, if one does, is answered. Returns whether the command took the
// archive in.
bool tst_WindowsRoad::import(const QString &archive, const QByteArray &bytes,
                             QMessageBox::StandardButton answer)
{
    const int before = m_sent.size();
    if (!writeFile(m_folder->filePath("mail/" + archive), bytes))
        qFatal("the archive cannot be written");
    m_user->expect([this, archive](QWidget *window) {
        auto *field = window->findChild<QLineEdit *>("fileNameEdit");
        QVERIFY(field);
        field->setText(native("mail/" + archive));
        QTest::keyClick(field, Qt::Key_Return);
    });
    if (answer != QMessageBox::NoButton)
        m_user->expectMessageBox(answer);
    m_plugin->on_ImportACT_clicked();
    return m_sent.size() > before;
}

void tst_WindowsRoad::fromTheFileDialogToTheExportedFile()
{
    QFile sample(SAMPLE_ARCHIVE);
    QVERIFY2(sample.open(QIODevice::ReadOnly), SAMPLE_ARCHIVE);
    QVERIFY(QDir().mkpath("Jobs"));
    const QString root = native("Jobs");
    QVERIFY2(root.mid(1, 2) == ":\\", qPrintable(root));
    FileProcessAccess::config(*m_plugin).jobPath = root;

    QVERIFY(import("Beacon.tgz", sample.readAll()));
    QCOMPARE(QString::fromStdWString(UnzipProgress::sourcePath), native("mail/Beacon.tgz"));
    QCOMPARE(QString::fromStdWString(UnzipProgress::unzipedFilePath), root + "\\");
    QCOMPARE(QString::fromStdString(UnzipProgress::removeCmd),
             QString("/c del ") + root + "\\Beacon*.tar" + "*.tar");
    QCOMPARE(m_sent, QStringList{m_folder->filePath("mail/Beacon.tgz")});
    QCOMPARE(QDir("Jobs").entryList(QDir::AllEntries | QDir::NoDotAndDotDot).size(), 1); // the job, no tar
    QVERIFY(QFile::exists("Jobs/beacon/matrix/matrix"));

    ORVEX::HOST::set_job_root(root.toStdString());
    ExportJobInfo job;
    job.stepName = "PCB";
    job.jobName = "Beacon";
    job.folderPath = root + "\\Beacon";
    ExportConfig config;
    config.outputPath = native("mail");
    config.outputPathSecond = "Second";
    auto *dialog = new Export(nullptr);
    dialog->setExportConfig(config);
    dialog->setJobInfo(&job);
    dialog->show();
    QCOMPARE(dialog->findChild<QLineEdit *>("PathLineEdit")->text(), config.outputPath);
    auto *table = dialog->findChild<QTableWidget *>("PNListTable");
    QVERIFY(table->rowCount() > 0);
    const QString layer = table->item(0, 1)->text();
    table->item(0, 0)->setData(Qt::EditRole, true);
    dialog->findChild<QPushButton *>("OKButton")->click();

    const QString file = QFileInfo("mail/Second/Beacon/" + layer.toLower() + ".gds").filePath();
    QVERIFY2(QFileInfo(file).size() > 0, qPrintable(file));
    QVERIFY(QDir("mail/Second").entryList(QDir::Dirs | QDir::NoDotAndDotDot) == QStringList{"Beacon"});
    dialog->close();
}

// The clean-up commands are not quoted: "del C:\...\my jobs\ABC*.tar" deletes "C:\...\my" and
// "jobs\ABC*.tar".
void tst_WindowsRoad::aJobRootWithABlankKeepsItsTarAndLosesOthers()
{
    QVERIFY(m_folder->write("my jobs/other.txt", "kept"));
    QVERIFY(m_folder->write("jobs/ABC_bystander.tar", "lost"));
    QVERIFY(m_folder->write("my", "lost"));
    FileProcessAccess::config(*m_plugin).jobPath = native("my jobs");

    QVERIFY(import("ABC.tgz", gzip(TarBuilder().folder("ABC/").file("ABC/x", "x").bytes())));

    QCOMPARE(readFile("my jobs/ABC/x"), QByteArray("x"));
    QVERIFY(QFile::exists("my jobs/ABC.tar"));
    QVERIFY(QFile::exists("my jobs/other.txt"));
    QVERIFY(!QFile::exists("jobs/ABC_bystander.tar"));
    QVERIFY(!QFile::exists("my"));
}

void tst_WindowsRoad::anOldJobUnderABlankIsNotReplaced()
{
    QVERIFY(m_folder->write("my jobs/ABC/old", "old"));
    FileProcessAccess::config(*m_plugin).jobPath = native("my jobs");

    QVERIFY(
        import("ABC.tgz", gzip(TarBuilder().folder("XYZ/").file("XYZ/x", "x").bytes()), QMessageBox::Yes));

    QCOMPARE(readFile("my jobs/ABC/old"), QByteArray("old"));
    QCOMPARE(readFile("my jobs/XYZ/x"), QByteArray("x"));
}

void tst_WindowsRoad::namesOutsideAsciiAreUnpacked()
{
    const QString root = QString::fromUtf8("\xD1\x80\xD0\xB0\xD0\xB1\xD0\xBE\xD1\x82\xD0\xB0"); // Cyrillic
    const QByteArray job = "\xE6\x9D\xBF\xC3\xA9"; // Chinese, Latin
    const QString name = QString::fromUtf8(job);
    QVERIFY(QDir().mkpath(root));
    FileProcessAccess::config(*m_plugin).jobPath = native(root);

    QVERIFY(
        import(name + ".tgz",
               gzip(TarBuilder().folder(job + "/").file(job + "/\xCE\xBB/\xF0\x9F\x93\x90", "x").bytes())));

    QCOMPARE(readFile(root + "/" + name + QString::fromUtf8("/\xCE\xBB/\xF0\x9F\x93\x90")), QByteArray("x"));
    QCOMPARE(m_sent, QStringList{m_folder->filePath("mail/" + name + ".tgz")});
    // The command to delete it is read in the system's code page, so that another file is named.
    QCOMPARE(QFile::exists(root + "/" + name + ".tar"), GetACP() != CP_UTF8);
}

void tst_WindowsRoad::pathsLongerThan260CharactersAreUnpacked()
{
    QVERIFY(QDir().mkpath("jobs"));
    FileProcessAccess::config(*m_plugin).jobPath = native("jobs");
    const QByteArray path = deepPath("ABC", 400) + "/features";

    QVERIFY(import("ABC.tgz",
                   gzip(TarBuilder().extended({{"path", path}}).file("shortened", "content").bytes())));

    QCOMPARE(readFile(m_folder->filePath("jobs/" + path)), QByteArray("content"));
    QVERIFY(QDir(m_folder->filePath("jobs")).removeRecursively());
}

void tst_WindowsRoad::aDeepJobCanBeImportedAgain()
{
    QVERIFY(QDir().mkpath("jobs"));
    FileProcessAccess::config(*m_plugin).jobPath = native("jobs");
    const QByteArray folder = deepPath("ABC", 400);
    const auto deepJob = [&folder](const QByteArray &content) {
        return gzip(TarBuilder()
                        .extended({{"path", folder + "/features"}})
                        .file("shortened", content)
                        .extended({{"path", folder + "/" + content}})
                        .file("shortened", content)
                        .bytes());
    };
    QVERIFY(import("ABC.tgz", deepJob("first")));
    QVERIFY(import("ABC.tgz", deepJob("second"), QMessageBox::Yes));

    QCOMPARE(m_user->boxes.size(), std::size_t(1)); // the question
    QCOMPARE(readFile(m_folder->filePath("jobs/" + folder + "/features")), QByteArray("second"));
    QCOMPARE(readFile(m_folder->filePath("jobs/" + folder + "/first")), QByteArray("first"));
    QCOMPARE(readFile(m_folder->filePath("jobs/" + folder + "/second")), QByteArray("second"));
    QCOMPARE(QDir("jobs").entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList{"ABC"});
    QVERIFY(QDir(m_folder->filePath("jobs")).removeRecursively());
}

void tst_WindowsRoad::anArchiveMayLieDeep()
{
    QVERIFY(QDir().mkpath("jobs"));
    FileProcessAccess::config(*m_plugin).jobPath = native("jobs");
    const QString file = m_folder->filePath(deepPath("mail", 300) + "/ABC.tgz");
    QVERIFY(writeFile(file, gzip(TarBuilder().file("ABC/x", "new").bytes())));
    QString name = "ABC";
    QVERIFY(FileProcessAccess::copyDirectory(*m_plugin, file, name));
    QCOMPARE(readFile("jobs/ABC/x"), QByteArray("new"));
    QVERIFY(QDir(m_folder->filePath("mail")).removeRecursively());
}

// "del C:\...\board (1)*.tar" would ask about the folder "board", in a window that nobody sees.
void tst_WindowsRoad::aSecondDownloadLeavesTheOtherJobAlone_data()
{
    QTest::addColumn<bool>("again");
    QTest::newRow("new") << false;
    QTest::newRow("instead of an old job") << true;
}

void tst_WindowsRoad::aSecondDownloadLeavesTheOtherJobAlone()
{
    QFETCH(bool, again);
    QVERIFY(m_folder->write("jobs/board/x", "another job"));
    if (again)
        QVERIFY(m_folder->write("jobs/board (1)/x", "old"));
    FileProcessAccess::config(*m_plugin).jobPath = native("jobs");

    QVERIFY(import("board (1).tgz", gzip(TarBuilder().folder("odb/").file("odb/x", "new").bytes()),
                   again ? QMessageBox::Yes : QMessageBox::NoButton));

    QCOMPARE(readFile("jobs/board/x"), QByteArray("another job"));
    QCOMPARE(readFile("jobs/board (1)/x"), QByteArray(again ? "old" : "new"));
    QCOMPARE(readFile("jobs/odb/x"), QByteArray(again ? "new" : ""));
    QVERIFY(!QFile::exists("jobs/board (1).tar"));
}

void tst_WindowsRoad::aJobRootWithSlashesLosesNothing()
{
    QVERIFY(m_folder->write("jobs/ABC/x", "old"));
    FileProcessAccess::config(*m_plugin).jobPath = m_folder->filePath("jobs");
    QVERIFY(
        import("ABC.tgz", gzip(TarBuilder().folder("odb/").file("odb/x", "new").bytes()), QMessageBox::Yes));
    QCOMPARE(readFile("jobs/ABC/x"), QByteArray("old"));
    QCOMPARE(readFile("jobs/odb/x"), QByteArray("new"));
    QVERIFY(!QFile::exists("jobs/ABC.tar"));
}

void tst_WindowsRoad::aJobOfTheSameNameInAnotherCaseIsTheSameJob()
{
    QVERIFY(m_folder->write("jobs/abc/old", "old"));
    FileProcessAccess::config(*m_plugin).jobPath = native("jobs");

    QVERIFY(import("ABC.tgz", gzip(TarBuilder().folder("ABC/").file("ABC/new", "new").bytes()),
                   QMessageBox::Yes));

    QCOMPARE(m_user->boxes.size(), std::size_t(1)); // the question
    QCOMPARE(QDir("jobs").entryList(QDir::Dirs | QDir::NoDotAndDotDot).size(), 1);
    QCOMPARE(readFile("jobs/ABC/old"), QByteArray("old")); // equal names: unpacked over the old folder
    QCOMPARE(readFile("jobs/ABC/new"), QByteArray("new"));
}

// Over the old job, and then one folder with two names, neither of which may be removed.
void tst_WindowsRoad::oneFolderUnderTwoSpellingsIsNotRemoved()
{
    QVERIFY(m_folder->write("jobs/BOARD/old", "old"));
    FileProcessAccess::config(*m_plugin).jobPath = native("jobs");
    QVERIFY(import("BOARD.tgz", gzip(TarBuilder().folder("board/").file("board/new", "new").bytes()),
                   QMessageBox::Yes));
    QCOMPARE(readFile("jobs/BOARD/old"), QByteArray("old"));
    QCOMPARE(readFile("jobs/BOARD/new"), QByteArray("new"));
}

// Windows drops dots at a name's end: "C:\jobs\..." is "C:\jobs".
void tst_WindowsRoad::aNameOfDotsNamesNoJob()
{
    QVERIFY(m_folder->write("jobs/ABC/x", "old"));
    FileProcessAccess::config(*m_plugin).jobPath = native("jobs");
    QVERIFY(!import("....tgz", gzip(TarBuilder().file("odb/x", "new").bytes()), QMessageBox::Yes));
    QCOMPARE(m_user->boxes.size(), std::size_t(1));
    QCOMPARE(m_user->boxes[0].title, QString("Error"));
    QCOMPARE(readFile("jobs/ABC/x"), QByteArray("old"));
}

void tst_WindowsRoad::twoSpellingsOfOneNameAreRefused()
{
    QVERIFY(QDir().mkpath("jobs"));
    FileProcessAccess::config(*m_plugin).jobPath = native("jobs");

    QVERIFY(!import("ABC.tgz", gzip(TarBuilder().file("ABC/x", "1").file("ABC/X", "2").bytes()),
                    QMessageBox::Yes));

    QCOMPARE(m_user->boxes.size(), std::size_t(1));
    QCOMPARE(m_user->boxes[0].title, QString("Error"));
    QVERIFY(!QFile::exists("jobs/ABC"));
}

void tst_WindowsRoad::reservedNamesAreRefused_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::newRow("device") << QByteArray("ABC/nul");
    QTest::newRow("device with an ending") << QByteArray("ABC/Com1.txt");
    QTest::newRow("device as a folder") << QByteArray("ABC/aux/x");
    QTest::newRow("alternate data stream") << QByteArray("ABC/x:stream");
    QTest::newRow("drive letter") << QByteArray("C:/evil");
    QTest::newRow("drive letter without a slash") << QByteArray("C:evil");
    QTest::newRow("network share") << QByteArray("//server/share/x");
    QTest::newRow("dot at the end") << QByteArray("ABC/x.");
    QTest::newRow("blank at the end") << QByteArray("ABC/x ");
}

void tst_WindowsRoad::reservedNamesAreRefused()
{
    QFETCH(QByteArray, name);
    QVERIFY(QDir().mkpath("jobs"));
    FileProcessAccess::config(*m_plugin).jobPath = native("jobs");

    QVERIFY(!import("ABC.tgz", gzip(TarBuilder().file("ABC/first", "1").file(name, "2").bytes()),
                    QMessageBox::Yes));

    QCOMPARE(m_user->boxes.size(), std::size_t(1));
    QCOMPARE(m_user->boxes[0].text, QString("The job unzipped failed, please check your files!"));
    QVERIFY(!QFile::exists("jobs/ABC"));
}

QTEST_MAIN(tst_WindowsRoad)
#include "tst_windowsroad.moc"
