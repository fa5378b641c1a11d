// Unpacking a job archive as the user sees it: the question, the progress window, the job root afterwards.

#include "import/unzipprogress.h"
#include "tests/archive/archivebuilder.h"
#include "tests/support/fileprocessaccess.h"
#include "tests/support/logcapture.h"
#include "tests/support/modalresponder.h"
#include "tests/support/temporaryworkingfolder.h"

#include <QAbstractButton>
#include <QApplication>
#include <QElapsedTimer>
#include <QHBoxLayout>
#include <QMessageBox>
#include <QProgressBar>
#include <QSemaphore>
#include <QTest>
#include <QTimer>

using Tree = QMap<QString, QByteArray>;

namespace {

const char *const Question = "The job with the same name already exists, do you want to overwrite it?";
const char *const Failure = "The job unzipped failed, please check your files!";

// What the progress window looked like while it was shown.
struct SeenWindow
{
    Qt::WindowFlags flags;
    Qt::WindowModality modality = Qt::NonModal;
    QWidget *parent = nullptr;
    int passes = 0; // event passes with the window visible
    int paints = 0; // of the bar
};

// Watches for the progress window while the event loop runs.
class WindowWatch : public QObject
{
public:
    WindowWatch()
    {
        qApp->installEventFilter(this);
        startTimer(1);
    }

    SeenWindow seen;

protected:
    void timerEvent(QTimerEvent *) override
    {
        for (QWidget *widget : QApplication::topLevelWidgets()) {
            if (!widget->isVisible() || !widget->findChild<QProgressBar *>())
                continue;
            seen.flags = widget->windowFlags();
            seen.modality = widget->windowModality();
            seen.parent = widget->parentWidget();
            ++seen.passes;
        }
    }

    bool eventFilter(QObject *object, QEvent *event) override
    {
        if (event->type() == QEvent::Paint && qobject_cast<QProgressBar *>(object))
            ++seen.paints;
        return false;
    }
};

} // namespace

namespace {

// Holds the thread that logs a failed unpacking until it is opened.
class FailureGate : public google::LogSink
{
public:
    FailureGate() { google::AddLogSink(this); }
    ~FailureGate() override { google::RemoveLogSink(this); }

    void open() { m_opened.release(); }

    void send(google::LogSeverity, const char *, const char *baseFileName, int,
              const google::LogMessageTime &, const char *, size_t) override
    {
        if (std::string(baseFileName) == "Progress")
            m_opened.acquire();
    }
    using google::LogSink::send;

private:
    QSemaphore m_opened;
};

} // namespace

class tst_CopyDirectory : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void aNewJobIsUnpackedAndItsTarDeleted();
    void aJobOfAnotherNameIsRenamed();
    void aTarOfAnotherNameIsLeft();
    void tarsThatBeginWithTheJobsNameAreDeleted();
    void anEmptyTarGivesAnEmptyName();
    void anEmptyTarAndYesRemovesTheOldJob();
    void aMissingJobPathFallsBack();
    void anEmptyJobPathFallsBack();
    void theJobRootIsMadeAndLogged();
    void theQuestionIsAskedForAFolderOnly();
    void theQuestionIsAsked_data();
    void theQuestionIsAsked();
    void theQuestionHasNoDefaultButton();
    void noKeepsTheOldJobWhenTheNamesDiffer();
    void noUnpacksBesideTheOldJobWhenTheNamesAreEqual();
    void twoBoardsAreNotMixed_data();
    void twoBoardsAreNotMixed();
    void everyFolderAtTheTopFindsItsPlace();
    void aFreeNameStaysWhenTheArchivesIsTaken();
    void yesReplacesTheOldJobAndNoOther();
    void aRenamedArchiveWithoutFolderEntriesReplacesTheOldJob();
    void aTakenFileIsLeftAlone();
    void yesUnpacksOverTheOldJobWhenTheNamesAreEqual();
    void yesReplacesTheOldJobWhenTheNamesDiffer();
    void aNamelessMemberCanBeImportedTwice();
    void theParametersAreTheSameOnEveryPlatform();
    void theProgressWindowHasItsFlagsBarAndLayout();
    void theProgressWindowAnimates();
    void theProgressWindowStaysWithItsParent();
    void failedImportShowsTheErrorBox_data();
    void failedImportShowsTheErrorBox();
    void failedImportKeepsTheOldJob_data();
    void failedImportKeepsTheOldJob();
    void aTarLeftByAFailureDoesNotSpoilTheNextImport();
    void aPathWithBlanksSplitsTheCommands();
    void aCommandThatWouldHitAFolderIsNotRun_data();
    void aCommandThatWouldHitAFolderIsNotRun();
    void aFailedImportRunsNoCommandThatWouldHitAFolder();
    void aJobRootWithSlashesKeepsTheOldJob();
    void aNameThatNamesNoJobFails_data();
    void aNameThatNamesNoJobFails();
    void whatWasJustUnpackedIsNotRemoved_data();
    void whatWasJustUnpackedIsNotRemoved();
    void memberNamesMayFallApart_data();
    void memberNamesMayFallApart();
    void aMembersNameGetsIntoNoCommandThatFallsApart();
    void aFailureThatEndsUnseenKeepsTheOldJob();
    void aTaskThatEndsUnseenTakesTheSuccessRoad();
    void aJobRootThatVanishesEndsTheImport();
    void aJobRootThatIsAFileFails();

