// The library as a host sees it: results, files, progress, cancel, database, job root.
#include "cam/jobroot.h"
#include "run/orvexapi.h"
#include "tests/cam/support/archive.h"
#include "tests/cam/support/gdsfile.h"
#include "tests/cam/support/jobfolder.h"
#include "tests/support/logcapture.h"
#include "tests/support/processortime.h"

#include <QDirIterator>
#include <QSettings>
#include <QtTest>

#include <sqlite3.h>

#include <chrono>
#include <filesystem>
#include <limits>
#include <thread>

using namespace ORVEX;

namespace {

using Progress = COMMON::progress_value<void>;

// layer_export's parameters with the values that the plug-in passes for an untouched row.
struct Call
{
    std::string job = "board", step = "pcb", layer = "top";
    API::export_type type = API::export_type::gds;
    std::string file;
    double dbu = 0.001, resize = 0.0;
    bool negative = false, mirror = false, rotate = false, scale = false, profile = false;
    double angle = 0.0;
    std::string axis = "X";
    double xScale = 1.0, yScale = 1.0;

    bool run(Progress *progress = nullptr) const
    {
        return API::layer_export(job, step, layer, type, file, progress, dbu, resize, negative, mirror,
                                 rotate, scale, 0, 0, 0, 0, 0, 0, profile, angle, axis, true, xScale, yScale,
                                 true, 2, 6, 1, 0, {}, 1);
    }
    void save() const
    {
        DB::layer_export_db_save(job, step, layer, type, file, nullptr, dbu, resize, negative, mirror, rotate,
                                 scale, 0, 0, 0, 0, 0, 0, profile, angle, axis, true, xScale, yScale, true);
    }
};

class Board : public JobFolder
{
public:
    Board()
    {
        features("$0 r200\nL 1 1 4 5 0 P 0\n");
        HOST::set_job_root(root().toStdString());
        QDir().mkpath(filePath("out"));
        call.file = filePath("out/top.gds").toStdString();
    }
    ~Board() { HOST::set_job_root({}); }
    QStringList files() const { return QDir(filePath("out")).entryList(QDir::Files); }
    Call call;
};

QString text(sqlite3_stmt *row, const char *column)
{
    for (int i = 0; i < sqlite3_column_count(row); ++i) {
        if (QString(sqlite3_column_name(row, i)) == column)
            return QString::fromUtf8(reinterpret_cast<const char *>(sqlite3_column_text(row, i)));
    }
    return "no such column";
}

// One string a row, the wanted columns joined by blanks.
QStringList rows(const QString &file, const QStringList &columns)
{
    QStringList result;
    sqlite3 *database = nullptr;
    sqlite3_stmt *statement = nullptr;
    if (sqlite3_open_v2(file.toUtf8(), &database, SQLITE_OPEN_READONLY, nullptr) == SQLITE_OK &&
        sqlite3_prepare_v2(database, "SELECT * FROM exports ORDER BY id", -1, &statement, nullptr) ==
            SQLITE_OK) {
        while (sqlite3_step(statement) == SQLITE_ROW) {
            QStringList values;
            for (const QString &column : columns)
                values.append(text(statement, column.toLatin1()));
            result.append(values.join(' '));
        }
    }
    sqlite3_finalize(statement);
    sqlite3_close(database);
    return result;
}

// Seconds after some time in the past.
void setChanged(const QString &folder, int seconds)
{
    const auto past = std::filesystem::file_time_type::clock::now() - std::chrono::hours(24);
    std::filesystem::last_write_time(JobFolder::local(folder), past + std::chrono::seconds(seconds));
}

bool logSays(const LogCapture &log, const QString &part)
{
    for (const LogLine &line : log.lines()) {
        if (QString::fromStdString(line.message).contains(part))
            return true;
    }
    return false;
}

} // namespace

