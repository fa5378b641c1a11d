// The workbench's batch mode: archives in, files out, through the plug-in and its dialogs.
#include "tests/archive/archivebuilder.h"
#include "tests/endtoend/batchprocess.h"
#include "tests/support/temporaryworkingfolder.h"

#include <QImage>
#include <QtTest>

#include <csignal>
#include <memory>

class tst_Batch : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<TemporaryWorkingFolder> folder;

    BatchResult run(const QStringList &arguments) { return runBatch(folder->path(), arguments); }
    QStringList folders() const
    {
        return {"--jobs", folder->filePath("jobs"), "--out", folder->filePath("out")};
    }
    QString copyOfSample(const QString &name) const
    {
        const QString copy = folder->filePath(name);
        if (!QFile::copy(SAMPLE_ARCHIVE, copy))
            qFatal("the sample archive %s cannot be copied", SAMPLE_ARCHIVE);
        return copy;
    }
    QStringList exported(const QString &job, const QString &ending) const
    {
        return QDir(folder->filePath("out/OX/" + job)).entryList({"*" + ending}, QDir::Files, QDir::Name);
    }

private slots:
    void init() { folder.reset(new TemporaryWorkingFolder); }
    void cleanup() { folder.reset(); }

    void sampleIsImportedAndExportedInBothFormats()
    {
        const BatchResult result = run(folders() + QStringList{SAMPLE_ARCHIVE});
        QVERIFY2(result.code == 0, qPrintable(result.all()));
        QVERIFY(QFileInfo(folder->filePath("jobs/beacon/matrix/matrix")).isFile());
        QVERIFY(!QFileInfo::exists(folder->filePath("jobs/beacon.tar")));
        const QStringList gds = exported("beacon", ".gds");
        QVERIFY2(gds.size() > 10, qPrintable(result.all()));
        QVERIFY(gds.contains("top.gds"));
        QStringList gerber = exported("beacon", ".gerber");
        QCOMPARE(QStringList(gerber).replaceInStrings(".gerber", ".gds"), gds);
        for (const QString &name : gds + gerber)
            QVERIFY2(QFileInfo(folder->filePath("out/OX/beacon/" + name)).size() > 0, qPrintable(name));
        QCOMPARE(result.fileLines().size(), gds.size() + gerber.size());
        QVERIFY(result.output.contains(QString("%1 files, ").arg(gds.size() + gerber.size())));
    }

    // Where the file system tells them apart, "ox" and what was written there stays as it is.
    void filesLandInTheFolderThatTheDialogShows()
    {
        QVERIFY(folder->write("out/ox/beacon/top.gds", "another job's"));
        const BatchResult result = run(folders() + QStringList{"--format", ".gds", SAMPLE_ARCHIVE});
        QVERIFY2(result.code == 0, qPrintable(result.all()));
        QVERIFY(exported("beacon", ".gds").size() > 10);
        if (QFileInfo::exists(folder->filePath("OUT")))
            return;
        // Younger than the one that the dialog shows, which the second run finds there already.
        QVERIFY(folder->write("out/Ox/beacon/kept", ""));
        const BatchResult again =
            run(folders() + QStringList{"--format", ".gerber", "--overwrite", SAMPLE_ARCHIVE});
        QVERIFY2(again.code == 0, qPrintable(again.all()));
        QVERIFY(exported("beacon", ".gerber").size() > 10);
        QCOMPARE(QDir(folder->filePath("out/ox/beacon")).entryList(QDir::Files), QStringList{"top.gds"});
        QCOMPARE(QDir(folder->filePath("out/Ox/beacon")).entryList(QDir::Files), QStringList{"kept"});
        QFile other(folder->filePath("out/ox/beacon/top.gds"));
        QVERIFY(other.open(QIODevice::ReadOnly));
        QCOMPARE(other.readAll(), QByteArray("another job's"));
    }

    void exportedFilesAreWhatTheirNamesSay()
    {
        const BatchResult result = run(folders() + QStringList{SAMPLE_ARCHIVE});
        QVERIFY2(result.code == 0, qPrintable(result.all()));
        QFile gds(folder->filePath("out/OX/beacon/top.gds"));
        QVERIFY(gds.open(QIODevice::ReadOnly));
        QCOMPARE(gds.read(4).toHex(), QByteArray("00060002")); // the record HEADER
        QFile gerber(folder->filePath("out/OX/beacon/top.gerber"));
        QVERIFY(gerber.open(QIODevice::ReadOnly));
        const QByteArray text = gerber.readAll();
        QVERIFY(text.contains("%MOMM*%") || text.contains("%MOIN*%"));
        QVERIFY(text.trimmed().endsWith("M02*"));
    }

    void oneFormatLeavesTheOtherOut()
    {
        const BatchResult result = run(folders() + QStringList{"--format", ".gerber", SAMPLE_ARCHIVE});
        QVERIFY2(result.code == 0, qPrintable(result.all()));
        QCOMPARE(exported("beacon", ".gds"), QStringList());
        QVERIFY(exported("beacon", ".gerber").size() > 10);
    }

    void anotherStepCanBeExported()
    {
        const BatchResult result =
            run(folders() + QStringList{"--format", ".gds", "--step", "panel", SAMPLE_ARCHIVE});
        QVERIFY2(result.code == 0, qPrintable(result.all()));
        const BatchResult missing =
            run(folders() + QStringList{"--format", ".gds", "--step", "flying", SAMPLE_ARCHIVE});
        QVERIFY(missing.code != 0);
        QVERIFY(missing.output.contains("has no step \"flying\""));
    }

    void withoutAnOutputFolderTheJobsFolderIsUsed()
    {
        const BatchResult result =
            run({"--jobs", folder->filePath("jobs"), "--format", ".gds", SAMPLE_ARCHIVE});
        QVERIFY2(result.code == 0, qPrintable(result.all()));
        QVERIFY(QFileInfo(folder->filePath("jobs/beacon/OX/beacon/top.gds")).isFile());
    }

    void brokenArchiveFailsAndKeepsTheOldJob_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QFile sample(SAMPLE_ARCHIVE);
        QVERIFY(sample.open(QIODevice::ReadOnly));
        const QByteArray whole = sample.readAll();
        QTest::newRow("no gzip") << QByteArray("this is no archive at all");
        QTest::newRow("empty file") << QByteArray();
        QTest::newRow("cut in the middle") << whole.left(whole.size() / 2);
    }
    void brokenArchiveFailsAndKeepsTheOldJob()
    {
        QFETCH(QByteArray, bytes);
        QVERIFY(folder->write("jobs/board/matrix/matrix", "old"));
        QVERIFY(folder->write("board.tgz", bytes));
        const BatchResult result = run(folders() + QStringList{"--overwrite", folder->filePath("board.tgz")});
        QVERIFY2(result.code != 0, qPrintable(result.all()));
        QVERIFY2(result.output.contains("FAILED: Error: The job unzipped failed, please check your files!"),
                 qPrintable(result.all()));
        QFile matrix(folder->filePath("jobs/board/matrix/matrix"));
        QVERIFY(matrix.open(QIODevice::ReadOnly));
        QCOMPARE(matrix.readAll(), QByteArray("old"));
    }

    void oneBrokenArchiveDoesNotStopTheOthers()
    {
        QVERIFY(folder->write("broken.tgz", "no archive"));
        const BatchResult result =
            run(folders() + QStringList{"--format", ".gds", folder->filePath("broken.tgz"), SAMPLE_ARCHIVE});
        QVERIFY(result.code != 0);
        QVERIFY2(exported("beacon", ".gds").size() > 10, qPrintable(result.all()));
    }

    void archiveWithoutAJobFailsAndExportsNothing_data()
    {
        QTest::addColumn<QByteArray>("tar");
        QTest::newRow("other files")
            << TarBuilder().folder("holiday/").file("holiday/beach.txt", "sand").bytes();
        QTest::newRow("empty tar") << TarBuilder().bytes();
    }
    void archiveWithoutAJobFailsAndExportsNothing()
    {
        QFETCH(QByteArray, tar);
        QVERIFY(folder->write("holiday.tgz", gzip(tar)));
        const BatchResult result =
            run(folders() + QStringList{"--format", ".gds", SAMPLE_ARCHIVE, folder->filePath("holiday.tgz")});
        QVERIFY2(result.code != 0, qPrintable(result.all()));
        QVERIFY2(result.output.contains("FAILED: the archive holds no ODB++ job"), qPrintable(result.all()));
        QCOMPARE(result.fileLines().size(), exported("beacon", ".gds").size()); // the sample's, once
    }

    void missingArchiveFails()
    {
        const BatchResult result = run(folders() + QStringList{folder->filePath("nothing.tgz")});
        QVERIFY(result.code != 0);
        QVERIFY(result.output.contains("FAILED: there is no such file"));
    }

    // The archive holds the folder beacon; its name says board.
    void overwriteReplacesTheOldJob()
    {
        const QString archive = copyOfSample("board.tgz");
        QVERIFY(folder->write("jobs/board/old.txt", "old"));
        const BatchResult result = run(folders() + QStringList{"--overwrite", "--format", ".gds", archive});
        QVERIFY2(result.code == 0, qPrintable(result.all()));
        QVERIFY(result.output.contains("do you want to overwrite it? - Yes"));
        QVERIFY(!QFileInfo::exists(folder->filePath("jobs/board/old.txt")));
        QVERIFY(QFileInfo(folder->filePath("jobs/board/matrix/matrix")).isFile());
        QVERIFY(!QFileInfo::exists(folder->filePath("jobs/beacon")));
        QVERIFY(exported("board", ".gds").size() > 10);
    }

    void withoutOverwriteTheOldJobStays()
    {
        const QString archive = copyOfSample("board.tgz");
        QVERIFY(folder->write("jobs/board/old.txt", "old"));
        const BatchResult result = run(folders() + QStringList{"--format", ".gds", archive});
        QVERIFY2(result.code == 0, qPrintable(result.all()));
        QVERIFY(result.output.contains("do you want to overwrite it? - No"));
        QVERIFY(QFileInfo::exists(folder->filePath("jobs/board/old.txt")));
        QVERIFY(!QFileInfo::exists(folder->filePath("jobs/board/matrix")));
        QVERIFY(exported("beacon", ".gds").size() > 10); // the job that was unpacked, under its inner name
    }

    void fileThatCannotBeWrittenIsAFailure()
    {
        QVERIFY(QDir().mkpath(folder->filePath("out/OX/beacon/top.gds"))); // a folder is in the way
        const BatchResult result = run(folders() + QStringList{"--format", ".gds", SAMPLE_ARCHIVE});
        QVERIFY2(result.code != 0, qPrintable(result.all()));
        QCOMPARE(result.lines("FAILED: TOP  .*was not written: .*top\\.gds").size(), 1);
        QCOMPARE(result.lines(" files, .* bytes, 1 failure$").size(), 1);
    }

    void picturesShowTheWindowTheFilledDialogAndTheTimes()
    {
        const BatchResult result = run(folders() + QStringList{"--format", ".gds", "--screenshots",
                                                               folder->filePath("pictures"), SAMPLE_ARCHIVE});
        QVERIFY2(result.code == 0, qPrintable(result.all()));
        const QDir pictures(folder->filePath("pictures"));
        QCOMPARE(pictures.entryList(QDir::Files, QDir::Name),
                 (QStringList{"01-beacon-workbench.png", "02-beacon-export-gds-filled.png",
                              "03-beacon-export-gds-done.png"}));
        for (const QString &name : pictures.entryList(QDir::Files))
            QVERIFY(QImage(pictures.filePath(name)).width() >= 800);
        // The top layer of copper has been drawn: it covers most of the board, in yellow.
        const QImage workbench(pictures.filePath("01-beacon-workbench.png"));
        int yellow = 0;
        for (int y = 0; y < workbench.height(); ++y) {
            for (int x = 0; x < workbench.width(); ++x) {
                const QColor color = workbench.pixelColor(x, y);
                yellow += color.red() > 150 && color.green() > 120 && color.blue() < 60;
            }
        }
        QVERIFY2(yellow > 50000, qPrintable(QString::number(yellow)));
        QVERIFY(QImage(pictures.filePath("02-beacon-export-gds-filled.png")) !=
                QImage(pictures.filePath("03-beacon-export-gds-done.png")));
    }

    void noSettingsFileIsLeftBehind()
    {
        const BatchResult result =
            run({"--format", ".gds", "--out", folder->filePath("out"), SAMPLE_ARCHIVE});
        QVERIFY2(result.code == 0, qPrintable(result.all()));
        QVERIFY(QFileInfo(folder->filePath("job/beacon/matrix/matrix")).isFile());
        QCOMPARE(QDir(folder->path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot, QDir::Name),
                 (QStringList{"job", "out"}));
    }

    void helpAndVersionNeedNoDisplay_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("said");
        QTest::newRow("help") << QStringList{"--help"} << 0 << "archive.tgz";
        QTest::newRow("version") << QStringList{"--version"} << 0 << "workbench ";
        QTest::newRow("unknown option") << QStringList{"--sideways"} << 2 << "sideways";
        QTest::newRow("batch of nothing") << QStringList{"--batch"} << 2 << "at least one archive";
    }
    void helpAndVersionNeedNoDisplay()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, said);
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const char *variable : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
            environment.remove(variable);
        process.setProcessEnvironment(environment);
        process.start(QCoreApplication::applicationDirPath() + "/workbench", arguments);
        QVERIFY(process.waitForFinished(60000));
        QTEST(process.exitCode(), "code");
        QCOMPARE(process.exitStatus(), QProcess::NormalExit);
        const QByteArray all = process.readAllStandardOutput() + process.readAllStandardError();
        QVERIFY2(all.contains(said.toLocal8Bit()), all.constData());
    }

    void jobThatIsNotThereCannotBeOpened()
    {
        const BatchResult result = run(folders() + QStringList{"--open", "nothing", SAMPLE_ARCHIVE});
        QCOMPARE(result.code, 2);
        QVERIFY2(result.errors.contains("--open nothing: there is no such job in "),
                 qPrintable(result.all()));
    }

