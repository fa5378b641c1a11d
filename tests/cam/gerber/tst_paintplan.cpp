// Which form each feature takes, and which steps become blocks.
#include "cam/gerber/paintplan.h"
#include "cam/gerber/regionwriter.h"
#include "cam/gerber/stepplan.h"
#include "tests/cam/support/layerbuilding.h"

#include <QtTest>

using namespace cam;
using namespace testing;

namespace {

// The forms of the top step's features, one letter each.
QString formsOf(const LayerImage &image, const Transform &map = {}, double growth = 0.0,
                bool isInverted = false)
{
    DrawnSymbols drawn(image, gerberGrid, mostRegionCorners);
    ApertureTable apertures;
    PaintPlan plan(drawn, apertures, image.top().features, {map, growth, isInverted});
    QString forms;
    for (const Feature &feature : image.top().features.order) {
        switch (plan.plan(feature).form) {
        case PaintForm::Nothing:
            forms += '-';
            break;
        case PaintForm::Draw:
            forms += 'd';
            break;
        case PaintForm::Flash:
            forms += 'f';
            break;
        case PaintForm::Region:
            forms += 'r';
            break;
        case PaintForm::Features:
            forms += 's';
            break;
        case PaintForm::Polygons:
            forms += 'p';
            break;
        }
    }
    return forms;
}

// A board with one line, repeated in a panel.
LayerImage panel(std::uint32_t nx, std::uint32_t ny, double dx, double dy)
{
    LayerImage image = emptyLayer();
    addLine(image.steps[0].features, symbol(image, "r100"), at(0, 0), at(1000, 0));
    image.steps.emplace_back();
    StepRepeat repeat;
    repeat.nx = nx;
    repeat.ny = ny;
    repeat.dx = dx * micrometre;
    repeat.dy = dy * micrometre;
    image.steps[1].repeats = {repeat};
    return image;
}

std::vector<PlannedStep> planned(const LayerImage &image, const Transform &map = {})
{
    DrawnSymbols drawn(image, gerberGrid, mostRegionCorners);
    return planSteps(drawn, map, 0.0);
}

} // namespace

class tst_PaintPlan : public QObject
{
    Q_OBJECT

private slots:
    void linesAreDrawnWithCirclesOnly();
    void padsAreFlashedWhereAnApertureFits();
    void ownSymbolsAreTheirFeaturesUnlessTheyErase();
    void surfacesAreRegionsUntilTheyAreResized();
    void evenCopiesAreABlock();
    void copiesOffTheAxesAreWrittenOut();
    void blocksAreNotNested();
};

void tst_PaintPlan::linesAreDrawnWithCirclesOnly()
{
    LayerImage image = emptyLayer();
    FeatureSet &features = image.steps[0].features;
    addLine(features, symbol(image, "r100"), at(0, 0), at(1, 1));
    addLine(features, symbol(image, "s100"), at(0, 0), at(1, 1));
    addLine(features, symbol(image, "null"), at(0, 0), at(1, 1));
    QCOMPARE(formsOf(image), QString("dp-"));
    QCOMPARE(formsOf(image, Transform::rotation(30.0)), QString("dp-"));
    QCOMPARE(formsOf(image, Transform::scaling(2.0, 1.0)), QString("pp-"));
}

void tst_PaintPlan::padsAreFlashedWhereAnApertureFits()
{
    LayerImage image = emptyLayer();
    FeatureSet &features = image.steps[0].features;
    addPad(features, symbol(image, "rect100x200"), at(0, 0));
    addPad(features, symbol(image, "el100x200"), at(0, 0));
    addPad(features, symbol(image, "donut_s300x100"), at(0, 0), false); // a macro with exposure off
    addPad(features, symbol(image, "donut_s300x100"), at(0, 0), true);
    addPad(features, symbol(image, "null"), at(0, 0));
    QCOMPARE(formsOf(image), QString("frrf-"));
    QCOMPARE(formsOf(image, {}, 0.0, true), QString("frfr-"));
    QCOMPARE(formsOf(image, Transform::scaling(2.0, 1.0)).mid(0, 2), QString("fp"));
    QCOMPARE(formsOf(image, {}, -101.0 * micrometre).mid(0, 2), QString("--"));
}

