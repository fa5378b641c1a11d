// Figures of GDSII files: those of arrays are found without a look at every copy.
#include "cam/gdsii/gdsreader.h"
#include "drawing/filescene.h"
#include "tests/cam/support/gdsrecords.h"

#include <QElapsedTimer>
#include <QtTest>

#include <cmath>
#include <random>
#include <sstream>

using namespace gdsrecords;

namespace {

// A square of 0.1 um, in an array whose copies begin at `xy`, with the ends of columns and rows behind it.
std::unique_ptr<drawing::GdsScene> arrayScene(const QVector<int> &counts, const QVector<int> &xy,
                                              const QByteArray &turns = {})
{
    const QByteArray cell = boundary(0, {0, 0, 100, 0, 100, 100, 0, 100, 0, 0});
    QByteArray array = record(0x0b, 0) + name(0x12, "CELL") + turns + record(0x13, 2, shorts(counts)) +
                       record(0x10, 3, longs(xy)) + record(0x11, 0);
    const QByteArray bytes = library(structure("CELL", cell) + structure("TOP", array));
    std::istringstream stream(std::string(bytes.constData(), std::size_t(bytes.size())));
    return std::make_unique<drawing::GdsScene>(
        std::make_shared<const cam::GdsImage>(cam::readGds(stream, "array.gds")), cam::GdsLayer{1, 0});
}

} // namespace

class tst_FileScene : public QObject
{
    Q_OBJECT

private slots:
    void copiesOfArraysAreFound_data()
    {
        QTest::addColumn<QVector<int>>("counts");
        QTest::addColumn<QVector<int>>("xy");
        QTest::addColumn<QByteArray>("turns");
        const QByteArray turned = record(0x1a, 1, shorts({0})) +
                                  record(0x1c, 5, QByteArray::fromHex("421e000000000000")); // 30 degrees
        QTest::newRow("straight") << QVector<int>{20, 30} << QVector<int>{500, 700, 4500, 700, 500, 6700}
                                  << QByteArray();
        QTest::newRow("backwards") << QVector<int>{20, 30} << QVector<int>{0, 0, -4000, 0, 0, -6000}
                                   << QByteArray();
        QTest::newRow("turned") << QVector<int>{20, 30} << QVector<int>{0, 0, 3464, 2000, -3000, 5196}
                                << turned;
        QTest::newRow("columns upwards")
            << QVector<int>{20, 30} << QVector<int>{0, 0, 0, 4000, 6000, 0} << QByteArray();
        QTest::newRow("one row") << QVector<int>{40, 1} << QVector<int>{0, 0, 8000, 0, 0, 200}
                                 << QByteArray();
        QTest::newRow("one column") << QVector<int>{1, 40} << QVector<int>{0, 0, 200, 0, 0, 8000}
                                    << QByteArray();
        QTest::newRow("copies over each other")
            << QVector<int>{10, 3} << QVector<int>{0, 0, 500, 0, 0, 90} << QByteArray();
        QTest::newRow("all at one place")
            << QVector<int>{3, 3} << QVector<int>{0, 0, 0, 0, 0, 0} << QByteArray();
    }
    void copiesOfArraysAreFound()
    {
        QFETCH(const QVector<int>, counts);
        QFETCH(const QVector<int>, xy);
        QFETCH(const QByteArray, turns);
        const auto scene = arrayScene(counts, xy, turns);
        const cam::Box all = scene->extent();
        int found = 0;
        scene->findFigures(all, [&](drawing::Figure &&) { return ++found > 0; });
        QCOMPARE(found, counts[0] * counts[1]);
        // Wherever one looks, the same as by looking at every copy.
        std::vector<drawing::Figure> copies;
        scene->findFigures(all, [&](drawing::Figure &&figure) {
            copies.push_back(std::move(figure));
            return true;
        });
        std::mt19937 random(99);
        const auto between = [&](double low, double high) {
            return low + (high - low) * (double(random()) / double(std::mt19937::max()));
        };
        for (int i = 0; i < 300; ++i) {
            const cam::Point at{between(all.low.x, all.high.x), between(all.low.y, all.high.y)};
            const double reach = between(1.0, 400.0);
            cam::Box box;
            box.add(at - cam::Point{reach, reach});
            box.add(at + cam::Point{reach, reach});
            // By their middles: the box around a turned square touches more than the square does.
            const auto isInside = [&box](const drawing::Figure &figure) {
                cam::Box middle;
                middle.add((figure.box.low + figure.box.high) * 0.5);
                return middle.touches(box) ? 1 : 0;
            };
            int wanted = 0, here = 0;
            for (const drawing::Figure &copy : copies)
                wanted += isInside(copy);
            scene->findFigures(box, [&](drawing::Figure &&figure) {
                here += isInside(figure);
                return true;
            });
            QCOMPARE(here, wanted);
        }
    }

    void aMillionCopiesAreNotLookedAt()
    {
        const auto scene = arrayScene({3000, 3000}, {0, 0, 600000, 0, 0, 600000});
        QElapsedTimer timer;
        timer.start();
        for (int i = 0; i < 100; ++i)
            QCOMPARE(int(drawing::figuresAt(*scene, {200.0 * i + 50.0, 50.0}, 10.0).size()), 1);
        // Nine million copies a time would take minutes.
        QVERIFY2(timer.elapsed() < 2000, qPrintable(QString::number(timer.elapsed())));
    }
};

QTEST_APPLESS_MAIN(tst_FileScene)
#include "tst_filescene.moc"
