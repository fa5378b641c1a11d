// A layer's image put together from a job folder: steps in steps, symbols in symbols, what the matrix says.
#include "cam/base/error.h"
#include "cam/odb/job.h"
#include "tests/cam/support/jobfolder.h"
#include "tests/cam/support/messages.h"

#include <QtTest>

#include <algorithm>

using namespace cam;

namespace {

LayerImage readTop(const JobFolder &folder, const std::string &step = "pcb")
{
    ReadingNotes notes;
    return Job(folder.path()).readLayer(step, "top", notes);
}

} // namespace

class tst_Job : public QObject
{
    Q_OBJECT

private slots:
    void layerIsReadWithItsSurroundings()
    {
        JobFolder folder;
        folder.features("$0 r100\nL 0 0 1 0 0 P 0\n");
        const LayerImage image = readTop(folder);
        QCOMPARE(image.job, std::string("board"));
        QCOMPARE(image.layer, std::string("top"));
        QCOMPARE(image.row, 2);
        QCOMPARE(image.type, std::string("SIGNAL"));
        QCOMPARE(image.copperRank, 1);
        QCOMPARE(image.copperCount, 2);
        QCOMPARE(image.steps.size(), std::size_t(1));
        QCOMPARE(image.top().features.lines.size(), std::size_t(1));
        QCOMPARE(image.profile.size(), std::size_t(1));
        const std::int16_t saved[] = {2024, 2, 29, 13, 14, 15};
        QVERIFY(std::equal(std::begin(saved), std::end(saved), std::begin(image.saved)));
    }

    void matrixSaysWhereALayerStands()
    {
        JobFolder folder;
        for (const char *layer : {"mask", "gnd", "drill"})
            folder.features("", layer);
        ReadingNotes notes;
        const Job job(folder.path());
        QVERIFY(job.readLayer("pcb", "mask", notes).aboveCopper);
        const LayerImage plane = job.readLayer("pcb", "gnd", notes);
        QVERIFY(plane.polarity == Polarity::Negative && plane.copperRank == 2 && !plane.aboveCopper);
        const LayerImage drill = job.readLayer("pcb", "drill", notes);
        QCOMPARE(drill.firstCopper, 1);
        QCOMPARE(drill.lastCopper, 2);
        QCOMPARE(drill.copperRank, 0);
    }

    // A board of four copper layers between its masks.
    void drillSpansTheLayersThatTheMatrixNames_data()
    {
        QTest::addColumn<QByteArray>("start");
        QTest::addColumn<QByteArray>("end");
        QTest::addColumn<int>("first");
        QTest::addColumn<int>("last");
        const auto row = [](const char *name, const char *start, const char *end, int first, int last) {
            QTest::newRow(name) << QByteArray(start) << QByteArray(end) << first << last;
        };
        row("through", "TOP", "BOT", 1, 4);
        row("blind", "Top", "in1", 1, 2);
        row("buried", "IN1", "IN2", 2, 3);
        row("from the bottom", "BOT", "IN2", 3, 4);
        row("without names", "", "", 1, 4);
        row("from mask to mask", "MASKTOP", "MASKBOT", 1, 4);
        row("from a mask inwards", "MASKTOP", "IN2", 1, 3);
        row("within a mask", "MASKTOP", "MASKTOP", 0, 0);
        row("to a layer that is not there", "TOP", "IN7", 0, 0);
    }
    void drillSpansTheLayersThatTheMatrixNames()
    {
        QFETCH(QByteArray, start);
        QFETCH(QByteArray, end);
        JobFolder folder;
        QByteArray matrix;
        int row = 0;
        for (const char *layer : {"MASKTOP", "TOP", "IN1", "IN2", "BOT", "MASKBOT"})
            matrix += "LAYER {\nROW=" + QByteArray::number(++row) + "\nCONTEXT=BOARD\nTYPE=" +
                      (QByteArray(layer).startsWith("MASK") ? "SOLDER_MASK" : "SIGNAL") + "\nNAME=" + layer +
                      "\n}\n";
        folder.write("matrix/matrix",
                     matrix + "LAYER {\nROW=9\nCONTEXT=BOARD\nTYPE=DRILL\nNAME=D\nSTART_NAME=" + start +
                         "\nEND_NAME=" + end + "\n}\n");
        ReadingNotes notes;
        const LayerImage image = Job(folder.path()).readLayer("pcb", "d", notes);
        QTEST(image.firstCopper, "first");
        QTEST(image.lastCopper, "last");
    }