#ifndef Q_OS_WIN // QProcess::terminate closes the windows there
    void temporaryFoldersGoWhenTheProgramIsTerminated()
    {
        QVERIFY(QDir().mkpath(folder->filePath("temporary")));
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("TMPDIR", folder->filePath("temporary"));
        environment.insert("XDG_RUNTIME_DIR", folder->path()); // otherwise Qt makes one
        environment.insert("QT_QPA_PLATFORM", "offscreen");
        process.setProcessEnvironment(environment);
        process.setWorkingDirectory(folder->path());
        process.start(QCoreApplication::applicationDirPath() + "/workbench",
                      folders() + QStringList{"--settings", folder->filePath("settings"), SAMPLE_ARCHIVE});
        const QDir temporary(folder->filePath("temporary"));
        const auto entries = [&temporary] {
            return temporary.entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
        };
        QByteArray printed;
        QTRY_VERIFY_WITH_TIMEOUT((printed += process.readAllStandardOutput()).contains("job beacon"), 60000);
        QVERIFY(!entries().isEmpty());
        process.terminate();
        QVERIFY(process.waitForFinished(60000));
        QCOMPARE(process.exitCode(), 128 + SIGTERM);
        QCOMPARE(entries(), QStringList());
    }
#endif

    void senselessCommandLineIsRefused()
    {
        const BatchResult result = run({"--format", ".dxf", SAMPLE_ARCHIVE});
        QCOMPARE(result.code, 2);
        QVERIFY(result.errors.contains("expected .gds or .gerber"));
    }
};

QTEST_GUILESS_MAIN(tst_Batch)
#include "tst_batch.moc"
