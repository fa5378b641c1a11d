// Exports every layer of jobs in both formats, and has other programs read the files, in two ways.
//
// The formats against each other: KLayout reads both files and compares the polygons, of the whole layer.
// Their edges may lie a micrometre apart.
//
// Both against the source: gerbv's picture of the Gerber file, KLayout's of the GDSII file, and the library's
// own of the ODB++ source, at 10 micrometres a pixel, may differ along edges only, by at most one pixel. The
// sample's board is compared as a whole as it is. Its panel, its transformed exports and boards of other
// people's (../shared/data beside the project) are compared in one window a layer: the one with the most
// features, or one that changes from layer to layer. With FILE_PROCESS_CROSSCHECK=full the pictures show
// everything.
//
// FILE_PROCESS_CROSSCHECK_JOB, _TRANSFORM and _LAYER name the only job, transform and layer to be looked at.
#include "cam/base/paths.h"
#include "cam/gdsii/gdswriter.h"
#include "cam/gerber/gerberwriter.h"
#include "cam/odb/job.h"
#include "tests/cam/random/randomjob.h"
#include "tests/cam/support/layerbuilding.h"
#include "tests/crosscheck/otherprograms.h"
#include "tests/crosscheck/referenceraster.h"

#include <QtTest>

#include <QCryptographicHash>
#include <QDir>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>

#include <atomic>
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

// Whether the environment's `variable` asks for `name`, or for all.
bool isWanted(const char *variable, const QString &name)
{
    const QString only = QString::fromLocal8Bit(qgetenv(variable));
    return only.isEmpty() || name.compare(only, Qt::CaseInsensitive) == 0;
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
    // unread: what could not be read when it was put there.
    for (const char *folder : {"/../shared/data", "/../shared/data/unread"}) {
        const QDir shared(PROJECT_FOLDER + QString(folder));
        for (const QFileInfo &archive : shared.entryInfoList({"*.tgz"}, QDir::Files, QDir::Name))
            sources.push_back({archive.completeBaseName(), QString(), archive.filePath(), false});
    }
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

// What a picture has to show.
struct Expected
{
    QString layer; // and step
    std::function<Bitmap(crosscheck::Edges)> draw;
};

// One window of a layer, in pictures.
struct View
{
    Picture gerber, gds;
    std::vector<Expected> expected; // of each layer that has these files
};

// One layer, exported, and other layers whose files draw the same.
struct Check
{
    QString layer; // and step, of the first
    crosscheck::FormatPair files;
    std::vector<View> views; // none where there is nothing to see
};

std::unique_ptr<cam::Job> openJob(const QString &folder, QStringList &failures)
{
    try {
        return std::make_unique<cam::Job>(folder.toStdString());
    } catch (const cam::Error &error) {
        failures << error.what();
        return nullptr;
    }
}

void writeBoth(const cam::LayerImage &image, cam::ExportOptions options, const crosscheck::FormatPair &files)
{
    options.file = files.gerber.toStdString();
    cam::writeGerber(image, options);
    options.file = files.gds.toStdString();
    cam::writeGds(image, options);
}

// Counts the dark pixels that there should be.
using DarkCount = std::atomic<std::size_t>;

// What is wrong with the pictures of one window.
QStringList judged(const View &view, const Bitmap &gerber, const Bitmap &gds, const Expected &expected,
                   DarkCount &dark)
{
    QStringList failures;
    crosscheck::Tolerance tolerance;
    const Bitmap reference = expected.draw(crosscheck::Edges::AsTheyAre);
    dark += reference.darkCount();
    const auto judge = [&](const char *what, const Bitmap &a, const Bitmap &b) {
        crosscheck::Difference difference = crosscheck::compare(a, b);
        if (difference.beyond == 0)
            return;
        if (tolerance.most.width() == 0)
            tolerance = {expected.draw(crosscheck::Edges::EveryEdgeIn),
                         expected.draw(crosscheck::Edges::EveryEdgeOut)};
        difference = crosscheck::compare(a, b, &tolerance);
        if (difference.beyond == 0)
            return;
        failures << QString("%1, %2: %3 of %4 differing pixels are off an edge, the first at %5, %6 mm")
                        .arg(expected.layer, what)
                        .arg(difference.beyond)
                        .arg(difference.differing)
                        .arg((view.gds.window.left + difference.x * crosscheck::pixel) / 1e6)
                        .arg((view.gds.window.bottom + difference.y * crosscheck::pixel) / 1e6);
    };
    judge("Gerber against source", gerber, reference);
    judge("GDSII against source", gds, reference);
    judge("Gerber against GDSII", gerber, gds);
    return failures;
}

QStringList judged(const View &view, DarkCount &dark)
{
    const Bitmap gerber = crosscheck::read(view.gerber), gds = crosscheck::read(view.gds);
    QStringList failures;
    for (const Expected &expected : view.expected) {
        if (gerber.width() == 0 || gds.width() == 0)
            failures << expected.layer + ": no picture";
        else
            failures << judged(view, gerber, gds, expected, dark);
    }
    return failures;
}

QByteArray contents(const QString &file)
{
    QFile read(file);
    return read.open(QIODevice::ReadOnly) ? read.readAll() : QByteArray();
}

// What the files draw: the Gerber file without its comments, which name the layer, and the GDSII file without
// its layer numbers. Files of which this is equal have the same pictures.
QByteArray drawnBytes(const crosscheck::FormatPair &files)
{
    QByteArray drawn;
    for (const QByteArray &line : contents(files.gerber).split('\n')) {
        if (!line.startsWith("G04"))
            drawn += line + '\n';
    }
    const QByteArray gds = contents(files.gds);
    const auto byte = [&gds](int at) { return static_cast<unsigned char>(gds[at]); };
    constexpr int headSize = 4, layerRecord = 0x0d;
    for (int at = 0, size = 0; at + headSize <= gds.size(); at += size) {
        size = std::max(headSize, byte(at) << 8 | byte(at + 1));
        if (byte(at + 2) != layerRecord)
            drawn += gds.mid(at, size);
    }
    return drawn;
}

bool haveEqualWindows(const std::vector<View> &a, const std::vector<View> &b)
{
    const auto isEqual = [](const View &one, const View &other) {
        const Window &left = one.gds.window, &right = other.gds.window;
        return left.left == right.left && left.bottom == right.bottom && left.width == right.width &&
               left.height == right.height;
    };
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), isEqual);
}