    void platingComesFromTheToolsElseFromTheMatrix_data()
    {
        QTest::addColumn<QByteArray>("types"); // of the tools
        QTest::addColumn<QByteArray>("addType");
        QTest::addColumn<int>("plating");
        const auto row = [](const char *types, const char *addType, Plating plating) {
            QTest::newRow(qPrintable(QString("%1; %2").arg(types, addType)))
                << QByteArray(types) << QByteArray(addType) << int(plating);
        };
        row("PLATED", "", Plating::Plated);
        row("VIA", "", Plating::Plated);
        row("via PLATED", "NON_PLATED", Plating::Plated);
        row("NON_PLATED", "", Plating::NonPlated);
        row("NON_PLATED VIA", "", Plating::Mixed);
        row("", "", Plating::Unknown);
        row("", "PLATED", Plating::Plated);
        row("", "non_plated", Plating::NonPlated);
        row("", "BACKDRILL", Plating::NonPlated);
        row("PLATED OTHER", "", Plating::Unknown);
        row("PLATED OTHER", "PLATED", Plating::Plated);
    }
    void platingComesFromTheToolsElseFromTheMatrix()
    {
        QFETCH(QByteArray, types);
        QFETCH(QByteArray, addType);
        JobFolder folder;
        folder.write("matrix/matrix",
                     "LAYER {\nROW=1\nCONTEXT=BOARD\nTYPE=DRILL\nNAME=D_NON-PLATED\nADD_TYPE=" + addType +
                         "\n}\n");
        folder.features("", "d_non-plated");
        QByteArray tools = "UNITS=MM\nTHICKNESS=0\nUSER_PARAMS=\n";
        for (const QByteArray &type : types.split(' ')) {
            if (!type.isEmpty())
                tools += "TOOLS {\n    NUM=1\n    TYPE=" + type + "\n    BIT=\n}\n";
        }
        folder.write("steps/pcb/layers/d_non-plated/tools", tools);
        ReadingNotes notes;
        const LayerImage image = Job(folder.path()).readLayer("pcb", "d_non-plated", notes);
        QTEST(int(image.plating), "plating");
        QVERIFY(notes.readings.empty());
    }

    void toolsOfNestedStepsCountToo()
    {
        JobFolder folder;
        folder.features("", "drill");
        folder.write("steps/pcb/layers/drill/tools", "TOOLS {\nTYPE=VIA\n}\n");
        folder.write("steps/panel/stephdr", "STEP-REPEAT {\nNAME=PCB\n}\n");
        folder.features("", "drill", "panel");
        folder.write("steps/panel/layers/drill/tools", "TOOLS {\nTYPE=NON_PLATED\n}\n");
        ReadingNotes notes;
        const Job job(folder.path());
        QVERIFY(job.readLayer("pcb", "drill", notes).plating == Plating::Plated);
        QVERIFY(job.readLayer("panel", "drill", notes).plating == Plating::Mixed);
    }

    void damagedToolsFileCostsThePlatingOnly()
    {
        JobFolder folder;
        folder.features("$0 r100\nP 1 1 0 P 0 0\n", "drill");
        folder.write("steps/pcb/layers/drill/tools", "TOOLS {\n");
        ReadingNotes notes;
        const LayerImage image = Job(folder.path()).readLayer("pcb", "drill", notes);
        QVERIFY(image.plating == Plating::Unknown);
        QCOMPARE(image.top().features.pads.size(), std::size_t(1));
        QCOMPARE(notes.readings.size(), std::size_t(1));
        QVERIFY(QString::fromStdString(notes.readings.begin()->first).contains("tools:1: expected \"}\""));
    }