class tst_OrvexApi : public QObject
{
    Q_OBJECT

private slots:
    void matrixGivesStepsAndLayers()
    {
        Board board;
        std::vector<std::string> names;
        std::vector<API::layer_info> layers;
        QCOMPARE(API::get_matrix("BOARD", names, layers), std::string());
        QCOMPARE(names, std::vector<std::string>{"PCB"});
        QCOMPARE(layers.size(), std::size_t(4));
        QCOMPARE(layers[3].name, std::string("DRILL"));
        QCOMPARE(layers[3].type, std::string("DRILL"));
        QCOMPARE(layers[3].context, std::string("BOARD"));
        QCOMPARE(layers[3].start_name, std::string("TOP"));
        QCOMPARE(layers[3].end_name, std::string("GND"));
        QCOMPARE(layers[3].row, 4);
        QCOMPARE(layers[2].polarity, std::string("NEGATIVE"));
    }

    void matrixOfAMissingJobIsEmptyAndSaysWhy()
    {
        Board board;
        std::vector<std::string> names{"old"};
        std::vector<API::layer_info> layers(3);
        QVERIFY(QString::fromStdString(API::get_matrix("nosuchjob", names, layers))
                    .contains("expected a job \"nosuchjob\""));
        QVERIFY(names.empty() && layers.empty());
        QVERIFY(!API::get_matrix("", names, layers).empty());
    }

    void exportWritesTheFile()
    {
        Board board;
        QVERIFY(board.call.run());
        QCOMPARE(board.files(), QStringList{"top.gds"});
        QCOMPARE(GdsFile::open(board.filePath("out/top.gds")).flat().size(), 1);
    }

    // The panel and the array in it have no layers of their own.
    void panelExportsWhatItsBoardsHold()
    {
        Board board;
        board.write("steps/array/stephdr", "UNITS=MM\nSTEP-REPEAT {\nNAME=PCB\nDX=30\nNX=2\n}\n");
        board.write("steps/panel/stephdr", "UNITS=MM\nSTEP-REPEAT {\nNAME=ARRAY\nDY=20\nNY=3\n}\n");
        board.call.step = "panel";
        QVERIFY(board.call.run());
        QCOMPARE(GdsFile::open(board.filePath("out/top.gds")).flat().size(), 6);
        board.call.type = API::export_type::gerber;
        board.call.file = board.filePath("out/top.gerber").toStdString();
        QVERIFY(board.call.run());
        QFile file(board.filePath("out/top.gerber"));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QVERIFY(file.readAll().contains("D01*"));
    }

    void layerThatLostItsFeaturesFileFailsByName()
    {
        Board board;
        board.write("steps/pcb/layers/gnd/attrlist", "");
        board.call.layer = "gnd";
        LogCapture log;
        QVERIFY(!board.call.run());
        QVERIFY(logSays(log, "features: no such file"));
        QVERIFY(board.files().isEmpty());
    }

    // Nearly every job has such layers: a warning for each would hide those that matter.
    void componentLayerIsEmptyWithoutAWarning()
    {
        Board board;
        board.write("matrix/matrix", "LAYER {\nROW=1\nCONTEXT=BOARD\nTYPE=COMPONENT\nNAME=PARTS\n}\n");
        board.write("steps/pcb/layers/parts/components", "");
        board.call.layer = "parts";
        LogCapture log;
        QVERIFY(board.call.run());
        QVERIFY(logSays(log, "it is empty as layers of its type may be"));
        for (const LogLine &line : log.lines())
            QVERIFY2(line.severity == google::GLOG_INFO, line.message.c_str());
    }

    void gerberIsWrittenForTheOtherFormat()
    {
        Board board;
        board.call.type = API::export_type::gerber;
        board.call.file = board.filePath("out/top.gerber").toStdString();
        QVERIFY(board.call.run());
        QFile file(board.filePath("out/top.gerber"));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QVERIFY(file.readAll().trimmed().endsWith("M02*"));
    }

    // As it arrives: lower-cased as a whole, a doubled "/", a backslash before the name.
    void lowerCasedOutputPathFindsItsFolder()
    {
        Board board;
        QDir().mkpath(board.filePath("Fab Files/Job1"));
        board.call.file = (board.root() + "/fab files//job1\\top.gds").toStdString();
        QVERIFY(board.call.run());
        QVERIFY(QFile::exists(board.filePath("Fab Files/Job1/top.gds")));
    }