void removeFiles(const Check &check)
{
    QFile::remove(check.files.gerber);
    QFile::remove(check.files.gds);
    for (const View &view : check.views) {
        QFile::remove(view.gerber.image);
        QFile::remove(view.gds.image);
    }
}

// Adds a check to the others. Where one of them has files that draw the same, in the same windows, its
// pictures are to show the added layer, too: a job has many empty layers, which are whole boards when they
// are negated.
void add(Check check, std::vector<Check> &checks, std::map<QByteArray, std::size_t> &known)
{
    const QByteArray drawn = QCryptographicHash::hash(drawnBytes(check.files), QCryptographicHash::Sha256);
    const auto found = known.emplace(drawn, checks.size());
    if (found.second || !haveEqualWindows(checks[found.first->second].views, check.views)) {
        checks.push_back(std::move(check));
        return;
    }
    std::vector<View> &views = checks[found.first->second].views;
    for (std::size_t i = 0; i < views.size(); ++i)
        views[i].expected.push_back(std::move(check.views[i].expected.front()));
    removeFiles(check);
}

// A share of a job's layers, for one processor.
using Share = std::vector<const Check *>;

QStringList differingFormats(const Share &share, const QString &base)
{
    std::vector<crosscheck::FormatPair> pairs;
    for (const Check *check : share)
        pairs.push_back(check->files);
    const QStringList found = crosscheck::compareFormats(pairs, base);
    QStringList failures;
    for (std::size_t i = 0; i < share.size(); ++i) {
        if (!found.at(static_cast<int>(i)).isEmpty())
            failures << share[i]->layer + ": " + found.at(static_cast<int>(i));
    }
    return failures;
}

QStringList differingPictures(const Share &share, const QString &base, DarkCount &dark)
{
    std::vector<Picture> gerberPictures, gdsPictures;
    for (const Check *check : share) {
        for (const View &view : check->views) {
            gerberPictures.push_back(view.gerber);
            gdsPictures.push_back(view.gds);
        }
    }
    QStringList failures;
    const QString gerbvSaid = crosscheck::drawGerber(gerberPictures);
    if (!gerbvSaid.isEmpty())
        failures << "gerbv: " + gerbvSaid;
    const QString klayoutSaid = crosscheck::drawGds(gdsPictures, base);
    if (!klayoutSaid.isEmpty())
        failures << "KLayout: " + klayoutSaid;
    for (const Check *check : share) {
        for (const View &view : check->views)
            failures << judged(view, dark);
    }
    return failures;
}

