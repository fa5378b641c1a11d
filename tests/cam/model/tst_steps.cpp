// The walk over nested steps, the keys of tables, and the count of work.
#include "cam/model/steps.h"
#include "cam/model/work.h"
#include "tests/cam/support/layerbuilding.h"

#include <QtTest>

#include <stdexcept>

using namespace cam;
using namespace testing;

namespace {

StepRepeat repeat(std::uint32_t step, Point where, std::uint32_t nx, std::uint32_t ny, double dx, double dy)
{
    StepRepeat result;
    result.step = step;
    result.at = where;
    result.nx = nx;
    result.ny = ny;
    result.dx = dx * micrometre;
    result.dy = dy * micrometre;
    return result;
}

// A panel (step 2) of two arrays (1), each of two by two boards (0) and one more board.
LayerImage panel()
{
    LayerImage image;
    image.steps.resize(3);
    image.steps[1].repeats = {repeat(0, at(1, 0), 2, 2, 10, 20)};
    image.steps[2].repeats = {repeat(1, at(100, 0), 2, 1, 1000, 0), repeat(0, at(-5, -5), 1, 1, 0, 0)};
    return image;
}

QString described(std::uint32_t step, const Transform &place)
{
    const Point origin = place(Point{}) * (1.0 / micrometre);
    return QString("%1 at %2 %3").arg(step).arg(origin.x).arg(origin.y);
}

QStringList walked(const LayerImage &image, Copies copies, const RepeatVisit &visitRepeat = {})
{
    QStringList result;
    forEachStep(
        image, copies,
        [&result](std::uint32_t step, const Transform &place) { result += described(step, place); },
        visitRepeat);
    return result;
}

} // namespace

class tst_Steps : public QObject
{
    Q_OBJECT

private slots:
    void everyCopyIsVisitedRowByRow();
    void firstCopiesShowEveryStep();
    void aRepeatThatIsDealtWithIsLeftOut();
    void copiesAreTurnedAboutTheirDatum();
    void mapsOfOneOrientationAreEqualKeys();
    void padsOfOneLookAreEqualKeys();
    void workCountsEveryCopy();
    void progressIsReportedAtLeastEveryThousandLines();
};

void tst_Steps::everyCopyIsVisitedRowByRow()
{
    QCOMPARE(walked(panel(), Copies::All),
             QStringList({"2 at 0 0", "1 at 100 0", "0 at 101 0", "0 at 111 0", "0 at 101 20", "0 at 111 20",
                          "1 at 1100 0", "0 at 1101 0", "0 at 1111 0", "0 at 1101 20", "0 at 1111 20",
                          "0 at -5 -5"}));
}

void tst_Steps::firstCopiesShowEveryStep()
{
    QCOMPARE(walked(panel(), Copies::First),
             QStringList({"2 at 0 0", "1 at 100 0", "0 at 101 0", "0 at -5 -5"}));
}

void tst_Steps::aRepeatThatIsDealtWithIsLeftOut()
{
    QStringList repeats;
    const QStringList steps =
        walked(panel(), Copies::All, [&repeats](const StepRepeat &repeat, const Transform &place) {
            repeats += described(repeat.step, place);
            return repeat.nx * repeat.ny == 4;
        });
    QCOMPARE(steps, QStringList({"2 at 0 0", "1 at 100 0", "1 at 1100 0", "0 at -5 -5"}));
    QCOMPARE(repeats, QStringList({"1 at 0 0", "0 at 100 0", "0 at 1100 0", "0 at 0 0"}));
}

void tst_Steps::copiesAreTurnedAboutTheirDatum()
{
    StepRepeat turned = repeat(0, at(50, 60), 3, 2, 7, 9);
    turned.angle = 90.0; // clockwise
    turned.mirror = true;
    turned.childDatum = at(1, 2);
    const Transform copy = placement(turned, 2, 1);
    QCOMPARE(described(0, Transform::translation(at(1, 2)).then(copy)), QString("0 at 64 69"));
    // Right of the datum is below it after the turn, and stays there when x is mirrored.
    QCOMPARE(described(0, Transform::translation(at(2, 2)).then(copy)), QString("0 at 64 68"));
    QCOMPARE(described(0, Transform::translation(at(1, 3)).then(copy)), QString("0 at 63 69"));
}

