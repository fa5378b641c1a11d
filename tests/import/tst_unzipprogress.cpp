// The background job of the import.

#include "import/unzipprogress.h"
#include "tests/archive/archivebuilder.h"
#include "tests/support/logcapture.h"
#include "tests/support/temporaryworkingfolder.h"
#include "tests/support/threadpriority.h"

#include <QElapsedTimer>
#include <QTest>

#include <iostream>
#include <memory>
#include <sstream>

class tst_UnzipProgress : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_folder.reset(); }

    void aNewJobHasNotStarted();
    void aFinishedJobReportsOneHundred();
    void aRunningJobIsNotFinished();
    void theWorkStepsBackForTheUserInterface();
    void destroyingAJobWaitsForIt();
    void theResultsAreInTheStatics();
    void theMemberNameGoesToTheWideOutput_data();
    void theMemberNameGoesToTheWideOutput();
    void aStoredMemberNameReplacesTheTarName();
    void aMemberWithoutItsEndingIsRenamed();
    void anEmptyTarHasNoFolderName();
    void theFirstFolderIsTheJobs_data();
    void theFirstFolderIsTheJobs();
    void aFailureIsLoggedUnderTheExportJob_data();
    void aFailureIsLoggedUnderTheExportJob();
    void aFailureRunsTheCleanUpInAShownWindow();
    void aRefusalIsLoggedWithItsEntry();
    void aCancelEndsTheJobAsAFailure();
    void theRealArchivesUnpack_data();
    void theRealArchivesUnpack();

private:
    // Sets the statics as the user-interface side does.
    void prepare(const QByteArray &archive)
    {
        QVERIFY(m_folder->write("mail/ABC.tgz", archive));
        QVERIFY(QDir().mkpath("job"));
        UnzipProgress::sourcePath = m_folder->filePath("mail/ABC.tgz").replace("/", "\\").toStdWString();
        UnzipProgress::tarName = L"ABC.tar";
        UnzipProgress::unzipedFilePath = L".\\job\\";
        UnzipProgress::removeCmd = "/c del .\\job\\ABC*.tar";
    }
    double run()
    {
        UnzipProgress job;
        job.do_process();
        QElapsedTimer timer;
        timer.start();
        while (!job.isFinish() && timer.elapsed() < 30000)
            QTest::qSleep(1);
        return job.get_value();
    }
    QMap<QString, QByteArray> jobs() const { return treeOf(m_folder->filePath("job")); }

    std::unique_ptr<TemporaryWorkingFolder> m_folder;
};

using Tree = QMap<QString, QByteArray>;

void tst_UnzipProgress::init()
{
    m_folder = std::make_unique<TemporaryWorkingFolder>();
}

void tst_UnzipProgress::aNewJobHasNotStarted()
{
    UnzipProgress job;
    QVERIFY(job.isFinish());
    QCOMPARE(job.get_value(), 0.0);
    QVERIFY(!job.cancel);
    QVERIFY(!job.task.valid());
    QCOMPARE(job.message, std::string("Start calculating, please wait!"));
}

void tst_UnzipProgress::aFinishedJobReportsOneHundred()
{
    prepare(gzip(TarBuilder().folder("ABC/").file("ABC/x", "x").bytes()));
    QCOMPARE(run(), 100.0);
    QCOMPARE(jobs(), (Tree{{"ABC/", ""}, {"ABC/x", "x"}, {"ABC.tar", jobs()["ABC.tar"]}}));
}

void tst_UnzipProgress::aRunningJobIsNotFinished()
{
    prepare("no archive"); // the clean-up of a failure takes its time
    UnzipProgress job;
    job.do_process();
    QTRY_COMPARE(job.get_value(), -1.0);
    QVERIFY(!job.isFinish());
    QTRY_VERIFY(job.isFinish());
}

void tst_UnzipProgress::theWorkStepsBackForTheUserInterface()
{
    prepare("no archive");
    const LogCapture log;
    QCOMPARE(run(), -1.0);
    QVERIFY(!log.lines().empty());
    for (const LogLine &line : log.lines())
        QVERIFY2(line.threadPriority < threadPriority(), qPrintable(QString::number(line.threadPriority)));
}

