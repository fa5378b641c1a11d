// What both background jobs, export and import, promise about their lock and their start.

#include "import/unzipprogress.h"
#include "run/progress.h"
#include "tests/support/recordinghost.h"
#include "tests/support/temporaryworkingfolder.h"

#include <QSemaphore>
#include <QtTest>

#include <glog/logging.h>

#include <chrono>
#include <future>

using recording_host::state;

namespace {

// Holds a job of its kind at its work until it is opened. An export is held in the host's call, an import
// where it logs that there is no archive. It outlives the job: an opened semaphore may still be in use by the
// job's thread.
class Gate : public google::LogSink
{
public:
    Gate()
    {
        state().onExport = [this](const recording_host::ExportCall &) {
            hold();
            return true;
        };
        UnzipProgress::sourcePath = L"no such file";
        UnzipProgress::unzipedFilePath = L".\\";
        UnzipProgress::tarName = L"ABC.tar";
        UnzipProgress::removeCmd = "/c del .\\ABC*.tar";
        google::AddLogSink(this);
    }
    ~Gate() override
    {
        google::RemoveLogSink(this);
        state().onExport = nullptr;
    }

    // False when the job does not come to its work; gives up after half a minute.
    bool waitUntilHeld() { return m_held.tryAcquire(1, 30000); }
    void open() { m_open.release(2); }

    // Opens the gate when it goes: before the job, which was made earlier, waits for its end.
    struct Opener
    {
        Gate &gate;
        ~Opener() { gate.open(); }
    };

    void send(google::LogSeverity, const char *, const char *baseFileName, int,
              const google::LogMessageTime &, const char *, size_t) override
    {
        if (std::string(baseFileName) == "Progress")
            hold();
    }
    using google::LogSink::send;

private:
    void hold()
    {
        m_held.release();
        m_open.acquire();
    }
    QSemaphore m_held, m_open;
};

// Whether `call` waits for somebody who holds the lock of `job`.
template <typename Job, typename Call>
bool waitsForTheLock(Job &job, Call call)
{
    std::future<void> result;
    std::future_status status;
    {
        std::lock_guard<std::mutex> lock(job.mutex);
        result = std::async(std::launch::async, [&call] { call(); });
        status = result.wait_for(std::chrono::milliseconds(100));
    }
    result.get();
    return status == std::future_status::timeout;
}

template <typename Job>
void theLockGuardsAJobThatHasNotStarted()
{
    Job job;
    QVERIFY(waitsForTheLock(job, [&job] { job.isFinish(); }));
    QVERIFY(waitsForTheLock(job, [&job] { job.get_value(); }));
    QVERIFY(waitsForTheLock(job, [&job] { job.set_value(1.0); }));
    QVERIFY(job.isFinish());
}

template <typename Job>
void theLockGuardsARunningJob()
{
    Gate gate;
    Job job;
    const Gate::Opener opener{gate};
    job.do_process();
    QVERIFY(gate.waitUntilHeld());
    bool isFinished = true;
    QVERIFY(waitsForTheLock(job, [&] { isFinished = job.isFinish(); }));
    QVERIFY(!isFinished);
    QVERIFY(waitsForTheLock(job, [&job] { job.get_value(); }));
}

template <typename Job>
void theJobRunsByItself()
{
    Gate gate;
    Job job;
    const Gate::Opener opener{gate};
    job.do_process();
    QVERIFY(gate.waitUntilHeld()); // a deferred task does not come there
    QVERIFY(job.task.wait_for(std::chrono::seconds(0)) == std::future_status::timeout);
    gate.open();
    QTRY_VERIFY(job.isFinish());
}

} // namespace

class tst_Jobs : public QObject
{
    Q_OBJECT

private slots:
    void init() { recording_host::reset(); }
    void anExportThatHasNotStartedIsAskedUnderItsLock() { theLockGuardsAJobThatHasNotStarted<Progress>(); }
    void anImportThatHasNotStartedIsAskedUnderItsLock()
    {
        theLockGuardsAJobThatHasNotStarted<UnzipProgress>();
    }
    void aRunningExportIsAskedUnderItsLock() { theLockGuardsARunningJob<Progress>(); }
    void aRunningImportIsAskedUnderItsLock() { theLockGuardsARunningJob<UnzipProgress>(); }
    void anExportRunsByItself() { theJobRunsByItself<Progress>(); }
    void anImportRunsByItself() { theJobRunsByItself<UnzipProgress>(); }

private:
    TemporaryWorkingFolder m_folder;
};

QTEST_GUILESS_MAIN(tst_Jobs)
#include "tst_jobs.moc"