private:
    QString archive(const QString &name, const QByteArray &bytes)
    {
        m_folder->write("mail/" + name, bytes);
        return m_folder->filePath("mail/" + name);
    }
    bool import(const QString &file)
    {
        m_name = QFileInfo(file).completeBaseName();
        return FileProcessAccess::copyDirectory(*m_plugin, file, m_name);
    }
    Tree jobs() const { return treeOf(m_folder->filePath("job")); }

    static QByteArray job(const QByteArray &name, const QByteArray &content = "new")
    {
        return TarBuilder()
            .folder(name + "/")
            .folder(name + "/matrix/")
            .file(name + "/matrix/matrix", content)
            .bytes();
    }

    std::unique_ptr<TemporaryWorkingFolder> m_folder;
    std::unique_ptr<FileProcess> m_plugin;
    std::unique_ptr<QWidget> m_parent;
    std::unique_ptr<ModalResponder> m_user;
    QString m_name;
};

void tst_CopyDirectory::init()
{
    m_folder = std::make_unique<TemporaryWorkingFolder>();
    m_plugin = std::make_unique<FileProcess>();
    m_parent = std::make_unique<QWidget>();
    m_user = std::make_unique<ModalResponder>();
    FileProcessAccess::setImportParent(*m_plugin, m_parent.get());
}

void tst_CopyDirectory::cleanup()
{
    QCOMPARE(m_user->pending(), 0);
    m_user.reset();
    m_parent.reset();
    m_plugin.reset();
    m_folder.reset();
}

void tst_CopyDirectory::aNewJobIsUnpackedAndItsTarDeleted()
{
    QVERIFY(import(archive("ABC.tgz", gzip(job("ABC"), "ABC.tar"))));
    QCOMPARE(m_name, QString("ABC"));
    QCOMPARE(jobs(), (Tree{{"ABC/", ""}, {"ABC/matrix/", ""}, {"ABC/matrix/matrix", "new"}}));
}

void tst_CopyDirectory::aJobOfAnotherNameIsRenamed()
{
    QVERIFY(import(archive("ABC.tgz", gzip(job("XYZ")))));
    QCOMPARE(m_name, QString("XYZ"));
    QCOMPARE(jobs().keys(), (QStringList{"ABC/", "ABC/matrix/", "ABC/matrix/matrix"}));
}

void tst_CopyDirectory::aTarOfAnotherNameIsLeft()
{
    QVERIFY(import(archive("ABC.tgz", gzip(job("ABC"), "xyz.tar"))));
    QCOMPARE(jobs().keys(), (QStringList{"ABC/", "ABC/matrix/", "ABC/matrix/matrix", "xyz.tar"}));
}

void tst_CopyDirectory::tarsThatBeginWithTheJobsNameAreDeleted()
{
    QVERIFY(m_folder->write("job/ABC_old.tar", "1"));
    QVERIFY(m_folder->write("job/ABC.tar.gz", "2"));
    QVERIFY(m_folder->write("job/AB.tar", "3"));
    QVERIFY(import(archive("ABC.tgz", gzip(job("ABC")))));
    QCOMPARE(jobs().keys(),
             (QStringList{"AB.tar", "ABC.tar.gz", "ABC/", "ABC/matrix/", "ABC/matrix/matrix"}));
}

void tst_CopyDirectory::anEmptyTarGivesAnEmptyName()
{
    QVERIFY(import(archive("ABC.tgz", gzip(TarBuilder().bytes()))));
    QCOMPARE(m_name, QString());
    QCOMPARE(jobs(), Tree());
}

void tst_CopyDirectory::anEmptyTarAndYesRemovesTheOldJob()
{
    QVERIFY(m_folder->write("job/ABC/matrix/matrix", "old"));
    QVERIFY(m_folder->write("job/OTHER/matrix/matrix", "other"));
    m_user->expectMessageBox(QMessageBox::Yes);
    QVERIFY(import(archive("ABC.tgz", gzip(TarBuilder().bytes()))));
    QCOMPARE(jobs().keys(), (QStringList{"OTHER/", "OTHER/matrix/", "OTHER/matrix/matrix"}));
}

void tst_CopyDirectory::aMissingJobPathFallsBack()
{
    FileProcessAccess::config(*m_plugin).jobPath = m_folder->filePath("missing").replace("/", "\\");
    QVERIFY(import(archive("ABC.tgz", gzip(job("ABC")))));
    QVERIFY(jobs().contains("ABC/matrix/matrix"));
    QVERIFY(!QDir(m_folder->filePath("missing")).exists());
    QCOMPARE(UnzipProgress::unzipedFilePath, std::wstring(L".\\job\\"));
}

