// camconvert on a full disk, for which a limit on the size of files stands, and when it is told to end.
#include "tests/cam/support/jobfolder.h"
#include "tests/convert/program.h"

#include <QRegularExpression>
#include <QtTest>

#include <algorithm>
#include <csignal>

namespace {

// Thousands of lines over each other: seconds of booleans when they are negated.
QByteArray tangle(int count)
{
    QByteArray text = "$0 r200\n";
    quint32 state = 1;
    const auto number = [&state](int below) {
        state = state * 1664525u + 1013904223u;
        return QByteArray::number(double(state >> 8) / double(1 << 24) * below, 'f', 3);
    };
    for (int i = 0; i < count; ++i)
        text += "L " + number(200) + ' ' + number(200) + ' ' + number(200) + ' ' + number(200) + " 0 P 0\n";
    return text;
}

QStringList partFiles(const QString &folder)
{
    QStringList found;
    QDirIterator walk(folder, {"*.part"}, QDir::Files, QDirIterator::Subdirectories);
    while (walk.hasNext())
        found << walk.next();
    return found;
}

} // namespace

class tst_CamConvertFaults : public QObject
{
    Q_OBJECT

private slots:
    void fullDiskFailsTheFileAndLeavesTheOldOne()
    {
        JobFolder job;
        job.features(tangle(2000), "top");
        job.features("$0 r200\nL 1 1 4 5 0 P 0\n", "drill");
        const Program program;
        QVERIFY(program.folder().write("o/board/top.gds", "old"));
        const Ran ran =
            program.run({"-c",
                         "trap '' XFSZ; ulimit -f 100; exec \"$0\" export \"$1\" --out o --layers top,drill "
                         "--format gds",
                         Program::path(), job.filePath("board")},
                        "/bin/sh");
        QCOMPARE(ran.code, 1);
        QVERIFY2(ran.errors.contains(
                     QRegularExpression("error: board/pcb/top \\(gds\\): .*top.gds.part: cannot be written")),
                 qPrintable(ran.errors));
        QCOMPARE(program.bytes("o/board/top.gds"), QByteArray("old"));
        QVERIFY(program.bytes("o/board/drill.gds").size() > 100);
        QCOMPARE(partFiles(program.filePath("o")), QStringList());
    }

    void fullDiskFailsReportsAndPictures_data()
    {
        QTest::addColumn<QString>("arguments");
        QTest::addColumn<QString>("file");
        QTest::newRow("verify's report") << "verify $0 o --layers top --format gds --json x.json"
                                         << "x.json";
        QTest::newRow("diff's report") << "diff $0 $1 --json x.json"
                                       << "x.json";
        QTest::newRow("diff's picture") << "diff $0 $1 --layers top --picture x.png"
                                        << "x.png";
        QTest::newRow("picture") << "picture $0 --out x.png"
                                 << "x.png";
        QTest::newRow("drawing") << "picture $0 --out x.svg"
                                 << "x.svg";
    }
    void fullDiskFailsReportsAndPictures()
    {
        QFETCH(QString, arguments);
        QFETCH(QString, file);
        JobFolder job, other;
        job.features(tangle(30), "top");
        other.features(tangle(60), "top");
        const Program program;
        QCOMPARE(
            program.run({"export", job.filePath("board"), "--out", "o", "--format", "gds", "--layers", "top"})
                .code,
            0);
        QVERIFY(program.folder().write(file, "old"));
        const auto run = [&](const QString &limit) {
            return program.run({"-c", "trap '' XFSZ; " + limit + " exec " + Program::path() + ' ' + arguments,
                                job.filePath("board"), other.filePath("board")},
                               "/bin/sh");
        };
        const Ran ran = run("ulimit -f 1;");
        QCOMPARE(ran.code, 1);
        QVERIFY2(ran.errors.contains(QRegularExpression("error: .*" + QRegularExpression::escape(file) +
                                                        ".*: cannot be written")),
                 qPrintable(ran.errors));
        QCOMPARE(program.bytes(file), QByteArray("old"));
        QCOMPARE(program.files(".").filter("x."), QStringList{file});
        // With room it is done: 3 is a difference, and verify's layers without files.
        run({});
        QVERIFY(program.bytes(file).size() > 512);
    }

