// The reading of what the view shows: how far it is, and that it ends when something else is chosen.
#include "tests/cam/support/jobfolder.h"
#include "workbench/view/scenestore.h"
#include "workbench/view/stepsource.h"

#include <QtTest>

#include <memory>

namespace {

ViewRow layer(const QString &name)
{
    ViewRow row;
    row.name = name;
    return row;
}

} // namespace

class tst_SceneStore : public QObject
{
    Q_OBJECT

private:
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
};

QTEST_MAIN(tst_SceneStore)
#include "tst_scenestore.moc"