void tst_CopyDirectory::anEmptyJobPathFallsBack()
{
    QVERIFY(import(archive("ABC.tgz", gzip(job("ABC")))));
    QCOMPARE(UnzipProgress::unzipedFilePath, std::wstring(L".\\job\\"));
    QCOMPARE(UnzipProgress::removeCmd, std::string("/c del .\\job\\ABC*.tar*.tar"));
}

void tst_CopyDirectory::theJobRootIsMadeAndLogged()
{
    const LogCapture log;
    QVERIFY(!QDir("job").exists());
    QVERIFY(import(archive("ABC.tgz", gzip(job("ABC")))));
    QVERIFY(log.find("fileprocess.cpp", 416).message.find("\".\\job\"") != std::string::npos);
}

void tst_CopyDirectory::theQuestionIsAskedForAFolderOnly()
{
    QVERIFY(m_folder->write("job/ABC.x", "a file"));
    QVERIFY(m_folder->write("job/ABCD/matrix", "another job"));
    QVERIFY(import(archive("ABC.tgz", gzip(job("ABC")))));
    QVERIFY(m_user->boxes.empty());
}

void tst_CopyDirectory::theQuestionIsAsked_data()
{
    QTest::addColumn<bool>("yes");
    QTest::newRow("Yes") << true;
    QTest::newRow("No") << false;
}

void tst_CopyDirectory::theQuestionIsAsked()
{
    QFETCH(bool, yes);
    QVERIFY(m_folder->write("job/ABC/matrix/matrix", "old"));
    m_user->expect([&](QWidget *window) {
        auto *box = qobject_cast<QMessageBox *>(window);
        QVERIFY(box);
        QCOMPARE(box->windowTitle(), QString("Information"));
        QCOMPARE(box->text(), QString(Question));
        QCOMPARE(box->standardButtons(), QMessageBox::Yes | QMessageBox::No);
        QCOMPARE(box->windowModality(), Qt::ApplicationModal);
        QVERIFY(!box->parentWidget());
        // The question comes before the progress window.
        for (QWidget *widget : QApplication::topLevelWidgets())
            QVERIFY(!widget->findChild<QProgressBar *>() || !widget->isVisible());
        box->button(yes ? QMessageBox::Yes : QMessageBox::No)->click();
    });
    QVERIFY(import(archive("ABC.tgz", gzip(job("ABC")))));
}

void tst_CopyDirectory::theQuestionHasNoDefaultButton()
{
    QVERIFY(m_folder->write("job/ABC/matrix/matrix", "old"));
    bool hasDefault = true;
    m_user->expect([&hasDefault](QWidget *window) {
        auto *box = qobject_cast<QMessageBox *>(window);
        hasDefault = box->defaultButton() != nullptr;
        box->button(QMessageBox::No)->click();
    });
    QVERIFY(import(archive("ABC.tgz", gzip(job("ABC")))));
    QVERIFY(!hasDefault);
}

void tst_CopyDirectory::noKeepsTheOldJobWhenTheNamesDiffer()
{
    QVERIFY(m_folder->write("job/ABC/matrix/matrix", "old"));
    m_user->expectMessageBox(QMessageBox::No);
    QVERIFY(import(archive("ABC.tgz", gzip(job("XYZ")))));
    QCOMPARE(m_name, QString("XYZ"));
    QCOMPARE(jobs(), (Tree{{"ABC/", ""},
                           {"ABC/matrix/", ""},
                           {"ABC/matrix/matrix", "old"},
                           {"XYZ/", ""},
                           {"XYZ/matrix/", ""},
                           {"XYZ/matrix/matrix", "new"}}));
}

void tst_CopyDirectory::noUnpacksBesideTheOldJobWhenTheNamesAreEqual()
{
    QVERIFY(m_folder->write("job/ABC/matrix/matrix", "old"));
    QVERIFY(m_folder->write("job/ABC/only/old", "old"));
    const Tree before = jobs();
    m_user->expectMessageBox(QMessageBox::No);
    QVERIFY(import(archive("ABC.tgz", gzip(job("ABC")))));
    QCOMPARE(m_name, QString("ABC~1"));
    Tree after = before;
    after.unite({{"ABC~1/", ""}, {"ABC~1/matrix/", ""}, {"ABC~1/matrix/matrix", "new"}});
    QCOMPARE(jobs(), after);
}