    void signalEndsItAndLeavesNothingHalf_data()
    {
        QTest::addColumn<int>("signal");
        QTest::newRow("Ctrl-C") << int(SIGINT);
        QTest::newRow("termination") << int(SIGTERM);
        QTest::newRow("hang-up") << int(SIGHUP);
    }
    void signalEndsItAndLeavesNothingHalf()
    {
        QFETCH(int, signal);
        JobFolder job;
        job.features(tangle(6000), "top");
        job.features("$0 r200\nL 1 1 4 5 0 P 0\n", "drill");
        const Program program;
        // An archive, so that there is a private folder to remove; it stays until the last layer is read.
        QProcess tar;
        tar.start("tar", {"czf", program.filePath("board.tgz"), "-C", job.root(), "board"});
        QVERIFY(tar.waitForFinished() && tar.exitCode() == 0);
        QVERIFY(program.folder().write("o/board/top.gds", "old"));
        QProcess process;
        program.prepare(process);
        process.start(Program::path(), {"export", "board.tgz", "--out", "o", "--layers", "top,bottom",
                                        "--jobs", "1", "--negate", "--format", "gds"});
        QTRY_VERIFY_WITH_TIMEOUT(QFileInfo::exists(program.filePath("o/board/top.gds.part")), 20000);
        QVERIFY(!program.temporaryFiles().isEmpty());
        QVERIFY(::kill(pid_t(process.processId()), signal) == 0);
        const Ran ran = Program::end(process);
        QCOMPARE(ran.code, 128 + signal);
        QCOMPARE(program.temporaryFiles(), QStringList());
        QCOMPARE(partFiles(program.filePath("o")), QStringList());
        QCOMPARE(program.bytes("o/board/top.gds"), QByteArray("old"));
    }

    // Not when the stage of the unpacking is over: the tar is by far not complete.
    void signalEndsTheUnpackingAtOnce()
    {
        constexpr qint64 size = 200'000'000;
        JobFolder job;
        QFile zeros(job.filePath("board/zeros"));
        QVERIFY(zeros.open(QIODevice::WriteOnly) && zeros.resize(size));
        zeros.close();
        const Program program;
        QProcess tar;
        tar.start("tar", {"cf", program.filePath("board.tgz"), "-I", "gzip -1", "-C", job.root(), "board"});
        QVERIFY(tar.waitForFinished(120000) && tar.exitCode() == 0);
        QProcess process;
        program.prepare(process);
        process.start(Program::path(), {"export", "board.tgz", "--out", "o"});
        const auto unpacked = [&program] {
            qint64 bytes = 0;
            QDirIterator walk(program.filePath("temporary"), QDir::Files | QDir::Hidden,
                              QDirIterator::Subdirectories);
            while (walk.hasNext()) {
                walk.next();
                bytes += walk.fileInfo().size();
            }
            return bytes;
        };
        QTRY_VERIFY_WITH_TIMEOUT(unpacked() > 0, 60000);
        QVERIFY(::kill(pid_t(process.processId()), SIGINT) == 0);
        qint64 most = 0;
        while (!process.waitForFinished(1))
            most = std::max(most, unpacked());
        QCOMPARE(process.exitStatus(), QProcess::NormalExit);
        QCOMPARE(process.exitCode(), 128 + SIGINT);
        QVERIFY2(most < size * 3 / 4, qPrintable(QString::number(most)));
        QCOMPARE(program.temporaryFiles(), QStringList());
    }

    void progressIsForTerminalsOnly()
    {
        JobFolder job;
        job.features("$0 r200\nL 1 1 4 5 0 P 0\n", "top");
        const Program program;
        const Ran ran = program.run({"export", job.filePath("board"), "--out", "o", "--layers", "top,gone"});
        QVERIFY(!ran.errors.contains('\r'));
        QVERIFY(!ran.errors.contains('\x1b'));
        // util-linux's script is a terminal for the program.
        if (QStandardPaths::findExecutable("script").isEmpty())
            QSKIP("there is no program script");
        const QString command =
            Program::path() + " export " + job.filePath("board") + " --out o --layers top,gone";
        const QString shown = program.run({"-qec", command, "/dev/null"}, "script").output;
        QVERIFY2(shown.contains("1 of 1 layers"), qPrintable(shown));
        QVERIFY(shown.contains("\x1b[31merror"));
        QVERIFY(
            !program.run({"-qec", "NO_COLOR=1 " + command, "/dev/null"}, "script").output.contains('\x1b'));
    }
};

QTEST_GUILESS_MAIN(tst_CamConvertFaults)
#include "tst_camconvertfaults.moc"
