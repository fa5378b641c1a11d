// Exports every layer of jobs in both formats, and compares three pictures of each: gerbv's of the Gerber
// file, KLayout's of the GDSII file, and the library's own of the ODB++ source, at 10 micrometres a pixel.
// They may differ along edges only, by at most one pixel.
//
// The sample's board is compared as a whole as it is. Its panel, its transformed exports and boards of other
// people's (../shared/data beside the project) are compared in one window a layer: the one with the most
// features, or one that changes from layer to layer. With FILE_PROCESS_CROSSCHECK=full everything is
// compared.
#include "host/cam/gdsii/gdswriter.h"
#include "host/cam/gerber/gerberwriter.h"
#include "host/cam/odb/job.h"
#include "host/cam/paths.h"
#include "tests/crosscheck/otherprograms.h"
#include "tests/crosscheck/referenceraster.h"

#include <QtTest>

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>

#include <cmath>
#include <functional>
#include <future>
#include <map>
#include <memory>

using crosscheck::Bitmap;
using crosscheck::Picture;
using crosscheck::Window;

namespace {

struct Variant
{
    const char *name;
    double angle = 0.0;
    bool mirror = false;
    double xScale = 1.0, yScale = 1.0;
    bool negative = false;

    cam::ExportOptions options() const
    {
        cam::ExportOptions options;
        options.angle = angle;
        options.mirror = mirror;
        options.xScale = xScale;
        options.yScale = yScale;
        options.negative = negative;
        return options;
    }
};

const Variant variants[] = {{"as it is"},
                            {"rotated by 90", 90.0},
                            {"mirrored", 0.0, true},
                            {"scaled by 1.25 and 2", 0.0, false, 1.25, 2.0},
                            {"negated", 0.0, false, 1.0, 1.0, true},
                            {"mirrored, rotated by 30, negated", 30.0, true, 1.0, 1.0, true}};

constexpr int windowSide = 1500;  // pixels, of the windows onto large boards
constexpr int largestSide = 3000; // pixels, of the windows that cover all of a layer

bool isFull()
{
    return qgetenv("FILE_PROCESS_CROSSCHECK") == "full";
}

// FILE_PROCESS_CROSSCHECK_LAYER names the only layer to be looked at.
bool isWanted(const std::string &layer)
{
    const QByteArray only = qgetenv("FILE_PROCESS_CROSSCHECK_LAYER");
    return only.isEmpty() || cam::lowerCase(layer) == cam::lowerCase(only.toStdString());
}

// A job folder, unpacked where it was an archive.
struct JobSource
{
    QString name;
    QString folder;  // ready to be read
    QString archive; // or to be unpacked first
    bool isOwn = false;
};

std::vector<JobSource> jobSources()
{
    const QString samples = QString(PROJECT_FOLDER) + "/samples";
    std::vector<JobSource> sources;
    for (const QString &name : QDir(samples).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name))
        sources.push_back({name, samples + '/' + name, QString(), true});
    const QDir shared(QString(PROJECT_FOLDER) + "/../shared/data");
    for (const QString &name : shared.entryList({"*.tgz"}, QDir::Files, QDir::Name))
        sources.push_back({name, QString(), shared.filePath(name), false});
    return sources;
}

cam::Box padded(cam::Box box, double margin)
{
    box.low = box.low - cam::Point{margin, margin};
    box.high = box.high + cam::Point{margin, margin};
    return box;
}

// Windows of at most `side` pixels that cover `box`, on a grid of whole pixels.
std::vector<Window> covering(const cam::Box &box, int side)
{
    std::vector<Window> windows;
    const double step = side * crosscheck::pixel;
    // KLayout centres its box: an odd number of pixels would move them by half a one.
    const auto pixels = [step](double length) {
        const double pairs = std::ceil(std::min(step, length) / (2.0 * crosscheck::pixel));
        return std::max(8, 2 * static_cast<int>(pairs));
    };
    const auto floorPixel = [](double v) { return std::floor(v / crosscheck::pixel) * crosscheck::pixel; };
    for (double bottom = floorPixel(box.low.y); bottom < box.high.y; bottom += step) {
        for (double left = floorPixel(box.low.x); left < box.high.x; left += step) {
            windows.push_back({left, bottom, pixels(box.high.x - left), pixels(box.high.y - bottom)});
        }
    }
    return windows;
}

bool holds(const Window &window, cam::Point p)
{
    return p.x >= window.left && p.x < window.left + window.width * crosscheck::pixel &&
           p.y >= window.bottom && p.y < window.bottom + window.height * crosscheck::pixel;
}

// One of the windows: the one with the most features of the exported step for an even `turn`, another one for
// an odd.
Window selected(const std::vector<Window> &windows, const cam::LayerImage &image,
                const cam::ExportOptions &options, std::size_t turn)
{
    const cam::Transform map = cam::exportTransform(options, image.datum);
    const cam::FeatureSet &set = image.top().features;
    std::vector<std::size_t> counts(windows.size(), 0);
    const auto count = [&](cam::Point at) {
        for (std::size_t i = 0; i < windows.size(); ++i)
            counts[i] += holds(windows[i], map(at)) ? 1 : 0;
    };
    for (const cam::Line &line : set.lines)
        count(line.start);
    for (const cam::Pad &pad : set.pads)
        count(pad.at);
    const auto fullest =
        static_cast<std::size_t>(std::max_element(counts.begin(), counts.end()) - counts.begin());
    return windows[turn % 2 == 0 ? fullest : turn * 7 % windows.size()];
}

