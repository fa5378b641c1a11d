// The background job that exports one layer, and the host's progress record beneath it.

#include "run/progress.h"
#include "tests/support/recordinghost.h"

#include <QtTest>

#include <atomic>
#include <chrono>
#include <stdexcept>
#include <thread>
#include <type_traits>

using recording_host::ExportCall;
using recording_host::state;

namespace {

void waitFor(Progress &job)
{
    while (!job.isFinish())
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

// Arguments 1 to 25.
void compareShared(const ExportCall &a, const ExportCall &b)
{
    QCOMPARE(a.job, b.job);
    QCOMPARE(a.step, b.step);
    QCOMPARE(a.layer, b.layer);
    QCOMPARE(int(a.type), int(b.type));
    QCOMPARE(a.fileName, b.fileName);
    QCOMPARE(a.progress, b.progress);
    QCOMPARE(a.dbu, b.dbu);
    QCOMPARE(a.resize, b.resize);
    QCOMPARE(a.isNegative, b.isNegative);
    QCOMPARE(a.isMirror, b.isMirror);
    QCOMPARE(a.isRotate, b.isRotate);
    QCOMPARE(a.isScale, b.isScale);
    QCOMPARE(a.optionInts, b.optionInts);
    QCOMPARE(a.isProfileTop, b.isProfileTop);
    QCOMPARE(a.angle, b.angle);
    QCOMPARE(a.axis, b.axis);
    QCOMPARE(a.flagOption1, b.flagOption1);
    QCOMPARE(a.xScale, b.xScale);
    QCOMPARE(a.yScale, b.yScale);
    QCOMPARE(a.flagOption2, b.flagOption2);
}

} // namespace

class tst_Progress : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void addsNoFieldsToTheRecord();
    void newRecordHasItsDefaults();
    void valueIsStored();
    void cancelledRecordStoresMinusOneAndThrows();
    void jobThatWasNeverStartedIsFinished();
    void newJobReportsZero();
    void exportGetsThirtyOneArguments_data();
    void exportGetsThirtyOneArguments();
    void withoutTheSaveFlagOnlyTheExportIsCalled();
    void withTheSaveFlagTheRecordComesFirst();
    void exportRunsOnAThreadOfItsOwn();
    void valueIsReadWhileTheHostWritesIt();
    void unfinishedExportIsReported();
    void resultIsNotLookedAt();
    void exceptionsEndTheTask_data();
    void exceptionsEndTheTask();
    void cancelEndsTheTaskWithMinusOne();
    void startingAgainReplacesTheTask();
    void destructionWaitsForTheTask();
    void manyJobsAfterEachOther();
};

void tst_Progress::init()
{
    recording_host::reset();
    Progress::m_job_name = "job";
    Progress::m_step = "step";
    Progress::m_layer_name = "layer";
    Progress::m_file_name = "d:/out\\layer.gds";
    Progress::m_Suffix = ORVEX::API::export_type::gds;
    Progress::dbuValue = 0.002;
    Progress::resize = 25.0;
    Progress::XScale = 1.25;
    Progress::YScale = 0.5;
    Progress::angle = 90.0;
    Progress::isProfiletop = false;
    Progress::isReserse = false;
    Progress::isMirror = false;
    Progress::isRotate = false;
    Progress::isScale = false;
}

void tst_Progress::addsNoFieldsToTheRecord()
{
    QVERIFY((std::is_base_of<ORVEX::COMMON::progress_value<void>, Progress>::value));
    QCOMPARE(sizeof(Progress), sizeof(ORVEX::COMMON::progress_value<void>));
    QVERIFY(!std::is_polymorphic<Progress>::value);
}

void tst_Progress::newRecordHasItsDefaults()
{
    Progress job;
    QCOMPARE(job.name, std::string());
    QCOMPARE(job.message, std::string("Start calculating, please wait!"));
    QCOMPARE(job.message.size(), size_t(31));
    QVERIFY(!job.task.valid());
    QCOMPARE(job.value, 0.0);
    QVERIFY(!job.cancel);
}

void tst_Progress::valueIsStored()
{
    Progress job;
    job.set_value(42.5);
    QCOMPARE(job.get_value(), 42.5);
}

