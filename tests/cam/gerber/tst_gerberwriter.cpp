// Files as they are written, record by record.
#include "cam/gerber/gerberwriter.h"
#include "tests/cam/support/layerbuilding.h"
#include "version.h"

#include <QtTest>

#include <QRegularExpression>
#include <QTemporaryDir>

#include <cmath>

using cam::FeatureSet;
using cam::LayerImage;
using testing::addLine;
using testing::addPad;
using testing::addRectangle;
using testing::addSurface;
using testing::at;
using testing::emptyLayer;
using testing::symbol;

namespace {

class WrittenFile
{
public:
    explicit WrittenFile(const LayerImage &image, cam::ExportOptions options = {})
    {
        const QString path = m_folder.path() + "/layer.gerber";
        options.file = path.toStdString();
        cam::writeGerber(image, options);
        QFile file(path);
        if (file.open(QIODevice::ReadOnly))
            m_text = QString::fromLatin1(file.readAll());
    }

    QString text() const { return m_text; }
    QStringList lines() const { return m_text.split('\n'); }
    // What follows the definitions, without the end record, in one line.
    QString body() const
    {
        QStringList records = lines();
        while (!records.isEmpty() && !isImage(records.first()))
            records.removeFirst();
        records.removeAll(QString());
        if (!records.isEmpty() && records.last() == "M02*")
            records.removeLast();
        return records.join(' ');
    }
    QStringList apertures() const
    {
        QStringList found;
        for (const QString &line : lines()) {
            if (line.startsWith("%AD"))
                found << line.mid(4, line.size() - 6);
        }
        return found;
    }

private:
    static bool isImage(const QString &line)
    {
        return line.startsWith("%LP") || line.startsWith("%SR") || line.startsWith('X') ||
               line.startsWith("G36");
    }
    QTemporaryDir m_folder;
    QString m_text;
};

cam::ExportOptions options()
{
    return {};
}

// A layer with a 4000 x 2000 profile at the origin.
LayerImage profiledLayer()
{
    LayerImage image = emptyLayer();
    addRectangle(image.profile, 0, 0, 4000, 2000);
    return image;
}

// A panel that places a step with one pad nx by ny times.
LayerImage panel(cam::StepRepeat repeat)
{
    LayerImage image = emptyLayer();
    addPad(image.steps[0].features, symbol(image, "r100"), at(1000, 500));
    cam::StepImage parent;
    parent.name = "panel";
    parent.repeats.push_back(repeat);
    image.steps.push_back(std::move(parent));
    return image;
}

cam::StepRepeat repeat(std::uint32_t nx, std::uint32_t ny, double dx, double dy)
{
    cam::StepRepeat result;
    result.nx = nx;
    result.ny = ny;
    result.dx = dx * testing::micrometre;
    result.dy = dy * testing::micrometre;
    return result;
}

} // namespace

class tst_GerberWriter : public QObject
{
    Q_OBJECT
private slots:
    void headNamesFormatUnitAndAttributes();
    void fileFunctionFollowsTheMatrix_data();
    void fileFunctionFollowsTheMatrix();
    void polarityAttributeTurnsWithTheMatrixAndTheExport_data();
    void polarityAttributeTurnsWithTheMatrixAndTheExport();
    void lineIsAStrokeOfARoundAperture();
    void lineWithoutLengthIsAFlash();
    void roundPenOfNoDiameterDrawsNothing();
    void squarePenIsDrawnAsARegion();
    void arcKeepsItsCentre();
    void arcThatEndsWhereItStartsIsAFullCircle();
    void equalPadsShareAnAperture();
    void turnedPadHasAnApertureOfItsOwn();
    void resizedPadGrowsByItsOwnAndTheLayersGrowth();
    void negativeFeatureIsPaintedClear();
    void theFirstPolarityIsDark();
    void clearPadWithCutOutsIsARegion();
    void surfaceIsARegionWithItsArcs();
    void everyRegionSaysHowItStarts();
    void everythingIsStatedAnewBehindARegion();
    void holeOfASurfaceIsReachedByASlit();
    void islandInAHoleIsARegionOfItsOwn();
    void holesThatOverlapAreUnited();
    void ownSymbolIsPaintedFeatureByFeature();
    void ownSymbolOfANegativePadIsPaintedClear();
    void ownSymbolWithCutOutsLeavesWhatLiesBelow();
    void transformIsScaleThenMirrorThenRotationAboutTheDatum();
    void unevenScaleTurnsStrokesIntoRegions();
    void unevenScaleKeepsRectangles();
    void resizeGrowsPositiveAndShrinksNegativeFeatures();
    void resizeMovesTheEdgesOfSurfaces();
    void negativeIsTheProfileWithoutTheLayer();
    void negativeWithoutAProfileStartsFromTheExtent();
    void negativeClearsOutsideOfTheProfile();
    void profileOnTopMakesNoImage();
    void copiesAreStepAndRepeat();
    void pitchOfFractionsOfANanometreIsRounded();
    void turnedCopiesSwapColumnsAndRows();
    void copiesToTheLeftStartAtTheLast();
    void copiesAtOddAnglesAreWrittenOut();
    void nestedStepsAreWrittenOut();
    void clearFeaturesOfCopiesStayWhereTheyReachNothingElse();
    void clearFeaturesOfCopiesEraseNothingOfThePanel_data();
    void clearFeaturesOfCopiesEraseNothingOfThePanel();
    void clearFeaturesOfCopiesEraseNothingOfEachOther();
    void negativeWithoutAProfileIsNotDarkOutsideOfTheExtent();
    void panelIsAnArray();
    void emptyLayerIsAFileWithoutImage();
    void equalLayersMakeEqualFiles();
    void progressRisesToOne();
    void progressMovesInSmallSteps_data();
    void progressMovesInSmallSteps();
    void cancelledExportLeavesNoFile();
    void folderThatIsMissingIsAnError();
};