    // The whole path in lower case, as Qt makes it.
    void outputFolderOfEveryAlphabetIsFound_data()
    {
        QTest::addColumn<QString>("name");
        for (const char *name : {"\u0490", "\u0218", "\u0386", "\uff2f\uff35\uff34", "\u0130", "\u1e9e",
                                 "\u0531\u0532", "B\u1ea2NG M\u1ea0CH", "\U00010400"})
            QTest::newRow(name) << QString::fromUtf8(name);
    }
    void outputFolderOfEveryAlphabetIsFound()
    {
        QFETCH(QString, name);
        Board board;
        QDir().mkpath(board.filePath(name + "/" + name));
        board.call.file =
            QString(board.root() + "/" + name + "//" + name + "\\top.gds").toLower().toStdString();
        QVERIFY(board.call.run());
        QVERIFY(QFile::exists(board.filePath(name + "/" + name + "/top.gds")));
    }

    // The dialog makes or touches the folder that it shows; its path arrives in lower case.
    void ofFoldersThatDifferInCaseTheLastChangedIsMeant_data()
    {
        QTest::addColumn<QString>("older");
        QTest::addColumn<QString>("newer");
        QTest::newRow("in capitals") << "ox"
                                     << "OX";
        QTest::newRow("in lower case") << "OX"
                                       << "ox";
        QTest::newRow("neither as it arrives") << "Ox"
                                               << "OX";
        QTest::newRow("a folder above") << "ox/job"
                                        << "OX/job";
        QTest::newRow("the exact one lacks the folder below") << "ox"
                                                              << "OX/job";
    }
    void ofFoldersThatDifferInCaseTheLastChangedIsMeant()
    {
        QFETCH(QString, older);
        QFETCH(QString, newer);
        Board board;
        QDir().mkpath(board.filePath("out/" + older));
        if (QFile::exists(board.filePath("OUT")))
            QSKIP("This file system takes them for one.");
        QDir().mkpath(board.filePath("out/" + newer));
        setChanged(board.filePath("out/" + older), 1000);
        setChanged(board.filePath("out/" + newer), 2000);
        board.call.file = QString(board.root() + "/out/" + newer + "\\top.gds").toLower().toStdString();
        for (int time = 0; time < 2; ++time) { // the first export makes no difference to the second
            QVERIFY(board.call.run());
            QVERIFY(QFile::exists(board.filePath("out/" + newer + "/top.gds")));
            QVERIFY(!QFile::exists(board.filePath("out/" + older + "/top.gds")));
        }
    }

    void pathWithCapitalsIsTakenAtItsWord()
    {
        Board board;
        QDir().mkpath(board.filePath("out/Ox"));
        if (QFile::exists(board.filePath("OUT")))
            QSKIP("This file system takes them for one.");
        QDir().mkpath(board.filePath("out/OX"));
        setChanged(board.filePath("out/Ox"), 1000);
        board.call.file = board.filePath("out/Ox/top.gds").toStdString();
        QVERIFY(board.call.run());
        QVERIFY(QFile::exists(board.filePath("out/Ox/top.gds")));
    }

    // The name of the job arrives in lower case too, and nothing tells which is meant.
    void ofJobsThatDifferInCaseNoneIsExported()
    {
        Board board;
        if (QFile::exists(board.filePath("BOARD")))
            QSKIP("This file system takes them for one.");
        QDir().mkpath(board.filePath("BOARD"));
        LogCapture log;
        QVERIFY(!board.call.run());
        QVERIFY(logSays(log, "expected one job of the name \"board\" but for case, found "));
        QVERIFY(board.files().isEmpty());
        std::vector<std::string> names;
        std::vector<API::layer_info> layers;
        QCOMPARE(API::get_matrix("board", names, layers), std::string()); // the dialog asks by the exact name
    }

    void missingOutputFolderFails()
    {
        Board board;
        board.call.file = board.filePath("nowhere/top.gds").toStdString();
        LogCapture log;
        QVERIFY(!board.call.run());
        QVERIFY(logSays(log, "cannot be opened for writing"));
    }

