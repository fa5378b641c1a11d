// Random jobs, read from their files, written in both formats under random transforms, read back, and
// compared with the exact picture of what the files say.
#include "tests/cam/random/comparison.h"
#include "tests/cam/random/randomjob.h"

#include "cam/base/error.h"
#include "cam/gdsii/gdswriter.h"
#include "cam/gerber/gerberwriter.h"
#include "cam/odb/job.h"
#include "tests/support/temporaryworkingfolder.h"

#include <QtTest>

using namespace testing;

namespace {

// What is wrong with the export of `job`; empty when nothing is.
QString wrongExport(const RandomJob &job, bool isGerber)
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
        const WrittenPicture written =
            isGerber ? WrittenPicture::gerber(file) : WrittenPicture::gds(file, options.dbu);
        const ExactPicture source(job.image, job.options);
        std::mt19937 random(job.seed);
        if (const auto found = firstDifference(source, written, random, 12000))
            return QString("at %1, %2 um the source is %3, the file %4")
                .arg(found->at.x / 1000.0)
                .arg(found->at.y / 1000.0)
                .arg(found->sourceIsDark ? "dark" : "clear", found->fileIsDark ? "dark" : "clear");
        return written.faults().value(0);
    } catch (const std::exception &error) {
        return error.what();
    }
}

} // namespace

class tst_RandomJobs : public QObject
{
    Q_OBJECT

private slots:
    void areWrittenTruly_data();
    void areWrittenTruly();
};

// FILE_PROCESS_SEEDS=FIRST-LAST tries others than the few that are always tried.
void tst_RandomJobs::areWrittenTruly_data()
{
    QTest::addColumn<unsigned>("seed");
    QTest::addColumn<bool>("isGerber");
    const QStringList range = qEnvironmentVariable("FILE_PROCESS_SEEDS", "1-5").split('-');
    for (unsigned seed = range[0].toUInt(); seed <= range.value(1, range[0]).toUInt(); ++seed) {
        QTest::newRow(qPrintable(QString("%1 Gerber").arg(seed))) << seed << true;
        QTest::newRow(qPrintable(QString("%1 GDSII").arg(seed))) << seed << false;
    }
}

void tst_RandomJobs::areWrittenTruly()
{
    QFETCH(const unsigned, seed);
    QFETCH(const bool, isGerber);
    RandomJob job = randomJob(seed);
    QString wrong = wrongExport(job, isGerber);
    if (wrong.isEmpty())
        return;
    // What the finding does not need is left out.
    for (bool isSmaller = true; isSmaller;) {
        isSmaller = false;
        for (RandomJob &smaller : smallerJobs(job)) {
            const QString stillWrong = wrongExport(smaller, isGerber);
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
