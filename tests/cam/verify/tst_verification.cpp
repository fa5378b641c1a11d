// What is written truly is proven; what a broken writer would write is found. The writers are not broken for
// it: they are given another layer, or their file is changed.
#include "cam/base/error.h"
#include "cam/gdsii/gdswriter.h"
#include "cam/gerber/gerberwriter.h"
#include "cam/verify/verification.h"
#include "tests/cam/support/layerbuilding.h"
#include "tests/support/temporaryworkingfolder.h"

#include <QtTest>

#include <functional>

using cam::Comparison;
using cam::ExportOptions;
using cam::LayerImage;
using namespace testing;

using BreakOfWriter = std::function<void(LayerImage &, ExportOptions &)>;
Q_DECLARE_METATYPE(BreakOfWriter)

namespace {

constexpr std::size_t movedPad = 0; // pads of the child, by their order
constexpr std::size_t turnedPad = 1;
constexpr std::size_t clearPad = 2;

// A panel of four copies of a step with every kind of feature.
LayerImage truth()
{
    LayerImage image = emptyLayer();
    image.steps.emplace_back();
    std::swap(image.steps[0], image.steps[1]);
    cam::StepImage &child = image.steps[0], &panel = image.steps[1];
    child.name = "child";
    panel.name = "panel";

    const std::uint32_t pen = symbol(image, "r100"), round = symbol(image, "r800");
    const std::uint32_t flag = symbol(image, "tri600x900"), ring = symbol(image, "donut_r1000x500");
    addPad(child.features, ring, at(1000, 1000));
    addPad(child.features, flag, at(3000, 1000), true, 30.0, true);
    addLine(child.features, pen, at(1000, 3000), at(4000, 3300));
    cam::Arc arc;
    arc.start = at(5000, 3000);
    arc.end = at(6000, 4000);
    arc.center = at(6000, 3000);
    arc.symbol = pen;
    child.features.add(arc, cam::Polarity::Positive);

    // All islands first, then the holes.
    std::size_t first = child.features.contours.size();
    addRectangle(child.features.contours, 500, 5000, 2000, 2000);
    addRectangle(child.features.contours, 3500, 5000, 2000, 2000);
    addRectangle(child.features.contours, 1000, 5500, 500, 500, true);
    addRectangle(child.features.contours, 4000, 5500, 500, 500, true);
    addSurface(child.features, first);
    addPad(child.features, round, at(5000, 6500), false);

    cam::FeatureSet own;
    addPad(own, round, at(0, 0));
    addPad(own, pen, at(200, 0), false);
    addPad(panel.features, ownSymbol(image, "target", std::move(own)), at(-2000, -2000));
    addLine(panel.features, pen, at(-1000, -1000), at(16000, -1000));
    cam::StepRepeat repeat;
    repeat.nx = repeat.ny = 2;
    repeat.dx = repeat.dy = 8000 * micrometre;
    panel.repeats.push_back(repeat);
    addRectangle(image.profile, -3000, -3000, 20000, 20000);
    return image;
}

struct Transformed
{
    const char *name;
    ExportOptions options;
};

std::vector<Transformed> transforms()
{
    ExportOptions plain, turned, negated, grown, shrunk, stretched;
    turned.mirror = true;
    turned.angle = 30.0;
    negated = turned;
    negated.negative = true;
    grown.resize = 20000.0;
    shrunk = turned;
    shrunk.resize = -20000.0;
    stretched.xScale = 1.25;
    stretched.yScale = 0.8;
    return {{"as it is", plain},
            {"mirrored and rotated", turned},
            {"mirrored, rotated and negated", negated},
            {"grown", grown},
            {"shrunk, mirrored and rotated", shrunk},
            {"stretched", stretched}};
}

class Files
{
public:
    std::filesystem::path write(const LayerImage &image, ExportOptions options, bool isGerber,
                                const char *name = "out")
    {
        options.file = path(name);
        isGerber ? cam::writeGerber(image, options) : cam::writeGds(image, options);
        return options.file;
    }
    std::filesystem::path path(const char *name) const
    {
        return std::filesystem::u8path(m_folder.filePath(name).toStdString());
    }
    QByteArray read(const char *name = "out") const
    {
        QFile file(m_folder.filePath(name));
        if (!file.open(QIODevice::ReadOnly))
            qFatal("cannot read %s", name);
        return file.readAll();
    }
    void replace(const QByteArray &bytes, const char *name = "out") const
    {
        QFile file(m_folder.filePath(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("cannot write %s", name);
    }

private:
    TemporaryWorkingFolder m_folder;
};

QString described(const Comparison &result)
{
    QString text = QString("missing %1, extra %2 mm2, %3 nm, %4 places, %5")
                       .arg(result.missingArea)
                       .arg(result.extraArea)
                       .arg(result.deviation)
                       .arg(result.placesInAll)
                       .arg(QString::fromStdString(result.reason));
    for (const cam::DifferencePlace &place : result.places)
        text += QString("\n%1 at %2, %3 um, %4 um wide")
                    .arg(place.isMissing ? "missing" : "extra")
                    .arg(place.at.x / 1000.0)
                    .arg(place.at.y / 1000.0)
                    .arg(place.width / 1000.0);
    return text;
}

} // namespace

class tst_Verification : public QObject
{
    Q_OBJECT

private slots:
    void trueFilesAreProven_data();
    void trueFilesAreProven();
    void brokenWritersAreFound_data();
    void brokenWritersAreFound();
    void aMovedPadIsToldWithItsPlaceAndWidth();
    void aMissingHoleIsToldWithItsArea();
    void smallDeviationsAreProvenAndTold();
    void whatAReaderRefusesIsNotProven();
    void aFileInAWrongUnitIsFound();
    void aGdsiiFileOnAnotherLayerIsFound();
    void aFileThatIsNotThereIsNotProven();
    void layersAreCompared();
    void bothFormatsAreTheSame();
    void aCancelPassesThrough();
};

void tst_Verification::trueFilesAreProven_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<bool>("isGerber");
    const std::vector<Transformed> all = transforms();
    for (std::size_t i = 0; i < all.size(); ++i) {
        QTest::addRow("%s, Gerber", all[i].name) << int(i) << true;
        QTest::addRow("%s, GDSII", all[i].name) << int(i) << false;
    }
}

void tst_Verification::trueFilesAreProven()
{
    QFETCH(const int, number);
    QFETCH(const bool, isGerber);
    const ExportOptions options = transforms()[std::size_t(number)].options;
    const LayerImage image = truth();
    Files files;
    const Comparison result = cam::verifyFile(image, options, files.write(image, options, isGerber));
    QVERIFY2(result.isProven(), qPrintable(described(result)));
    QCOMPARE(result.missingArea, 0.0);
    QCOMPARE(result.extraArea, 0.0);
}

void tst_Verification::brokenWritersAreFound_data()
{
    using Break = BreakOfWriter;
    QTest::addColumn<Break>("change");
    QTest::addColumn<int>("number");
    QTest::addColumn<bool>("isGerber");
    const auto child = [](LayerImage &image) -> cam::FeatureSet & { return image.steps[0].features; };
    const std::vector<std::pair<const char *, Break>> breaks = {
        {"a pad moved by 1 um",
         [child](LayerImage &image, ExportOptions &) { child(image).pads[movedPad].at.x += 1 * micrometre; }},
        {"a missing hole",
         [child](LayerImage &image, ExportOptions &) { child(image).surfaces[0].contourCount = 3; }},
        {"a lost arc direction",
         [child](LayerImage &image, ExportOptions &) { child(image).arcs[0].clockwise = true; }},
        {"wrong polarity",
         [child](LayerImage &image, ExportOptions &) {
             for (cam::Feature &feature : child(image).order) {
                 if (feature.kind == cam::FeatureKind::Pad && feature.index == clearPad)
                     feature.polarity = cam::Polarity::Positive;
             }
             child(image).negativeCount = 0;
         }},
        {"holes given to another island",
         [child](LayerImage &image, ExportOptions &) {
             // The second island alone, the first with both holes.
             cam::FeatureSet &features = child(image);
             std::size_t first = features.contours.size();
             addRectangle(features.contours, 500, 5000, 2000, 2000);
             addRectangle(features.contours, 1000, 5500, 500, 500, true);
             addRectangle(features.contours, 4000, 5500, 500, 500, true);
             features.surfaces[0] = {std::uint32_t(first), 3};
             first = features.contours.size();
             addRectangle(features.contours, 3500, 5000, 2000, 2000);
             features.surfaces.push_back({std::uint32_t(first), 1});
             features.order.insert(features.order.begin() + 4, {1, cam::FeatureKind::Surface, {}});
         }},
        {"a missing feature",
         [child](LayerImage &image, ExportOptions &) {
             child(image).order.erase(child(image).order.begin() + 2);
         }},
        {"a pad that is not mirrored",
         [child](LayerImage &image, ExportOptions &) { child(image).pads[turnedPad].mirror = false; }},
        {"a pad that is turned the other way",
         [child](LayerImage &image, ExportOptions &) { child(image).pads[turnedPad].angle = 330.0; }},
        {"all mirrored wrongly",
         [](LayerImage &, ExportOptions &options) { options.mirror = !options.mirror; }},
        {"resize off by 1 um",
         [](LayerImage &, ExportOptions &options) { options.resize += 1 * micrometre; }},
        {"a nested copy lost", [](LayerImage &image, ExportOptions &) { image.steps[1].repeats[0].ny = 1; }},
        {"copies 1 um apart",
         [](LayerImage &image, ExportOptions &) { image.steps[1].repeats[0].dx += 1 * micrometre; }},
        {"a line 1 um wider",
         [child](LayerImage &image, ExportOptions &) {
             child(image).lines[0].symbol = symbol(image, "r101");
         }},
        {"negated or not",
         [](LayerImage &, ExportOptions &options) { options.negative = !options.negative; }},
        {"a ten-thousandth larger",
         [](LayerImage &, ExportOptions &options) {
             options.xScale *= 1.0001;
             options.yScale *= 1.0001;
         }},
        {"a hundredth of a degree turned",
         [](LayerImage &, ExportOptions &options) { options.angle += 0.01; }},
    };
    const std::vector<Transformed> all = transforms();
    for (const auto &[name, change] : breaks) {
        QTest::addRow("%s, GDSII", name) << change << 0 << false;
        QTest::addRow("%s, Gerber", name) << change << 0 << true;
        QTest::addRow("%s, %s, Gerber", name, all[2].name) << change << 2 << true;
    }
}

void tst_Verification::brokenWritersAreFound()
{
    QFETCH(const BreakOfWriter, change);
    QFETCH(const int, number);
    QFETCH(const bool, isGerber);
    const ExportOptions options = transforms()[std::size_t(number)].options;
    LayerImage broken = truth();
    ExportOptions brokenOptions = options;
    change(broken, brokenOptions);
    Files files;
    const Comparison result = cam::verifyFile(truth(), options, files.write(broken, brokenOptions, isGerber));
    QVERIFY2(!result.isProven(), qPrintable(described(result)));
    QCOMPARE(result.reason, std::string());
    QVERIFY(result.missingArea + result.extraArea > 0.0);
}

void tst_Verification::aMovedPadIsToldWithItsPlaceAndWidth()
{
    LayerImage image = emptyLayer(), broken = emptyLayer();
    addPad(image.steps[0].features, symbol(image, "rect800x400"), at(5000, 6000));
    addPad(broken.steps[0].features, symbol(broken, "rect800x400"), at(5001, 6000));
    for (const bool isGerber : {false, true}) {
        Files files;
        const Comparison result = cam::verifyFile(image, {}, files.write(broken, {}, isGerber));
        QCOMPARE(result.placesInAll, std::size_t(2));
        QVERIFY2(std::fabs(result.missingArea - 0.0004) < 1e-7, qPrintable(described(result)));
        QVERIFY2(std::fabs(result.extraArea - 0.0004) < 1e-7, qPrintable(described(result)));
        for (const cam::DifferencePlace &place : result.places) {
            QVERIFY(std::fabs(place.width - 1000.0) < 20.0);
            QVERIFY(std::fabs(place.at.x - (place.isMissing ? 4600.5 : 5400.5) * micrometre) < 100.0);
        }
        QVERIFY(std::fabs(result.deviation - 1000.0) < 20.0);
    }
}

void tst_Verification::aMissingHoleIsToldWithItsArea()
{
    LayerImage image = emptyLayer(), broken = emptyLayer();
    for (LayerImage *one : {&image, &broken}) {
        cam::FeatureSet &features = one->steps[0].features;
        addRectangle(features.contours, 0, 0, 5000, 5000);
        if (one == &image)
            addRectangle(features.contours, 2000, 2000, 1000, 500, true);
        addSurface(features, 0);
    }
    for (const bool isGerber : {false, true}) {
        Files files;
        cam::VerifyControl control;
        control.wantsPolygons = true;
        const Comparison result = cam::verifyFile(image, {}, files.write(broken, {}, isGerber), control);
        QCOMPARE(result.placesInAll, std::size_t(1));
        QCOMPARE(result.places[0].isMissing, false);
        QVERIFY(std::fabs(result.extraArea - 0.5) < 1e-6);
        QVERIFY(std::fabs(result.places[0].width - 500.0 * micrometre) < 0.02 * 500.0 * micrometre);
        QCOMPARE(result.extra.size(), std::size_t(1));
        QCOMPARE(result.extra[0].size(), std::size_t(4));
        QVERIFY(result.missing.empty());
    }
}

void tst_Verification::smallDeviationsAreProvenAndTold()
{
    LayerImage image = emptyLayer(), other = emptyLayer();
    addPad(image.steps[0].features, symbol(image, "rect800x400"), at(5000, 6000));
    addPad(other.steps[0].features, symbol(other, "rect800x400"), at(5000.05, 6000));
    for (const bool isGerber : {false, true}) {
        Files files;
        const Comparison result = cam::verifyFile(image, {}, files.write(other, {}, isGerber));
        QVERIFY2(result.isProven(), qPrintable(described(result)));
        QVERIFY2(result.deviation >= 50.0 && result.deviation < 400.0, qPrintable(described(result)));
    }
}

void tst_Verification::whatAReaderRefusesIsNotProven()
{
    const LayerImage image = truth();
    Files files;
    const auto file = files.write(image, {}, true);
    QByteArray text = files.read();
    text.replace("%LPD*%", "%IPNEG*%\n%LPD*%");
    if (!text.contains("IPNEG"))
        text.replace("%MOMM*%", "%MOMM*%\n%IPNEG*%");
    files.replace(text);
    const Comparison result = cam::verifyFile(image, {}, file);
    QVERIFY(!result.isProven());
    QVERIFY2(result.reason.find("IPNEG") != std::string::npos, result.reason.c_str());

    files.write(image, {}, false);
    files.replace(files.read().chopped(4)); // without ENDLIB
    const Comparison cut = cam::verifyFile(image, {}, file);
    QVERIFY(!cut.isProven());
    QVERIFY(!cut.reason.empty());
}

void tst_Verification::aFileInAWrongUnitIsFound()
{
    const LayerImage image = truth();
    Files files;
    const auto file = files.write(image, {}, true);
    const QByteArray metric = files.read();
    QVERIFY(metric.contains("%MOMM*%"));
    files.replace(QByteArray(metric).replace("%MOMM*%", "%MOIN*%"));
    const Comparison inches = cam::verifyFile(image, {}, file);
    QVERIFY(!inches.isProven());
    QVERIFY2(inches.reason.empty() && inches.extraArea > 0.0, qPrintable(described(inches)));

    // The record UNITS: 20 bytes, of type 3 and data type 5; what the database unit is in user units, and in
    // metres.
    files.write(image, {}, false);
    QByteArray stream = files.read();
    const int units = stream.indexOf(QByteArray::fromRawData("\x00\x14\x03\x05", 4));
    QVERIFY(units > 0);
    const int exponent = units + 12; // of the second number: a power of 16
    stream[exponent] = char(stream[exponent] + 1);
    files.replace(stream);
    const Comparison larger = cam::verifyFile(image, {}, file);
    QVERIFY2(!larger.isProven(), qPrintable(described(larger)));
}

void tst_Verification::aGdsiiFileOnAnotherLayerIsFound()
{
    LayerImage image = truth(), other = truth();
    image.row = 3;
    other.row = 4;
    Files files;
    const auto file = files.write(other, {}, false);
    const Comparison result = cam::verifyFile(image, {}, file);
    QVERIFY(!result.isProven());
    QVERIFY2(result.reason.find("expected all shapes on layer 3, found one on layer 4") != std::string::npos,
             result.reason.c_str());
    QVERIFY(cam::verifyFile(other, {}, file).isProven());
}

void tst_Verification::aFileThatIsNotThereIsNotProven()
{
    const Files files;
    const Comparison result = cam::verifyFile(truth(), {}, files.path("none"));
    QVERIFY(!result.isProven());
    QVERIFY(result.reason.find("cannot be opened") != std::string::npos);
}

void tst_Verification::layersAreCompared()
{
    LayerImage before = truth(), after = truth();
    addPad(after.steps[1].features, symbol(after, "s1000"), at(-2000, 12000));
    const Comparison grown = cam::compareLayers(before, {}, after, {});
    QCOMPARE(grown.missingArea, 0.0);
    QVERIFY2(std::fabs(grown.extraArea - 1.0) < 1e-6, qPrintable(described(grown)));
    const Comparison same = cam::compareLayers(before, {}, truth(), {});
    QVERIFY2(same.isProven(), qPrintable(described(same)));
}

void tst_Verification::bothFormatsAreTheSame()
{
    const LayerImage image = truth();
    Files files;
    const auto gerber = files.write(image, {}, true, "a"), gds = files.write(image, {}, false, "b");
    const Comparison result = cam::compareFiles(gerber, gds);
    QVERIFY2(result.isProven(), qPrintable(described(result)));
    LayerImage other = truth();
    other.steps[0].features.pads[movedPad].at.y += 2 * micrometre;
    QVERIFY(!cam::compareFiles(gerber, files.write(other, {}, false, "b")).isProven());
}

void tst_Verification::aCancelPassesThrough()
{
    struct Cancel
    {
    };
    const LayerImage image = truth();
    Files files;
    const auto file = files.write(image, {}, true);
    cam::VerifyControl control;
    double last = 0.0;
    bool goesUp = true;
    control.report = [&](double share) {
        goesUp = goesUp && share >= last - 1e-9 && share <= 1.0;
        last = share;
    };
    QVERIFY(cam::verifyFile(image, {}, file, control).isProven());
    QVERIFY(goesUp);
    QCOMPARE(last, 1.0);
    control.report = [](double) { throw Cancel(); };
    QVERIFY_EXCEPTION_THROWN(cam::verifyFile(image, {}, file, control), Cancel);
}

QTEST_APPLESS_MAIN(tst_Verification)
#include "tst_verification.moc"