    void switchesDecideWhetherTheirNumbersCount()
    {
        Board board;
        board.features("$0 rect2000x1000\nP 10 20 0 P 0 0\n");
        board.call.angle = 90.0;
        board.call.xScale = 2.0;
        QVERIFY(board.call.run());
        QCOMPARE(GdsFile::extent(GdsFile::open(board.filePath("out/top.gds")).flat()).left(), 9000000);
        board.call.rotate = board.call.scale = true;
        QVERIFY(board.call.run());
        QCOMPARE(GdsFile::extent(GdsFile::open(board.filePath("out/top.gds")).flat()).left(), -20500000);
    }

    void mirrorAxisIsXOrY()
    {
        Board board;
        board.features("$0 rect2000x1000\nP 10 20 0 P 0 0\n");
        board.call.mirror = true;
        QVERIFY(board.call.run());
        QCOMPARE(GdsFile::extent(GdsFile::open(board.filePath("out/top.gds")).flat()).topLeft(),
                 QPoint(-11000000, 19500000));
        board.call.axis = "y";
        QVERIFY(board.call.run());
        QCOMPARE(GdsFile::extent(GdsFile::open(board.filePath("out/top.gds")).flat()).topLeft(),
                 QPoint(9000000, -20500000));
        board.call.axis = "Z";
        QVERIFY(!board.call.run());
    }

    void numbersThatMakeNoGeometryFail_data()
    {
        QTest::addColumn<double>("dbu");
        QTest::addColumn<double>("resize");
        QTest::addColumn<double>("angle");
        QTest::addColumn<double>("scale");
        const double nan = std::numeric_limits<double>::quiet_NaN();
        QTest::newRow("dbu") << nan << 0.0 << 0.0 << 1.0;
        QTest::newRow("resize") << 0.001 << nan << 0.0 << 1.0;
        QTest::newRow("angle") << 0.001 << 0.0 << nan << 1.0;
        QTest::newRow("scale") << 0.001 << 0.0 << 0.0 << nan;
        QTest::newRow("scale 0") << 0.001 << 0.0 << 0.0 << 0.0;
        QTest::newRow("scale infinite") << 0.001 << 0.0 << 0.0 << std::numeric_limits<double>::infinity();
    }
    void numbersThatMakeNoGeometryFail()
    {
        QFETCH(double, dbu);
        QFETCH(double, resize);
        QFETCH(double, angle);
        QFETCH(double, scale);
        Board board;
        board.call.rotate = board.call.scale = true;
        board.call.dbu = dbu;
        board.call.resize = resize;
        board.call.angle = angle;
        board.call.xScale = scale;
        QVERIFY(!board.call.run());
        QVERIFY(board.files().isEmpty());
    }

    void unsupportedThingsFailByName()
    {
        Board board;
        board.features("$0 nosuchsymbol\nP 1 1 0 P 0 0\nP 2 1 0 P 0 0\nQ 1 2 3\n");
        LogCapture log;
        Progress progress;
        QVERIFY(!board.call.run(&progress));
        QVERIFY(logSays(log, "symbol nosuchsymbol, 2 times"));
        QVERIFY(logSays(log, "record Q, 1 times"));
        QCOMPARE(progress.value, -1.0);
        QVERIFY(board.files().isEmpty());
    }

    void symbolWithoutASizeIsLoggedOnceAndDrawsNothing()
    {
        Board board;
        board.features("$0 r200\n$1 r-13.1234\nP 1 1 1 P 0 0\nP 2 1 1 P 0 0\nP 3 1 0 P 0 0\n");
        LogCapture log;
        QVERIFY(board.call.run());
        const auto lines = log.lines();
        QCOMPARE(std::count_if(lines.begin(), lines.end(),
                               [](const LogLine &line) {
                                   return QString::fromStdString(line.message)
                                       .contains(
                                           "symbol r-13.1234: a size is not positive, it draws nothing");
                               }),
                 1);
    }