void tst_Progress::cancelledRecordStoresMinusOneAndThrows()
{
    Progress job;
    job.set_value(10.0);
    job.cancel = true;
    std::string thrown;
    try {
        job.set_value(20.0);
    } catch (const char *text) {
        thrown = text;
    }
    QCOMPARE(thrown, std::string("progress_cancle"));
    QCOMPARE(job.get_value(), -1.0); // and the mutex is free
}

void tst_Progress::jobThatWasNeverStartedIsFinished()
{
    Progress job;
    QVERIFY(job.isFinish());
}

void tst_Progress::newJobReportsZero()
{
    Progress job;
    QCOMPARE(job.get_value(), 0.0);
}

void tst_Progress::exportGetsThirtyOneArguments_data()
{
    // Each flag alone, so that none is passed in another's place.
    QTest::addColumn<bool>("negate");
    QTest::addColumn<bool>("mirror");
    QTest::addColumn<bool>("rotate");
    QTest::addColumn<bool>("scale");
    QTest::addColumn<bool>("profile");
    QTest::addColumn<int>("type");
    QTest::newRow("none, gerber") << false << false << false << false << false << 0;
    QTest::newRow("negate") << true << false << false << false << false << 1;
    QTest::newRow("mirror") << false << true << false << false << false << 1;
    QTest::newRow("rotate") << false << false << true << false << false << 1;
    QTest::newRow("scale") << false << false << false << true << false << 1;
    QTest::newRow("profile") << false << false << false << false << true << 1;
}

void tst_Progress::exportGetsThirtyOneArguments()
{
    QFETCH(bool, negate);
    QFETCH(bool, mirror);
    QFETCH(bool, rotate);
    QFETCH(bool, scale);
    QFETCH(bool, profile);
    QFETCH(int, type);
    Progress::isReserse = negate;
    Progress::isMirror = mirror;
    Progress::isRotate = rotate;
    Progress::isScale = scale;
    Progress::isProfiletop = profile;
    Progress::m_Suffix = ORVEX::API::export_type(type);
    Progress job;
    job.do_process();
    waitFor(job);

    QCOMPARE(state().exports.size(), size_t(1));
    const ExportCall &call = state().exports[0];
    QVERIFY(!call.isDbSave);
    QCOMPARE(call.job, std::string("job"));
    QCOMPARE(call.step, std::string("step"));
    QCOMPARE(call.layer, std::string("layer"));
    QCOMPARE(int(call.type), type);
    QCOMPARE(call.fileName, std::string("d:/out\\layer.gds"));
    QCOMPARE(call.progress, static_cast<ORVEX::COMMON::progress_value<void> *>(&job));
    QCOMPARE(call.dbu, 0.002);
    QCOMPARE(call.resize, 25.0);
    QCOMPARE(call.isNegative, negate);
    QCOMPARE(call.isMirror, mirror);
    QCOMPARE(call.isRotate, rotate);
    QCOMPARE(call.isScale, scale);
    QCOMPARE(call.optionInts, std::vector<int>(6, 0));
    QCOMPARE(call.isProfileTop, profile);
    QCOMPARE(call.angle, 90.0);
    QCOMPARE(call.axis, std::string("X"));
    QVERIFY(call.flagOption1);
    QCOMPARE(call.xScale, 1.25);
    QCOMPARE(call.yScale, 0.5);
    QVERIFY(call.flagOption2);
    QCOMPARE(call.mode1, 2);
    QCOMPARE(call.mode2, 6);
    QCOMPARE(call.mode3, 1);
    QCOMPARE(call.mode4, 0);
    QVERIFY(call.polygons.empty());
    QCOMPARE(call.mode5, 1);
}

void tst_Progress::withoutTheSaveFlagOnlyTheExportIsCalled()
{
    Progress job;
    job.do_process();
    waitFor(job);
    QCOMPARE(state().calls, std::vector<std::string>({"get_SaveFlag", "layer_export"}));
}

void tst_Progress::withTheSaveFlagTheRecordComesFirst()
{
    state().saveFlag = true;
    Progress job;
    job.do_process();
    waitFor(job);
    QCOMPARE(state().calls,
             std::vector<std::string>({"get_SaveFlag", "layer_export_db_save", "layer_export"}));
    QVERIFY(state().exports[0].isDbSave);
    compareShared(state().exports[0], state().exports[1]);
}

