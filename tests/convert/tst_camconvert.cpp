// The commands of camconvert, end to end.
#include "cam/export/exportrequest.h"
#include "tests/archive/archivebuilder.h"
#include "tests/cam/support/jobfolder.h"
#include "tests/convert/program.h"
#include "version.h"

#include <QCryptographicHash>
#include <QImage>
#include <QRegularExpression>
#include <QtTest>

#include <array>
#include <cmath>

namespace {

const QByteArray features = "$0 r200\n$1 rect500x300\nL 1 1 4 5 0 P 0\nP 2 2 1 P 0 0\n";

// Four layers, two of them with something in them.
void fill(JobFolder &job)
{
    job.features(features, "top");
    job.features(features + "A 5 5 7 5 6 5 0 P 0 Y\n", "gnd");
    job.features({}, "mask");
    job.features("$0 r300\nP 3 3 0 P 0 0\n", "drill");
}

QByteArray archiveOf(const JobFolder &job)
{
    TarBuilder tar;
    const QMap<QString, QByteArray> tree = treeOf(job.filePath(job.name()));
    for (auto entry = tree.begin(); entry != tree.end(); ++entry) {
        const QByteArray name = (job.name() + "/" + entry.key()).toUtf8();
        if (name.endsWith('/'))
            tar.folder(name);
        else
            tar.file(name, entry.value());
    }
    return gzip(tar.bytes());
}

QJsonObject fileNamed(const QJsonObject &report, const QString &name)
{
    for (const QJsonValue &file : report["files"].toArray()) {
        if (file.toObject()["file"].toString() == name)
            return file.toObject();
    }
    return {};
}

QJsonObject schema(const char *name = "camconvert.schema.json")
{
    QFile file(QString(PROJECT_FOLDER "/docs/") + name);
    return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).object() : QJsonObject();
}

QJsonObject fileSchema()
{
    return schema()["properties"].toObject()["files"].toObject()["items"].toObject();
}

// Whether an object has the fields that the schema requires, and none but those that it knows.
bool fits(const QJsonObject &object, const QJsonObject &schema)
{
    const QStringList known = schema["properties"].toObject().keys();
    for (const QString &key : object.keys()) {
        if (!known.contains(key))
            return false;
    }
    for (const QJsonValue &key : schema["required"].toArray()) {
        if (!object.contains(key.toString()))
            return false;
    }
    return !known.isEmpty();
}

} // namespace

class tst_CamConvert : public QObject
{
    Q_OBJECT

private slots:
    void helpHasExamplesAndTheVersionIsOne()
    {
        const Program program;
        const Ran help = program.run({"--help"});
        QCOMPARE(help.code, 0);
        for (const auto &[command, operand] : {std::pair("export", "JOB..."),
                                               {"verify", "JOB... FOLDER"},
                                               {"diff", "A B"},
                                               {"picture", "JOB"},
                                               {"info", "JOB..."}}) {
            QVERIFY(help.output.contains(QString("  ") + command));
            const Ran own = program.run({command, "--help"});
            QCOMPARE(own.code, 0);
            QVERIFY2(
                own.output.contains(QString("Usage: camconvert %1 [options] %2\n").arg(command, operand)),
                qPrintable(own.output));
            QVERIFY(own.output.contains("Examples:"));
        }
        QCOMPARE(program.run({"--version"}).output.trimmed(), QString("camconvert " FILE_PROCESS_VERSION));
    }

    void everyOptionIsInTheManualPageAndCompleted()
    {
        const auto contentOf = [](const QString &name) {
            QFile file(QString(PROJECT_FOLDER) + name);
            return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
        };
        const QString manual = contentOf("/docs/man/camconvert.1").remove('\\');
        const QString completion = contentOf("/src/convert/camconvert.bash");
        const auto completed = [&completion](const char *command) {
            const QRegularExpression words(
                QString(" %1\\)\\s+COMPREPLY=\\(\\$\\(compgen -W \"([^\"]+)\"").arg(command));
            return words.match(completion).captured(1).split(QRegularExpression("\\s+"));
        };
        const Program program;
        int options = 0;
        for (const char *command : {"export", "verify", "diff", "picture", "info"}) {
            QVERIFY2(manual.contains(QString("camconvert %1\n").arg(command)), command);
            const QString help = program.run({command, "--help"}).output.section("Examples:", 0, 0);
            QRegularExpressionMatchIterator found =
                QRegularExpression("^  (?:-h, )?(--[a-z-]+)", QRegularExpression::MultilineOption)
                    .globalMatch(help);
            while (found.hasNext()) {
                const QString option = found.next().captured(1);
                ++options;
                QVERIFY2(completed(command).contains(option), qPrintable(command + (' ' + option)));
                QVERIFY2(manual.contains(option), qPrintable(option));
            }
        }
        QVERIFY(options > 15);
    }