// As three programs write the folder that they all call "odb".
void tst_CopyDirectory::twoBoardsAreNotMixed_data()
{
    QTest::addColumn<QByteArray>("tar");
    QTest::newRow("with its entry") << TarBuilder()
                                           .folder("odb/")
                                           .folder("odb/misc/")
                                           .file("odb/misc/attrlist", "new")
                                           .file("odb/matrix/matrix", "new")
                                           .bytes();
    QTest::newRow("without its entry") << TarBuilder()
                                              .folder("odb/fonts/")
                                              .file("odb/fonts/standard", "new")
                                              .folder("odb/matrix/")
                                              .file("odb/matrix/matrix", "new")
                                              .bytes();
    QTest::newRow("files only")
        << TarBuilder().file("./odb/fonts/standard", "new").file("./odb/matrix/matrix", "new").bytes();
}

void tst_CopyDirectory::twoBoardsAreNotMixed()
{
    QFETCH(QByteArray, tar);
    QVERIFY(m_folder->write("job/odb/matrix/matrix", "first"));
    QVERIFY(m_folder->write("job/odb/steps/pcb/layers/l1/features", "first"));
    const Tree before = jobs();
    QVERIFY(import(archive("second.tgz", gzip(tar))));
    QCOMPARE(m_name, QString("odb~1"));
    QVERIFY(import(archive("third.tgz", gzip(tar))));
    QCOMPARE(m_name, QString("odb~1"));
    QVERIFY(m_user->boxes.empty());
    Tree after = jobs();
    for (auto it = before.begin(); it != before.end(); ++it)
        QCOMPARE(after.take(it.key()), it.value());
    QCOMPARE(after.value("second/matrix/matrix"), QByteArray("new"));
    QCOMPARE(after.value("third/matrix/matrix"), QByteArray("new"));
    const auto isOfTheNewJobs = [](const QString &path) {
        return path.startsWith("second/") || path.startsWith("third/");
    };
    for (auto it = after.begin(); it != after.end(); ++it)
        QVERIFY2(isOfTheNewJobs(it.key()) && it.value() != "first", qPrintable(it.key()));
}

void tst_CopyDirectory::everyFolderAtTheTopFindsItsPlace()
{
    QVERIFY(m_folder->write("job/matrix/matrix", "old"));
    QVERIFY(m_folder->write("job/steps/x", "old"));
    QVERIFY(import(archive("ABC.tgz", gzip(TarBuilder()
                                               .file("matrix/matrix", "new")
                                               .file("misc/x", "new")
                                               .file("steps/x", "new")
                                               .bytes()))));
    QCOMPARE(m_name, QString("matrix~1"));
    QCOMPARE(jobs(), (Tree{{"ABC/", ""},
                           {"ABC/matrix", "new"},
                           {"matrix/", ""},
                           {"matrix/matrix", "old"},
                           {"misc/", ""},
                           {"misc/x", "new"},
                           {"steps/", ""},
                           {"steps/x", "old"},
                           {"steps~1/", ""},
                           {"steps~1/x", "new"}}));
}

void tst_CopyDirectory::aFreeNameStaysWhenTheArchivesIsTaken()
{
    QVERIFY(m_folder->write("job/ABC/x", "old ABC"));
    QVERIFY(m_folder->write("job/odb/x", "old odb"));
    Tree after = jobs();
    m_user->expectMessageBox(QMessageBox::No);
    QVERIFY(import(archive("ABC.tgz", gzip(job("odb")))));
    QCOMPARE(m_name, QString("odb~1"));
    after.unite({{"odb~1/", ""}, {"odb~1/matrix/", ""}, {"odb~1/matrix/matrix", "new"}});
    QCOMPARE(jobs(), after);
}

void tst_CopyDirectory::yesReplacesTheOldJobAndNoOther()
{
    QVERIFY(m_folder->write("job/ABC/x", "old ABC"));
    QVERIFY(m_folder->write("job/odb/x", "old odb"));
    m_user->expectMessageBox(QMessageBox::Yes);
    QVERIFY(import(archive("ABC.tgz", gzip(job("odb")))));
    QCOMPARE(jobs(), (Tree{{"ABC/", ""},
                           {"ABC/matrix/", ""},
                           {"ABC/matrix/matrix", "new"},
                           {"odb/", ""},
                           {"odb/x", "old odb"}}));
}

void tst_CopyDirectory::aRenamedArchiveWithoutFolderEntriesReplacesTheOldJob()
{
    QVERIFY(m_folder->write("job/ABC/x", "old"));
    m_user->expectMessageBox(QMessageBox::Yes);
    QVERIFY(import(archive("ABC.tgz", gzip(TarBuilder().file("odb/misc/info", "new").bytes()))));
    QCOMPARE(m_name, QString("odb"));
    QCOMPARE(jobs(), (Tree{{"ABC/", ""}, {"ABC/misc/", ""}, {"ABC/misc/info", "new"}}));
}

void tst_CopyDirectory::aTakenFileIsLeftAlone()
{
    QVERIFY(m_folder->write("job/readme", "the user's"));
    QVERIFY(
        import(archive("ABC.tgz", gzip(TarBuilder().file("ABC/x", "new").file("readme", "new").bytes()))));
    QCOMPARE(jobs(), (Tree{{"ABC/", ""}, {"ABC/x", "new"}, {"readme", "the user's"}, {"readme~1", "new"}}));
}