// A small layer of forms that the two formats write in ways of their own.
struct Forms
{
    double padX = 1000.0; // micrometres
    double lineWidth = 300.0;
    double holeSide = 5.0;
    bool hasClearPad = true;
    bool isLongArc = true;

    cam::LayerImage layer() const
    {
        using namespace testing;
        cam::LayerImage image = emptyLayer();
        image.steps.back().features = features(image);
        return image;
    }

private:
    cam::FeatureSet features(cam::LayerImage &image) const
    {
        using namespace testing;
        cam::FeatureSet set;
        const std::uint32_t pen = symbol(image, "r" + std::to_string(static_cast<int>(lineWidth)));
        addLine(set, pen, at(0, 0), at(5000, 3000));
        addPad(set, symbol(image, "rect800x400"), at(padX, 4000));
        addPad(set, symbol(image, "donut_r900x500"), at(3000, 4500));
        addRectangle(set.contours, 6000, 0, 4000, 4000);
        if (holeSide > 0.0)
            addRectangle(set.contours, 7000, 1000, holeSide, holeSide, true);
        addSurface(set, 0);
        if (hasClearPad)
            addPad(set, symbol(image, "r1000"), at(8500, 2500), false);
        cam::Arc arc;
        arc.start = at(2000, -4000);
        arc.end = at(0, -2000);
        arc.center = at(0, -4000);
        arc.clockwise = isLongArc;
        arc.symbol = pen;
        set.add(arc, cam::Polarity::Positive);
        return set;
    }
};

bool hasWritten(const QString &file, const QByteArray &text)
{
    QFile write(file);
    return write.open(QIODevice::WriteOnly) && write.write(text) == text.size();
}

} // namespace
Q_DECLARE_METATYPE(Forms)

class tst_CrossCheck : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void bothFormatsAgree_data() { addRows(); }
    void bothFormatsAgree();
    void picturesShowTheSource_data() { addRows(); }
    void picturesShowTheSource();
    void randomJobs();
    void aShiftByTwoPixelsIsFound();
    void aMissingSpeckIsFound();
    void aLineThinnerThanAPixelMayShowOrNot();
    void aTipThinnerThanAPixelMayShowOrNot();
    void formatsThatDifferAreFound_data();
    void formatsThatDifferAreFound();
    void arcsThatReadersTakeDifferentlyAreFound();

private:
    void addRows();
    QString folderOf(const JobSource &source);
    std::vector<Check> checks(QStringList &failures, bool withViews);
    std::vector<View> views(const cam::ExportOptions &options, const Check &check, bool isWhole,
                            const std::shared_ptr<const cam::LayerImage> &image, std::size_t turn);
    QStringList sideBySide(const std::vector<Check> &checks,
                           const std::function<QStringList(const Share &, const QString &base)> &look);
    void conclude(const std::vector<Check> &checks, const QStringList &failures);
    QString nextFile(const QString &name);

    QTemporaryDir m_work;
    std::map<QString, QString> m_unpacked; // archive to job folder
    std::vector<JobSource> m_sources;
    int m_fileCount = 0;
};

void tst_CrossCheck::initTestCase()
{
    QVERIFY(m_work.isValid());
    m_sources = jobSources();
    QVERIFY(!m_sources.empty());
}

QString tst_CrossCheck::nextFile(const QString &name)
{
    return m_work.path() + '/' + name + QString::number(m_fileCount++);
}

// The first folder below the unpacked archive that has a matrix.
QString tst_CrossCheck::folderOf(const JobSource &source)
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

// The windows of an exported layer that are to be compared.
std::vector<View> tst_CrossCheck::views(const cam::ExportOptions &options, const Check &check, bool isWhole,
                                        const std::shared_ptr<const cam::LayerImage> &image, std::size_t turn)
{
    const cam::Box extent = crosscheck::outputExtent(*image, options);
    if (extent.isEmpty())
        return {}; // there is nothing to see in it
    const bool coversAll = isWhole || isFull();
    std::vector<Window> windows = covering(padded(extent, 200000.0), coversAll ? largestSide : windowSide);
    if (!coversAll)
        windows = {selected(windows, *image, options, turn)};
    std::vector<View> views;
    for (const Window &window : windows) {
        const QString ending = '_' + QString::number(views.size());
        const auto draw = [image, options, window](crosscheck::Edges edges) {
            return crosscheck::rasterize(*image, options, window, edges);
        };
        views.push_back(
            {{check.files.gerber, window, check.files.gerber + ending + ".pgm", crosscheck::gerbvMargin},
             {check.files.gds, window, check.files.gds + ending + ".png"},
             {{check.layer, draw}}});
    }
    return views;
}