void tst_GerberWriter::headNamesFormatUnitAndAttributes()
{
    const QStringList lines = WrittenFile(emptyLayer()).lines();
    QCOMPARE(lines.mid(0, 8),
             (QStringList{"G04 #@! TF.GenerationSoftware,File_Process,ORVEX_API," FILE_PROCESS_VERSION "*",
                          "G04 #@! TF.FileFunction,Copper,L1,Top*", "G04 #@! TF.FilePolarity,Positive*",
                          "G04 #@! TF.Part,Single*", "G04 job job, step pcb, layer top*", "%FSLAX46Y46*%",
                          "%MOMM*%", "G75*"}));
    QCOMPARE(lines.mid(lines.size() - 2), (QStringList{"M02*", ""}));
}

void tst_GerberWriter::fileFunctionFollowsTheMatrix_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("context");
    QTest::addColumn<int>("copperRank"); // of 4
    QTest::addColumn<bool>("aboveCopper");
    QTest::addColumn<QString>("layer");
    QTest::addColumn<QString>("function");
    const auto row = [](const char *type, const char *context, int rank, bool above, const char *layer,
                        const char *function) {
        QTest::newRow(function) << QString(type) << QString(context) << rank << above << QString(layer)
                                << QString(function);
    };
    row("SIGNAL", "BOARD", 1, true, "top", "Copper,L1,Top");
    row("POWER_GROUND", "BOARD", 2, false, "gnd", "Copper,L2,Inr");
    row("SIGNAL", "BOARD", 4, false, "bot", "Copper,L4,Bot");
    row("SOLDER_MASK", "BOARD", 0, true, "mask", "Soldermask,Top");
    row("SILK_SCREEN", "BOARD", 0, false, "silk", "Legend,Bot");
    row("SOLDER_PASTE", "BOARD", 0, true, "paste", "Paste,Top");
    row("DOCUMENT", "MISC", 0, false, "fab,notes", "Other,fab_notes");
    row("SIGNAL", "MISC", 0, false, "spare", "Other,spare");
}

void tst_GerberWriter::fileFunctionFollowsTheMatrix()
{
    QFETCH(QString, type);
    QFETCH(QString, context);
    QFETCH(int, copperRank);
    QFETCH(bool, aboveCopper);
    QFETCH(QString, layer);
    QFETCH(QString, function);
    LayerImage image = emptyLayer();
    image.type = type.toStdString();
    image.context = context.toStdString();
    image.layer = layer.toStdString();
    image.copperRank = copperRank;
    image.copperCount = 4;
    image.aboveCopper = aboveCopper;
    QCOMPARE(WrittenFile(image).lines().at(1), "G04 #@! TF.FileFunction," + function + "*");
}

void tst_GerberWriter::polarityAttributeTurnsWithTheMatrixAndTheExport_data()
{
    QTest::addColumn<bool>("positiveLayer");
    QTest::addColumn<bool>("negate");
    QTest::addColumn<QString>("polarity");
    QTest::newRow("positive") << true << false << "Positive";
    QTest::newRow("positive negated") << true << true << "Negative";
    QTest::newRow("negative") << false << false << "Negative";
    QTest::newRow("negative negated") << false << true << "Positive";
}

void tst_GerberWriter::polarityAttributeTurnsWithTheMatrixAndTheExport()
{
    QFETCH(bool, positiveLayer);
    QFETCH(bool, negate);
    QFETCH(QString, polarity);
    LayerImage image = emptyLayer();
    image.polarity = testing::polarity(positiveLayer);
    cam::ExportOptions how = options();
    how.negative = negate;
    QCOMPARE(WrittenFile(image, how).lines().at(2), "G04 #@! TF.FilePolarity," + polarity + "*");
}

void tst_GerberWriter::lineIsAStrokeOfARoundAperture()
{
    LayerImage image = emptyLayer();
    FeatureSet &set = image.steps[0].features;
    addLine(set, symbol(image, "r250"), at(0, 0), at(1000, 500));
    addLine(set, symbol(image, "r250"), at(1000, 500), at(1000, -3));
    addLine(set, symbol(image, "r100"), at(0, 0), at(1000, 0));
    const WrittenFile file(image);
    QCOMPARE(file.apertures(), (QStringList{"10C,0.25", "11C,0.1"}));
    // Coordinates that stay are left out, and so is a move to where the last stroke ended.
    QCOMPARE(file.body(),
             QString("%LPD*% D10* X0Y0D02* G01* X1000000Y500000D01* Y-3000D01* D11* X0Y0D02* X1000000D01*"));
}