void tst_CopyDirectory::yesUnpacksOverTheOldJobWhenTheNamesAreEqual()
{
    QVERIFY(m_folder->write("job/ABC/matrix/matrix", "old"));
    QVERIFY(m_folder->write("job/ABC/only/old", "old"));
    m_user->expectMessageBox(QMessageBox::Yes);
    QVERIFY(import(archive("ABC.tgz", gzip(job("ABC")))));
    QCOMPARE(jobs()["ABC/matrix/matrix"], QByteArray("new"));
    QCOMPARE(jobs()["ABC/only/old"], QByteArray("old"));
}

void tst_CopyDirectory::yesReplacesTheOldJobWhenTheNamesDiffer()
{
    QVERIFY(m_folder->write("job/ABC/matrix/matrix", "old"));
    QVERIFY(m_folder->write("job/ABC/only/old", "old"));
    m_user->expectMessageBox(QMessageBox::Yes);
    QVERIFY(import(archive("ABC.tgz", gzip(job("XYZ")))));
    QCOMPARE(m_name, QString("XYZ"));
    QCOMPARE(jobs(), (Tree{{"ABC/", ""}, {"ABC/matrix/", ""}, {"ABC/matrix/matrix", "new"}}));
}

void tst_CopyDirectory::aNamelessMemberCanBeImportedTwice()
{
    const QString file = archive("ABC.tgz", gzip(job("ABC")));
    QVERIFY(import(file));
    m_user->expectMessageBox(QMessageBox::Yes);
    QVERIFY(import(file));
    QCOMPARE(jobs(), (Tree{{"ABC/", ""}, {"ABC/matrix/", ""}, {"ABC/matrix/matrix", "new"}}));
}

void tst_CopyDirectory::theParametersAreTheSameOnEveryPlatform()
{
    QVERIFY(QDir().mkpath("jobs root/here"));
    const QString root = m_folder->filePath("jobs root/here").replace("/", "\\");
    FileProcessAccess::config(*m_plugin).jobPath = root;
    const QString file = archive("ABC.tgz", gzip(job("XYZ")));
    QVERIFY(import(file));
    QCOMPARE(QString::fromStdWString(UnzipProgress::sourcePath), QString(file).replace("/", "\\"));
    QCOMPARE(QString::fromStdWString(UnzipProgress::unzipedFilePath), root + "\\");
    QCOMPARE(QString::fromStdString(UnzipProgress::removeCmd), "/c del " + root + "\\ABC*.tar*.tar");
    QCOMPARE(UnzipProgress::tarName, std::wstring(L"XYZ"));
}

void tst_CopyDirectory::theProgressWindowHasItsFlagsBarAndLayout()
{
    WindowWatch watch;
    QVERIFY(import(archive("ABC.tgz", gzip(TarBuilder().file("ABC/x", QByteArray(30000000, 'x')).bytes()))));
    QVERIFY(watch.seen.passes > 0);
    QCOMPARE(int(watch.seen.flags), 0x02041803);
    QCOMPARE(watch.seen.modality, Qt::ApplicationModal);
    QCOMPARE(watch.seen.parent, m_parent.get());

    const auto bars = m_parent->findChildren<QProgressBar *>();
    QCOMPARE(bars.size(), 1);
    QCOMPARE(bars[0]->minimum(), 0);
    QCOMPARE(bars[0]->maximum(), 0);
    QCOMPARE(bars[0]->minimumWidth(), 500);
    QCOMPARE(bars[0]->maximumWidth(), 500);
    QCOMPARE(bars[0]->orientation(), Qt::Horizontal);
    auto *layout = qobject_cast<QHBoxLayout *>(bars[0]->parentWidget()->layout());
    QVERIFY(layout);
    QCOMPARE(layout->count(), 1);
    QCOMPARE(layout->stretch(0), 0);
    QCOMPARE(layout->itemAt(0)->alignment(), Qt::Alignment());
}

void tst_CopyDirectory::theProgressWindowAnimates()
{
    WindowWatch watch;
    QVERIFY(import(archive("ABC.tgz", gzip(TarBuilder().file("ABC/x", QByteArray(60000000, 'x')).bytes()))));
    QVERIFY2(watch.seen.paints > 2, qPrintable(QString::number(watch.seen.paints)));
}

void tst_CopyDirectory::theProgressWindowStaysWithItsParent()
{
    QVERIFY(import(archive("ABC.tgz", gzip(job("ABC")))));
    QVERIFY(import(archive("DEF.tgz", gzip(job("DEF")))));
    const auto bars = m_parent->findChildren<QProgressBar *>();
    QCOMPARE(bars.size(), 2);
    for (QProgressBar *bar : bars)
        QVERIFY(!bar->isVisible());
}

