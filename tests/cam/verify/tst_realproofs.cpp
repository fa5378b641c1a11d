// Every layer of real archives, exported and proven. A few layers of each in the suite; all of them, under
// both transforms, with FILE_PROCESS_PROOFS=all (a table of what each took goes to the output).
#include "cam/gdsii/gdswriter.h"
#include "cam/gerber/gerberwriter.h"
#include "cam/odb/job.h"
#include "cam/verify/verification.h"
#include "tests/cam/support/archive.h"
#include "tests/support/temporaryworkingfolder.h"

#include <QElapsedTimer>
#include <QtTest>

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
                QElapsedTimer timer;
                timer.start();
                isGerber ? cam::writeGerber(image, options) : cam::writeGds(image, options);
                const qint64 written = timer.restart();
                const cam::Comparison result = cam::verifyFile(image, options, options.file);
                const qint64 took = timer.elapsed();
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
                    qInfo("%-45s %9lld bytes, written in %5lld ms, verified in %6lld ms, within %5.0f nm: %s",
                          qPrintable(name), static_cast<long long>(QFileInfo(file).size()),
                          static_cast<long long>(written), static_cast<long long>(took), result.deviation,
                          qPrintable(verdict));
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

QTEST_APPLESS_MAIN(tst_RealProofs)
#include "tst_realproofs.moc"