void tst_GerberWriter::lineWithoutLengthIsAFlash()
{
    LayerImage image = emptyLayer();
    addLine(image.steps[0].features, symbol(image, "r250"), at(7, 8), at(7, 8));
    QCOMPARE(WrittenFile(image).body(), QString("%LPD*% D10* X7000Y8000D03*"));
}

void tst_GerberWriter::roundPenOfNoDiameterDrawsNothing()
{
    LayerImage image = emptyLayer();
    addLine(image.steps[0].features, symbol(image, "r0"), at(0, 0), at(1000, 0));
    addLine(image.steps[0].features, symbol(image, "r100"), at(0, 0), at(1000, 0), false);
    cam::ExportOptions how = options();
    how.resize = 200 * testing::micrometre; // more than the clear line has
    QCOMPARE(WrittenFile(image, how).body(), QString());
}

void tst_GerberWriter::squarePenIsDrawnAsARegion()
{
    LayerImage image = emptyLayer();
    addLine(image.steps[0].features, symbol(image, "s100"), at(0, 0), at(1000, 0));
    const QString body = WrittenFile(image).body();
    QCOMPARE(body.count("G36"), 1);
    QVERIFY(body.contains("X-50000"));
    QVERIFY(body.contains("X1050000"));
}

void tst_GerberWriter::arcKeepsItsCentre()
{
    LayerImage image = emptyLayer();
    FeatureSet &set = image.steps[0].features;
    cam::Arc arc{at(1000, 0), at(0, 1000), at(0, 0), symbol(image, "r100"), false};
    set.add(arc, cam::Polarity::Positive);
    arc.clockwise = true;
    set.add(arc, cam::Polarity::Positive);
    QCOMPARE(WrittenFile(image).body(), QString("%LPD*% D10* X1000000Y0D02* G03* X0Y1000000I-1000000J0D01* "
                                                "X1000000Y0D02* G02* X0Y1000000I-1000000J0D01*"));
}

void tst_GerberWriter::arcThatEndsWhereItStartsIsAFullCircle()
{
    LayerImage image = emptyLayer();
    const cam::Arc arc{at(1000, 0), at(1000, 0), at(0, 0), symbol(image, "r100"), false};
    image.steps[0].features.add(arc, cam::Polarity::Positive);
    QCOMPARE(WrittenFile(image).body(),
             QString("%LPD*% D10* X1000000Y0D02* G03* X-1000000I-1000000J0D01* X1000000I1000000J0D01*"));
}

void tst_GerberWriter::equalPadsShareAnAperture()
{
    LayerImage image = emptyLayer();
    FeatureSet &set = image.steps[0].features;
    addPad(set, symbol(image, "rect300x200"), at(0, 0));
    addPad(set, symbol(image, "rect300x200"), at(500, 0), true, 180.0);
    addPad(set, symbol(image, "rect300x200"), at(1000, 0), true, 0.0, true);
    const WrittenFile file(image);
    QCOMPARE(file.apertures(), QStringList{"10R,0.3X0.2"});
    QCOMPARE(file.body(), QString("%LPD*% D10* X0Y0D03* X500000D03* X1000000D03*"));
}

void tst_GerberWriter::turnedPadHasAnApertureOfItsOwn()
{
    LayerImage image = emptyLayer();
    FeatureSet &set = image.steps[0].features;
    addPad(set, symbol(image, "rect300x200"), at(0, 0), true, 90.0);
    addPad(set, symbol(image, "tri300x200"), at(0, 0), true, 90.0);
    addPad(set, symbol(image, "tri300x200"), at(0, 0), true, 270.0);
    const WrittenFile file(image);
    QCOMPARE(file.apertures(), (QStringList{"10R,0.2X0.3", "11MACRO11", "12MACRO12"}));
    // Pads turn clockwise: the triangle's tip points right first, then left.
    QVERIFY(file.text().contains("%AMMACRO11*\n4,1,3,0.1,0,-0.1,0.15,-0.1,-0.15,0.1,0,0*\n%"));
    QVERIFY(file.text().contains("%AMMACRO12*\n4,1,3,-0.1,0,0.1,-0.15,0.1,0.15,-0.1,0,0*\n%"));
}

void tst_GerberWriter::resizedPadGrowsByItsOwnAndTheLayersGrowth()
{
    LayerImage image = emptyLayer();
    addPad(image.steps[0].features, symbol(image, "r200"), at(0, 0), true, 0.0, false,
           100 * testing::micrometre);
    QCOMPARE(WrittenFile(image).apertures(), QStringList{"10C,0.3"});
    cam::ExportOptions how = options();
    how.resize = 60 * testing::micrometre;
    QCOMPARE(WrittenFile(image, how).apertures(), QStringList{"10C,0.36"});
}