void tst_CopyDirectory::failedImportShowsTheErrorBox_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("not gzip") << QByteArray("this is no gzip file, whatever its name says");
    QTest::newRow("gzip of something else") << gzip("this is no tar file");
    QTest::newRow("truncated in the middle") << gzip(job("ABC")).left(gzip(job("ABC")).size() / 2);
    QTest::newRow("empty file") << QByteArray();
    QTest::newRow("a name that leads out") << gzip(TarBuilder().file("../evil", "x").bytes());
}

void tst_CopyDirectory::failedImportShowsTheErrorBox()
{
    QFETCH(QByteArray, bytes);
    bool windowWasClosed = false;
    m_user->expect([&](QWidget *window) {
        auto *box = qobject_cast<QMessageBox *>(window);
        QVERIFY(box);
        QCOMPARE(box->windowTitle(), QString("Error"));
        QCOMPARE(box->text(), QString(Failure));
        QCOMPARE(int(box->standardButtons()), int(QMessageBox::Yes));
        QCOMPARE(box->windowModality(), Qt::ApplicationModal);
        QVERIFY(!box->parentWidget());
        windowWasClosed = !m_parent->findChild<QProgressBar *>()->isVisible();
        box->button(QMessageBox::Yes)->click();
    });
    QVERIFY(!import(archive("ABC.tgz", bytes)));
    QCOMPARE(m_name, QString("ABC"));
    QVERIFY(windowWasClosed);
    QVERIFY(!QDir("job/ABC").exists());
    QVERIFY(!QFile::exists("evil"));
}

void tst_CopyDirectory::failedImportKeepsTheOldJob_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("yes");
    const QByteArray same = job("ABC", QByteArray(100000, 'n'));
    const QByteArray other = job("XYZ", QByteArray(100000, 'n'));
    for (const bool yes : {true, false}) {
        const char *answer = yes ? ", Yes" : ", No";
        const auto row = [&](const char *what) -> QTestData & {
            return QTest::newRow(qPrintable(QString(what) + answer));
        };
        row("not gzip") << QByteArray("no gzip") << yes;
        row("truncated") << gzip(same).chopped(100) << yes;
        row("truncated tar, equal names") << gzip(same.left(60000)) << yes;
        row("truncated tar, other name") << gzip(other.left(60000)) << yes;
        row("without its end, equal names") << gzip(same.chopped(1024)) << yes;
        row("a bad name at the end")
            << gzip(TarBuilder().file("ABC/matrix/matrix", "n").file("/x", "x").bytes()) << yes;
        if (yes) // otherwise the new job comes to stand beside the old one
            row("a folder for a file")
                << gzip(TarBuilder().file("ABC/a", "n").file("ABC/matrix/matrix/x", "n").bytes()) << yes;
    }
}

void tst_CopyDirectory::failedImportKeepsTheOldJob()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, yes);
    QVERIFY(m_folder->write("job/ABC/a", "old a"));
    QVERIFY(m_folder->write("job/ABC/matrix/matrix", "old"));
    const Tree before = jobs();
    m_user->expectMessageBox(yes ? QMessageBox::Yes : QMessageBox::No);
    m_user->expectMessageBox(QMessageBox::Yes);
    QVERIFY(!import(archive("ABC.tgz", bytes)));
    QCOMPARE(m_user->boxes.back().text, QString(Failure));
    Tree after = jobs();
    after.remove("ABC.tar"); // of a tar that is damaged
    QCOMPARE(after, before);
}

void tst_CopyDirectory::aTarLeftByAFailureDoesNotSpoilTheNextImport()
{
    m_user->expectMessageBox(QMessageBox::Yes);
    QVERIFY(!import(archive("ABC.tgz", gzip("this is no tar file"))));
    QVERIFY(jobs().contains("ABC.tar"));
    QVERIFY(import(archive("ABC.tgz", gzip(job("ABC")))));
    QCOMPARE(jobs(), (Tree{{"ABC/", ""}, {"ABC/matrix/", ""}, {"ABC/matrix/matrix", "new"}}));
}

void tst_CopyDirectory::aPathWithBlanksSplitsTheCommands()
{
    QVERIFY(m_folder->write("job/my", "1"));
    QVERIFY(m_folder->write("part_too.tar", "2"));
    QVERIFY(m_folder->write("part/x", "3"));
    QVERIFY(m_folder->write("job/my part/matrix", "old"));
    m_user->expectMessageBox(QMessageBox::Yes);
    QVERIFY(import(archive("my part.tgz", gzip(job("XYZ")))));
    // "del .\job\my part*.tar" is about .\job\my and part*.tar, "rd /s /q .\job\my part" about .\job\my and
    // part, a folder, so that it is not run: the tar and the old job stay, and the new one keeps its name.
    QVERIFY(!jobs().contains("my"));
    QVERIFY(!QFile::exists("part_too.tar"));
    QCOMPARE(readFile("part/x"), QByteArray("3"));
    QVERIFY(jobs().contains("my part.tar"));
    QCOMPARE(jobs()["my part/matrix"], QByteArray("old"));
    QVERIFY(jobs().contains("XYZ/matrix/matrix"));
}

