// The reading of what the view shows: how far it is, and that it ends when something else is chosen.
#include "drawing/scene.h"
#include "tests/cam/support/gdsrecords.h"
#include "tests/cam/support/jobfolder.h"
#include "tests/support/temporaryworkingfolder.h"
#include "workbench/view/scenestore.h"
#include "workbench/view/stepsource.h"

#include <QtTest>

#include <algorithm>
#include <memory>
#include <vector>

namespace {

ViewRow layer(const QString &name)
{
    ViewRow row;
    row.name = name;
    return row;
}

// A file of which nothing is known yet, or a part of it.
ViewRow fileRow(const QString &path, int part = ViewRow::wholeFile)
{
    ViewRow row;
    row.name = QFileInfo(path).fileName();
    row.file = path;
    row.part = part;
    return row;
}

// Some hundred kilobytes each.
QByteArray largeFile(const QString &name)
{
    using namespace gdsrecords;
    const int count = 30000;
    if (name.endsWith(".gds"))
        return library(
            structure("TOP", boundary(3, {0, 0, 900000, 0, 900000, 900000, 0, 0}).repeated(count / 3)));
    if (name.endsWith(".gbr"))
        return "%FSLAX46Y46*%\n%MOMM*%\n%ADD10C,1*%\nD10*\n" +
               QByteArray("X1000000Y2000000D03*\n").repeated(count) + "M02*\n";
    return "M48\nMETRIC,TZ,000.000\nT1C1.0\n%\nT1\n" + QByteArray("X1000Y2000\n").repeated(count) + "M30\n";
}

} // namespace

class tst_SceneStore : public QObject
{
    Q_OBJECT

private:
    TemporaryWorkingFolder folder;
    std::unique_ptr<JobFolder> job;
    std::unique_ptr<SceneStore> store;

    // The number in "Reading top ... 80 %"; -1 when nothing is read.
    int percent() const
    {
        const QRegularExpressionMatch match = QRegularExpression("(\\d+) %").match(store->progress());
        return match.hasMatch() ? match.captured(1).toInt() : -1;
    }
    // Of the layer "top", until `isThere`; false when it has been read before.
    bool waitWhileReading(const std::function<bool()> &isThere)
    {
        QElapsedTimer timer;
        timer.start();
        while (!isThere() && store->isBusy() && timer.elapsed() < 60000)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 1);
        return isThere();
    }