// What is compared: one window of one layer.
struct Check
{
    QString layer; // and step
    Picture gerber, gds;
    Bitmap reference;
    std::function<crosscheck::Tolerance()> tolerance;
};

} // namespace

class CrossCheckTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void threePicturesDifferAlongEdgesOnly_data();
    void threePicturesDifferAlongEdgesOnly();
    void aShiftByTwoPixelsIsFound();
    void aMissingSpeckIsFound();

private:
    QString folderOf(const JobSource &source);
    std::vector<Check> checks(const JobSource &source, const QString &folder, const Variant &variant,
                              std::size_t turn);
    void addChecks(std::vector<Check> &checks, const std::shared_ptr<const cam::LayerImage> &image,
                   const cam::ExportOptions &options, bool isWhole, std::size_t turn);

    QTemporaryDir m_work;
    std::map<QString, QString> m_unpacked; // archive to job folder
    std::vector<JobSource> m_sources;
    int m_fileCount = 0;
};

void CrossCheckTest::initTestCase()
{
    QVERIFY(m_work.isValid());
    m_sources = jobSources();
    QVERIFY(!m_sources.empty());
}

// The first folder below the unpacked archive that has a matrix.
QString CrossCheckTest::folderOf(const JobSource &source)
{
    if (source.archive.isEmpty())
        return source.folder;
    QString &folder = m_unpacked[source.archive];
    if (!folder.isEmpty())
        return folder;
    const QString target = m_work.path() + "/jobs/" + source.name;
    QDir().mkpath(target);
    // By the compression program and tar one after the other: some archives hold a tar under a name of its
    // own.
    if (QProcess::execute("tar", {"-xzf", source.archive, "-C", target}) != 0)
        return QString();
    for (const QString &name : QDir(target).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        if (QFile::exists(target + '/' + name + "/matrix/matrix"))
            folder = target + '/' + name;
    }
    return folder;
}

void CrossCheckTest::addChecks(std::vector<Check> &checks,
                               const std::shared_ptr<const cam::LayerImage> &image,
                               const cam::ExportOptions &options, bool isWhole, std::size_t turn)
{
    const cam::Box extent = crosscheck::outputExtent(*image, options);
    const QString base = m_work.path() + "/layer" + QString::number(m_fileCount++);
    cam::ExportOptions gerberOptions = options, gdsOptions = options;
    gerberOptions.file = (base + ".gerber").toStdString();
    gdsOptions.file = (base + ".gds").toStdString();
    cam::writeGerber(*image, gerberOptions);
    cam::writeGds(*image, gdsOptions);
    if (extent.isEmpty())
        return; // both were written; there is nothing to see in them
    const bool coversAll = isWhole || isFull();
    std::vector<Window> windows = covering(padded(extent, 200000.0), coversAll ? largestSide : windowSide);
    if (!coversAll)
        windows = {selected(windows, *image, options, turn)};
    for (const Window &window : windows) {
        const QString png = base + '_' + QString::number(checks.size());
        checks.push_back(
            {QString::fromStdString(image->top().name + '/' + image->layer),
             {base + ".gerber", window, png + "_gerber.png", crosscheck::gerbvMargin},
             {base + ".gds", window, png + "_gds.png"},
             crosscheck::rasterize(*image, options, window),
             [image, options, window] {
                 return crosscheck::Tolerance{
                     crosscheck::rasterize(*image, options, window, crosscheck::Edges::EveryEdgeIn),
                     crosscheck::rasterize(*image, options, window, crosscheck::Edges::EveryEdgeOut)};
             }});
    }
}

std::vector<Check> CrossCheckTest::checks(const JobSource &source, const QString &folder,
                                          const Variant &variant, std::size_t turn)
{
    std::vector<Check> checks;
    const cam::Job job(folder.toStdString());
    const bool isPlain = &variant == variants;
    for (const std::string &step : job.matrix().steps) {
        for (const cam::MatrixLayer &layer : job.matrix().layers) {
            const QString path = folder + "/steps/" + QString::fromStdString(cam::lowerCase(step)) +
                                 "/layers/" + QString::fromStdString(cam::lowerCase(layer.name));
            if (!QFile::exists(path) || layer.type == "GDS")
                continue;
            const std::size_t here = turn++; // the same window with and without the others
            if (!isWanted(layer.name))
                continue;
            cam::ReadingNotes notes;
            const auto image =
                std::make_shared<const cam::LayerImage>(job.readLayer(step, layer.name, notes));
            if (!notes.unsupported.empty())
                throw cam::Error("unsupported: " + notes.unsupported.begin()->first);
            addChecks(checks, image, variant.options(),
                      source.isOwn && isPlain && step == job.matrix().steps.front(), here);
        }
    }
    return checks;
}