// Exports all layers of the row's job. One that cannot be read or written is a failure; the others go on.
std::vector<Check> tst_CrossCheck::checks(QStringList &failures, bool withViews)
{
    QFETCH(int, source);
    QFETCH(int, variant);
    const JobSource &from = m_sources[static_cast<std::size_t>(source)];
    const QString folder = folderOf(from);
    if (folder.isEmpty()) {
        failures << from.archive + " has no job in it";
        return {};
    }
    std::vector<Check> checks;
    std::map<QByteArray, std::size_t> known; // hash of what files draw to their check
    const auto job = openJob(folder, failures);
    if (!job)
        return {};
    auto turn = static_cast<std::size_t>(variant);
    for (const std::string &step : job->matrix().steps) {
        for (const cam::MatrixLayer &layer : job->matrix().layers) {
            if (layer.type == "GDS")
                continue;
            const std::size_t here = turn++; // the same window with and without the others
            if (!isWanted("FILE_PROCESS_CROSSCHECK_LAYER", QString::fromStdString(layer.name)))
                continue;
            Check check;
            check.layer = QString::fromStdString(step + '/' + layer.name);
            const QString base = nextFile("layer");
            check.files = {base + ".gerber", base + ".gds"};
            try {
                cam::ReadingNotes notes;
                const auto image =
                    std::make_shared<const cam::LayerImage>(job->readLayer(step, layer.name, notes));
                for (const auto &note : notes.unsupported)
                    failures << check.layer + ": unsupported: " + QString::fromStdString(note.first);
                const cam::ExportOptions options = variants[variant].options();
                writeBoth(*image, options, check.files);
                const bool isWhole = from.isOwn && variant == 0 && step == job->matrix().steps.front();
                if (withViews)
                    check.views = views(options, check, isWhole, image, here);
                add(std::move(check), checks, known);
            } catch (const cam::Error &error) {
                failures << check.layer + ": " + error.what();
            }
        }
    }
    return checks;
}

void tst_CrossCheck::addRows()
{
    QTest::addColumn<int>("source");
    QTest::addColumn<int>("variant");
    for (std::size_t s = 0; s < m_sources.size(); ++s) {
        if (!isWanted("FILE_PROCESS_CROSSCHECK_JOB", m_sources[s].name))
            continue;
        for (std::size_t v = 0; v < sizeof variants / sizeof *variants; ++v) {
            if (isWanted("FILE_PROCESS_CROSSCHECK_TRANSFORM", variants[v].name))
                QTest::newRow(qPrintable(m_sources[s].name + ", " + variants[v].name))
                    << static_cast<int>(s) << static_cast<int>(v);
        }
    }
}

// The files of what failed stay, for whoever looks for the cause.
void tst_CrossCheck::conclude(const std::vector<Check> &checks, const QStringList &failures)
{
    if (!failures.isEmpty())
        m_work.setAutoRemove(false);
    QVERIFY2(failures.isEmpty(),
             qPrintable('\n' + failures.join('\n') + "\nThe files are in " + m_work.path()));
    QVERIFY(!checks.empty());
    for (const Check &check : checks)
        removeFiles(check);
}

void tst_CrossCheck::bothFormatsAgree()
{
    QStringList failures;
    const std::vector<Check> all = checks(failures, false);
    failures << sideBySide(all, differingFormats);
    conclude(all, failures);
}

void tst_CrossCheck::picturesShowTheSource()
{
    QStringList failures;
    const std::vector<Check> all = checks(failures, true);
    DarkCount dark{0};
    failures << sideBySide(all, [&dark](const Share &share, const QString &base) {
        return differingPictures(share, base, dark);
    });
    std::size_t pictures = 0;
    for (const Check &check : all)
        pictures += check.views.size();
    qInfo("%zu pairs of files, %zu pictures of each format", all.size(), pictures);
    conclude(all, failures);
    QVERIFY(dark > 0 || !failures.isEmpty());
}