private slots:
    void initTestCase()
    {
        job = std::make_unique<JobFolder>();
        QByteArray pads = "$0 r200\n";
        for (int i = 0; i < 400000; ++i)
            pads += "P " + QByteArray::number(i % 1000) + " " + QByteArray::number(i / 1000) + " 0 P 0 0\n";
        job->features(pads, "top");
        job->features("$0 r200\nP 1 1 0 P 0 0\n", "mask");
    }
    void init()
    {
        store = std::make_unique<SceneStore>();
        const QString folder = QString::fromStdString(job->path().u8string());
        store->setStep(folder, "pcb", std::make_shared<StepSource>(folder, "pcb"));
    }

    void readingTellsHowFarItIs()
    {
        store->want({layer("top")});
        QVERIFY(store->isBusy());
        QVERIFY(waitWhileReading([this] { return percent() > 0 && percent() < 70; }));
        QVERIFY(waitWhileReading([this] { return percent() > 75; }));
        QTRY_VERIFY_WITH_TIMEOUT(store->scene(layer("top")), 60000);
        QVERIFY(!store->isBusy());
        QVERIFY(store->progress().isEmpty());
    }

    // From 75 % on what has been read is prepared for drawing.
    void choosingSomethingElseEndsTheReading_data()
    {
        QTest::addColumn<int>("percent");
        QTest::newRow("while the file is read") << 10;
        QTest::newRow("while it is prepared for drawing") << 76;
    }
    void choosingSomethingElseEndsTheReading()
    {
        QFETCH(const int, percent);
        store->want({layer("top")});
        QVERIFY(waitWhileReading([this, percent] { return this->percent() >= percent; }));
        store->want({layer("mask")});
        QVERIFY(!store->progress().contains("top"));
        QTRY_VERIFY_WITH_TIMEOUT(store->scene(layer("mask")), 60000);
        store->stopAndWait();
        QTest::qWait(100); // what has ended is taken in
        QVERIFY(!store->scene(layer("top")));
    }

    void readingAFileTellsHowFarItIs_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("part");
        QTest::newRow("GDSII") << "large.gds"
                               << "large.gds 1/3";
        QTest::newRow("Gerber") << "large.gbr"
                                << "large.gbr";
        QTest::newRow("drill file") << "large.drl"
                                    << "large.drl";
    }
    void readingAFileTellsHowFarItIs()
    {
        QFETCH(const QString, name);
        QFETCH(const QString, part);
        QVERIFY(folder.write(name, largeFile(name)));
        const QString path = folder.filePath(name);
        QSignalSpy read(store.get(), &SceneStore::fileRead);
        store->want({fileRow(path)});
        // No event is handled meanwhile: it is not done, however fast it is.
        QVERIFY(store->isBusy());
        QVERIFY(percent() >= 0);
        QVERIFY(store->progress().startsWith("Reading " + name + " ... "));
        QTRY_COMPARE_WITH_TIMEOUT(read.size(), 1, 60000);
        QCOMPARE(read[0][0].toString(), path);
        QCOMPARE(read[0][1].toStringList(), QStringList{part});
        store->want({fileRow(path, 0)});
        QTRY_VERIFY_WITH_TIMEOUT(store->scene(fileRow(path, 0)), 60000);
        QVERIFY(!store->scene(fileRow(path, 0))->extent().isEmpty());
        QVERIFY(!store->isBusy());
        QCOMPARE(read.size(), 1);
    }

    void aFileThatNobodyWantsIsReadNoFurther_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("isClosed");
        for (const char *name : {"large.gds", "large.gbr", "large.drl"}) {
            QTest::addRow("%s, closed", name) << QString(name) << true;
            QTest::addRow("%s, hidden", name) << QString(name) << false;
        }
    }
    void aFileThatNobodyWantsIsReadNoFurther()
    {
        QFETCH(const QString, name);
        QFETCH(const bool, isClosed);
        // Its end is missing: whoever reads that far finds an error.
        const QByteArray bytes = largeFile(name);
        QVERIFY(folder.write(name, bytes.left(bytes.size() - 4)));
        const QString path = folder.filePath(name);
        QSignalSpy read(store.get(), &SceneStore::fileRead), failed(store.get(), &SceneStore::fileFailed);
        store->want({fileRow(path)});
        if (isClosed)
            store->forgetFile(path);
        store->want({});
        QVERIFY(!store->isBusy());
        QCOMPARE(store->progress(), QString());
        store->stopAndWait();
        QTest::qWait(100); // what has ended is taken in
        QCOMPARE(read.size() + failed.size(), 0);
        // It is read from its begin when it is wanted again.
        QVERIFY(folder.write(name, bytes));
        store->want({fileRow(path)});
        QTRY_COMPARE_WITH_TIMEOUT(read.size(), 1, 60000);
        QCOMPARE(failed.size(), 0);
    }

    void theShareOfAReadingGoesUp_data() { readingAFileTellsHowFarItIs_data(); }
    void theShareOfAReadingGoesUp()
    {
        QFETCH(const QString, name);
        QVERIFY(folder.write(name, largeFile(name)));
        std::vector<double> shares;
        const LayerFile file(folder.filePath(name), [&shares](double share) { shares.push_back(share); });
        QVERIFY(std::is_sorted(shares.begin(), shares.end()));
        QCOMPARE(shares.front(), 0.0);
        QVERIFY2(shares.back() > 0.7 && shares.back() <= 1.0, qPrintable(QString::number(shares.back())));
        QVERIFY2(shares.size() > 5, qPrintable(QString::number(shares.size())));
    }

    // What a reading reports is what ends it: at once, of each kind of file.
    void aReadingEndsWhereItIsToldTo_data() { readingAFileTellsHowFarItIs_data(); }
    void aReadingEndsWhereItIsToldTo()
    {
        QFETCH(const QString, name);
        QVERIFY(folder.write(name, largeFile(name)));
        for (const double from : {0.0, 0.3, 0.74}) {
            double heard = -1.0;
            const auto report = [&](double share) {
                heard = share;
                if (share >= from)
                    throw drawing::Cancelled();
            };
            QVERIFY_EXCEPTION_THROWN(LayerFile(folder.filePath(name), report), drawing::Cancelled);
            QVERIFY2(heard < from + 0.3, qPrintable(QString::number(heard)));
        }
    }

    void anotherStepLeavesFilesBeingRead()
    {
        QVERIFY(folder.write("large.gbr", largeFile("large.gbr")));
        const QString path = folder.filePath("large.gbr");
        QSignalSpy read(store.get(), &SceneStore::fileRead);
        store->want({layer("top"), fileRow(path)});
        const QString folderOfJob = QString::fromStdString(job->path().u8string());
        store->setStep(folderOfJob, "pcb", std::make_shared<StepSource>(folderOfJob, "pcb"));
        QVERIFY(store->isBusy());
        QVERIFY2(store->progress().startsWith("Reading large.gbr"), qPrintable(store->progress()));
        QTRY_COMPARE_WITH_TIMEOUT(read.size(), 1, 60000);
    }
};

QTEST_MAIN(tst_SceneStore)
#include "tst_scenestore.moc"