    // The number is a length: the file is the one of a pad of that size.
    void resizedPadIsThePadOfThatSize_data()
    {
        QTest::addColumn<QByteArray>("resized");
        QTest::addColumn<QByteArray>("plain");
        QTest::newRow("round, shrunk")
            << QByteArray("$0 r200\nP 1 1 -1 0 -50 P 0 0\n") << QByteArray("$0 r150\nP 1 1 0 P 0 0\n");
        QTest::newRow("negative, grown") << QByteArray("$0 rect300x200\n$1 s900\nP 1 1 1 P 0 0\n"
                                                       "P 1 1 -1 0 50 N 0 8 30\n")
                                         << QByteArray("$0 rect350x250\n$1 s900\nP 1 1 1 P 0 0\n"
                                                       "P 1 1 0 N 0 8 30\n");
        QTest::newRow("ring") << QByteArray("$0 donut_r300x200\nP 1 1 -1 0 -20 P 0 0\n")
                              << QByteArray("$0 donut_r280x220\nP 1 1 0 P 0 0\n");
        QTest::newRow("nothing left") << QByteArray("$0 r200\n$1 r90\nP 1 1 1 P 0 0\nP 1 1 -1 0 -200 P 0 0\n")
                                      << QByteArray("$0 r200\n$1 r90\nP 1 1 1 P 0 0\n");
    }
    void resizedPadIsThePadOfThatSize()
    {
        QFETCH(QByteArray, resized);
        QFETCH(QByteArray, plain);
        Board board;
        board.call.type = API::export_type::gerber;
        QByteArray files[2];
        for (int i = 0; i < 2; ++i) {
            board.features(i == 0 ? resized : plain);
            QVERIFY(board.call.run());
            QFile file(board.filePath("out/top.gds"));
            QVERIFY(file.open(QIODevice::ReadOnly));
            files[i] = file.readAll();
        }
        QCOMPARE(files[0], files[1]);
    }

    // One of them must not keep a paste layer from being exported.
    void stencilSymbolIsExportedAndItsReadingLoggedOnce()
    {
        Board board;
        board.features("$0 dogbone2400x1600x400x400x50xr\n$1 rect1600x800_30\n$2 hplate2400x1600x800\n"
                       "P 3 3 0 P 0 0\nP 8 3 1 P 0 0\nP 12 3 2 N 0 0\nP 12 6 2 P 0 0\n");
        for (const auto type : {API::export_type::gds, API::export_type::gerber}) {
            board.call.type = type;
            LogCapture log;
            QVERIFY(board.call.run());
            int stencils = 0, angles = 0;
            for (const LogLine &line : log.lines()) {
                const QString message = QString::fromStdString(line.message);
                stencils += message.contains("symbols for solder stencils");
                angles += message.contains("angles behind the names of symbols");
            }
            QCOMPARE(stencils, 1);
            QCOMPARE(angles, 1);
        }
    }

    void malformedLayerFailsAndKeepsTheOldFile()
    {
        Board board;
        QVERIFY(board.call.run());
        QFile old(board.filePath("out/top.gds"));
        QVERIFY(old.open(QIODevice::ReadOnly));
        const QByteArray before = old.readAll();
        old.close();
        board.features("$0 r200\nL 1 1 4 five 0 P 0\n");
        LogCapture log;
        QVERIFY(!board.call.run());
        QVERIFY(logSays(log, "features:3: expected a number for the line's end"));
        QCOMPARE(board.files(), QStringList{"top.gds"});
        QVERIFY(old.open(QIODevice::ReadOnly));
        QCOMPARE(old.readAll(), before);
    }

    void missingLayerStepAndJobFail()
    {
        Board board;
        Call call = board.call;
        call.layer = "bottom";
        QVERIFY(!call.run());
        call = board.call;
        call.step = "panel";
        QVERIFY(!call.run());
        call = board.call;
        call.job = "nosuchjob";
        QVERIFY(!call.run());
        QVERIFY(board.call.run());
    }