// Forms that no archive here has.
void tst_CrossCheck::randomJobs()
{
    QStringList failures;
    std::vector<Check> all;
    for (unsigned seed = 1; seed <= 20; ++seed) {
        testing::RandomJob job = testing::randomJob(seed);
        cam::ExportOptions options = job.options;
        options.dbu = 0.001;
        options.resize = 0.0; // the source's picture has none
        if (options.negative && job.image.profile.isEmpty())
            continue; // nor does it know how far clear features leave anything dark
        const auto image = std::make_shared<const cam::LayerImage>(std::move(job.image));
        Check check;
        check.layer = "seed " + QString::number(seed);
        const QString base = nextFile("random");
        check.files = {base + ".gerber", base + ".gds"};
        try {
            writeBoth(*image, options, check.files);
            check.views = views(options, check, true, image, 0);
            all.push_back(std::move(check));
        } catch (const cam::Error &error) {
            failures << check.layer + ": " + error.what();
        }
    }
    DarkCount dark{0};
    failures << sideBySide(all, differingFormats);
    failures << sideBySide(all, [&dark](const Share &share, const QString &base) {
        return differingPictures(share, base, dark);
    });
    conclude(all, failures);
}

// Divides the checks among the processors, and returns what `look` finds wrong with them.
QStringList
tst_CrossCheck::sideBySide(const std::vector<Check> &checks,
                           const std::function<QStringList(const Share &, const QString &base)> &look)
{
    std::vector<Share> shares(static_cast<std::size_t>(std::max(1, QThread::idealThreadCount())));
    std::vector<std::size_t> pictures(shares.size(), 0);
    for (const Check &check : checks) {
        const auto least = std::min_element(pictures.begin(), pictures.end()) - pictures.begin();
        const auto at = static_cast<std::size_t>(least);
        shares[at].push_back(&check);
        pictures[at] += 1 + check.views.size();
    }
    std::vector<std::future<QStringList>> running;
    for (const Share &share : shares)
        running.push_back(std::async(std::launch::async, look, share, nextFile("list")));
    QStringList failures;
    for (std::future<QStringList> &one : running)
        failures << one.get();
    return failures;
}

// The comparison itself.
void tst_CrossCheck::aShiftByTwoPixelsIsFound()
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

void tst_CrossCheck::aMissingSpeckIsFound()
{
    Bitmap a(200, 100);
    const Bitmap b = a;
    a.set(70, 50);
    const crosscheck::Difference difference = crosscheck::compare(a, b);
    QCOMPARE(difference.beyond, std::size_t(1));
    QCOMPARE(difference.x, 70);
    QCOMPARE(difference.y, 50);
}

void tst_CrossCheck::aLineThinnerThanAPixelMayShowOrNot()
{
    using namespace testing;
    cam::LayerImage image = emptyLayer();
    addLine(image.steps.back().features, symbol(image, "r0.5"), at(100, 100), at(900, 300));
    const Window window{0.0, 0.0, 100, 100};
    const auto draw = [&](crosscheck::Edges edges) {
        return crosscheck::rasterize(image, {}, window, edges);
    };
    const crosscheck::Tolerance tolerance{draw(crosscheck::Edges::EveryEdgeIn),
                                          draw(crosscheck::Edges::EveryEdgeOut)};
    // As a program draws it: one pixel wide.
    Bitmap shown(100, 100);
    for (int x = 10; x < 90; ++x)
        shown.set(x, 10 + (x - 10) / 4);
    const Bitmap none(100, 100);
    QVERIFY(crosscheck::compare(shown, none).beyond > 0);
    QCOMPARE(crosscheck::compare(shown, none, &tolerance).beyond, std::size_t(0));
    shown.set(50, 60);
    QCOMPARE(crosscheck::compare(shown, none, &tolerance).beyond, std::size_t(1));
}