void tst_CopyDirectory::aCommandThatWouldHitAFolderIsNotRun_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("folder"); // in the way, from the working folder
    QTest::newRow("a second download") << "board (1)"
                                       << "job/board";
    QTest::newRow("a blank") << "my part"
                             << "job/my";
    QTest::newRow("a comma") << "my,part"
                             << "job/my";
#ifndef _WIN32 // where it would be the same folder
    QTest::newRow("a blank at the end") << "board "
                                        << "job/board";
#endif
    QTest::newRow("a caret") << "bo^ard"
                             << "job/board";
    QTest::newRow("another command") << "board&part"
                                     << "job/board";
    QTest::newRow("a variable") << "%PATH%"
                                << "job/board";
}

// Neither command, whatever the answer: the tar is deleted as a file, both folders stay.
void tst_CopyDirectory::aCommandThatWouldHitAFolderIsNotRun()
{
    QFETCH(QString, name);
    QFETCH(QString, folder);
    QVERIFY(m_folder->write(folder + "/file", "another job"));
    const Tree before = jobs();
    const QString file = archive(name + ".tgz", gzip(job("XYZ")));

    const LogCapture log;
    QVERIFY(import(file));
    Tree after = before;
    after.unite({{name + "/", ""}, {name + "/matrix/", ""}, {name + "/matrix/matrix", "new"}});
    QCOMPARE(jobs(), after);
    bool isLogged = false;
    for (const LogLine &line : log.lines())
        isLogged = isLogged || line.message.find("without the command for it") != std::string::npos;
    QVERIFY(isLogged);

    m_user->expectMessageBox(QMessageBox::Yes);
    QVERIFY(import(archive(name + ".tgz", gzip(job("XYZ", "newer")))));
    after.unite({{"XYZ/", ""}, {"XYZ/matrix/", ""}, {"XYZ/matrix/matrix", "newer"}});
    QCOMPARE(jobs(), after);
}

void tst_CopyDirectory::aFailedImportRunsNoCommandThatWouldHitAFolder()
{
    QVERIFY(m_folder->write("job/board/file", "another job"));
    m_user->expectMessageBox(QMessageBox::Yes);
    const LogCapture log;
    QVERIFY(!import(archive("board (1).tgz", gzip(job("XYZ")).chopped(20))));
    QCOMPARE(m_user->boxes.back().text, QString(Failure));
    QCOMPARE(jobs(), (Tree{{"board/", ""}, {"board/file", "another job"}}));
    QCOMPARE(log.find("Progress", 139).severity, google::GLOG_ERROR);
}

// The interpreter reads a slash as the begin of a switch.
void tst_CopyDirectory::aJobRootWithSlashesKeepsTheOldJob()
{
    QVERIFY(m_folder->write("jobs/ABC/x", "old"));
    FileProcessAccess::config(*m_plugin).jobPath = m_folder->filePath("jobs");
    m_user->expectMessageBox(QMessageBox::Yes);
    QVERIFY(import(archive("ABC.tgz", gzip(job("XYZ")))));
    QCOMPARE(treeOf(m_folder->filePath("jobs")), (Tree{{"ABC/", ""},
                                                       {"ABC/x", "old"},
                                                       {"XYZ/", ""},
                                                       {"XYZ/matrix/", ""},
                                                       {"XYZ/matrix/matrix", "new"}}));
}

void tst_CopyDirectory::aNameThatNamesNoJobFails_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("nothing") << "";
    QTest::newRow("the job root") << ".";
    QTest::newRow("the folder around it") << "..";
    QTest::newRow("what Windows reads as the job root") << "...";
    QTest::newRow("a blank") << " ";
    QTest::newRow("dots and blanks") << ". .";
    QTest::newRow("another folder") << "..\\other";
}

void tst_CopyDirectory::aNameThatNamesNoJobFails()
{
    QFETCH(QString, name);
    QVERIFY(m_folder->write("job/ABC/x", "old"));
    QVERIFY(m_folder->write("other/x", "old"));
    const QString file = archive("valid.tgz", gzip(job("XYZ")));
    const Tree before = treeOf(m_folder->path());
    m_user->expectMessageBox(QMessageBox::Yes);
    const LogCapture log;
    m_name = name;
    QVERIFY(!FileProcessAccess::copyDirectory(*m_plugin, file, m_name));
    QCOMPARE(m_user->boxes.size(), std::size_t(1));
    QCOMPARE(m_user->boxes[0].title, QString("Error"));
    QCOMPARE(m_user->boxes[0].text, QString(Failure));
    QCOMPARE(treeOf(m_folder->path()), before);
    QCOMPARE(log.lines().size(), std::size_t(1));
    QCOMPARE(log.lines()[0].severity, google::GLOG_ERROR);
}

