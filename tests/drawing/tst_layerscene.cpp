// What is drawn of a layer: sample by sample against the exact picture of random jobs, pixel by pixel against
// the reference raster of the sample board; and what is smaller than a pixel.
#include "cam/odb/job.h"
#include "drawing/areascene.h"
#include "drawing/layerscene.h"
#include "drawing/picture.h"
#include "tests/cam/random/exactpicture.h"
#include "tests/cam/random/randomjob.h"
#include "tests/cam/support/layerbuilding.h"
#include "tests/crosscheck/referenceraster.h"
#include "tests/support/processortime.h"
#include "tests/support/seedrange.h"

#include <QtTest>

#include <cmath>

using namespace testing;
using drawing::Canvas;
using drawing::LayerScene;

namespace {

std::shared_ptr<const cam::LayerImage> shared(cam::LayerImage &&image)
{
    return std::make_shared<const cam::LayerImage>(std::move(image));
}

LayerScene sceneOf(cam::LayerImage &&image, const cam::ExportOptions &options = {})
{
    return LayerScene(shared(std::move(image)), options);
}

drawing::DrawMode everySample()
{
    drawing::DrawMode mode;
    mode.levelOfDetail = false;
    return mode;
}

// A rectangle as a surface.
void addPlane(cam::FeatureSet &features, cam::Point low, cam::Point high, bool positive = true)
{
    const std::size_t first = features.contours.size();
    const cam::Point corners[] = {low, {high.x, low.y}, high, {low.x, high.y}};
    features.contours.addPolygon(corners, 4, false);
    addSurface(features, first, positive);
}

cam::Transform toSamples(const drawing::Viewport &viewport)
{
    return viewport.toPixels().then(cam::Transform::scaling(Canvas::samples, Canvas::samples));
}

// A square plane of 20 mm with round holes in rows, its lower left corner at `corner`. Every second hole is
// made of two arcs.
void addSieve(cam::FeatureSet &features, cam::Point corner, double radius, double pitch)
{
    const std::size_t first = features.contours.size();
    const cam::Point corners[] = {corner, corner + at(20000, 0), corner + at(20000, 20000),
                                  corner + at(0, 20000)};
    features.contours.addPolygon(corners, 4, false);
    bool isWhole = false;
    for (double x = pitch; x < 20000 - radius; x += pitch) {
        for (double y = pitch; y < 20000 - radius; y += pitch, isWhole = !isWhole) {
            const cam::Point center = corner + at(x, y);
            if (isWhole) {
                features.contours.addCircle(center, radius * micrometre, true);
                continue;
            }
            features.contours.begin(center + at(0, radius), true);
            features.contours.arcTo(center - at(0, radius), center, true);
            features.contours.arcTo(center + at(0, radius), center, true);
            features.contours.end();
        }
    }
    addSurface(features, first);
}

// Compares a picture of 24 x 24 pixels about `center`, sample by sample. Empty when nothing is wrong.
QString firstDifference(const LayerScene &scene, const ExactPicture &truth, cam::Point center, double pixel)
{
    drawing::Viewport viewport;
    viewport.size = QSize(24, 24);
    viewport.center = center;
    viewport.pixel = pixel;
    Canvas canvas(24, 24);
    scene.draw(canvas, toSamples(viewport), everySample());
    const cam::Transform back = drawing::inverse(toSamples(viewport));
    // A chord, the grid of the job's own symbols, and the corners that both give to curves.
    const double reach = 0.1 * pixel / Canvas::samples + 250.0;
    for (int y = 0; y < 24 * Canvas::samples; y += 7) {
        for (int x = 0; x < 24 * Canvas::samples; x += 7) {
            const cam::Point at = back({x + 0.5, y + 0.5});
            const ExactPicture::Reading reading = truth.at(at, reach);
            if (reading.isCertain && reading.dark != canvas.sample(x, y))
                return QString("at %1, %2 nm it should be %3")
                    .arg(at.x, 0, 'f', 0)
                    .arg(at.y, 0, 'f', 0)
                    .arg(reading.dark ? "dark" : "clear");
        }
    }
    return {};
}

} // namespace

