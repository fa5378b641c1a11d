// Readers of GDSII, Gerber and drill files tell how far they are, and whoever asked for a file ends its
// reading.
#include "cam/base/error.h"
#include "cam/base/inputfile.h"
#include "cam/excellon/excellonreader.h"
#include "cam/gdsii/gdsreader.h"
#include "cam/gerber/gerberreader.h"
#include "cam/verify/verification.h"
#include "tests/cam/support/gdsrecords.h"
#include "tests/support/temporaryworkingfolder.h"

#include <QtTest>

#include <algorithm>
#include <sstream>
#include <vector>

namespace {

struct Cancel
{
};

using Report = std::function<void(double)>;

const int features = 60000; // some hundred kilobytes: several reports

QByteArray gdsBytes()
{
    using namespace gdsrecords;
    return library(structure("TOP", boundary(0, {0, 0, 10, 0, 10, 20, 0, 20, 0, 0}).repeated(features / 10)));
}

QByteArray gerberBytes()
{
    return "%FSLAX46Y46*%\n%MOMM*%\n%ADD10C,1*%\nD10*\n" +
           QByteArray("X1000000Y2000000D03*\n").repeated(features) + "M02*\n";
}

QByteArray drillBytes()
{
    return "M48\nMETRIC,TZ,000.000\nT1C1.0\n%\nT1\n" + QByteArray("X1000Y2000\n").repeated(features) +
           "M30\n";
}

// Returns how much there is in it.
std::size_t readFile(const QString &file, const Report &report)
{
    const auto path = std::filesystem::u8path(file.toStdString());
    if (file.endsWith(".gds"))
        return cam::readGdsFile(path, report).structures[0].boundaries.size();
    if (file.endsWith(".gbr"))
        return cam::readGerberFile(path, report).objects.size();
    return cam::readExcellonFile(path, report).works.size();
}

std::size_t readBytes(const QString &file, const QByteArray &bytes, const Report &report)
{
    const std::string text = bytes.toStdString(), name = file.toStdString();
    if (file.endsWith(".gds")) {
        std::istringstream stream(text);
        return cam::readGds(stream, name, report).structures[0].boundaries.size();
    }
    if (file.endsWith(".gbr"))
        return cam::readGerber(text, name, report).objects.size();
    return cam::readExcellon(text, name, report).works.size();
}

} // namespace

class tst_ReadingProgress : public QObject
{
    Q_OBJECT

private:
    TemporaryWorkingFolder folder;

    void addFiles()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<int>("count");
        QTest::newRow("GDSII") << "a.gds" << gdsBytes() << features / 10;
        QTest::newRow("Gerber") << "a.gbr" << gerberBytes() << features;
        QTest::newRow("drill file") << "a.drl" << drillBytes() << features;
    }

private slots:
    void theShareGoesFromNothingToAll_data() { addFiles(); }
    void theShareGoesFromNothingToAll()
    {
        QFETCH(const QString, name);
        QFETCH(const QByteArray, bytes);
        QFETCH(const int, count);
        QVERIFY(folder.write(name, bytes));
        std::vector<double> shares;
        const Report report = [&shares](double share) { shares.push_back(share); };
        for (const bool isFile : {true, false}) {
            shares.clear();
            QCOMPARE(int(isFile ? readFile(folder.filePath(name), report) : readBytes(name, bytes, report)),
                     count);
            QVERIFY2(shares.size() >= 5, qPrintable(QString::number(shares.size())));
            QVERIFY(std::is_sorted(shares.begin(), shares.end()));
            QCOMPARE(shares.front(), 0.0);
            QCOMPARE(shares.back(), 1.0);
            // No jump over a third of the file.
            for (std::size_t i = 1; i < shares.size(); ++i)
                QVERIFY2(shares[i] - shares[i - 1] < 0.34, qPrintable(QString::number(shares[i])));
        }
    }

    void whatIsThrownToCancelPassesThrough_data() { addFiles(); }
    void whatIsThrownToCancelPassesThrough()
    {
        QFETCH(const QString, name);
        QFETCH(const QByteArray, bytes);
        QVERIFY(folder.write(name, bytes));
        for (const double from : {0.0, 0.4, 1.0}) {
            double heard = -1.0;
            const Report report = [&](double share) {
                heard = share;
                if (share >= from)
                    throw Cancel();
            };
            QVERIFY_EXCEPTION_THROWN(readFile(folder.filePath(name), report), Cancel);
            QVERIFY2(heard < from + 0.34, qPrintable(QString::number(heard))); // and at once
            QVERIFY_EXCEPTION_THROWN(readBytes(name, bytes, report), Cancel);
        }
    }

    // A few bytes of a file may ask for millions of objects.
    void copiesOfGerberObjectsAreCancelledToo()
    {
        const std::string text = "%FSLAX46Y46*%\n%MOMM*%\n%ADD10C,1*%\n%SRX1000Y1000I1.0J1.0*%\nD10*\n"
                                 "X0Y0D03*\n%SR*%\nM02*\n";
        int reports = 0;
        QVERIFY_EXCEPTION_THROWN(cam::readGerber(text, "file",
                                                 [&reports](double) {
                                                     if (++reports == 5)
                                                         throw Cancel();
                                                 }),
                                 Cancel);
    }

    void aStreamThatDoesNotKnowItsSizeIsRead()
    {
        struct Pipe : std::stringbuf
        {
            using std::stringbuf::stringbuf;
            pos_type seekoff(off_type, std::ios::seekdir, std::ios::openmode) override
            {
                return off_type(-1);
            }
            pos_type seekpos(pos_type, std::ios::openmode) override { return off_type(-1); }
        } pipe(gdsBytes().toStdString());
        std::istream stream(&pipe);
        std::vector<double> shares;
        const cam::GdsImage image =
            cam::readGds(stream, "pipe", [&shares](double share) { shares.push_back(share); });
        QCOMPARE(int(image.structures[0].boundaries.size()), features / 10);
        QVERIFY(shares.size() >= 5);
        QCOMPARE(shares.front(), 0.0);
        QCOMPARE(shares.back(), 1.0);
    }

    // What compares two files hears a cancel before it has read them to their ends.
    void comparisonsAreCancelledWhileTheyRead_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("GDSII") << "b.gds"
                               << gdsBytes().left(gdsBytes().size() -
                                                  4); // without its end, which is never reached
        QTest::newRow("Gerber") << "b.gbr" << gerberBytes().left(gerberBytes().size() - 5);
    }
    void comparisonsAreCancelledWhileTheyRead()
    {
        QFETCH(const QString, name);
        QFETCH(const QByteArray, bytes);
        QVERIFY(folder.write(name, bytes));
        const auto path = std::filesystem::u8path(folder.filePath(name).toStdString());
        cam::VerifyControl control;
        control.report = [](double) { throw Cancel(); };
        QVERIFY_EXCEPTION_THROWN(cam::compareFiles(path, path, control), Cancel);
    }

    void aFolderIsNoFile()
    {
        QVERIFY(QDir().mkpath(folder.filePath("folder.gbr")));
        const auto path = std::filesystem::u8path(folder.filePath("folder.gbr").toStdString());
        QVERIFY_EXCEPTION_THROWN(cam::readWholeFile(path), cam::Error);
        QVERIFY_EXCEPTION_THROWN(cam::readGdsFile(path), cam::Error);
    }
};

QTEST_APPLESS_MAIN(tst_ReadingProgress)
#include "tst_readingprogress.moc"