    void progressMovesFromZeroToHundred()
    {
        Board board;
        board.features("$0 r200\n" + QByteArray("L 1 1 4 5 0 P 0\n").repeated(60'000));
        Progress progress;
        bool isDone = false;
        std::vector<double> seen;
        std::thread export_thread([&] {
            board.call.run(&progress);
            isDone = true;
        });
        export_thread.join();
        QVERIFY(isDone);
        QCOMPARE(progress.value, 100.0);
    }

    void cancelledExportThrowsAndLeavesNothing()
    {
        Board board;
        board.features("$0 r200\n" + QByteArray("L 1 1 4 5 0 P 0\n").repeated(1000));
        Progress progress;
        progress.cancel = true;
        QString thrown;
        try {
            board.call.run(&progress);
        } catch (const char *message) {
            thrown = message;
        }
        QCOMPARE(thrown, QString("progress_cancle"));
        QCOMPARE(progress.value, -1.0);
        QVERIFY(board.files().isEmpty());
    }

    // Requested while the export runs: in the middle of reading, of writing, or of the booleans of a plane.
    // The time is the processor's, so that other programs do not count.
    void cancelIsHonouredWithin100Milliseconds_data()
    {
        QTest::addColumn<QByteArray>("features");
        QTest::addColumn<double>("from"); // percent
        QByteArray lines = "$0 r200\n";
        for (int i = 0; i < 400'000; ++i)
            lines += "L 1 " + QByteArray::number(i % 977) + " 4 5 0 P 0\n";
        QByteArray plane = "$0 r100\nS P 0\nOB 0 0 I\nOS 200 0\nOS 200 200\nOS 0 200\nOE\nSE\n";
        for (int i = 0; i < 100'000; ++i)
            plane += "P " + QByteArray::number(0.5 + i % 316 * 0.6) + " " +
                     QByteArray::number(0.5 + i / 316 * 0.6) + " 0 N 0 0\n";
        QTest::newRow("reading") << lines << 5.0;
        QTest::newRow("writing") << lines << 50.0;
        QTest::newRow("plane") << plane << 50.0;
    }
    void cancelIsHonouredWithin100Milliseconds()
    {
        QFETCH(QByteArray, features);
        QFETCH(double, from);
        Board board;
        board.features(features);
        Progress progress;
        bool isCancelled = false;
        std::thread job([&] {
            try {
                board.call.run(&progress);
            } catch (const char *) {
                isCancelled = true;
            }
        });
        double requested = 0;
        for (bool isRequested = false; !isRequested; QTest::qSleep(1)) {
            const std::lock_guard<std::mutex> lock(progress.mutex);
            isRequested = progress.cancel = progress.value < 0.0 || progress.value >= from;
            requested = processorMilliseconds();
        }
        job.join();
        const double late = processorMilliseconds() - requested;
        QVERIFY(isCancelled);
        QVERIFY2(late <= 100.0, qPrintable(QString::number(late)));
        QVERIFY(board.files().isEmpty());
    }

    // The project's own samples, and real archives where there are some.
    void everyLayerOfEveryJobIsExported_data()
    {
        QTest::addColumn<QString>("archive"); // empty for a job folder of the samples
        QTest::addColumn<QString>("job");
        const QDir samples(QString(SOURCE_FOLDER) + "/samples");
        for (const QString &job : samples.entryList(QDir::Dirs | QDir::NoDotAndDotDot))
            QTest::newRow(qPrintable(job)) << QString() << samples.filePath(job);
        for (const char *folder : {"/../shared/data", "/../shared/data/unread"}) {
            const QDir data(QString(SOURCE_FOLDER) + folder);
            for (const QString &archive : data.entryList({"*.tgz"}, QDir::Files))
                QTest::newRow(qPrintable(archive)) << data.filePath(archive) << QString();
        }
    }
    void everyLayerOfEveryJobIsExported()
    {
        QFETCH(QString, archive);
        QFETCH(QString, job);
        TemporaryWorkingFolder folder;
        QString jobFolder = job;
        if (!archive.isEmpty()) {
            unpackArchive(archive, folder.filePath("jobs"));
            const QStringList jobs =
                QDir(folder.filePath("jobs")).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
            QCOMPARE(jobs.size(), 1);
            jobFolder = folder.filePath("jobs/" + jobs[0]);
        }
        HOST::set_job_root(QFileInfo(jobFolder).path().toStdString());
        const std::string name = QFileInfo(jobFolder).fileName().toStdString();
        std::vector<std::string> steps;
        std::vector<API::layer_info> layers;
        QCOMPARE(API::get_matrix(name, steps, layers), std::string());
        QVERIFY(!layers.empty() && !steps.empty());
        for (const std::string &step : steps) {
            for (const API::layer_info &layer : layers) {
                Call call;
                call.job = name;
                call.step = step;
                call.layer = layer.name;
                call.profile = true;
                for (const API::export_type type : {API::export_type::gds, API::export_type::gerber}) {
                    call.type = type;
                    call.file = folder.filePath("layer").toStdString();
                    Progress progress;
                    QVERIFY2(call.run(&progress), (step + "/" + layer.name).c_str());
                    QCOMPARE(progress.value, 100.0);
                    QVERIFY(QFileInfo(folder.filePath("layer")).size() > 0);
                    if (type == API::export_type::gds)
                        QCOMPARE(GdsFile::open(folder.filePath("layer")).tops().size(), 1);
                }
            }
        }
        HOST::set_job_root({});
    }

    void databaseIsOffUnlessConfigured()
    {
        Board board;
        QVERIFY(!DB::get_SaveFlag());
        board.call.save(); // does nothing
    }

    void exportsAreRecordedInTheConfiguredDatabase()
    {
        Board board;
        QFile settings("oxconfig.ini");
        QVERIFY(settings.open(QIODevice::WriteOnly));
        settings.write("[Export_Database]\npath=records/exports.sqlite\n");
        settings.close();
        QVERIFY(DB::get_SaveFlag());
        board.call.rotate = true;
        board.call.angle = 90.0;
        board.call.save();
        board.call.type = API::export_type::gerber;
        board.call.layer = "it's";
        board.call.save();
        const QStringList found =
            rows("records/exports.sqlite", {"job", "step", "layer", "format", "rotate", "angle", "axis"});
        QCOMPARE(found, (QStringList{"board pcb top gds 1 90.0 X", "board pcb it's gerber 1 90.0 X"}));
        QVERIFY(!rows("records/exports.sqlite", {"time"})[0].isEmpty());
    }

    void databaseThatCannotBeOpenedIsLogged()
    {
        Board board;
        QFile settings("oxconfig.ini");
        QVERIFY(settings.open(QIODevice::WriteOnly));
        settings.write("[Export_Database]\npath=board\n"); // a folder
        settings.close();
        LogCapture log;
        board.call.save();
        QVERIFY(logSays(log, "layer_export_db_save: "));
    }

    void jobRootComesFromTheHostThenTheSettingsThenTheDefault()
    {
        TemporaryWorkingFolder folder;
        QCOMPARE(HOST::job_root(), std::string("job"));
        QVERIFY(folder.write("oxconfig.ini", "[Job_Path]\npath=configured\n"));
        QCOMPARE(HOST::job_root(), std::string("configured"));
        HOST::set_job_root("chosen");
        QCOMPARE(HOST::job_root(), std::string("chosen"));
        HOST::set_job_root({});
        QCOMPARE(HOST::job_root(), std::string("configured"));
    }

    // Hosts write the file with Qt, which escapes backslashes and letters beyond ASCII.
    void jobRootIsReadAsQtWritesIt_data()
    {
        QTest::addColumn<QString>("value");
        for (const char *value : {"D:\\jobs\\new", "with blank", "semi;colon", "comma, list", "quote\"d"})
            QTest::newRow(value) << QString(value);
        QTest::newRow("umlauts") << QString::fromUtf8("\u00dcbung/\u4e2d\u6587");
    }
    void jobRootIsReadAsQtWritesIt()
    {
        QFETCH(QString, value);
        TemporaryWorkingFolder folder;
        {
            QSettings settings("oxconfig.ini", QSettings::IniFormat);
            settings.setIniCodec("utf-8");
            settings.setValue("Job_Path/path", value);
        }
        QCOMPARE(QString::fromStdString(HOST::job_root()), value);
    }

    void jobRootMayHaveBackslashesAndAnotherCase()
    {
        Board board;
        HOST::set_job_root((board.root() + "\\").toStdString());
        std::vector<std::string> names;
        std::vector<API::layer_info> layers;
        QCOMPARE(API::get_matrix("board", names, layers), std::string());
    }
};

QTEST_APPLESS_MAIN(tst_OrvexApi)
#include "tst_orvexapi.moc"