    void wrongCommandLinesAreRefusedWithCode2_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QString>("message");
        QTest::newRow("nothing") << ""
                                 << "expected a command";
        QTest::newRow("unknown command") << "paint x"
                                         << "unknown command paint";
        QTest::newRow("unknown option") << "export x --out o --fast"
                                        << "fast";
        QTest::newRow("no job") << "export --out o"
                                << "expected at least one JOB";
        QTest::newRow("no folder") << "export x"
                                   << "expected --out";
        QTest::newRow("format") << "export x --out o --format gds,pdf"
                                << "--format pdf: expected gds or gerber";
        QTest::newRow("no format") << "export x --out o --format ,"
                                   << "--format: expected gds or gerber";
        QTest::newRow("number") << "export x --out o --rotate up"
                                << "--rotate up: expected a number";
        QTest::newRow("infinite") << "export x --out o --resize inf"
                                  << "--resize inf: expected a number";
        QTest::newRow("scale") << "export x --out o --x-scale 0"
                               << "expected scales other than 0";
        QTest::newRow("unit") << "export x --out o --dbu 0"
                              << "--dbu: expected a number above 0";
        QTest::newRow("threads") << "export x --out o --jobs 1.5"
                                 << "--jobs: expected a whole number";
        QTest::newRow("memory") << "export x --out o --memory -1"
                                << "--memory: expected a number above 0";
        QTest::newRow("pattern") << "export x --out o --name {layer}{what}{ext}"
                                 << "--name";
        QTest::newRow("pattern out") << "export x --out o --name ../{layer}{ext}"
                                     << "below the output folder";
        QTest::newRow("pattern root") << "export x --out o --name /{layer}{ext}"
                                      << "below the output folder";
        QTest::newRow("pattern for one") << "export x --out o --name {job}{ext}"
                                         << "all layers have one name";
        QTest::newRow("pattern for a format") << "export x --out o --name {layer}"
                                              << "both formats have one name";
        QTest::newRow("no folder to verify") << "verify x"
                                             << "expected a job, and the folder of its files";
        QTest::newRow("one job to compare") << "diff a.tgz"
                                            << "expected two jobs or two files";
        QTest::newRow("a drawn difference") << "diff a.tgz b.tgz --picture x.pdf"
                                            << "expected a name that ends in .png";
        QTest::newRow("a picture of nothing") << "picture --out x.png"
                                              << "expected at least one JOB";
        QTest::newRow("a picture of two") << "picture a b --out x.png"
                                          << "expected one job";
        QTest::newRow("a picture's name") << "picture a --out x.pdf"
                                          << "a file whose name ends in .png or .svg";
        QTest::newRow("a picture without a name") << "picture a"
                                                  << "a file whose name ends in .png or .svg";
        QTest::newRow("a picture's scale") << "picture a --out x.png --scale 0"
                                           << "--scale: expected a number above 0";
        QTest::newRow("a picture's width") << "picture a --out x.png --width 1.5"
                                           << "--width: expected a whole number of 1 to 100000";
        QTest::newRow("a picture's size") << "picture a --out x.png --width 15 --scale 3"
                                          << "not both";
        QTest::newRow("nothing to verify") << "verify"
                                           << "expected at least one JOB";
        QTest::newRow("scale to verify with") << "verify x o --x-scale 0"
                                              << "expected scales other than 0";
        QTest::newRow("pattern for a job") << "export x y --out o --name {layer}{ext}"
                                           << "several jobs have one name";
    }
    void wrongCommandLinesAreRefusedWithCode2()
    {
        QFETCH(QString, line);
        QFETCH(QString, message);
        const Program program;
        QStringList arguments = line.split(' ');
        arguments.removeAll(QString());
        const Ran ran = program.run(arguments);
        QCOMPARE(ran.code, 2);
        QVERIFY2(ran.errors.contains(message), qPrintable(ran.errors));
        QCOMPARE(ran.output, QString());
        QVERIFY(!QFileInfo::exists(program.filePath("o")));
    }

    void filesAreTheLibrarysUnderThePlugInsNames()
    {
        JobFolder job("BOARD");
        fill(job);
        const Program program;
        const Ran ran =
            program.run({"export", job.filePath("BOARD"), "--out", "O", "--rotate", "-30", "--mirror",
                         "--x-scale", "1.5", "--resize", "10", "--dbu", "0.01", "--profile"});
        QCOMPARE(ran.errors.count("error"), 0);
        QCOMPARE(ran.code, 0);
        QCOMPARE(program.files("O/board"), (QStringList{"drill.gds", "drill.gerber", "gnd.gds", "gnd.gerber",
                                                        "mask.gds", "mask.gerber", "top.gds", "top.gerber"}));
        for (const QString &name : program.files("O/board")) {
            cam::ExportRequest request;
            request.job = job.path();
            request.step = "pcb";
            request.layer = name.section('.', 0, 0).toStdString();
            request.format = name.endsWith(".gds") ? cam::FileFormat::Gds : cam::FileFormat::Gerber;
            request.options.angle = -30.0;
            request.options.mirror = true;
            request.options.xScale = 1.5;
            request.options.resize = 10000.0;
            request.options.dbu = 0.01;
            request.options.profileOnTop = true;
            request.options.file = JobFolder::local(program.filePath("expected"));
            cam::exportLayer(request);
            QVERIFY2(program.bytes("O/board/" + name) == program.bytes("expected"), qPrintable(name));
            QVERIFY(ran.output.contains(QString("  %1 bytes  ").arg(program.bytes("expected").size())));
        }
        QVERIFY(ran.output.contains("board: 8 files, "));
    }

    void archiveGivesWhatItsFolderGives()
    {
        JobFolder job;
        fill(job);
        const Program program;
        QVERIFY(program.folder().write("board.tgz", archiveOf(job)));
        QCOMPARE(program.run({"export", "board.tgz", "--out", "packed"}).code, 0);
        QCOMPARE(program.run({"export", job.filePath("board"), "--out", "unpacked"}).code, 0);
        QCOMPARE(program.files("packed/board").size(), 8);
        for (const QString &name : program.files("packed/board"))
            QCOMPARE(program.bytes("packed/board/" + name), program.bytes("unpacked/board/" + name));
        QCOMPARE(program.temporaryFiles(), QStringList());
    }

    void manyAtOnceGiveWhatOneGives()
    {
        JobFolder job;
        fill(job);
        const Program program;
        QCOMPARE(program.run({"export", job.filePath("board"), "--out", "one", "--jobs", "1"}).code, 0);
        QCOMPARE(program.run({"export", job.filePath("board"), "--out", "many", "--jobs", "8"}).code, 0);
        QCOMPARE(program.run({"export", job.filePath("board"), "--out", "narrow", "--memory", "1"}).code, 0);
        for (const QString &name : program.files("one/board")) {
            QCOMPARE(program.bytes("many/board/" + name), program.bytes("one/board/" + name));
            QCOMPARE(program.bytes("narrow/board/" + name), program.bytes("one/board/" + name));
        }
    }

    void layersFormatStepAndNamesAsAskedFor()
    {
        JobFolder job;
        fill(job);
        const Program program;
        const QString path = job.filePath("board");
        QCOMPARE(program
                     .run({"export", path, "--out", "a", "--format", "gerber", "--layers", "Top,DRILL",
                           "--step", "PCB"})
                     .code,
                 0);
        QCOMPARE(program.files("a/board"), (QStringList{"drill.gerber", "top.gerber"}));
        QCOMPARE(program
                     .run({"export", path, "--out", "b", "--format", "gds", "--name",
                           "{type}/{row}_{step}_{layer}{ext}", "--layers", "top"})
                     .code,
                 0);
        QCOMPARE(program.files("b/signal"), QStringList("2_pcb_top.gds"));
    }

    void boardMeansTheLayersOfTheBoard()
    {
        JobFolder job;
        fill(job);
        job.write("matrix/matrix",
                  "STEP {\n COL=1\n NAME=PCB\n}\n"
                  "LAYER {\n ROW=1\n CONTEXT=BOARD\n TYPE=COMPONENT\n NAME=COMP\n POLARITY=POSITIVE\n}\n"
                  "LAYER {\n ROW=2\n CONTEXT=BOARD\n TYPE=SIGNAL\n NAME=TOP\n POLARITY=POSITIVE\n}\n"
                  "LAYER {\n ROW=3\n CONTEXT=MISC\n TYPE=DOCUMENT\n NAME=GND\n POLARITY=POSITIVE\n}\n");
        const Program program;
        QCOMPARE(program.run({"export", job.filePath("board"), "--out", "all", "--format", "gds"}).code, 0);
        QCOMPARE(program.files("all/board"), (QStringList{"gnd.gds", "top.gds"}));
        QCOMPARE(
            program
                .run({"export", job.filePath("board"), "--out", "o", "--format", "gds", "--layers", "board"})
                .code,
            0);
        QCOMPARE(program.files("o/board"), QStringList("top.gds"));
    }

    void negativePolarityIsWarnedOfOrWrittenPositive()
    {
        JobFolder job;
        fill(job);
        const Program program;
        const QStringList gnd{"export", job.filePath("board"), "--layers", "gnd,top"};
        const Ran plain = program.run(gnd + QStringList{"--out", "plain"});
        QCOMPARE(plain.errors.count("polarity is negative"), 1);
        QVERIFY(plain.errors.contains("board/pcb/gnd (gds): "));
        const Ran positive = program.run(gnd + QStringList{"--out", "positive", "--positive"});
        QCOMPARE(positive.errors, QString());
        QCOMPARE(program.run(gnd + QStringList{"--out", "negated", "--negate"}).code, 0);
        for (const char *format : {"gds", "gerber"}) {
            const QString file = QString("/board/gnd.%1").arg(format),
                          other = QString("/board/top.%1").arg(format);
            QCOMPARE(program.bytes("positive" + file), program.bytes("negated" + file));
            QVERIFY(program.bytes("positive" + file) != program.bytes("plain" + file));
            QCOMPARE(program.bytes("positive" + other), program.bytes("plain" + other));
        }
        QVERIFY(program.bytes("plain/board/gnd.gerber").contains("TF.FilePolarity,Negative"));
        QVERIFY(program.bytes("positive/board/gnd.gerber").contains("TF.FilePolarity,Positive"));
    }

    void whatFailsIsNamedAndTheRestGoesOn()
    {
        JobFolder job;
        fill(job);
        job.features("$0 nosuchsymbol\nP 3 3 0 P 0 0\n", "drill");
        job.features("L 1 1 broken\n", "mask");
        const Program program;
        QVERIFY(program.folder().write("torn.tgz", archiveOf(job).left(300)));
        QVERIFY(program.folder().write("empty/nothing", {}));
        const Ran ran =
            program.run({"export", "torn.tgz", "empty", "gone.tgz", job.filePath("board"), "--out", "o",
                         "--layers", "top,mask,drill,nosuchlayer", "--format", "gds"});
        QCOMPARE(ran.code, 1);
        QCOMPARE(program.files("o/board"), QStringList("top.gds"));
        for (const char *line :
             {"error: torn.tgz: ", "empty: expected a folder matrix",
              "error: gone.tgz: there is no such file or folder",
              "error: board/pcb/nosuchlayer (gds): the job has no layer of that name",
              "error: board/pcb/drill (gds): the layer has records or symbols that cannot be drawn",
              "warning: board/pcb/drill (gds): symbol nosuchsymbol, 1 times",
              "error: board/pcb/mask (gds): "})
            QVERIFY2(ran.errors.contains(line), qPrintable(QString(line) + "\n" + ran.errors));
        QCOMPARE(program.temporaryFiles(), QStringList());
    }

    void unknownStepIsNamedWithThoseThatAre()
    {
        JobFolder job;
        fill(job);
        const Program program;
        const Ran ran = program.run({"export", job.filePath("board"), "--out", "o", "--step", "panel"});
        QCOMPARE(ran.code, 1);
        QVERIFY2(ran.errors.contains("expected a step panel, found pcb"), qPrintable(ran.errors));
    }

    void outputFolderThatIsAFileIsRefused()
    {
        JobFolder job;
        fill(job);
        const Program program;
        QVERIFY(program.folder().write("o", "mine"));
        const Ran ran = program.run({"export", job.filePath("board"), "--out", "o"});
        QCOMPARE(ran.code, 1);
        QVERIFY2(ran.errors.contains("o: expected a folder, found a file"), qPrintable(ran.errors));
        QCOMPARE(program.bytes("o"), QByteArray("mine"));
        QVERIFY(program.folder().write("p/board", "mine"));
        const Ran inside = program.run({"export", job.filePath("board"), "--out", "p"});
        QCOMPARE(inside.code, 1);
        QVERIFY2(inside.errors.contains("the folder cannot be made"), qPrintable(inside.errors));
        QCOMPARE(program.bytes("p/board"), QByteArray("mine"));
    }

    void layersOfOneFileNameAreRefusedAndTheOthersWritten()
    {
        JobFolder job;
        fill(job);
        const Program program;
        const Ran ran = program.run(
            {"export", job.filePath("board"), "--out", "o", "--format", "gds", "--name", "{layer}{ext}"});
        QCOMPARE(ran.code, 0);
        job.write("matrix/matrix", "STEP {\n COL=1\n NAME=PCB\n}\n"
                                   "LAYER {\n ROW=1\n CONTEXT=BOARD\n TYPE=SIGNAL\n NAME=TOP\n}\n"
                                   "LAYER {\n ROW=2\n CONTEXT=BOARD\n TYPE=SIGNAL\n NAME=top\n}\n"
                                   "LAYER {\n ROW=3\n CONTEXT=BOARD\n TYPE=SIGNAL\n NAME=GND\n}\n");
        const Ran twice = program.run({"export", job.filePath("board"), "--out", "p", "--format", "gds"});
        QCOMPARE(twice.code, 1);
        QCOMPARE(program.files("p/board"), QStringList("gnd.gds"));
        QCOMPARE(twice.errors.count("board/top.gds is the file of several layers: top, top"), 2);
    }

    void jobsOfOneNameAreRefused()
    {
        JobFolder job, other;
        fill(job);
        fill(other);
        const Program program;
        const Ran ran = program.run({"export", job.filePath("board"), other.filePath("board"), "--out", "o"});
        QCOMPARE(ran.code, 1);
        QVERIFY2(ran.errors.contains("a job of that name came before it"), qPrintable(ran.errors));
        QCOMPARE(program.files("o/board").size(), 8);
    }

    void hostileArchivesAreRefusedAsAWhole_data()
    {
        QTest::addColumn<QByteArray>("archive");
        QTest::newRow("out") << gzip(
            TarBuilder().file("board/matrix/matrix", "x").file("../out", "x").bytes());
        QTest::newRow("link") << gzip(TarBuilder()
                                          .folder("board/")
                                          .symbolicLink("board/matrix", "/etc")
                                          .file("board/matrix/matrix", "x")
                                          .bytes());
        QTest::newRow("no job") << gzip(TarBuilder().file("a/b", "x").bytes());
        QTest::newRow("two jobs") << gzip(
            TarBuilder().file("a/matrix/matrix", "x").file("b/matrix/matrix", "x").bytes());
        QTest::newRow("no tar") << gzip("just text");
        QTest::newRow("no gzip") << QByteArray("just text");
    }
    void hostileArchivesAreRefusedAsAWhole()
    {
        QFETCH(QByteArray, archive);
        const Program program;
        QVERIFY(program.folder().write("board.tgz", archive));
        const Ran ran = program.run({"export", "board.tgz", "--out", "o"});
        QCOMPARE(ran.code, 1);
        QVERIFY2(ran.errors.contains("error: board.tgz: "), qPrintable(ran.errors));
        QCOMPARE(program.temporaryFiles(), QStringList());
        QVERIFY(!QFileInfo::exists(program.filePath("o/board")));
    }

    void jsonSaysWhatHasBecomeOfEachFile()
    {
        JobFolder job;
        fill(job);
        job.features("$0 nosuchsymbol\nP 3 3 0 P 0 0\n", "drill");
        const Program program;
        const QByteArray archive = archiveOf(job);
        QVERIFY(program.folder().write("board.tgz", archive));
        const Ran ran = program.run({"export", "board.tgz", "--out", "o", "--json", "-"});
        QCOMPARE(ran.code, 1);
        QCOMPARE(ran.output.count('\n'), 1); // a line a job, and nothing else
        const QJsonObject report = ran.json();
        QCOMPARE(report["version"].toInt(), 1);
        QCOMPARE(report["program"].toString(), QString("camconvert " FILE_PROCESS_VERSION));
        QCOMPARE(report["job"].toString(), QString("board"));
        QCOMPARE(report["source"].toString(), QString("board.tgz"));
        QCOMPARE(report["step"].toString(), QString("pcb"));
        QCOMPARE(report["sha256"].toString().toLatin1(),
                 QCryptographicHash::hash(archive, QCryptographicHash::Sha256).toHex());
        QCOMPARE(report["done"].toBool(), false);
        QCOMPARE(report["files"].toArray().size(), 8);
        const QJsonObject top = fileNamed(report, "board/top.gds");
        const QByteArray bytes = program.bytes("o/board/top.gds");
        QCOMPARE(top["status"].toString(), QString("written"));
        QCOMPARE(top["bytes"].toInt(), bytes.size());
        QCOMPARE(top["sha256"].toString().toLatin1(),
                 QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex());
        QVERIFY(top["seconds"].toDouble(-1.0) >= 0.0);
        const QJsonObject gnd = fileNamed(report, "board/gnd.gds");
        QVERIFY(gnd["warnings"].toArray().first().toString().contains("polarity is negative"));
        const QJsonObject drill = fileNamed(report, "board/drill.gds");
        QCOMPARE(drill["status"].toString(), QString("failed"));
        QVERIFY(drill["error"].toString().contains("cannot be drawn"));
        QVERIFY(!drill.contains("sha256"));
        QVERIFY(fits(report, schema()));
        for (const QJsonValue &file : report["files"].toArray())
            QVERIFY(fits(file.toObject(), fileSchema()));

        QCOMPARE(program.run({"export", "board.tgz", "--out", "o", "--json", "report.jsonl"}).code, 1);
        const QByteArray line = program.bytes("report.jsonl");
        QCOMPARE(QJsonDocument::fromJson(line).object()["files"].toArray().size(), 8);
    }

    void verifiedFilesAreProven()
    {
        JobFolder job;
        fill(job);
        const Program program;
        const Ran ran = program.run({"export", job.filePath("board"), "--out", "o", "--verify", "--rotate",
                                     "30", "--mirror", "--json", "-"});
        QVERIFY2(ran.code == 0, qPrintable(ran.errors));
        QCOMPARE(ran.json()["files"].toArray().size(), 8);
        for (const QJsonValue &file : ran.json()["files"].toArray())
            QVERIFY(file.toObject()["verification"].toObject()["proven"].toBool());
        const Ran told = program.run({"export", job.filePath("board"), "--out", "o", "--verify"});
        QVERIFY2(told.output.contains("  proven"), qPrintable(told.output));
        QVERIFY2(told.output.contains(", 0 failures, 8 of 8 proven, "), qPrintable(told.output));
        // A database unit as coarse as the layer proves nothing.
        const Ran coarse = program.run({"export", job.filePath("board"), "--out", "o", "--verify", "--dbu",
                                        "100", "--format", "gds", "--layers", "top"});
        QCOMPARE(coarse.code, 3);
        QVERIFY2(coarse.errors.contains("board/pcb/top (gds): not proven: "), qPrintable(coarse.errors));
        QVERIFY2(coarse.output.contains("  not proven"), qPrintable(coarse.output));
        QVERIFY2(coarse.output.contains(", 0 of 1 proven, "), qPrintable(coarse.output));
    }

    void verifyTellsOfEachFile()
    {
        JobFolder job;
        fill(job);
        const Program program;
        QVERIFY(program.folder().write("board.tgz", archiveOf(job)));
        const QStringList options{"--rotate", "30", "--mirror", "--positive"};
        QCOMPARE(program.run(QStringList{"export", "board.tgz", "--out", "o"} + options).code, 0);
        const QStringList command = QStringList{"verify", "board.tgz", "o"} + options;
        const Ran proven = program.run(command);
        QVERIFY2(proven.code == 0, qPrintable(proven.output + proven.errors));
        QVERIFY2(proven.output.contains("board: 8 of 8 files proven, "), qPrintable(proven.output));
        QCOMPARE(program.run({"verify", "board.tgz", "o"}).code, 3); // without the options

        // Of another layer, of nothing, cut short, gone, and of no layer.
        const auto copy = [&program](const char *from, const char *to) {
            return program.folder().write(to, program.bytes(from));
        };
        QVERIFY(copy("o/board/drill.gerber", "o/board/mask.gerber"));
        QVERIFY(program.folder().write("o/board/gnd.gds", program.bytes("o/board/gnd.gds").chopped(4)));
        QVERIFY(program.folder().write("o/board/drill.gerber", "%IPNEG*%\nM02*\n"));
        QVERIFY(QFile::remove(program.filePath("o/board/top.gerber")));
        QVERIFY(copy("o/board/top.gds", "o/board/sub/top.gds"));
        QVERIFY(copy("o/board/top.gds", "o/board/old.gds"));
        QVERIFY(program.folder().write("o/board/notes.txt", "no file of a layer"));
        QVERIFY(copy("o/board/top.gds", "o/other/top.gds")); // of another job
        const Ran ran = program.run(command);
        QCOMPARE(ran.code, 1);
        const auto hasRow = [&ran](const QString &file, const QString &result) {
            return ran.output.contains(
                QRegularExpression("^ +board." + QRegularExpression::escape(file) + " +" + result,
                                   QRegularExpression::MultilineOption));
        };
        for (const auto &[file, result] :
             {std::pair("top.gds", "proven +0 +0 "),
              {"mask.gerber", "not proven +0 +[0-9.e-]+ +[0-9]+ +-?[0-9.]+, -?[0-9.]+"},
              {"gnd.gds", "cannot say .*gnd.gds"},
              {"drill.gerber", "cannot say .*drill.gerber.*IPNEG"},
              {"top.gerber", "failed"},
              {"old.gds", "no layer"}})
            QVERIFY2(hasRow(file, result), qPrintable(QString(file) + "\n" + ran.output));
        QVERIFY2(ran.output.contains("board: 4 of 8 files proven, 1 file without a layer, "),
                 qPrintable(ran.output));
        QVERIFY2(ran.errors.contains("error: board/pcb/top (gerber): "), qPrintable(ran.errors));
        QVERIFY(ran.errors.contains("there is no such file"));

        const Ran asJson = program.run(command + QStringList{"--json", "-"});
        QCOMPARE(asJson.code, 1);
        const QJsonObject report = asJson.json();
        QVERIFY(fits(report, schema()));
        QCOMPARE(report["files"].toArray().size(), 9);
        for (const QJsonValue &file : report["files"].toArray())
            QVERIFY(fits(file.toObject(), fileSchema()));
        const QJsonObject mask = fileNamed(report, "board/mask.gerber");
        QCOMPARE(mask["status"].toString(), QString("checked"));
        QCOMPARE(mask["verification"].toObject()["proven"].toBool(true), false);
        QVERIFY(std::fabs(mask["verification"].toObject()["extra"].toDouble() - 0.0707) < 0.001);
        QCOMPARE(fileNamed(report, "board/old.gds")["status"].toString(), QString("stray"));
        QCOMPARE(fileNamed(report, "board/top.gerber")["status"].toString(), QString("failed"));
        QCOMPARE(program.temporaryFiles(), QStringList());

        // What was chosen only; the other layers' files are no strays.
        const Ran some = program.run(command + QStringList{"--layers", "top", "--format", "gds"});
        QCOMPARE(some.code, 3);
        QVERIFY2(some.output.contains("board: 1 of 1 file proven, 1 file without a layer, "),
                 qPrintable(some.output));
        QVERIFY(QFile::remove(program.filePath("o/board/old.gds")));
        QCOMPARE(program.run(command + QStringList{"--layers", "top", "--format", "gds"}).code, 0);
    }

    // Crossings that rounding does not end with are an error of their layer, not a wrong file.
    void edgesThatCannotBeResolvedFailTheirLayer()
    {
        JobFolder job;
        job.features("$0 r200\nL 1 1 4 5 0 P 0\nL 1 5 4 1 0 N 0\n", "top");
        job.features("$0 r200\nL 1 1 4 5 0 P 0\n", "drill");
        const Program program;
        const QString fewRounds = QCoreApplication::applicationDirPath() + "/camconvert_fewrounds";
        const QStringList arguments{"export",   job.filePath("board"), "--out",    "o",
                                    "--layers", "top,drill",           "--format", "gds"};
        Ran ran = program.run(arguments, fewRounds);
        QCOMPARE(ran.code, 1);
        QVERIFY2(ran.errors.contains(QRegularExpression("error: board/pcb/top \\(gds\\): the edges around "
                                                        "-?\\d+, -?\\d+ .*cannot be resolved")),
                 qPrintable(ran.errors));
        QCOMPARE(program.files("o/board"), QStringList{"drill.gds"});
        QCOMPARE(program.run(arguments).code, 0);
        ran = program.run({"verify", job.filePath("board"), "o", "--layers", "top", "--format", "gds"},
                          fewRounds);
        QCOMPARE(ran.code, 3);
        QVERIFY2((ran.output + ran.errors).contains("cannot be resolved"),
                 qPrintable(ran.output + ran.errors));
    }

    void verifyFindsTheFilesByTheirPattern()
    {
        JobFolder job;
        fill(job);
        const Program program;
        const QStringList pattern{"--name", "{type}/{job}_{row}_{layer}{ext}", "--format", "gds"};
        QCOMPARE(program.run(QStringList{"export", job.filePath("board"), "--out", "o"} + pattern).code, 0);
        const QStringList command = QStringList{"verify", job.filePath("board"), "o"} + pattern;
        QCOMPARE(program.run(command).code, 0);
        QVERIFY(program.folder().write("o/signal/board_99_new.gds", "x"));
        QVERIFY(program.folder().write("o/signal/panel_99_new.gds", "of another job"));
        const Ran ran = program.run(command);
        QCOMPARE(ran.code, 3);
        QCOMPARE(ran.output.count("no layer"), 1);
    }

    void verifyNeedsAFolder()
    {
        JobFolder job;
        fill(job);
        const Program program;
        const Ran none = program.run({"verify", job.filePath("board"), "o"});
        QCOMPARE(none.code, 1);
        QVERIFY2(none.errors.contains("o: there is no such folder"), qPrintable(none.errors));
        QVERIFY(program.folder().write("o", "mine"));
        QVERIFY(program.run({"verify", job.filePath("board"), "o"})
                    .errors.contains("o: expected a folder, found a file"));
    }

    void diffTellsWhatCameAndWhatWent()
    {
        JobFolder before, after;
        fill(before);
        fill(after);
        const QByteArray layer = "LAYER {\n ROW=%1\n CONTEXT=BOARD\n TYPE=%2\n NAME=%3\n POLARITY=%4\n}\n";
        const auto matrix = [&layer](const std::vector<std::array<const char *, 4>> &rows) {
            QString text = "STEP {\n COL=1\n NAME=PCB\n}\n";
            for (const auto &row : rows)
                text += QString(layer).arg(row[0], row[1], row[2], row[3]);
            return text.toUtf8();
        };
        before.write("matrix/matrix", matrix({{"1", "SIGNAL", "TOP", "POSITIVE"},
                                              {"2", "SIGNAL", "GND", "NEGATIVE"},
                                              {"3", "SOLDER_MASK", "MASK", "POSITIVE"}}));
        after.write("matrix/matrix", matrix({{"1", "SIGNAL", "top", "POSITIVE"},
                                             {"2", "SIGNAL", "GND", "POSITIVE"},
                                             {"3", "DRILL", "DRILL", "POSITIVE"}}));
        // A square millimetre in the place of the pad of 0.5 mm by 0.3.
        after.features("$0 r200\n$1 s1000\nL 1 1 4 5 0 P 0\nP 8 8 1 P 0 0\n", "top");
        const Program program;
        QVERIFY(program.folder().write("a.tgz", archiveOf(before)));
        const QStringList command{"diff", "a.tgz", after.filePath("board"), "--picture", "changes.png"};
        const Ran ran = program.run(command);
        QVERIFY2(ran.code == 3, qPrintable(ran.output + ran.errors));
        for (const char *row :
             {"^ +top +different +0\\.\\d+ +1 +\\d+$",
              "^ +gnd +different +0 +0 +0 +polarity NEGATIVE to POSITIVE$", "^ +mask +removed$",
              "^ +drill +added$", "^top added at 8.0000, 8.0000 mm: 1000.0 um wide, 1 mm2$",
              "^top removed at ", "^4 of 4 layers differ, "})
            QVERIFY2(ran.output.contains(QRegularExpression(row, QRegularExpression::MultilineOption)),
                     qPrintable(QString(row) + "\n" + ran.output));
        for (const char *name : {"top", "gnd", "mask", "drill"})
            QVERIFY2(!QImage(program.filePath(QString("changes-%1.png").arg(name))).isNull(), name);

        const QJsonObject json = program.run(command + QStringList{"--json", "-"}).json();
        const QJsonObject diffSchema = schema("camconvert.diff.schema.json");
        QVERIFY(fits(json, diffSchema));
        QCOMPARE(json["layers"].toArray().size(), 4);
        const QJsonObject layerSchema =
            diffSchema["properties"].toObject()["layers"].toObject()["items"].toObject();
        for (const QJsonValue &value : json["layers"].toArray())
            QVERIFY(fits(value.toObject(), layerSchema));
        const QJsonObject top = json["layers"].toArray().first().toObject();
        QCOMPARE(top["added"].toDouble(), 1.0);
        const QJsonObject place = top["places"].toArray().first().toObject();
        QCOMPARE(place["kind"].toString(), QString("added"));
        QCOMPARE(place["at"].toArray(), (QJsonArray{8.0, 8.0}));
        QCOMPARE(top["picture"].toString(), QString("./changes-top.png"));

        QCOMPARE(program.run({"diff", "a.tgz", before.filePath("board")}).code, 0);
        const Ran gone = program.run({"diff", "a.tgz", "b.tgz"});
        QCOMPARE(gone.code, 1);
        QVERIFY2(gone.errors.contains("error: b.tgz: "), qPrintable(gone.errors));
        const Ran unknown = program.run({"diff", "a.tgz", "a.tgz", "--layers", "top,nosuchlayer"});
        QCOMPARE(unknown.code, 1);
        QVERIFY2(unknown.errors.contains("nosuchlayer: neither job has a layer of that name"),
                 qPrintable(unknown.errors));
        QCOMPARE(program.temporaryFiles(), QStringList());
    }

    // Of a layer of clearances what the job draws is compared; of a file what it shows.
    void diffOfNegativeLayers()
    {
        JobFolder before, after;
        const QByteArray clearances = "$0 r1000\n$1 r300\nP 5 5 0 P 0 0\nP 5 5 1 N 0 0\nP 9 5 0 P 0 0\n";
        before.features(clearances, "gnd");
        after.features(clearances + "P 15 5 0 P 0 0\nP 9 5 1 N 0 0\n", "gnd");
        const Program program;
        const QString a = before.filePath("board"), b = after.filePath("board");
        QCOMPARE(program.run({"diff", a, a, "--layers", "gnd"}).code, 0);
        const Ran jobs = program.run({"diff", a, b, "--layers", "gnd"});
        QVERIFY2(jobs.code == 3, qPrintable(jobs.errors));
        QVERIFY2(
            jobs.output.contains(QRegularExpression("gnd added at 15.0000, 5.0000 mm: .* um wide, 0.785")) &&
                jobs.output.contains(
                    QRegularExpression("gnd removed at 9.0000, 5.0000 mm: .* um wide, 0.070")),
            qPrintable(jobs.output));
        for (const char *polarity : {"--negate", "--positive"}) {
            for (const QString &job : {a, b})
                QCOMPARE(
                    program.run({"export", job, polarity, "--layers", "gnd", "--out", job + polarity}).code,
                    0);
            const QString old = a + polarity + "/board/gnd", now = b + polarity + "/board/gnd";
            QCOMPARE(program.run({"diff", old + ".gds", old + ".gerber"}).code, 0);
            QCOMPARE(program.run({"diff", now + ".gerber", now + ".gds"}).code, 0);
            for (const char *ending : {".gds", ".gerber"}) {
                const Ran files = program.run({"diff", old + ending, now + ".gds"});
                QVERIFY2(files.code == 3, qPrintable(files.errors));
                QVERIFY2(files.output.contains(
                             QRegularExpression("removed at 15.0000, 5.0000 mm: .* um wide, 0.785")) &&
                             files.output.contains(
                                 QRegularExpression("added at 9.0000, 5.0000 mm: .* um wide, 0.070")),
                         qPrintable(files.output));
            }
        }
    }

    // Thousands of strokes that have nothing in common but their boxes.
    void diffOfLayersThatHaveNothingInCommon()
    {
        JobFolder before, after;
        QByteArray rising = "$0 s50\n", falling = rising;
        for (int i = 0; i < 600; ++i) {
            const QByteArray x = QByteArray::number(i * 0.1), far = QByteArray::number(60.0 + i * 0.1);
            rising += "L " + x + " 0 " + far + " 60 0 P 0\n";
            falling += "L " + x + " 60 " + far + " 0 0 P 0\n";
        }
        before.features(rising, "top");
        after.features(falling, "top");
        const Program program;
        const Ran ran = program.run(
            {"diff", before.filePath("board"), after.filePath("board"), "--layers", "top", "--json", "-"});
        QCOMPARE(ran.code, 3);
        const QJsonObject top = ran.json()["layers"].toArray().first().toObject();
        QVERIFY(top["added"].toDouble() > 100.0);
        QVERIFY(std::fabs(top["added"].toDouble() / top["removed"].toDouble() - 1.0) < 1e-6);
    }

    void diffNeedsTwoOfAKind()
    {
        JobFolder job;
        fill(job);
        const Program program;
        QVERIFY(program.folder().write("b.gds", "x"));
        const Ran mixed = program.run({"diff", job.filePath("board"), "b.gds"});
        QCOMPARE(mixed.code, 2);
        QVERIFY2(mixed.errors.contains("found one of each"), qPrintable(mixed.errors));
        const QStringList board{job.filePath("board")};
        for (const QStringList &operands : {board + QStringList{"gone"}, QStringList{"gone"} + board,
                                            QStringList{"b.gds", "gone.gds"}, QStringList{"gone", "gone"}}) {
            const Ran ran = program.run(QStringList{"diff"} + operands);
            QCOMPARE(ran.code, 1);
            QVERIFY2(ran.errors.contains("gone") || ran.errors.contains("b.gds"), qPrintable(ran.errors));
            QVERIFY2(!ran.errors.contains("gone: gone"), qPrintable(ran.errors));
        }
    }

    void diffComparesFilesOfEitherFormat()
    {
        JobFolder job;
        fill(job);
        const Program program;
        QCOMPARE(program.run({"export", job.filePath("board"), "--out", "o"}).code, 0);
        const Ran same = program.run({"diff", "o/board/top.gds", "o/board/top.gerber"});
        QVERIFY2(same.code == 0, qPrintable(same.output + same.errors));
        QVERIFY2(same.output.contains("the files are the same, "), qPrintable(same.output));
        const Ran other = program.run({"diff", "o/board/top.gds", "o/board/drill.gds", "--picture", "p.png"});
        QCOMPARE(other.code, 3);
        QVERIFY(!QImage(program.filePath("p.png")).isNull());
        QVERIFY(program.folder().write("cut.gds", program.bytes("o/board/top.gds").chopped(4)));
        const Ran cut = program.run({"diff", "o/board/top.gds", "cut.gds"});
        QCOMPARE(cut.code, 1);
        QVERIFY2(cut.errors.contains("cut.gds"), qPrintable(cut.errors));
        QVERIFY2(cut.output.contains("the files were not compared, "), qPrintable(cut.output));
        QVERIFY2(!cut.output.contains("differ"), qPrintable(cut.output));
    }

    void diffComparesDrillFiles()
    {
        JobFolder job;
        fill(job);
        const Program program;
        QCOMPARE(program.run({"export", job.filePath("board"), "--out", "o"}).code, 0);
        const auto drillFile = [](const char *format, const char *place) {
            return QByteArray("M48\n") + format + "\nT1C0.3\n%\nT1\n" + place + "\nM30\n";
        };
        QVERIFY(program.folder().write("board.drl", drillFile("METRIC,TZ,000.000", "X3000Y3000")));
        QVERIFY(program.folder().write("moved.drl", drillFile("METRIC,TZ,000.000", "X3001Y3000")));
        QVERIFY(program.folder().write("open.drl", drillFile("METRIC", "X3000Y3000")));
        for (const char *file : {"o/board/drill.gds", "o/board/drill.gerber", "board.drl"}) {
            const Ran same = program.run({"diff", file, "board.drl"});
            QVERIFY2(same.code == 0, qPrintable(same.output + same.errors));
            QCOMPARE(program.run({"diff", file, "moved.drl"}).code, 3);
        }
        const Ran unsaid = program.run({"diff", "board.drl", "open.drl"});
        QCOMPARE(unsaid.code, 1);
        QVERIFY2(unsaid.errors.contains("open.drl: the drill file does not say how its numbers are written"),
                 qPrintable(unsaid.errors));
    }

    // Ten pixels a millimetre, all of which are known.
    void diffDrawsAddedGreenAndRemovedRed()
    {
        JobFolder before, after;
        fill(before);
        fill(after);
        before.features("$0 s2000\nP 2 2 0 P 0 0\nP 6 2 0 P 0 0\n", "top");
        after.features("$0 s2000\nP 2 2 0 P 0 0\nP 10 2 0 P 0 0\n", "top");
        const Program program;
        const Ran ran = program.run({"diff", before.filePath("board"), after.filePath("board"), "--layers",
                                     "top", "--picture", "top.png", "--scale", "10"});
        QVERIFY2(ran.code == 3, qPrintable(ran.errors));
        const QImage picture(program.filePath("top.png"));
        QCOMPARE(picture.size(), QSize(106, 26)); // 10 by 2 mm, and a margin of 0.3 mm
        const auto at = [&picture](double x, double y) {
            return picture.pixelColor(int((x - 0.7) * 10.0), int((3.3 - y) * 10.0));
        };
        QCOMPARE(at(2, 2), QColor(190, 190, 190));
        QVERIFY(at(6, 2).red() > 200 && at(6, 2).green() < 50);
        QVERIFY(at(10, 2).green() > 120 && at(10, 2).red() < 50);
        QCOMPARE(at(4, 2), QColor(255, 255, 255));
    }

    // A panel of panels of boards, turned and mirrored: each board clears in its own picture only.
    void picturesShowNestedSteps()
    {
        JobFolder job;
        job.write(
            "matrix/matrix",
            "STEP {\n COL=1\n NAME=PCB\n}\nSTEP {\n COL=2\n NAME=ARRAY\n}\nSTEP {\n COL=3\n NAME=PANEL\n}\n"
            "LAYER {\n ROW=1\n CONTEXT=BOARD\n TYPE=SIGNAL\n NAME=TOP\n POLARITY=POSITIVE\n}\n");
        job.features("$0 s2000\n$1 s1000\nP 1 1 0 P 0 0\nP 4 1 0 P 0 0\nP 4 1 1 N 0 0\n", "top");
        job.write("steps/array/stephdr",
                  "UNITS=MM\nX_DATUM=0\nY_DATUM=0\nSTEP-REPEAT {\n NAME=PCB\n X=0\n Y=0\n"
                  " DX=10\n DY=10\n NX=2\n NY=1\n ANGLE=0\n MIRROR=NO\n}\n");
        job.write(
            "steps/panel/stephdr",
            "UNITS=MM\nX_DATUM=0\nY_DATUM=0\n"
            "STEP-REPEAT {\n NAME=ARRAY\n X=0\n Y=0\n DX=0\n DY=0\n NX=1\n NY=1\n ANGLE=0\n MIRROR=NO\n}\n"
            "STEP-REPEAT {\n NAME=ARRAY\n X=20\n Y=10\n DX=0\n DY=0\n NX=1\n NY=1\n ANGLE=0\n"
            " MIRROR=YES\n}\n");
        // Lies below a clearance of the first board.
        job.features("$0 s400\nP 4 1 0 P 0 0\n", "top", "panel");
        const Program program;
        const Ran ran = program.run({"picture", job.filePath("board"), "--step", "panel", "--layer", "top",
                                     "--out", "panel.png", "--scale", "20"});
        QVERIFY2(ran.code == 0, qPrintable(ran.errors));
        const QImage picture(program.filePath("panel.png"));
        const double margin = 0.6; // 3 % of the longer side
        QCOMPARE(picture.size(),
                 QSize(qRound((20.0 + 2.0 * margin) * 20.0), qRound((12.0 + 2.0 * margin) * 20.0)));
        const auto isDark = [&](double x, double y) {
            return picture.pixelColor(int((x + margin) * 20.0), int((12.0 + margin - y) * 20.0)) ==
                   QColor(255, 215, 0);
        };
        for (const QPointF at :
             {QPointF(1, 1), {4.8, 1}, {11, 1}, {14.8, 1}, {4, 1}, {19, 11}, {15.2, 11}, {9, 11}})
            QVERIFY2(isDark(at.x(), at.y()), qPrintable(QString("%1, %2").arg(at.x()).arg(at.y())));
        for (const QPointF at : {QPointF(14, 1), {4.4, 1}, {16, 11}, {6, 11}, {2.5, 1}, {1, 11}, {10, 6}})
            QVERIFY2(!isDark(at.x(), at.y()), qPrintable(QString("%1, %2").arg(at.x()).arg(at.y())));
    }

    void picturesHaveTheTablesColours()
    {
        JobFolder job;
        fill(job);
        job.features("$0 s4000\n$1 s1000\nP 4 4 0 P 0 0\nP 4 4 1 N 0 0\n", "top");
        job.features("$0 s4000\nP 10 4 0 P 0 0\n", "mask");
        const Program program;
        const QString board = job.filePath("board");
        QVERIFY(program.run({"picture", board, "--layer", "top", "--out", "top.png", "--scale", "10"}).code ==
                0);
        const QImage top(program.filePath("top.png"));
        QCOMPARE(top.size(), QSize(42, 42)); // 4 by 4 mm, and a margin of 0.12 mm
        QCOMPARE(top.pixelColor(8, 8), QColor(255, 215, 0));
        QCOMPARE(top.pixelColor(21, 21), QColor(24, 28, 32)); // cleared
        QCOMPARE(
            program.run({"picture", board, "--layer", "MASK,top", "--out", "two.png", "--width", "200"}).code,
            0);
        const QImage two(program.filePath("two.png"));
        QCOMPARE(two.width(), 200);
        QVERIFY(two.pixelColor(20, 20).red() > 150);
        QVERIFY(two.pixelColor(180, 20).red() < 50);
        QCOMPARE(program
                     .run({"picture", board, "--layer", "mask,top", "--mirror", "--out", "back.png",
                           "--width", "200"})
                     .code,
                 0);
        QCOMPARE(QImage(program.filePath("back.png")).pixelColor(180, 20), two.pixelColor(20, 20));
        QCOMPARE(program.run({"picture", board, "--out", "all.svg"}).code, 0);
        const QByteArray svg = program.bytes("all.svg");
        QVERIFY2(svg.contains("<g fill=\"#ffd700\""), svg.constData());
        QVERIFY(svg.contains("<g fill=\"#a9a9a9\"") && svg.contains("mm\" viewBox=\"0 0 ") &&
                svg.endsWith("</svg>\n"));

        const Ran huge = program.run({"picture", board, "--out", "huge.png", "--scale", "100000"});
        QCOMPARE(huge.code, 1);
        QVERIFY2(huge.errors.contains("pixels; expected at most"), qPrintable(huge.errors));
        const Ran unknown = program.run({"picture", board, "--out", "x.png", "--layer", "nosuchlayer"});
        QCOMPARE(unknown.code, 1);
        QVERIFY2(unknown.errors.contains("board/pcb/nosuchlayer: the job has no layer of that name"),
                 qPrintable(unknown.errors));
        const Ran nowhere = program.run({"picture", board, "--out", "gone/x.png"});
        QCOMPARE(nowhere.code, 1);
        QVERIFY2(nowhere.errors.contains("x.png: cannot be written"), qPrintable(nowhere.errors));
        QVERIFY(!QFileInfo::exists(program.filePath("huge.png")) &&
                !QFileInfo::exists(program.filePath("x.png")));
    }

    void resumePassesOverWhatIsDone()
    {
        JobFolder job;
        fill(job);
        const Program program;
        QVERIFY(program.folder().write("board.tgz", archiveOf(job)));
        const QStringList command{"export", "board.tgz", "--out", "o", "--resume", "--json", "-"};
        const auto statuses = [&](const QStringList &more = {}) {
            const QJsonObject report = program.run(command + more).json();
            QStringList words;
            for (const QJsonValue &file : report["files"].toArray())
                words << file.toObject()["status"].toString();
            words.removeDuplicates();
            return words.join(' ');
        };
        QCOMPARE(statuses(), QString("written"));
        QCOMPARE(statuses(), QString("kept"));
        QCOMPARE(statuses({"--rotate", "90"}), QString("written")); // other options, other files
        QCOMPARE(statuses(), QString("written"));
        QCOMPARE(statuses(), QString("kept"));
        const QByteArray top = program.bytes("o/board/top.gds");
        QVERIFY(program.folder().write("o/board/top.gds", QByteArray(top.size(), 'x')));
        QCOMPARE(statuses(), QString("written"));
        QCOMPARE(program.bytes("o/board/top.gds"), top);
        QVERIFY(QFile::remove(program.filePath("o/board/gnd.gerber")));
        QCOMPARE(statuses(), QString("written"));
        job.features("$0 r300\nP 5 5 0 P 0 0\n", "mask");
        QVERIFY(program.folder().write("board.tgz", archiveOf(job))); // other input
        QCOMPARE(statuses(), QString("written"));
        for (const QString &record : QDir(program.filePath("o/.camconvert")).entryList(QDir::Files))
            QVERIFY(program.folder().write("o/.camconvert/" + record, "{\"version\":1"));
        QCOMPARE(statuses(), QString("written"));
    }

    void infoShowsStepsLayersCountsAndWhatCannotBeDrawn()
    {
        JobFolder job;
        fill(job);
        job.features("$0 nosuchsymbol\nP 3 3 0 P 0 0\nP 4 3 0 P 0 0\n", "drill");
        const Program program;
        QVERIFY(program.folder().write("board.tgz", archiveOf(job)));
        const Ran table = program.run({"info", "board.tgz"});
        QCOMPARE(table.code, 0);
        for (const char *part : {"board: unit MM", "DRILL  BOARD    DRILL         POSITIVE  TOP to GND",
                                 "step PCB: 20 x 10 mm, from 0, 0", "nosuchsymbol (2)"})
            QVERIFY2(table.output.contains(part), qPrintable(table.output));
        const QJsonObject json = program.run({"info", "--json", "board.tgz"}).json();
        QCOMPARE(json["version"].toInt(), 1);
        QCOMPARE(json["unit"].toString(), QString("MM"));
        QCOMPARE(json["layers"].toArray().size(), 4);
        const QJsonObject step = json["steps"].toArray().first().toObject();
        QCOMPARE(step["extent"].toArray(), (QJsonArray{0.0, 0.0, 20.0, 10.0}));
        for (const QJsonValue &value : step["layers"].toArray()) {
            const QJsonObject layer = value.toObject();
            const QJsonObject counts = layer["features"].toObject();
            if (layer["layer"].toString() == "GND") {
                QCOMPARE(counts["lines"].toInt(), 1);
                QCOMPARE(counts["arcs"].toInt(), 1);
                QCOMPARE(counts["pads"].toInt(), 1);
            }
            QCOMPARE(layer["undrawable"].toObject()["symbol nosuchsymbol"].toInt(),
                     layer["layer"].toString() == "DRILL" ? 2 : 0);
        }
        QCOMPARE(program.run({"info", "gone", "board.tgz"}).code, 1);
        QCOMPARE(program.temporaryFiles(), QStringList());
    }
};

QTEST_GUILESS_MAIN(tst_CamConvert)
#include "tst_camconvert.moc"