void CrossCheckTest::threePicturesDifferAlongEdgesOnly_data()
{
    QTest::addColumn<int>("source");
    QTest::addColumn<int>("variant");
    for (std::size_t s = 0; s < m_sources.size(); ++s) {
        for (std::size_t v = 0; v < sizeof variants / sizeof *variants; ++v)
            QTest::newRow(qPrintable(m_sources[s].name + ", " + variants[v].name))
                << static_cast<int>(s) << static_cast<int>(v);
    }
}

void CrossCheckTest::threePicturesDifferAlongEdgesOnly()
{
    QFETCH(int, source);
    QFETCH(int, variant);
    const JobSource &job = m_sources[static_cast<std::size_t>(source)];
    const QString folder = folderOf(job);
    QVERIFY2(!folder.isEmpty(), qPrintable(job.archive + " has no job in it"));
    std::vector<Check> all;
    try {
        all = checks(job, folder, variants[variant], static_cast<std::size_t>(variant));
    } catch (const cam::Error &error) {
        QFAIL(error.what());
    }
    QVERIFY(!all.empty());
    std::vector<Picture> gerberPictures, gdsPictures;
    for (const Check &check : all) {
        gerberPictures.push_back(check.gerber);
        gdsPictures.push_back(check.gds);
    }
    QStringList failures;
    // Both at once: each of them uses one processor.
    const QString list = m_work.path() + "/pictures.txt";
    auto klayout = std::async(std::launch::async, [&] { return crosscheck::drawGds(gdsPictures, list); });
    const QString gerbvSaid = crosscheck::drawGerber(gerberPictures);
    const QString klayoutSaid = klayout.get();
    if (!gerbvSaid.isEmpty())
        failures << "gerbv: " + gerbvSaid;
    if (!klayoutSaid.isEmpty())
        failures << "KLayout: " + klayoutSaid;

    std::size_t dark = 0;
    for (const Check &check : all) {
        const Bitmap gerber = crosscheck::read(check.gerber), gds = crosscheck::read(check.gds);
        if (gerber.width() == 0 || gds.width() == 0) {
            failures << check.layer + ": no picture";
            continue;
        }
        dark += check.reference.darkCount();
        crosscheck::Tolerance tolerance;
        const auto judge = [&](const char *what, const Bitmap &a, const Bitmap &b) {
            crosscheck::Difference difference = crosscheck::compare(a, b);
            if (difference.beyond == 0)
                return;
            if (tolerance.most.width() == 0)
                tolerance = check.tolerance();
            difference = crosscheck::compare(a, b, &tolerance);
            if (difference.beyond == 0)
                return;
            failures << QString("%1, %2: %3 of %4 differing pixels are off an edge, the first at %5, %6 mm")
                            .arg(check.layer, what)
                            .arg(difference.beyond)
                            .arg(difference.differing)
                            .arg((check.gds.window.left + difference.x * crosscheck::pixel) / 1e6)
                            .arg((check.gds.window.bottom + difference.y * crosscheck::pixel) / 1e6);
        };
        judge("Gerber against source", gerber, check.reference);
        judge("GDSII against source", gds, check.reference);
        judge("Gerber against GDSII", gerber, gds);
    }
    QVERIFY2(failures.isEmpty(), qPrintable('\n' + failures.join('\n')));
    QVERIFY(dark > 0);
    for (const Check &check : all) {
        QFile::remove(check.gerber.png);
        QFile::remove(check.gds.png);
        QFile::remove(check.gerber.file);
        QFile::remove(check.gds.file);
    }
}

// The comparison itself.
void CrossCheckTest::aShiftByTwoPixelsIsFound()
{
    Bitmap a(200, 100), b(200, 100), c(200, 100);
    for (int y = 20; y < 60; ++y) {
        a.fill(y, 50, 150, true);
        b.fill(y, 51, 151, true);
        c.fill(y, 52, 152, true);
    }
    QCOMPARE(crosscheck::compare(a, b).beyond, std::size_t(0));
    QCOMPARE(crosscheck::compare(a, b).differing, std::size_t(80));
    QVERIFY(crosscheck::compare(a, c).beyond > 0);
}

void CrossCheckTest::aMissingSpeckIsFound()
{
    Bitmap a(200, 100);
    const Bitmap b = a;
    a.set(70, 50);
    const crosscheck::Difference difference = crosscheck::compare(a, b);
    QCOMPARE(difference.beyond, std::size_t(1));
    QCOMPARE(difference.x, 70);
    QCOMPARE(difference.y, 50);
}

int main(int count, char **values)
{
    // One row may take longer than the five minutes after which Qt Test gives up.
    qputenv("QTEST_FUNCTION_TIMEOUT", QByteArray::number(2 * 60 * 60 * 1000));
    QCoreApplication application(count, values);
    CrossCheckTest test;
    return QTest::qExec(&test, count, values);
}
#include "tst_crosscheck.moc"