class tst_LayerScene : public QObject
{
    Q_OBJECT

private:
    // How much of the picture is covered, in pixels.
    static double coveredPixels(const QImage &image)
    {
        double sum = 0.0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                sum += qGray(image.pixel(x, y)) / 255.0;
        }
        return sum;
    }

    // A picture of 100 x 100 pixels of a millimetre, with (0, 0) in its middle.
    static QImage inMillimetres(const LayerScene &scene)
    {
        drawing::Viewport viewport;
        viewport.size = QSize(100, 100);
        viewport.pixel = 1e6;
        return drawing::coverage(scene, viewport);
    }

private slots:
    // FILE_PROCESS_SEEDS=FIRST-LAST tries others than the few that are always tried.
    void randomJobsAreDrawnTruly_data()
    {
        QTest::addColumn<unsigned>("seed");
        for (const unsigned seed : seedsOr({1, 2, 3, 4, 5, 6}))
            QTest::newRow(qPrintable(QString::number(seed))) << seed;
    }
    void randomJobsAreDrawnTruly()
    {
        QFETCH(const unsigned, seed);
        const RandomJob job = randomJob(seed);
        if (job.options.negative && job.image.profile.isEmpty())
            return;
        const ExactPicture truth(job.image, job.options);
        const LayerScene scene(shared(copyOf(job.image)), job.options);
        const std::vector<cam::Point> edges = truth.edgePoints();
        QVERIFY(!edges.empty());
        std::mt19937 random(seed);
        for (int i = 0; i < 12; ++i) {
            const cam::Point center = edges[random() % edges.size()];
            const double pixel = 500.0 * std::pow(2.0, random() % 10);
            const QString wrong = firstDifference(scene, truth, center, pixel);
            QVERIFY2(wrong.isEmpty(),
                     qPrintable(wrong + QString(", pixels of %1 nm\n").arg(pixel) + description(job)));
        }
    }

    void sampleBoardIsDrawnPixelByPixel_data()
    {
        QTest::addColumn<QString>("step");
        QTest::addColumn<QString>("layer");
        QTest::addColumn<int>("change");
        QTest::newRow("TOP") << "pcb"
                             << "TOP" << 0;
        QTest::newRow("POWER, with clearances") << "pcb"
                                                << "POWER" << 0;
        QTest::newRow("DRILL of the panel") << "panel"
                                            << "DRILL" << 0;
        QTest::newRow("BOTTOM mirrored, rotated") << "pcb"
                                                  << "BOTTOM" << 1;
        QTest::newRow("POWER negated") << "pcb"
                                       << "POWER" << 2;
        QTest::newRow("MASK_TOP scaled unevenly") << "pcb"
                                                  << "MASK_TOP" << 3;
    }
    void sampleBoardIsDrawnPixelByPixel()
    {
        QFETCH(const QString, step);
        QFETCH(const QString, layer);
        QFETCH(const int, change);
        cam::ExportOptions options;
        options.mirror = change == 1;
        options.angle = change == 1 ? 30.0 : 0.0;
        options.negative = change == 2;
        options.xScale = change == 3 ? 1.25 : 1.0;
        const cam::Job job(std::filesystem::u8path(SAMPLE_JOBS "/beacon"));
        cam::ReadingNotes notes;
        const LayerScene scene(shared(job.readLayer(step.toStdString(), layer.toStdString(), notes)),
                               options);
        const cam::Box extent = crosscheck::outputExtent(scene.image(), options);
        if (extent.isEmpty()) {
            QVERIFY(scene.extent().isEmpty());
            return;
        }
        QVERIFY(options.negative ||
                (scene.extent().low.x <= extent.low.x && scene.extent().high.y >= extent.high.y));
        // The middle of the panel; samples are the reference's pixels.
        const int side = 90;
        crosscheck::Window window;
        window.width = window.height = side * Canvas::samples;
        window.left = (extent.low.x + extent.high.x - window.width * crosscheck::pixel) / 2.0;
        window.bottom = (extent.low.y + extent.high.y - window.height * crosscheck::pixel) / 2.0;
        drawing::Viewport viewport;
        viewport.size = QSize(side, side);
        viewport.pixel = Canvas::samples * crosscheck::pixel;
        viewport.center = {window.left + side / 2.0 * viewport.pixel,
                           window.bottom + side / 2.0 * viewport.pixel};
        Canvas canvas(side, side);
        scene.draw(canvas, toSamples(viewport), everySample());
        crosscheck::Bitmap drawn(window.width, window.height);
        for (int y = 0; y < window.height; ++y) {
            for (int x = 0; x < window.width; ++x) {
                if (canvas.sample(x, window.height - 1 - y))
                    drawn.set(x, y);
            }
        }
        const auto reference = [&](crosscheck::Edges edges) {
            return crosscheck::rasterize(scene.image(), options, window, edges);
        };
        const crosscheck::Bitmap expected = reference(crosscheck::Edges::AsTheyAre);
        const crosscheck::Tolerance tolerance{reference(crosscheck::Edges::EveryEdgeIn),
                                              reference(crosscheck::Edges::EveryEdgeOut)};
        const crosscheck::Difference difference = crosscheck::compare(expected, drawn, &tolerance);
        QVERIFY2(difference.beyond == 0, qPrintable(QString("%1 pixels, the first at %2, %3")
                                                        .arg(difference.beyond)
                                                        .arg(difference.x)
                                                        .arg(difference.y)));
        // Edges alone may differ, and those hardly ever: both look at the centres.
        QVERIFY2(difference.differing * 500 < expected.darkCount() + 500,
                 qPrintable(QString("%1 of %2 pixels").arg(difference.differing).arg(expected.darkCount())));
    }

    void smallFeaturesAreSeen_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<double>("length");
        QTest::newRow("pad of a fifth of a pixel") << "r200" << -1.0;
        QTest::newRow("pad of a thousandth") << "s1" << -1.0;
        QTest::newRow("thin pad") << "rect20x7000" << -1.0;
        QTest::newRow("line of a tenth, long") << "r100" << 9000.0;
        QTest::newRow("line of a tenth, short") << "r100" << 200.0;
        QTest::newRow("line of a square pen") << "s100" << 9000.0;
    }
    void smallFeaturesAreSeen()
    {
        QFETCH(const QString, name);
        QFETCH(const double, length);
        for (const cam::Point place : {at(500, 500), at(20, 70), at(950, 300), at(-3000, 4999)}) {
            cam::LayerImage image = emptyLayer();
            const std::uint32_t shape = symbol(image, name.toStdString());
            cam::FeatureSet &features = image.steps[0].features;
            // Far away, so that the one is not all there is.
            addPad(features, shape, at(-40000, 40000));
            if (length < 0)
                addPad(features, shape, place);
            else
                addLine(features, shape, place, place + at(length, 0));
            const QImage drawn = inMillimetres(sceneOf(std::move(image))).copy(20, 20, 60, 60);
            const double pixels = coveredPixels(drawn);
            QVERIFY2(pixels > 0.3 && pixels < 11.0, qPrintable(QString::number(pixels)));
        }
    }

    void smallSurfacesAreSeen_data()
    {
        QTest::addColumn<double>("width");
        QTest::addColumn<double>("height");
        QTest::newRow("point") << 10.0 << 10.0;
        QTest::newRow("wide") << 7000.0 << 10.0;
        QTest::newRow("high") << 10.0 << 7000.0;
        QTest::newRow("half a pixel") << 500.0 << 500.0;
    }
    void smallSurfacesAreSeen()
    {
        QFETCH(const double, width);
        QFETCH(const double, height);
        cam::LayerImage image = emptyLayer();
        addPlane(image.steps[0].features, at(-40000, 30000), at(-39000, 31000));
        addPlane(image.steps[0].features, at(100, 80), at(100 + width, 80 + height));
        const double pixels = coveredPixels(inMillimetres(sceneOf(std::move(image))).copy(20, 20, 60, 60));
        QVERIFY2(pixels > 0.3 && pixels < 9.0, qPrintable(QString::number(pixels)));
    }

    // Pads of 0.25 mm, sixteen a pixel: four fifths of the place is covered.
    void denseFeaturesAreAsDarkAsTheyCover()
    {
        cam::LayerImage image = emptyLayer();
        const std::uint32_t pad = symbol(image, "s224");
        for (double x = -40000; x < 40000; x += 250) {
            for (double y = -40000; y < 40000; y += 250)
                addPad(image.steps[0].features, pad, at(x, y));
        }
        const QImage drawn = inMillimetres(sceneOf(std::move(image)));
        const double share = coveredPixels(drawn.copy(20, 20, 60, 60)) / 3600.0;
        QVERIFY2(std::fabs(share - 0.803) < 0.02, qPrintable(QString::number(share)));
    }

    // What is small and cleared by something large is gone; what is drawn afterwards is there.
    void laterFeaturesCountAlsoWhereTheyAreSmall_data()
    {
        QTest::addColumn<bool>("clearLast");
        QTest::addColumn<double>("expected");
        QTest::newRow("cleared") << true << 0.0;
        QTest::newRow("drawn after it was cleared") << false << 400.0 * 0.35;
    }
    void laterFeaturesCountAlsoWhereTheyAreSmall()
    {
        QFETCH(const bool, clearLast);
        QFETCH(const double, expected);
        cam::LayerImage image = emptyLayer();
        const std::uint32_t pad = symbol(image, "r300");
        cam::FeatureSet &features = image.steps[0].features;
        addPad(features, pad, at(-45000, 45000));
        if (!clearLast)
            addPlane(features, at(-20000, -20000), at(20000, 20000), false);
        for (double x = -9500; x < 10000; x += 1000) {
            for (double y = -9500; y < 10000; y += 1000)
                addPad(features, pad, at(x, y));
        }
        if (clearLast)
            addPlane(features, at(-20000, -20000), at(20000, 20000), false);
        const double pixels = coveredPixels(inMillimetres(sceneOf(std::move(image))).copy(20, 20, 60, 60));
        QVERIFY2(std::fabs(pixels - expected) < 1.0, qPrintable(QString::number(pixels)));
    }

    // A plane with clearances of a third of a pixel shows less of itself.
    void smallClearancesMakeAPlaneLighter()
    {
        cam::LayerImage image = emptyLayer();
        const std::uint32_t pad = symbol(image, "s500");
        cam::FeatureSet &features = image.steps[0].features;
        addPlane(features, at(-40000, -40000), at(40000, 40000));
        for (double x = -39500; x < 40000; x += 1000) {
            for (double y = -39500; y < 40000; y += 1000)
                addPad(features, pad, at(x, y), false);
        }
        const double share =
            coveredPixels(inMillimetres(sceneOf(std::move(image))).copy(20, 20, 60, 60)) / 3600.0;
        QVERIFY2(std::fabs(share - 0.75) < 0.02, qPrintable(QString::number(share)));
    }

    // Pixels of a millimetre: holes as wide as half a sample to two pixels.
    void roundHolesClearTheirArea_data()
    {
        QTest::addColumn<double>("radius");
        QTest::addColumn<double>("pitch");
        QTest::newRow("half a sample") << 70.0 << 404.5;
        QTest::newRow("a sample") << 130.0 << 404.5;
        QTest::newRow("half a pixel") << 260.0 << 710.0;
        QTest::newRow("two pixels") << 970.0 << 2130.0;
    }
    void roundHolesClearTheirArea()
    {
        QFETCH(const double, radius);
        QFETCH(const double, pitch);
        cam::LayerImage image = emptyLayer();
        addSieve(image.steps[0].features, at(-10130, -10370), radius, pitch);
        double holes = 0.0;
        for (std::size_t i = 1; i < image.steps[0].features.contours.size(); ++i)
            holes += std::fabs(cam::signedArea(image.steps[0].features.contours[i])) / 1e12;
        const double pixels = coveredPixels(inMillimetres(sceneOf(std::move(image))));
        QVERIFY2(std::fabs(400.0 - holes - pixels) < 10.0,
                 qPrintable(QString("%1 instead of %2").arg(pixels).arg(400.0 - holes)));
    }

    // A panel of 16 planes: a tile that shows a part of one of them is no work for the others.
    void whatLiesBesideATileTakesNoTime()
    {
        cam::LayerImage image = emptyLayer();
        for (int column = 0; column < 4; ++column) {
            for (int row = 0; row < 4; ++row)
                addSieve(image.steps[0].features, at(21000.0 * column, 21000.0 * row), 100, 250);
        }
        const LayerScene scene = sceneOf(std::move(image));
        const auto timeOf = [&scene](cam::Point center, double side) {
            drawing::Viewport viewport;
            viewport.size = QSize(256, 256);
            viewport.center = center;
            viewport.pixel = side * micrometre / 256;
            const double before = processorMilliseconds();
            drawing::coverage(scene, viewport);
            return processorMilliseconds() - before;
        };
        const double all = timeOf(at(42000, 42000), 84000), part = timeOf(at(3000, 3000), 5000);
        QVERIFY2(part < all / 4.0, qPrintable(QString("%1 of %2 ms").arg(part).arg(all)));
    }

    void buildingTellsHowFarItIsAndEndsOnDemand_data()
    {
        QTest::addColumn<bool>("isOfSurfaces");
        QTest::newRow("pads") << false;
        QTest::newRow("surfaces") << true;
    }
    void buildingTellsHowFarItIsAndEndsOnDemand()
    {
        QFETCH(const bool, isOfSurfaces);
        cam::LayerImage image = emptyLayer();
        cam::FeatureSet &features = image.steps[0].features;
        const std::uint32_t pad = symbol(image, "r300");
        for (int i = 0; i < 20000; ++i) {
            if (isOfSurfaces)
                addPlane(features, at(i, 0), at(i + 1, 1));
            else
                addPad(features, pad, at(i, 0));
        }
        const auto made = shared(std::move(image));
        std::vector<double> shares;
        LayerScene(made, {}, [&shares](double share) { shares.push_back(share); });
        QVERIFY(std::is_sorted(shares.begin(), shares.end()));
        QCOMPARE(shares.back(), 1.0);
        QVERIFY(std::count_if(shares.begin(), shares.end(),
                              [](double share) { return share > 0.5 && share < 1.0; }) > 10);
        for (std::size_t end = 0; end < shares.size(); ++end) {
            std::size_t reports = 0;
            QVERIFY_EXCEPTION_THROWN(LayerScene(made, {},
                                                [&](double) {
                                                    if (++reports > end)
                                                        throw drawing::Cancelled();
                                                }),
                                     drawing::Cancelled);
            QCOMPARE(reports, end + 1);
        }
    }

    void areasThatTouchShowNoSeam()
    {
        cam::LayerImage image = emptyLayer();
        addPlane(image.steps[0].features, at(-20000, -20000), at(123.4, 20000));
        addPlane(image.steps[0].features, at(123.4, -20000), at(20000, 20000));
        const QImage drawn = inMillimetres(sceneOf(std::move(image)));
        for (int x = 31; x < 69; ++x)
            QCOMPARE(qGray(drawn.pixel(x, 50)), 255);
    }

    // What a file has too much, or lacks: half a micrometre wide, at pixels of a millimetre.
    void areasAreSeenHoweverSmallTheyAre()
    {
        const cam::GridRing strip{{1000000, 0}, {9000000, 0}, {9000000, 500}, {1000000, 500}};
        const cam::GridRing dot{{0, 20000000}, {500, 20000000}, {500, 20000500}, {0, 20000500}};
        const cam::GridRing plate{
            {-30000000, -30000000}, {-10000000, -30000000}, {-10000000, -10000000}, {-30000000, -10000000}};
        const cam::GridRing hole{
            {-25000000, -25000000}, {-25000000, -15000000}, {-15000000, -15000000}, {-15000000, -25000000}};
        drawing::Viewport viewport;
        viewport.size = QSize(100, 100);
        viewport.pixel = 1e6;
        for (const bool isMirrored : {false, true}) {
            const cam::Transform place = isMirrored ? cam::Transform::mirrorX() : cam::Transform();
            const QImage drawn =
                drawing::coverage(drawing::AreaScene({strip, dot, plate, hole}, place), viewport);
            const QImage seen = isMirrored ? drawn.mirrored(true, false) : drawn;
            for (int x = 52; x < 58; ++x)
                QVERIFY(qGray(seen.pixel(x, 49)) + qGray(seen.pixel(x, 50)) > 80);
            const double lonely = coveredPixels(seen.copy(45, 25, 10, 10));
            QVERIFY2(lonely > 0.3 && lonely < 2.0, qPrintable(QString::number(lonely)));
            QCOMPARE(qGray(seen.pixel(22, 70)), 255);
            QCOMPARE(qGray(seen.pixel(30, 70)), 0);
        }
    }

    void drawingEndsWhenNobodyWaits()
    {
        cam::LayerImage image = emptyLayer();
        const std::uint32_t pad = symbol(image, "r300");
        for (int i = 0; i < 5000; ++i)
            addPad(image.steps[0].features, pad, at(i, 0));
        const LayerScene scene = sceneOf(std::move(image));
        drawing::DrawMode mode;
        int checks = 0;
        mode.check = [&checks] {
            if (++checks == 3)
                throw drawing::Cancelled();
        };
        drawing::Viewport viewport;
        viewport.size = QSize(10, 10);
        QVERIFY_EXCEPTION_THROWN(drawing::coverage(scene, viewport, mode), drawing::Cancelled);
        QCOMPARE(checks, 3);
    }

    void scenesLieOverEachOtherInTheirColors()
    {
        cam::LayerImage below = emptyLayer(), above = emptyLayer();
        addPlane(below.steps[0].features, at(-30000, -30000), at(30000, 30000));
        addPlane(above.steps[0].features, at(0, -30000), at(30000, 30000));
        const std::vector<drawing::ColoredScene> scenes = {
            {std::make_shared<LayerScene>(shared(std::move(below)), cam::ExportOptions()),
             QColor(200, 100, 0), 1.0},
            {std::make_shared<LayerScene>(shared(std::move(above)), cam::ExportOptions()),
             QColor(0, 100, 200), 0.5}};
        drawing::Viewport viewport;
        viewport.size = QSize(300, 300); // more than a tile
        viewport.pixel = 1e6 / 3;
        const QImage drawn = drawing::picture(scenes, viewport, Qt::black);
        QCOMPARE(drawn.pixel(10, 150), qRgb(0, 0, 0));
        QCOMPARE(drawn.pixel(100, 150), qRgb(200, 100, 0));
        const QRgb mixed = drawn.pixel(200, 150);
        QVERIFY(std::abs(qRed(mixed) - 100) < 3 && std::abs(qBlue(mixed) - 100) < 3 && qGreen(mixed) > 97);
        viewport.mirrored = true;
        const QImage fromBelow = drawing::picture(scenes, viewport, Qt::black);
        QCOMPARE(fromBelow.pixel(199, 150), qRgb(200, 100, 0));
    }
};

QTEST_GUILESS_MAIN(tst_LayerScene)
#include "tst_layerscene.moc"