    void namesAreFoundWithoutRegardToCase()
    {
        JobFolder folder("Board");
        folder.write("steps/Panel/Layers/TOP/Features", "$0 r1\nL 0 0 1 0 0 P 0\n");
        ReadingNotes notes;
        QCOMPARE(Job(folder.path()).readLayer("PANEL", "Top", notes).top().features.lines.size(),
                 std::size_t(1));
    }

    void nestedStepsStandBeforeTheirParents()
    {
        JobFolder folder;
        folder.features("$0 r100\nP 0 0 0 P 0 0\n");
        folder.write("steps/array/stephdr",
                     "UNITS=MM\nSTEP-REPEAT {\nNAME=PCB\nX=1\nY=2\nDX=25\nDY=15\nNX=2\nNY=3\n}\n");
        folder.write("steps/panel/stephdr", "UNITS=MM\nSTEP-REPEAT {\nNAME=ARRAY\nX=5\nY=5\nANGLE=90\n}\n"
                                            "STEP-REPEAT {\nNAME=PCB\nX=90\nY=5\nMIRROR=YES\n}\n");
        folder.features("$0 s50\nP 0 0 0 P 0 0\n", "top", "panel");
        const LayerImage image = readTop(folder, "panel");
        QCOMPARE(image.steps.size(), std::size_t(3));
        QCOMPARE(image.steps[0].name, std::string("pcb"));
        QCOMPARE(image.steps[1].name, std::string("array"));
        QCOMPARE(image.top().name, std::string("panel"));
        QCOMPARE(image.steps[1].repeats[0].nx, 2u);
        QCOMPARE(image.steps[1].repeats[0].dy, 15e6);
        QCOMPARE(image.top().repeats[0].step, 1u);
        QCOMPARE(image.top().repeats[1].step, 0u);
        QVERIFY(image.top().repeats[1].mirror);
    }

    void nestedStepMayLackTheLayer()
    {
        JobFolder folder;
        folder.write("steps/panel/stephdr", "STEP-REPEAT {\nNAME=PCB\n}\n");
        folder.features("", "top", "panel");
        QVERIFY(readTop(folder, "panel").steps[0].features.isEmpty());
    }

    // An array between panel and board usually has no layers of its own.
    void stepWithoutTheLayerShowsWhatItsNestedStepsHold()
    {
        JobFolder folder;
        folder.features("$0 r100\nP 0 0 0 P 0 0\n");
        folder.write("steps/array/stephdr", "STEP-REPEAT {\nNAME=PCB\nNX=2\n}\n");
        folder.write("steps/panel/stephdr", "STEP-REPEAT {\nNAME=ARRAY\nNY=3\n}\n");
        ReadingNotes notes;
        const LayerImage image = Job(folder.path()).readLayer("panel", "top", notes);
        QCOMPARE(image.steps.size(), std::size_t(3));
        QCOMPARE(image.steps[0].features.pads.size(), std::size_t(1));
        QVERIFY(image.steps[1].features.isEmpty() && image.top().features.isEmpty());
        QCOMPARE(image.steps[1].repeats[0].nx, 2u);
        QCOMPARE(image.top().repeats[0].ny, 3u);
        QVERIFY(notes.readings.empty());
    }

    void layerThatNoStepHasIsEmpty()
    {
        JobFolder folder;
        folder.write("steps/panel/stephdr", "STEP-REPEAT {\nNAME=PCB\n}\n");
        for (const char *step : {"pcb", "panel"}) {
            ReadingNotes notes;
            QVERIFY(Job(folder.path()).readLayer(step, "top", notes).top().features.isEmpty());
            QCOMPARE(notes.readings.count("no step has a folder for it, it is empty"), std::size_t(1));
        }
    }