void tst_Steps::mapsOfOneOrientationAreEqualKeys()
{
    const auto differ = [](const Transform &a, const Transform &b) {
        return LinearPart(a) < LinearPart(b) || LinearPart(b) < LinearPart(a);
    };
    Transform negativeZero;
    negativeZero.xy = -0.0;
    QVERIFY(!differ(Transform(), negativeZero));
    QVERIFY(!differ(Transform(), Transform::translation(at(1, 2))));
    QVERIFY(differ(Transform(), Transform::mirrorX()));
    QVERIFY(differ(Transform(), Transform::rotation(1e-9)));
    QVERIFY(differ(Transform::rotation(90.0), Transform::rotation(-90.0)));
}

void tst_Steps::padsOfOneLookAreEqualKeys()
{
    Pad pad;
    pad.symbol = 3;
    pad.angle = 90.0;
    pad.growth = 10.0;
    const PadKey key(pad, Polarity::Positive);
    Pad other = pad;
    other.at = at(5, 6);
    QVERIFY(key == PadKey(other, Polarity::Positive));
    QCOMPARE(PadKeyHash()(key), PadKeyHash()(PadKey(other, Polarity::Positive)));
    QVERIFY(!(key == PadKey(pad, Polarity::Negative)));
    const auto isOther = [&key, &pad](auto change) {
        Pad changed = pad;
        change(changed);
        return !(key == PadKey(changed, Polarity::Positive));
    };
    QVERIFY(isOther([](Pad &p) { p.symbol = 4; }));
    QVERIFY(isOther([](Pad &p) { p.angle = 270.0; }));
    QVERIFY(isOther([](Pad &p) { p.growth = -10.0; }));
    QVERIFY(isOther([](Pad &p) { p.mirror = true; }));
}

void tst_Steps::workCountsEveryCopy()
{
    LayerImage image = panel();
    addLine(image.steps[0].features, 0, at(0, 0), at(1, 0));
    addLine(image.steps[2].features, 0, at(0, 0), at(1, 0));
    addRectangle(image.steps[2].features.contours, 0, 0, 1, 1);
    addSurface(image.steps[2].features, 0);
    // Nine boards of a line each; the panel's own line, and its surface: one, and a quarter an edge.
    QCOMPARE(workOf(image, image.top()), 9.0 + 1.0 + 2.0);
}

void tst_Steps::progressIsReportedAtLeastEveryThousandLines()
{
    std::vector<double> shares;
    const std::function<void(double)> report = [&shares](double share) { shares.push_back(share); };
    WorkProgress progress(report, 1e7);
    progress.expect(1e7);
    for (int i = 0; i < 5000; ++i)
        progress.advance(1.0);
    QCOMPARE(shares.size(), std::size_t(5));
    QCOMPARE(shares.back(), 5000.0 / 2e7);
    progress.report(5000.0);
    QCOMPARE(shares.back(), 10000.0 / 2e7);
    progress.advance(1e9);
    QCOMPARE(shares.back(), 1.0);
    // Little work is reported in small parts, none at all as done.
    shares.clear();
    WorkProgress small(report, 10.0);
    small.advance(1.0);
    QCOMPARE(shares, std::vector<double>({0.1}));
    WorkProgress(report, 0.0).report();
    QCOMPARE(shares.back(), 1.0);
    const std::function<void(double)> cancel = [](double) { throw std::runtime_error("cancelled"); };
    QVERIFY_EXCEPTION_THROWN(WorkProgress(cancel, 1.0).advance(1.0), std::runtime_error);
}

QTEST_APPLESS_MAIN(tst_Steps)
#include "tst_steps.moc"