void tst_GerberWriter::negativeFeatureIsPaintedClear()
{
    LayerImage image = emptyLayer();
    FeatureSet &set = image.steps[0].features;
    addPad(set, symbol(image, "r200"), at(0, 0));
    addPad(set, symbol(image, "r200"), at(1, 0), false);
    addPad(set, symbol(image, "r200"), at(2, 0));
    QCOMPARE(WrittenFile(image).body(), QString("%LPD*% D10* X0Y0D03* %LPC*% X1000D03* %LPD*% X2000D03*"));
}

void tst_GerberWriter::theFirstPolarityIsDark()
{
    LayerImage image = emptyLayer();
    FeatureSet &set = image.steps[0].features;
    addPad(set, symbol(image, "r200"), at(0, 0), false);
    addPad(set, symbol(image, "r200"), at(1, 0));
    QCOMPARE(WrittenFile(image).body(), QString("%LPD*% %LPC*% D10* X0Y0D03* %LPD*% X1000D03*"));
}

void tst_GerberWriter::clearPadWithCutOutsIsARegion()
{
    LayerImage image = emptyLayer();
    FeatureSet &set = image.steps[0].features;
    addPad(set, symbol(image, "donut_s300x200"), at(0, 0));
    addPad(set, symbol(image, "donut_s300x200"), at(1000, 0), false);
    const QString body = WrittenFile(image).body();
    QVERIFY(body.startsWith("%LPD*% D10* X0Y0D03* %LPC*% G36* "));
    QCOMPARE(body.count("G36"), 1);
}

void tst_GerberWriter::surfaceIsARegionWithItsArcs()
{
    LayerImage image = emptyLayer();
    FeatureSet &set = image.steps[0].features;
    set.contours.begin(at(0, 0), false);
    set.contours.lineTo(at(1000, 0));
    set.contours.arcTo(at(0, 1000), at(0, 0), false);
    set.contours.end();
    addSurface(set, 0);
    QCOMPARE(
        WrittenFile(image).body(),
        QString("%LPD*% G36* X0Y0D02* G01* X1000000D01* G03* X0Y1000000I-1000000J0D01* G01* Y0D01* G37*"));
}

void tst_GerberWriter::everyRegionSaysHowItStarts()
{
    LayerImage image = emptyLayer();
    FeatureSet &set = image.steps[0].features;
    for (const double x : {0.0, 1000.0}) {
        const std::size_t first = set.contours.size();
        set.contours.addCircle(at(x, 0), 100 * testing::micrometre, false);
        addSurface(set, first);
    }
    // The mode would still hold; gerbv forgets it at the region's start.
    QCOMPARE(WrittenFile(image).body(),
             QString("%LPD*% G36* X100000Y0D02* G03* X-100000I-100000J0D01* X100000I100000J0D01* G37* "
                     "G36* X1100000Y0D02* G03* X900000I-100000J0D01* X1100000I100000J0D01* G37*"));
}

void tst_GerberWriter::everythingIsStatedAnewBehindARegion()
{
    LayerImage image = emptyLayer();
    FeatureSet &set = image.steps[0].features;
    const std::uint32_t pen = symbol(image, "r100");
    set.add(cam::Arc{at(1000, 0), at(0, 1000), at(0, 0), pen, true}, cam::Polarity::Positive);
    const std::size_t first = set.contours.size();
    set.contours.begin(at(0, 0), false);
    set.contours.arcTo(at(2000, 0), at(1000, 0), true);
    set.contours.lineTo(at(0, 0));
    set.contours.end();
    addSurface(set, first);
    set.add(cam::Arc{at(0, 0), at(1000, 1000), at(0, 1000), pen, true}, cam::Polarity::Positive);
    addPad(set, pen, at(1000, 1000));
    QCOMPARE(
        WrittenFile(image).body(),
        QString("%LPD*% D10* X1000000Y0D02* G02* X0Y1000000I-1000000J0D01* G36* X0Y0D02* G02* "
                "X2000000I1000000J0D01* G01* X0D01* G37* D10* X0Y0D02* G02* X1000000Y1000000I0J1000000D01* "
                "Y1000000D03*"));
}

void tst_GerberWriter::holeOfASurfaceIsReachedByASlit()
{
    LayerImage image = emptyLayer();
    FeatureSet &set = image.steps[0].features;
    addRectangle(set.contours, 0, 0, 100, 100);
    addRectangle(set.contours, 40, 40, 20, 20, true);
    addSurface(set, 0);
    QCOMPARE(WrittenFile(image).body(),
             QString("%LPD*% G36* X0Y0D02* G01* X100000D01* Y100000D01* X0D01* Y40000D01* X40000D01* "
                     "Y60000D01* X60000D01* Y40000D01* X40000D01* X0D01* Y0D01* G37*"));
}