void tst_UnzipProgress::destroyingAJobWaitsForIt()
{
    prepare(gzip(TarBuilder().folder("ABC/").file("ABC/x", QByteArray(5000000, 'x')).bytes()));
    {
        UnzipProgress job;
        job.do_process();
    }
    QCOMPARE(jobs()["ABC/x"].size(), 5000000);
}

void tst_UnzipProgress::theResultsAreInTheStatics()
{
    prepare(gzip(TarBuilder().folder("XYZ/").file("XYZ/x", "x").bytes()));
    run();
    QCOMPARE(UnzipProgress::tarName, std::wstring(L"XYZ"));
    QCOMPARE(UnzipProgress::removeCmd, std::string("/c del .\\job\\ABC*.tar*.tar"));
    QCOMPARE(UnzipProgress::unzipedFilePath, std::wstring(L".\\job\\"));
}

void tst_UnzipProgress::theMemberNameGoesToTheWideOutput_data()
{
    QTest::addColumn<QByteArray>("stored");
    QTest::newRow("stored name") << QByteArray("xyz.tar");
    QTest::newRow("no name") << QByteArray();
}

void tst_UnzipProgress::theMemberNameGoesToTheWideOutput()
{
    QFETCH(QByteArray, stored);
    prepare(gzip(TarBuilder().folder("ABC/").bytes(), stored));
    std::wstringbuf output;
    std::wstreambuf *before = std::wcout.rdbuf(&output);
    const double value = run();
    std::wcout.rdbuf(before);
    QCOMPARE(value, 100.0);
    QCOMPARE(QString::fromStdWString(output.str()), QString(stored) + "\n");
}

void tst_UnzipProgress::aStoredMemberNameReplacesTheTarName()
{
    prepare(gzip(TarBuilder().folder("ABC/").bytes(), "xyz.tar"));
    QCOMPARE(run(), 100.0);
    QVERIFY(jobs().contains("xyz.tar"));
    QVERIFY(!jobs().contains("ABC.tar"));
    QVERIFY(jobs().contains("ABC/"));
}

void tst_UnzipProgress::aMemberWithoutItsEndingIsRenamed()
{
    prepare(gzip(TarBuilder().folder("ABC/").bytes()));
    QCOMPARE(run(), 100.0);
    QCOMPARE(jobs().keys(), (QStringList{"ABC.tar", "ABC/"}));
}

void tst_UnzipProgress::anEmptyTarHasNoFolderName()
{
    prepare(gzip(TarBuilder().bytes()));
    QCOMPARE(run(), 100.0);
    QCOMPARE(UnzipProgress::tarName, std::wstring());
}

void tst_UnzipProgress::theFirstFolderIsTheJobs_data()
{
    QTest::addColumn<QByteArray>("tar");
    QTest::addColumn<QString>("name");
    QTest::newRow("folder entry") << TarBuilder().folder("odb/").file("odb/x", "x").bytes() << "odb";
    QTest::newRow("folder entry after a dot")
        << TarBuilder().folder("./odb/").file("./odb/x", "x").bytes() << "odb";
    QTest::newRow("no folder entries") << TarBuilder().file("odb/matrix/matrix", "x").bytes() << "odb";
    QTest::newRow("no entry of its own")
        << TarBuilder().folder("odb/misc/").file("odb/misc/info", "x").bytes() << "odb";
    QTest::newRow("a file before it")
        << TarBuilder().file("._odb", "x").folder("odb/").file("odb/x", "x").bytes() << "odb";
    QTest::newRow("a file only") << TarBuilder().file("odb", "x").bytes() << "odb";
    QTest::newRow("the folder itself") << TarBuilder().folder("./").file("./odb/x", "x").bytes() << ".";
}

void tst_UnzipProgress::theFirstFolderIsTheJobs()
{
    QFETCH(QByteArray, tar);
    QFETCH(QString, name);
    prepare(gzip(tar));
    QCOMPARE(run(), 100.0);
    QCOMPARE(QString::fromStdWString(UnzipProgress::tarName), name);
}

