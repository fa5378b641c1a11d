// Random jobs, read from their files, written in both formats under random transforms, read back, compared
// with the exact picture of what the files say, and proven.
#include "tests/cam/random/comparison.h"
#include "tests/cam/random/randomjob.h"

#include "cam/base/error.h"
#include "cam/gdsii/gdswriter.h"
#include "cam/gerber/gerberwriter.h"
#include "cam/odb/job.h"
#include "cam/verify/verification.h"
#include "tests/support/seedrange.h"
#include "tests/support/temporaryworkingfolder.h"

#include <QtTest>

using namespace testing;

namespace {

enum class Check {
    Points, // against the exact picture, at random places
    Proof   // by the library's verification
};

// What is wrong with the file that an export of `job` has made.
QString wrongPoints(const RandomJob &job, const QString &file, bool isGerber)
{
    const WrittenPicture written =
        isGerber ? WrittenPicture::gerber(file) : WrittenPicture::gds(file, job.options.dbu);
    const ExactPicture source(job.image, job.options);
    std::mt19937 random(job.seed);
    if (const auto found = firstDifference(source, written, random, 12000))
        return QString("at %1, %2 um the source is %3, the file %4")
            .arg(found->at.x / 1000.0)
            .arg(found->at.y / 1000.0)
            .arg(found->sourceIsDark ? "dark" : "clear", found->fileIsDark ? "dark" : "clear");
    return written.faults().value(0);
}

QString wrongProof(const cam::LayerImage &image, const cam::ExportOptions &options)
{
    const cam::Comparison result = cam::verifyFile(image, options, options.file);
    if (result.isProven())
        return {};
    if (!result.reason.empty())
        return QString::fromStdString(result.reason);
    const cam::DifferencePlace &place = result.places.front();
    return QString("not proven: %1 places, the first at %2, %3 um, %4 um wide, %5")
        .arg(result.placesInAll)
        .arg(place.at.x / 1000.0)
        .arg(place.at.y / 1000.0)
        .arg(place.width / 1000.0)
        .arg(place.isMissing ? "missing" : "extra");
}

// What is wrong with the export of `job`; empty when nothing is.
QString wrongExport(const RandomJob &job, bool isGerber, Check check)
{
    const TemporaryWorkingFolder folder;
    writeJob(job, [&folder](const QString &file, const QByteArray &bytes) {
        if (!folder.write("job/" + file, bytes))
            qFatal("cannot write %s", qPrintable(file));
    });
    try {
        const cam::Job files(std::filesystem::u8path(folder.filePath("job").toStdString()));
        cam::ReadingNotes notes;
        const cam::LayerImage image = files.readLayer("pcb", "top", notes);
        if (!notes.unsupported.empty() || !notes.simplified.empty())
            return "not all of it was read";
        cam::ExportOptions options = job.options;
        const QString file = folder.filePath("out");
        options.file = std::filesystem::u8path(file.toStdString());
        if (isGerber)
            cam::writeGerber(image, options);
        else
            cam::writeGds(image, options);
        return check == Check::Points ? wrongPoints(job, file, isGerber) : wrongProof(image, options);
    } catch (const std::exception &error) {
        return error.what();
    }
}

} // namespace

class tst_RandomJobs : public QObject
{
    Q_OBJECT

private slots:
    void areWrittenTruly_data() { addRows({1, 2, 3, 4, 5}); }
    void areWrittenTruly() { check(Check::Points); }
    // In 15 edges nearly upon each other once drew the end of a third one along without end.
    void areProven_data() { addRows({1, 2, 3, 4, 5, 6, 7, 8, 15}); }
    void areProven() { check(Check::Proof); }

private:
    void addRows(std::vector<unsigned> seeds);
    void check(Check check);
};

// FILE_PROCESS_SEEDS=FIRST-LAST tries others than the few that are always tried.
void tst_RandomJobs::addRows(std::vector<unsigned> seeds)
{
    QTest::addColumn<unsigned>("seed");
    QTest::addColumn<bool>("isGerber");
    for (const unsigned seed : seedsOr(std::move(seeds))) {
        QTest::newRow(qPrintable(QString("%1 Gerber").arg(seed))) << seed << true;
        QTest::newRow(qPrintable(QString("%1 GDSII").arg(seed))) << seed << false;
    }
}

void tst_RandomJobs::check(Check check)
{
    QFETCH(const unsigned, seed);
    QFETCH(const bool, isGerber);
    RandomJob job = randomJob(seed);
    QString wrong = wrongExport(job, isGerber, check);
    if (wrong.isEmpty())
        return;
    // What the finding does not need is left out.
    for (bool isSmaller = true; isSmaller;) {
        isSmaller = false;
        for (RandomJob &smaller : smallerJobs(job)) {
            const QString stillWrong = wrongExport(smaller, isGerber, check);
            if (stillWrong.isEmpty())
                continue;
            wrong = stillWrong;
            job = std::move(smaller);
            isSmaller = true;
            break;
        }
    }
    QFAIL(qPrintable(wrong + "\n" + description(job)));
}

QTEST_APPLESS_MAIN(tst_RandomJobs)
#include "tst_randomjobs.moc"