void tst_GerberWriter::islandInAHoleIsARegionOfItsOwn()
{
    LayerImage image = emptyLayer();
    FeatureSet &set = image.steps[0].features;
    addRectangle(set.contours, 0, 0, 100, 100);
    addRectangle(set.contours, 20, 20, 60, 60, true);
    addRectangle(set.contours, 40, 40, 20, 20);
    addSurface(set, 0);
    QCOMPARE(WrittenFile(image).body().count("G36"), 2);
}

void tst_GerberWriter::holesThatOverlapAreUnited()
{
    LayerImage image = emptyLayer();
    FeatureSet &set = image.steps[0].features;
    addRectangle(set.contours, 0, 0, 100, 100);
    addRectangle(set.contours, 20, 40, 40, 20, true);
    addRectangle(set.contours, 40, 40, 40, 20, true);
    addSurface(set, 0);
    const QString body = WrittenFile(image).body();
    QCOMPARE(body.count("G36"), 1);
    QVERIFY(body.contains("X20000") && body.contains("X80000"));
    QVERIFY(!body.contains("X40000") &&
            !body.contains("X60000")); // the edges inside of the other hole are gone
}

void tst_GerberWriter::ownSymbolIsPaintedFeatureByFeature()
{
    LayerImage image = emptyLayer();
    FeatureSet drawing;
    addLine(drawing, symbol(image, "r50"), at(0, 0), at(100, 0));
    addPad(drawing, symbol(image, "r200"), at(100, 0));
    const std::uint32_t mark = testing::ownSymbol(image, "mark", std::move(drawing));
    addPad(image.steps[0].features, mark, at(1000, 1000), true, 90.0); // clockwise: to the right becomes down
    const WrittenFile file(image);
    QCOMPARE(file.apertures(), (QStringList{"10C,0.05", "11C,0.2"}));
    QCOMPARE(file.body(), QString("%LPD*% D10* X1000000Y1000000D02* G01* Y900000D01* D11* Y900000D03*"));
}

void tst_GerberWriter::ownSymbolOfANegativePadIsPaintedClear()
{
    LayerImage image = emptyLayer();
    FeatureSet drawing;
    addPad(drawing, symbol(image, "r200"), at(0, 0));
    const std::uint32_t mark = testing::ownSymbol(image, "mark", std::move(drawing));
    addPad(image.steps[0].features, mark, at(0, 0), false);
    QCOMPARE(WrittenFile(image).body(), QString("%LPD*% %LPC*% D10* X0Y0D03*"));
}

void tst_GerberWriter::ownSymbolWithCutOutsLeavesWhatLiesBelow()
{
    LayerImage image = emptyLayer();
    FeatureSet drawing;
    addPad(drawing, symbol(image, "s300"), at(0, 0));
    addPad(drawing, symbol(image, "s100"), at(0, 0), false);
    const std::uint32_t mark = testing::ownSymbol(image, "mark", std::move(drawing));
    addPad(image.steps[0].features, mark, at(0, 0));
    const QString body = WrittenFile(image).body();
    QVERIFY(!body.contains("LPC"));
    QVERIFY(body.startsWith("%LPD*% G36*"));
}

void tst_GerberWriter::transformIsScaleThenMirrorThenRotationAboutTheDatum()
{
    LayerImage image = emptyLayer();
    image.datum = at(1000, 1000);
    addPad(image.steps[0].features, symbol(image, "r100"), at(1200, 1100));
    cam::ExportOptions how = options();
    how.xScale = how.yScale = 2.0;
    how.mirror = true;
    how.angle = 90.0;
    const WrittenFile file(image, how);
    // (200, 100) -> (400, 200) -> (-400, 200) -> (-200, -400)
    QCOMPARE(file.body(), QString("%LPD*% D10* X800000Y600000D03*"));
    QCOMPARE(file.apertures(), QStringList{"10C,0.2"});
}

void tst_GerberWriter::unevenScaleTurnsStrokesIntoRegions()
{
    LayerImage image = emptyLayer();
    FeatureSet &set = image.steps[0].features;
    addLine(set, symbol(image, "r100"), at(0, 0), at(1000, 0));
    addPad(set, symbol(image, "r100"), at(0, 0));
    cam::ExportOptions how = options();
    how.xScale = 1.25;
    how.yScale = 2.0;
    const QString body = WrittenFile(image, how).body();
    QCOMPARE(body.count("G36"), 2);
    QVERIFY(!body.contains("D03"));
    QVERIFY(body.contains("Y100000D01") || body.contains("Y100000D02")); // twice the pen's 50 um radius
}

void tst_GerberWriter::unevenScaleKeepsRectangles()
{
    LayerImage image = emptyLayer();
    addPad(image.steps[0].features, symbol(image, "rect300x200"), at(0, 0), true, 90.0);
    cam::ExportOptions how = options();
    how.xScale = 1.25;
    how.yScale = 2.0;
    QCOMPARE(WrittenFile(image, how).apertures(), QStringList{"10R,0.25X0.6"});
}