    // The file has been lost on the way: an empty export would hide it.
    void layerFolderWithoutFeaturesIsAnErrorThatNamesTheFile_data()
    {
        QTest::addColumn<QString>("step");
        QTest::newRow("exported step") << "pcb";
        QTest::newRow("nested step") << "panel";
    }
    void layerFolderWithoutFeaturesIsAnErrorThatNamesTheFile()
    {
        QFETCH(QString, step);
        JobFolder folder;
        folder.write("steps/panel/stephdr", "STEP-REPEAT {\nNAME=PCB\n}\n");
        folder.features("", "top", "panel");
        folder.write("steps/pcb/layers/top/attrlist", "");
        const QString message =
            QDir::fromNativeSeparators(messageOf([&] { readTop(folder, step.toStdString()); }));
        QVERIFY2(message.endsWith("steps/pcb/layers/top/features: no such file"), qPrintable(message));
    }

    void componentAndDielectricLayersMayHaveNoFeatures_data()
    {
        QTest::addColumn<QByteArray>("type");
        QTest::newRow("component") << QByteArray("COMPONENT");
        QTest::newRow("dielectric") << QByteArray("DIELECTRIC");
    }
    void componentAndDielectricLayersMayHaveNoFeatures()
    {
        QFETCH(QByteArray, type);
        JobFolder folder;
        folder.write("matrix/matrix", "LAYER {\nROW=1\nCONTEXT=BOARD\nTYPE=" + type + "\nNAME=TOP\n}\n");
        folder.write("steps/pcb/layers/top/components", "");
        ReadingNotes notes;
        QVERIFY(Job(folder.path()).readLayer("pcb", "top", notes).top().features.isEmpty());
        QCOMPARE(notes.expected.size(), std::size_t(1)); // one log line, which is no warning
        QCOMPARE(notes.readings.size(), std::size_t(0));
        QVERIFY(std::filesystem::remove_all(folder.path() / "steps/pcb/layers") > 0);
        ReadingNotes withoutFolder;
        QVERIFY(Job(folder.path()).readLayer("pcb", "top", withoutFolder).top().features.isEmpty());
        QCOMPARE(withoutFolder.expected.size(), std::size_t(1));
        QCOMPARE(withoutFolder.readings.size(), std::size_t(0));
    }

    void flippedStepIsRefusedByName()
    {
        JobFolder folder;
        folder.features("");
        folder.write("steps/panel/stephdr", "STEP-REPEAT {\nNAME=PCB\nFLIP=YES\n}\n");
        const QString message = messageOf([&] { readTop(folder, "panel"); });
        QVERIFY2(message.endsWith("stephdr:3: expected NO for FLIP, flipped steps cannot be drawn"),
                 qPrintable(message));
    }

    void stepThatRepeatsItselfIsAnError()
    {
        JobFolder folder;
        folder.features("");
        folder.write("steps/pcb/stephdr", "STEP-REPEAT {\nNAME=PCB\n}\n");
        QVERIFY(messageOf([&] { readTop(folder); }).endsWith("the step pcb repeats itself"));
    }

    // Copies of copies: arrays, and each level twice in the next.
    void moreCopiesThanCanBeDrawnAreAnError()
    {
        JobFolder folder;
        folder.features("");
        folder.write("steps/panel/stephdr", "STEP-REPEAT {\nNAME=PCB\nNX=10000\nNY=10000\n}\n");
        readTop(folder, "panel");
        folder.write("steps/panel/stephdr", "STEP-REPEAT {\nNAME=PCB\nNX=10001\nNY=10000\n}\n");
        QVERIFY(messageOf([&] {
                    readTop(folder, "panel");
                }).endsWith("the step panel draws more than 100 million figures, with its copies of others"));
        const auto name = [](int level) { return "level" + QByteArray::number(level); };
        for (int level = 1; level <= 40; ++level) {
            const QByteArray repeat =
                "STEP-REPEAT {\nNAME=" + (level == 1 ? "pcb" : name(level - 1)) + "\n}\n";
            folder.write("steps/" + name(level) + "/stephdr", repeat + repeat);
        }
        QVERIFY(messageOf([&] { readTop(folder, "level40"); }).contains("the step level27 draws more than"));

        folder.features("$0 level40\nP 1 1 0 P 0 0\n");
        for (int level = 1; level <= 40; ++level) {
            folder.write("symbols/" + name(level) + "/features", "UNITS=MM\n$0 " +
                                                                     (level == 1 ? "r50" : name(level - 1)) +
                                                                     "\nP 0 0 0 P 0 0\nP 1 0 0 P 0 0\n");
        }
        QVERIFY(messageOf([&] { readTop(folder); }).contains("the symbol level27 draws more than"));
    }

