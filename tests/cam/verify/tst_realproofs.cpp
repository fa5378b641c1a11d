// Every layer of real archives, exported and proven. A few layers of each in the suite; all of them, under
// both transforms, with FILE_PROCESS_PROOFS=all (a table of the processor time that each took goes to the
// output).
#include "cam/gdsii/gdswriter.h"
#include "cam/gerber/gerberwriter.h"
#include "cam/odb/job.h"
#include "cam/verify/verification.h"
#include "tests/cam/support/archive.h"
#include "tests/support/temporaryworkingfolder.h"

#include <QtTest>

#include <ctime>

class tst_RealProofs : public QObject
{
    Q_OBJECT

private slots:
    void layersAreProven_data();
    void layersAreProven();
};

void tst_RealProofs::layersAreProven_data()
{
    QTest::addColumn<QString>("archive");
    QTest::addColumn<bool>("isTransformed");
    for (const char *folder : {"", "/unread"}) {
        for (const QFileInfo &file :
             QDir(QString(REAL_ARCHIVES) + folder).entryInfoList({"*.tgz"}, QDir::Files)) {
            for (const bool isTransformed : {false, true})
                QTest::newRow(qPrintable(file.completeBaseName() +
                                         (isTransformed ? " mirrored, rotated, negated" : " as it is")))
                    << file.absoluteFilePath() << isTransformed;
        }
    }
}

void tst_RealProofs::layersAreProven()
{
    QFETCH(const QString, archive);
    QFETCH(const bool, isTransformed);
    const bool isAll = qgetenv("FILE_PROCESS_PROOFS") == "all";
    // In the suite: a few layers that even a build without optimisation proves in a blink.
    constexpr std::size_t mostFeatures = 300, mostEdges = 1000;
    constexpr int mostLayers = 4; // of an archive under one transform
    int layers = 0;
    const TemporaryWorkingFolder folder;
    unpackArchive(archive, folder.filePath("job"));
    const QStringList roots = QDir(folder.filePath("job")).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    QCOMPARE(roots.size(), 1);
    const cam::Job job(std::filesystem::u8path(folder.filePath("job/" + roots[0]).toStdString()));
    QStringList wrong;
    int proven = 0;
    for (const std::string &step : job.matrix().steps) {
        for (const auto &layer : job.matrix().layers) {
            if (!isAll && layers == mostLayers)
                break;
            cam::ReadingNotes notes;
            cam::LayerImage image;
            try {
                image = job.readLayer(step, layer.name, notes);
            } catch (const std::exception &error) {
                qInfo("%s/%s: %s", step.c_str(), layer.name.c_str(), error.what());
                continue;
            }
            const cam::FeatureSet &features = image.top().features;
            if (!isAll && (features.isEmpty() || features.order.size() > mostFeatures ||
                           features.contours.edgeCount() > mostEdges))
                continue;
            ++layers;
            for (const bool isGerber : {false, true}) {
                cam::ExportOptions options;
                const QString file = folder.filePath("out");
                options.file = std::filesystem::u8path(file.toStdString());
                if (isTransformed) {
                    options.mirror = true;
                    options.angle = 30.0;
                    options.negative = true;
                }
                const auto milliseconds = [] { return 1e3 * double(std::clock()) / CLOCKS_PER_SEC; };
                const double start = milliseconds();
                isGerber ? cam::writeGerber(image, options) : cam::writeGds(image, options);
                const double written = milliseconds();
                const cam::Comparison result = cam::verifyFile(image, options, options.file);
                const double verified = milliseconds();
                const QString name =
                    QString::fromStdString(step + "/" + layer.name) + (isGerber ? " Gerber" : " GDSII");
                QString verdict =
                    result.isProven()
                        ? QString("proven")
                        : QString("NOT PROVEN %1")
                              .arg(result.reason.empty()
                                       ? QString("%1 places, missing %2 mm2, extra %3 mm2, at %4, %5 mm, %6 "
                                                 "um wide")
                                             .arg(result.placesInAll)
                                             .arg(result.missingArea)
                                             .arg(result.extraArea)
                                             .arg(result.places.empty() ? 0.0 : result.places[0].at.x / 1e6,
                                                  0, 'f', 4)
                                             .arg(result.places.empty() ? 0.0 : result.places[0].at.y / 1e6,
                                                  0, 'f', 4)
                                             .arg(result.places.empty() ? 0.0 : result.places[0].width / 1e3)
                                       : QString::fromStdString(result.reason));
                if (isAll)
                    qInfo("%-45s %9lld bytes, written in %5.0f ms, verified in %6.0f ms, within %5.0f nm: %s",
                          qPrintable(name), static_cast<long long>(QFileInfo(file).size()), written - start,
                          verified - written, result.deviation, qPrintable(verdict));
                if (result.isProven())
                    ++proven;
                else
                    wrong.append(name + ": " + verdict);
            }
        }
    }
    QVERIFY2(wrong.isEmpty(), qPrintable(wrong.join("\n")));
    QVERIFY(proven > 0);
}

int main(int argc, char **argv)
{
    // QtTest aborts a row after five minutes, wherever it is then.
    if (qgetenv("FILE_PROCESS_PROOFS") == "all")
        qputenv("QTEST_FUNCTION_TIMEOUT", QByteArray::number(2 * 60 * 60 * 1000));
    tst_RealProofs test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_realproofs.moc"