void tst_GerberWriter::resizeGrowsPositiveAndShrinksNegativeFeatures()
{
    LayerImage image = emptyLayer();
    FeatureSet &set = image.steps[0].features;
    addPad(set, symbol(image, "r200"), at(0, 0));
    addLine(set, symbol(image, "r200"), at(0, 0), at(1000, 0), false);
    cam::ExportOptions how = options();
    how.resize = 50 * testing::micrometre;
    QCOMPARE(WrittenFile(image, how).apertures(), (QStringList{"10C,0.25", "11C,0.15"}));
}

void tst_GerberWriter::resizeMovesTheEdgesOfSurfaces()
{
    LayerImage image = emptyLayer();
    FeatureSet &set = image.steps[0].features;
    addRectangle(set.contours, 0, 0, 1000, 1000);
    addRectangle(set.contours, 400, 400, 200, 200, true);
    addSurface(set, 0);
    cam::ExportOptions how = options();
    how.resize = 100 * testing::micrometre;
    const QString body = WrittenFile(image, how).body();
    QVERIFY(body.contains("X-50000"));
    QVERIFY(body.contains("X1050000"));
    QVERIFY(body.contains("X450000"));
    QVERIFY(body.contains("X550000"));
}

void tst_GerberWriter::negativeIsTheProfileWithoutTheLayer()
{
    LayerImage image = profiledLayer();
    addPad(image.steps[0].features, symbol(image, "r200"), at(1000, 1000));
    cam::ExportOptions how = options();
    how.negative = true;
    QCOMPARE(WrittenFile(image, how).body(),
             QString("%LPD*% G36* X0Y0D02* G01* X4000000D01* Y2000000D01* X0D01* "
                     "Y0D01* G37* %LPC*% D10* X1000000Y1000000D03*"));
}

void tst_GerberWriter::negativeWithoutAProfileStartsFromTheExtent()
{
    LayerImage image = emptyLayer();
    FeatureSet &set = image.steps[0].features;
    addPad(set, symbol(image, "s200"), at(0, 0));
    addPad(set, symbol(image, "s200"), at(1000, 500));
    cam::ExportOptions how = options();
    how.negative = true;
    QVERIFY(WrittenFile(image, how)
                .body()
                .startsWith("%LPD*% G36* X-100000Y-100000D02* G01* X1100000D01* Y600000D01* X-100000D01* "
                            "Y-100000D01* G37* %LPC*%"));
}

void tst_GerberWriter::negativeClearsOutsideOfTheProfile()
{
    LayerImage image = profiledLayer();
    FeatureSet &set = image.steps[0].features;
    addPad(set, symbol(image, "s2000"), at(4000, 1000));
    addPad(set, symbol(image, "s1000"), at(4000, 1000), false); // dark now, and half of it outside
    cam::ExportOptions how = options();
    how.negative = true;
    const QString body = WrittenFile(image, how).body();
    QCOMPARE(body.count("%LPD*%"), 2);
    QCOMPARE(body.count("%LPC*%"), 2);
    const QString last = body.mid(body.lastIndexOf("%LPC*%"));
    QVERIFY(last.contains("G36") && last.contains("X4000000") && last.contains("X6000000"));
}

void tst_GerberWriter::profileOnTopMakesNoImage()
{
    LayerImage image = profiledLayer();
    addPad(image.steps[0].features, symbol(image, "r200"), at(1000, 1000));
    cam::ExportOptions how = options();
    how.profileOnTop = true;
    const WrittenFile file(image, how);
    QCOMPARE(file.apertures(), (QStringList{"10C,0.2", "11C,0"}));
    QVERIFY(
        file.text().contains("G04 #@! TA.AperFunction,Profile*\n%ADD11C,0*%\nG04 #@! TD.AperFunction*\n"));
    QVERIFY(file.body().endsWith("D11* X0Y0D02* G01* X4000000D01* Y2000000D01* X0D01* Y0D01*"));
}

void tst_GerberWriter::copiesAreStepAndRepeat()
{
    const WrittenFile file(panel(repeat(3, 2, 5000, 2500)));
    QCOMPARE(file.body(), QString("%SRX3Y2I5J2.5*% %LPD*% D10* X1000000Y500000D03* %SR*%"));
}

void tst_GerberWriter::pitchOfFractionsOfANanometreIsRounded()
{
    // 0.4 nm a copy: a few of them may be off by that, hundreds may not.
    QVERIFY(WrittenFile(panel(repeat(100, 1, 5000.0004, 0))).body().startsWith("%SRX100Y1I5J0*%"));
    QCOMPARE(WrittenFile(panel(repeat(200, 1, 5000.0004, 0))).body().count("D03"), 200);
}

void tst_GerberWriter::turnedCopiesSwapColumnsAndRows()
{
    cam::ExportOptions how = options();
    how.angle = 90.0;
    // Columns go up now; rows go to the left, so that the last one is the leftmost.
    QCOMPARE(WrittenFile(panel(repeat(3, 2, 5000, 2500)), how).body(),
             QString("%SRX2Y3I2.5J5*% %LPD*% D10* X-3000000Y1000000D03* %SR*%"));
}