void tst_PaintPlan::ownSymbolsAreTheirFeaturesUnlessTheyErase()
{
    LayerImage image = emptyLayer();
    const std::uint32_t round = symbol(image, "r100");
    FeatureSet positive, negative, outer;
    addPad(positive, round, at(0, 0));
    addPad(negative, round, at(0, 0), false);
    addPad(outer, ownSymbol(image, "negative", std::move(negative)), at(0, 0));
    FeatureSet &features = image.steps[0].features;
    addPad(features, ownSymbol(image, "positive", std::move(positive)), at(0, 0));
    addPad(features, ownSymbol(image, "outer", std::move(outer)), at(0, 0));
    addPad(features, ownSymbol(image, "empty", FeatureSet()), at(0, 0));
    QCOMPARE(formsOf(image), QString("sp-"));
}

void tst_PaintPlan::surfacesAreRegionsUntilTheyAreResized()
{
    LayerImage image = emptyLayer();
    FeatureSet &features = image.steps[0].features;
    addRectangle(features.contours, 0, 0, 100, 100);
    addSurface(features, 0);
    QCOMPARE(formsOf(image), QString("r"));
    QCOMPARE(formsOf(image, {}, 1.0), QString("p"));
    QCOMPARE(formsOf(image, Transform::scaling(1.0, 1.01)), QString("p"));
}

void tst_PaintPlan::evenCopiesAreABlock()
{
    const std::vector<PlannedStep> plan = planned(panel(3, 2, 10, -20));
    QCOMPARE(plan.size(), std::size_t(2));
    QCOMPARE(plan[1].copies(), std::uint64_t(6));
    QCOMPARE(plan[1].columns, 3u);
    QVERIFY((plan[1].pitch == GridPoint{10000, 20000}));
    QVERIFY(plan[1].map.offset == at(0, -20)); // the copy with the smallest coordinates is the first
    QVERIFY(!plan[1].isResolved);

    const std::vector<PlannedStep> turned = planned(panel(3, 2, 10, 20), Transform::rotation(90.0));
    QCOMPARE(turned.size(), std::size_t(2));
    QCOMPARE(turned[1].columns, 2u);
    QVERIFY((turned[1].pitch == GridPoint{20000, 10000}));
    QVERIFY(turned[1].map.offset == at(-20, 0));
}

void tst_PaintPlan::copiesOffTheAxesAreWrittenOut()
{
    QCOMPARE(planned(panel(3, 2, 10, 20), Transform::rotation(30.0)).size(), std::size_t(7));
    QCOMPARE(planned(panel(3, 1, 0, 0)).size(), std::size_t(4));
    // A third of a nanometre is off by 67 nm after 200 copies.
    QCOMPARE(planned(panel(200, 1, 10.0 + 1.0 / 3000.0, 0)).size(), std::size_t(201));
    QCOMPARE(planned(panel(100, 1, 10.0 + 1.0 / 3000.0, 0)).size(), std::size_t(2));
}

void tst_PaintPlan::blocksAreNotNested()
{
    LayerImage image = panel(2, 1, 10, 0);
    image.steps.emplace_back();
    StepRepeat outer;
    outer.step = 1;
    outer.ny = 3;
    outer.dy = 100 * micrometre;
    image.steps[2].repeats = {outer};
    const std::vector<PlannedStep> plan = planned(image);
    QCOMPARE(plan.size(), std::size_t(1 + 3 + 3));
    QCOMPARE(plan[2].copies(), std::uint64_t(2));
    QCOMPARE(plan[1].copies(), std::uint64_t(1));
}

QTEST_APPLESS_MAIN(tst_PaintPlan)
#include "tst_paintplan.moc"