void tst_Progress::exportRunsOnAThreadOfItsOwn()
{
    std::thread::id exporter;
    state().onExport = [&exporter](const ExportCall &) {
        exporter = std::this_thread::get_id();
        return true;
    };
    Progress job;
    job.do_process();
    waitFor(job);
    QVERIFY(exporter != std::thread::id());
    QVERIFY(exporter != std::this_thread::get_id());
}

void tst_Progress::valueIsReadWhileTheHostWritesIt()
{
    state().onExport = [](const ExportCall &call) {
        for (int i = 0; i <= 1000; ++i)
            call.progress->set_value(i / 10.0);
        return true;
    };
    Progress job;
    job.do_process();
    double last = 0.0;
    while (!job.isFinish()) {
        const double value = job.get_value();
        QVERIFY(value >= last);
        QVERIFY(value <= 100.0);
        last = value;
    }
    QCOMPARE(job.get_value(), 100.0);
}

void tst_Progress::unfinishedExportIsReported()
{
    std::atomic<bool> mayEnd{false};
    state().onExport = [&mayEnd](const ExportCall &) {
        while (!mayEnd)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        return true;
    };
    Progress job;
    job.do_process();
    for (int i = 0; i < 5; ++i)
        QVERIFY(!job.isFinish());
    mayEnd = true;
    waitFor(job);
    QVERIFY(job.isFinish());
}

void tst_Progress::resultIsNotLookedAt()
{
    state().onExport = [](const ExportCall &) { return false; };
    Progress job;
    job.do_process();
    waitFor(job);
    QCOMPARE(job.get_value(), 0.0);
    job.task.get(); // would throw what the task ended with
}

void tst_Progress::exceptionsEndTheTask_data()
{
    QTest::addColumn<int>("kind");
    QTest::newRow("text") << 0;
    QTest::newRow("exception") << 1;
    QTest::newRow("number") << 2;
}

void tst_Progress::exceptionsEndTheTask()
{
    QFETCH(int, kind);
    state().onExport = [kind](const ExportCall &) -> bool {
        if (kind == 0)
            throw "progress_cancle";
        if (kind == 1)
            throw std::runtime_error("disk full");
        throw 7;
    };
    Progress job;
    job.do_process();
    waitFor(job);
    QVERIFY(job.task.valid()); // nobody has fetched it
}

void tst_Progress::cancelEndsTheTaskWithMinusOne()
{
    std::atomic<bool> isRunning{false};
    state().onExport = [&isRunning](const ExportCall &call) {
        for (;;) {
            call.progress->set_value(50.0);
            isRunning = true;
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        return true;
    };
    Progress job;
    job.do_process();
    while (!isRunning)
        std::this_thread::yield();
    {
        std::lock_guard<std::mutex> lock(job.mutex);
        job.cancel = true;
    }
    waitFor(job);
    QCOMPARE(job.get_value(), -1.0);
}

void tst_Progress::startingAgainReplacesTheTask()
{
    Progress job;
    job.do_process();
    waitFor(job);
    job.do_process();
    waitFor(job);
    QCOMPARE(state().exports.size(), size_t(2));
}

void tst_Progress::destructionWaitsForTheTask()
{
    std::atomic<bool> hasEnded{false};
    state().onExport = [&hasEnded](const ExportCall &) {
        std::this_thread::sleep_for(std::chrono::milliseconds(30));
        hasEnded = true;
        return true;
    };
    {
        Progress job;
        job.do_process();
    }
    QVERIFY(hasEnded);
}

void tst_Progress::manyJobsAfterEachOther()
{
    for (int i = 0; i < 200; ++i) {
        Progress job;
        Progress::m_layer_name = "layer" + std::to_string(i);
        job.do_process();
        waitFor(job);
    }
    QCOMPARE(state().exports.size(), size_t(200));
    QCOMPARE(state().exports.back().layer, std::string("layer199"));
}

QTEST_APPLESS_MAIN(tst_Progress)
#include "tst_progress.moc"