    void ownSymbolsMayUseOtherSymbols()
    {
        JobFolder folder;
        folder.features("$0 Star\nP 1 1 0 P 0 0\n");
        folder.write("symbols/star/features", "UNITS=MM\n$0 ray\nP 0 0 0 P 0 0\nP 0 0 0 P 0 1\n");
        folder.write("symbols/ray/features", "UNITS=MM\n$0 r50\nL 0 0 1 0 0 P 0\n");
        const LayerImage image = readTop(folder);
        QCOMPARE(image.symbols.size(), std::size_t(3));
        const Symbol &star = image.symbols[image.top().features.pads[0].symbol];
        QVERIFY(star.features && !star.standard);
        const Symbol &ray = image.symbols[star.features->pads[1].symbol];
        QCOMPARE(ray.name, std::string("ray"));
        QCOMPARE(ray.features->lines.size(), std::size_t(1));
    }

    void symbolDrawnWithItselfIsAnError()
    {
        JobFolder folder;
        folder.features("$0 a\nP 1 1 0 P 0 0\n");
        folder.write("symbols/a/features", "$0 b\nP 0 0 0 P 0 0\n");
        folder.write("symbols/b/features", "$0 a\nP 0 0 0 P 0 0\n");
        QVERIFY(messageOf([&] { readTop(folder); }).endsWith("the symbol a is drawn with itself"));
    }

    void unknownSymbolIsNoted()
    {
        JobFolder folder;
        folder.features("$0 nosuchsymbol\nP 1 1 0 P 0 0\nP 2 1 0 P 0 0\n");
        ReadingNotes notes;
        Job(folder.path()).readLayer("pcb", "top", notes);
        QCOMPARE(notes.unsupported.at("symbol nosuchsymbol"), std::size_t(2));
    }

    // Some tools name the symbols that they make by a counter.
    void ownSymbolGoesBeforeAStandardOneWithoutASize()
    {
        JobFolder folder;
        folder.features("$0 s-1\n$1 s-2\nP 1 1 0 P 0 0\nP 2 1 1 P 0 0\n");
        folder.write("symbols/s-1/features", "UNITS=MM\n$0 r5\nP 0 0 0 P 0 0\n");
        ReadingNotes notes;
        const LayerImage image = Job(folder.path()).readLayer("pcb", "top", notes);
        const FeatureSet &top = image.top().features;
        QVERIFY(image.symbols[top.pads[0].symbol].features);
        QVERIFY(!image.symbols[top.pads[1].symbol].features);
        QVERIFY(notes.unsupported.empty());
        QCOMPARE(notes.readings.size(), std::size_t(1));
        QCOMPARE(notes.readings.begin()->first,
                 std::string("symbol s-2: a size is not positive, it draws nothing"));
    }

    void ownSymbolGoesBeforeAStandardOneWithASuffix()
    {
        JobFolder folder;
        folder.features("$0 s10_2\n$1 s10_30\n$2 s10\nP 1 1 0 P 0 0\nP 2 1 1 P 0 0\nP 3 1 2 P 0 0\n");
        for (const char *own : {"symbols/s10_2/features", "symbols/s10/features"})
            folder.write(own, "$0 r5\nP 0 0 0 P 0 0\n");
        const LayerImage image = readTop(folder);
        const FeatureSet &top = image.top().features;
        QVERIFY(image.symbols[top.pads[0].symbol].features);
        QCOMPARE(image.symbols[top.pads[1].symbol].standard->angle, 30.0);
        QVERIFY(image.symbols[top.pads[2].symbol].standard);
    }