void tst_GerberWriter::copiesToTheLeftStartAtTheLast()
{
    QCOMPARE(WrittenFile(panel(repeat(3, 1, -5000, 0))).body(),
             QString("%SRX3Y1I5J0*% %LPD*% D10* X-9000000Y500000D03* %SR*%"));
}

void tst_GerberWriter::copiesAtOddAnglesAreWrittenOut()
{
    cam::ExportOptions how = options();
    how.angle = 30.0;
    const QString body = WrittenFile(panel(repeat(3, 2, 5000, 2500)), how).body();
    QVERIFY(!body.contains("SR"));
    QCOMPARE(body.count("D03"), 6);
}

void tst_GerberWriter::nestedStepsAreWrittenOut()
{
    LayerImage image = panel(repeat(2, 1, 5000, 0));
    cam::StepImage outer;
    outer.name = "outer";
    outer.repeats.push_back(repeat(1, 2, 0, 9000));
    outer.repeats.back().step = 1;
    image.steps.push_back(std::move(outer));
    QCOMPARE(WrittenFile(image).body(), QString("%SRX2Y1I5J0*% %LPD*% D10* X1000000Y500000D03* %SR*% "
                                                "%SRX2Y1I5J0*% %LPD*% D10* X1000000Y9500000D03* %SR*%"));
}

void tst_GerberWriter::clearFeaturesOfCopiesStayWhereTheyReachNothingElse()
{
    LayerImage image = panel(repeat(2, 1, 5000, 0));
    addPad(image.steps[0].features, symbol(image, "s50"), at(1000, 500), false);
    addPad(image.steps[1].features, symbol(image, "r100"), at(-1000, 500)); // beside the copies
    QCOMPARE(WrittenFile(image).body(),
             QString("%LPD*% D10* X-1000000Y500000D03* %SRX2Y1I5J0*% %LPD*% D10* X1000000Y500000D03* "
                     "%LPC*% D11* Y500000D03* %SR*%"));
}

void tst_GerberWriter::clearFeaturesOfCopiesEraseNothingOfThePanel_data()
{
    QTest::addColumn<bool>("repeated");
    QTest::addColumn<bool>("negative");
    for (const bool repeated : {false, true}) {
        for (const bool negative : {false, true})
            QTest::newRow(qPrintable(
                QString("%1%2").arg(repeated ? "copies" : "one copy", negative ? ", negated" : "")))
                << repeated << negative;
    }
}

// A ring in the nested step, and below its clear middle a pad of the panel: the pad stays.
void tst_GerberWriter::clearFeaturesOfCopiesEraseNothingOfThePanel()
{
    QFETCH(bool, repeated);
    QFETCH(bool, negative);
    LayerImage image = panel(repeat(repeated ? 2 : 1, 1, 5000, 0));
    FeatureSet &board = image.steps[0].features;
    addPad(board, symbol(image, "s50"), at(1000, 500), false);
    addPad(board, symbol(image, "r100"), at(3000, 500)); // far from the clear one
    addPad(image.steps[1].features, symbol(image, "s20"), at(1000, 500));
    addRectangle(image.profile, -1000, -1000, 10000, 10000);
    cam::ExportOptions how = options();
    how.negative = negative;
    const QString body = WrittenFile(image, how).body();
    // Everything of one colour: what the clear pad leaves is a region, what it does not reach a flash.
    const QString layer = negative ? body.mid(body.indexOf("%LPC*%")) : body;
    const QString end = negative ? layer.mid(layer.lastIndexOf("G36")) : QString();
    QVERIFY(!layer.contains(negative ? "%LPD*%" : "%LPC*%"));
    QCOMPARE(layer.count("D03"), 2);
    QVERIFY(layer.contains("X3000000"));
    QCOMPARE(layer.contains("%SRX2Y1I5J0*%"), repeated);
    QVERIFY(layer.contains("X975000") && layer.contains("X1025000")); // the clear square
    QVERIFY(end.isEmpty() || end.contains("X10000000"));              // outside of the profile
}

void tst_GerberWriter::clearFeaturesOfCopiesEraseNothingOfEachOther()
{
    LayerImage image = panel(repeat(2, 1, 1000, 0));
    addPad(image.steps[0].features, symbol(image, "s50"), at(2000, 500),
           false); // where the next copy has a pad
    const QString body = WrittenFile(image).body();
    QVERIFY(!body.contains("LPC"));
    QCOMPARE(body.count("D03"), 1); // the pad, which no clear one of its own step reaches
}

void tst_GerberWriter::negativeWithoutAProfileIsNotDarkOutsideOfTheExtent()
{
    LayerImage image = emptyLayer();
    FeatureSet &set = image.steps[0].features;
    addPad(set, symbol(image, "s200"), at(0, 0));
    addPad(set, symbol(image, "s200"), at(100, 0), false); // leaves the left half
    cam::ExportOptions how = options();
    how.negative = true;
    const QString body = WrittenFile(image, how).body();
    QVERIFY(body.startsWith("%LPD*% G36* X-100000Y-100000D02* G01* X0D01* Y100000D01* X-100000D01* "
                            "Y-100000D01* G37* %LPC*% D10* X0Y0D03* %LPD*% X100000D03* %LPC*% G36*"));
}