// A spike and, in an area, a notch, both 900 um long and 90 um wide at one end.
void tst_CrossCheck::aTipThinnerThanAPixelMayShowOrNot()
{
    using namespace testing;
    const Window window{0.0, 0.0, 120, 100};
    for (const bool isSpike : {true, false}) {
        cam::LayerImage image = emptyLayer();
        cam::FeatureSet &features = image.steps.back().features;
        cam::ContourPool &pool = features.contours;
        if (!isSpike)
            addRectangle(pool, 0.0, 0.0, 1200.0, 1000.0);
        const std::size_t first = pool.size();
        const cam::Point corners[] = {at(100, 500), at(1000, 455), at(1000, 545)};
        pool.addPolygon(corners, 3, !isSpike);
        addSurface(features, isSpike ? first : 0);
        const auto draw = [&](crosscheck::Edges edges) {
            return crosscheck::rasterize(image, {}, window, edges);
        };
        const crosscheck::Tolerance tolerance{draw(crosscheck::Edges::EveryEdgeIn),
                                              draw(crosscheck::Edges::EveryEdgeOut)};
        // Two programs: by the pixels' centres, and by all that is touched.
        const Bitmap byCentres = draw(crosscheck::Edges::AsTheyAre);
        Bitmap touched = byCentres;
        for (const int y : {49, 50})
            touched.fill(y, 10, 30, isSpike);
        QVERIFY(crosscheck::compare(byCentres, touched).beyond > 0);
        QCOMPARE(crosscheck::compare(byCentres, touched, &tolerance).beyond, std::size_t(0));
        for (const int y : {49, 50})
            touched.fill(y, 6, 10, isSpike);
        QVERIFY(crosscheck::compare(byCentres, touched, &tolerance).beyond > 0);
    }
}

void tst_CrossCheck::formatsThatDifferAreFound_data()
{
    QTest::addColumn<Forms>("inGerber");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, const QString &expected, auto change) {
        Forms forms;
        change(forms);
        QTest::newRow(name) << forms << expected;
    };
    const QString inGerber("is in the Gerber file only"), inGds("is in the GDSII file only");
    row("nothing", "", [](Forms &) {});
    row("a pad, half a micrometre aside", "", [](Forms &forms) { forms.padX += 0.5; });
    row("a pad, two micrometres aside", "2 places differ", [](Forms &forms) { forms.padX += 2.0; });
    row("strokes whose edges lie one micrometre out", inGerber, [](Forms &forms) { forms.lineWidth += 2.0; });
    row("a small hole filled", inGerber, [](Forms &forms) { forms.holeSide = 0.0; });
    row("a clear pad left out", inGerber, [](Forms &forms) { forms.hasClearPad = false; });
    row("an arc that goes the short way", inGds, [](Forms &forms) { forms.isLongArc = false; });
}

void tst_CrossCheck::formatsThatDifferAreFound()
{
    QFETCH(Forms, inGerber);
    QFETCH(QString, expected);
    const QString base = nextFile("forms");
    const crosscheck::FormatPair one{base + ".gerber", base + ".gds"}, other{base + "2.gerber", one.gds};
    writeBoth(inGerber.layer(), {}, other);
    writeBoth(Forms().layer(), {}, one);
    const QString found = crosscheck::compareFormats({other}, base).join('\n');
    QVERIFY2(expected.isEmpty() ? found.isEmpty() : found.contains(expected), qPrintable(found));
}

void tst_CrossCheck::arcsThatReadersTakeDifferentlyAreFound()
{
    const QString base = nextFile("forms");
    const crosscheck::FormatPair pair{base + ".gerber", base + ".gds"};
    writeBoth(Forms().layer(), {}, pair);
    const QByteArray good = contents(pair.gerber);
    const int behindRegions = good.lastIndexOf("G37*\n");
    const int mode = good.indexOf("G02*\n", behindRegions);
    QVERIFY2(behindRegions > 0 && mode > 0, good.constData());

    QVERIFY(hasWritten(pair.gerber, QByteArray(good).remove(mode, 5)));
    QString found = crosscheck::compareFormats({pair}, base).join('\n');
    QVERIFY2(found.contains("has no mode of its own"), qPrintable(found));

    const int offset = good.indexOf('I', mode);
    QVERIFY(hasWritten(pair.gerber, QByteArray(good).insert(offset + 2, '9')));
    found = crosscheck::compareFormats({pair}, base).join('\n');
    QVERIFY2(found.contains("lie on no circle"), qPrintable(found));
}

int main(int count, char **values)
{
    // One row may take longer than the five minutes after which Qt Test gives up.
    qputenv("QTEST_FUNCTION_TIMEOUT", QByteArray::number(2 * 60 * 60 * 1000));
    QCoreApplication application(count, values);
    tst_CrossCheck tst_test;
    return QTest::qExec(&tst_test, count, values);
}
#include "tst_crosscheck.moc"