    void sameNameInTwoUnitsMakesTwoSymbols()
    {
        JobFolder folder;
        folder.features("$0 r10\n$1 r10 I\n$2 r10\nP 0 0 0 P 0 0\nP 0 0 1 P 0 0\nP 0 0 2 P 0 0\n");
        const LayerImage image = readTop(folder);
        QCOMPARE(image.symbols.size(), std::size_t(2));
        QVERIFY(image.top().features.pads[0].symbol == image.top().features.pads[2].symbol);
    }

    void textsNeedTheJobsFont()
    {
        JobFolder folder;
        folder.features("T 0 0 standard P 0 1 1 1 'A' 1\n");
        QVERIFY(messageOf([&] { readTop(folder); }).contains("expected a folder fonts"));
        folder.write("fonts/standard", "XSIZE 1\nYSIZE 1\nOFFSET 0\nCHAR A\nLINE 0 0 1 1 P R 0.1\nECHAR\n");
        QCOMPARE(readTop(folder).top().features.lines.size(), std::size_t(1));
    }

    void missingThingsAreNamed()
    {
        JobFolder folder;
        ReadingNotes notes;
        const Job job(folder.path());
        QVERIFY(
            messageOf([&] { job.readLayer("pcb", "bottom", notes); }).contains("expected a layer bottom"));
        QVERIFY(messageOf([&] { job.readLayer("panel", "top", notes); }).contains("expected a step panel"));
        QVERIFY(messageOf([&] { Job(folder.path() / "nowhere"); }).contains("expected a folder matrix"));
    }

    void progressRisesToOne()
    {
        JobFolder folder;
        folder.features("$0 r100\n" + QByteArray("L 0 0 1 0 0 P 0\n").repeated(20'000));
        ReadingNotes notes;
        std::vector<double> shares;
        Job(folder.path()).readLayer("pcb", "top", notes, [&](double share) { shares.push_back(share); });
        QVERIFY(std::is_sorted(shares.begin(), shares.end()));
        QCOMPARE(shares.back(), 1.0);
    }

    void readingNestedStepsNeverReportsLessThanBefore()
    {
        JobFolder folder;
        const QByteArray features = "$0 r100\n" + QByteArray("L 0 0 1 0 0 P 0\n").repeated(5'000);
        folder.features(features);
        folder.write("steps/panel/stephdr", "STEP-REPEAT {\nNAME=PCB\n}\n");
        folder.features(features, "top", "panel");
        ReadingNotes notes;
        std::vector<double> shares;
        Job(folder.path()).readLayer("panel", "top", notes, [&](double share) { shares.push_back(share); });
        QVERIFY(shares.size() > 100); // both steps report
        QVERIFY(std::is_sorted(shares.begin(), shares.end()));
    }

    // Small files are read in no time, and still a host sees them move.
    void readingReportsInSmallSteps_data()
    {
        QTest::addColumn<int>("lineCount");
        QTest::newRow("4,000 lines") << 4'000;
        QTest::newRow("100,000 lines") << 100'000;
    }
    void readingReportsInSmallSteps()
    {
        QFETCH(int, lineCount);
        JobFolder folder;
        folder.features("$0 r100\n" + QByteArray("L 0 0 1 0 0 P 0\n").repeated(lineCount));
        ReadingNotes notes;
        double last = 0.0, largest = 0.0;
        Job(folder.path()).readLayer("pcb", "top", notes, [&](double share) {
            largest = std::max(largest, share - last);
            last = share;
        });
        QVERIFY2(largest <= 0.02, qPrintable(QString::number(largest)));
    }
};

QTEST_APPLESS_MAIN(tst_Job)
#include "tst_job.moc"