void tst_UnzipProgress::aFailureIsLoggedUnderTheExportJob_data()
{
    QTest::addColumn<QByteArray>("archive");
    const QByteArray tar = TarBuilder().file("ABC/x", QByteArray(3000, 'x')).bytes();
    QTest::newRow("not gzip") << QByteArray("this is no gzip file, whatever its name says");
    QTest::newRow("gzip of something else") << gzip("this is no tar file");
    QTest::newRow("truncated") << gzip(tar).left(gzip(tar).size() / 2);
    QTest::newRow("truncated tar") << gzip(tar.left(2000));
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("gzip of nothing") << gzip("");
}

void tst_UnzipProgress::aFailureIsLoggedUnderTheExportJob()
{
    QFETCH(QByteArray, archive);
    prepare(archive);
    const LogCapture log;
    QCOMPARE(run(), -1.0);
    const LogLine line = log.find("Progress", 139);
    QCOMPARE(line.severity, google::GLOG_ERROR);
    // The text in GB2312.
    const QByteArray text = QByteArray::fromHex("bde2d1b9cec4bcfed2ecb3a3a3a120d2ecb3a3cebbd6c3a3ba");
    QCOMPARE(QByteArray::fromStdString(line.message), text + "Progress : 139");
}

void tst_UnzipProgress::aFailureRunsTheCleanUpInAShownWindow()
{
    prepare(gzip("this is no tar file"));
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(run(), -1.0);
    QVERIFY(timer.elapsed() >= 100);
    QCOMPARE(UnzipProgress::removeCmd, std::string("/c del .\\job\\ABC*.tar.\\job\\ABC*.*\""));
    QCOMPARE(UnzipProgress::tarName, std::wstring(L"ABC.tar"));
    QCOMPARE(jobs().keys(), QStringList{"ABC.tar"}); // that pattern matches nothing
}

void tst_UnzipProgress::aRefusalIsLoggedWithItsEntry()
{
    prepare(gzip(TarBuilder().file("ABC/x", "x").file("ABC/../../evil", "x").bytes()));
    const LogCapture log;
    QCOMPARE(run(), -1.0);
    QString text;
    for (const LogLine &line : log.lines())
        text += QString::fromStdString(line.message) + "\n";
    QVERIFY2(text.contains("\"ABC/../../evil\": the path leads out of the folder"), qPrintable(text));
}

void tst_UnzipProgress::aCancelEndsTheJobAsAFailure()
{
    prepare(gzip(TarBuilder().folder("ABC/").bytes()));
    const LogCapture log;
    UnzipProgress job;
    job.cancel = true;
    job.do_process();
    QTRY_VERIFY(job.isFinish());
    QCOMPARE(job.get_value(), -1.0);
    QCOMPARE(log.find("Progress", 139).line, 139);
    job.task.get(); // throws what the job lets out
}

void tst_UnzipProgress::theRealArchivesUnpack_data()
{
    QTest::addColumn<QString>("file");
    QTest::newRow("generated") << QString();
    for (const char *folder : {"", "/unread"}) {
        const QDir data(QString::fromLocal8Bit(TEST_DATA_FOLDER) + folder);
        for (const QString &file : data.entryList({"*.tgz"}, QDir::Files))
            QTest::newRow(qPrintable(file)) << data.filePath(file);
    }
}

void tst_UnzipProgress::theRealArchivesUnpack()
{
    QFETCH(QString, file);
    prepare(file.isEmpty() ? gzip(TarBuilder().file("odb/matrix/matrix", "x").bytes()) : readFile(file));
    QCOMPARE(run(), 100.0);
    QStringList matrices;
    for (const QString &path : jobs().keys()) {
        if (path.endsWith("/matrix/matrix"))
            matrices << path;
    }
    QCOMPARE(matrices.size(), 1);
    QVERIFY(!jobs()[matrices[0]].isEmpty());
}

QTEST_GUILESS_MAIN(tst_UnzipProgress)
#include "tst_unzipprogress.moc"