void tst_GerberWriter::panelIsAnArray()
{
    QVERIFY(WrittenFile(panel(repeat(2, 1, 5000, 0))).lines().contains("G04 #@! TF.Part,Array*"));
}

void tst_GerberWriter::emptyLayerIsAFileWithoutImage()
{
    QCOMPARE(WrittenFile(emptyLayer()).body(), QString("X0Y0D02*"));
}

void tst_GerberWriter::equalLayersMakeEqualFiles()
{
    const auto layer = [] {
        LayerImage image = profiledLayer();
        FeatureSet &set = image.steps[0].features;
        for (int i = 0; i < 50; ++i) {
            addPad(set, symbol(image, "r" + std::to_string(100 + i)), at(37 * i, 11 * i), i % 3 != 0);
            addPad(set, symbol(image, "rect300x200xr50"), at(37 * i, 11 * i), true, 7.0 * i);
        }
        return image;
    };
    QCOMPARE(WrittenFile(layer()).text(), WrittenFile(layer()).text());
}

void tst_GerberWriter::progressRisesToOne()
{
    LayerImage image = emptyLayer();
    for (int i = 0; i < 10000; ++i)
        addPad(image.steps[0].features, symbol(image, "r100"), at(i, 0));
    std::vector<double> shares;
    cam::ExportOptions how = options();
    how.report = [&shares](double share) { shares.push_back(share); };
    const WrittenFile file(image, how);
    QVERIFY(shares.size() >= 10);
    QVERIFY(std::is_sorted(shares.begin(), shares.end()));
    QCOMPARE(shares.front(), 0.0);
    QCOMPARE(shares.back(), 1.0);
}

void tst_GerberWriter::progressMovesInSmallSteps_data()
{
    QTest::addColumn<QString>("what");
    QTest::addColumn<bool>("negative");
    for (const QString what : {"pads", "panel", "surface with holes"}) {
        QTest::newRow(qPrintable(what)) << what << false;
        QTest::newRow(qPrintable(what + ", negated")) << what << true;
    }
}

void tst_GerberWriter::progressMovesInSmallSteps()
{
    QFETCH(QString, what);
    QFETCH(bool, negative);
    LayerImage image = emptyLayer();
    cam::FeatureSet &features = image.steps[0].features;
    if (what == "surface with holes") {
        const cam::Point corners[] = {{0, 0}, {1e8, 0}, {1e8, 1e8}, {0, 1e8}};
        features.contours.addPolygon(corners, 4, false);
        for (int i = 0; i < 2000; ++i)
            features.contours.addCircle({1e6 + i % 50 * 1.9e6, 1e6 + i / 50 * 1.9e6}, 5e5, true);
        features.add(cam::Surface{0, 2001}, cam::Polarity::Positive);
    } else {
        for (int i = 0; i < 3000; ++i)
            addPad(features, symbol(image, "r100"), at(i, 0), i % 7 != 0);
    }
    if (what == "panel") {
        cam::StepImage panel;
        panel.name = "panel";
        cam::StepRepeat repeat;
        repeat.nx = repeat.ny = 20;
        repeat.dx = repeat.dy = 1e8;
        panel.repeats.push_back(repeat);
        image.steps.push_back(std::move(panel));
    }
    double last = 0.0, largest = 0.0;
    bool isRising = true;
    cam::ExportOptions how = options();
    how.negative = negative;
    how.report = [&](double share) {
        isRising = isRising && share >= last;
        largest = std::max(largest, share - last);
        last = share;
    };
    const WrittenFile file(image, how);
    QVERIFY(isRising);
    QVERIFY2(largest <= 0.02, qPrintable(QString::number(largest)));
    QCOMPARE(last, 1.0);
}

void tst_GerberWriter::cancelledExportLeavesNoFile()
{
    LayerImage image = emptyLayer();
    for (int i = 0; i < 10000; ++i)
        addPad(image.steps[0].features, symbol(image, "r100"), at(i, 0));
    QTemporaryDir folder;
    cam::ExportOptions how = options();
    how.file = (folder.path() + "/layer.gerber").toStdString();
    how.report = [](double share) {
        if (share > 0.5)
            throw "progress_cancle";
    };
    bool thrown = false;
    try {
        cam::writeGerber(image, how);
    } catch (const char *text) {
        thrown = QString(text) == "progress_cancle";
    }
    QVERIFY(thrown);
    QVERIFY(QDir(folder.path()).entryList(QDir::Files).isEmpty());
}

void tst_GerberWriter::folderThatIsMissingIsAnError()
{
    cam::ExportOptions how = options();
    QTemporaryDir folder;
    how.file = (folder.path() + "/none/layer.gerber").toStdString();
    QVERIFY_EXCEPTION_THROWN(cam::writeGerber(emptyLayer(), how), cam::Error);
}

QTEST_APPLESS_MAIN(tst_GerberWriter)
#include "tst_gerberwriter.moc"