void tst_CopyDirectory::whatWasJustUnpackedIsNotRemoved_data()
{
    QTest::addColumn<QByteArray>("tar");
    QTest::newRow("packed from the folder above")
        << TarBuilder().folder("./").folder("./ABC/").file("./ABC/x", "new").bytes();
    QTest::newRow("another folder first") << TarBuilder().file("XYZ/x", "x").file("ABC/x", "new").bytes();
}

void tst_CopyDirectory::whatWasJustUnpackedIsNotRemoved()
{
    QFETCH(QByteArray, tar);
    QVERIFY(m_folder->write("job/ABC/old", "old"));
    m_user->expectMessageBox(QMessageBox::Yes);
    QVERIFY(import(archive("ABC.tgz", gzip(tar))));
    QCOMPARE(jobs().value("ABC/x"), QByteArray("new"));
    QCOMPARE(jobs().value("ABC/old"), QByteArray("old"));
}

void tst_CopyDirectory::memberNamesMayFallApart_data()
{
    QTest::addColumn<QString>("archiveName");
    QTest::addColumn<QByteArray>("member");
    QTest::newRow("blanks") << "my_board" << QByteArray("my board.tar");
    QTest::newRow("brackets") << "board" << QByteArray("board(1).tar");
    QTest::newRow("a renamed second download") << "board" << QByteArray("board (1).tar");
}

void tst_CopyDirectory::memberNamesMayFallApart()
{
    QFETCH(QString, archiveName);
    QFETCH(QByteArray, member);
    QVERIFY(import(archive(archiveName + ".tgz", gzip(job("XYZ"), member))));
    QCOMPARE(jobs().value(archiveName + "/matrix/matrix"), QByteArray("new"));
}

// The command would delete board.txt and ask about the folder "my".
void tst_CopyDirectory::aMembersNameGetsIntoNoCommandThatFallsApart()
{
    QVERIFY(m_folder->write("board.txt", "the user's"));
    QVERIFY(m_folder->write("job/my/x", "a job"));
    m_user->expectMessageBox(QMessageBox::Yes);
    QVERIFY(!import(archive("my_board.tgz", gzip("this is no tar file", "my board.tar"))));
    QCOMPARE(readFile("board.txt"), QByteArray("the user's"));
    QCOMPARE(jobs(), (Tree{{"my/", ""}, {"my/x", "a job"}, {"my board.tar", "this is no tar file"}}));
}

// The event loop of the first poll is held up until the failed task and its clean-up have ended.
void tst_CopyDirectory::aTaskThatEndsUnseenTakesTheSuccessRoad()
{
    // The task waits at its log line until the poll is in its event pass, which then outlasts the clean-up.
    FailureGate gate;
    QTimer::singleShot(0, [&gate] {
        gate.open();
        QTest::qSleep(2000);
    });
    QVERIFY(import(archive("ABC.tgz", "no gzip")));
    QVERIFY(m_user->boxes.empty());
    QCOMPARE(m_name, QString("ABC.tar"));
}

void tst_CopyDirectory::aFailureThatEndsUnseenKeepsTheOldJob()
{
    QVERIFY(m_folder->write("job/ABC/x", "old"));
    const Tree before = jobs();
    m_user->expectMessageBox(QMessageBox::Yes);
    FailureGate gate;
    QTimer later; // than the question
    connect(&later, &QTimer::timeout, [&] {
        if (m_user->boxes.empty() || QApplication::activeModalWidget() == nullptr)
            return;
        later.stop();
        gate.open();
        QTest::qSleep(2000);
    });
    later.start(1);
    QVERIFY(import(archive("ABC.tgz", "no gzip")));
    QCOMPARE(jobs(), before);
}

void tst_CopyDirectory::aJobRootThatVanishesEndsTheImport()
{
    // The answer to the question takes the root away: unpacking makes it again.
    QVERIFY(m_folder->write("job/ABC/matrix/matrix", "old"));
    m_user->expect([](QWidget *window) {
        QDir("job").removeRecursively();
        qobject_cast<QMessageBox *>(window)->button(QMessageBox::Yes)->click();
    });
    QVERIFY(import(archive("ABC.tgz", gzip(job("ABC")))));
    QCOMPARE(jobs().keys(), (QStringList{"ABC/", "ABC/matrix/", "ABC/matrix/matrix"}));
}

void tst_CopyDirectory::aJobRootThatIsAFileFails()
{
    QVERIFY(m_folder->write("job", "a file"));
    m_user->expectMessageBox(QMessageBox::Yes);
    QVERIFY(!import(archive("ABC.tgz", gzip(job("ABC")))));
    QCOMPARE(m_user->boxes.back().text, QString(Failure));
    QCOMPARE(readFile("job"), QByteArray("a file"));
}

QTEST_MAIN(tst_CopyDirectory)
#include "tst_copydirectory.moc"
