// A job that is destroyed while its task runs waits for the task before its mutex goes.
//
// Where a mutex has nothing to destroy, as with GCC's library, nobody would notice the wrong order. So the
// job is compiled here with a mutex that notes when it goes.

#include "plugin/interface/export_macro.h"

#include <QThread>
#include <QtTest>

#include <atomic>
#include <chrono>
#include <future>
#include <mutex>
#include <string>
#include <vector>

namespace watched {

using namespace ::std;

::std::atomic<bool> isMutexGone{false};

class mutex : public ::std::mutex
{
public:
    ~mutex() { isMutexGone = true; }
};

} // namespace watched

#define std watched
#include "run/progress.cpp"
#undef std

class tst_JobDestruction : public QObject
{
    Q_OBJECT

private slots:
    void theMutexOutlivesTheTask();
};

void tst_JobDestruction::theMutexOutlivesTheTask()
{
    std::atomic<bool> wasMutexGone{true};
    {
        Progress job;
        job.task = std::async(std::launch::async, [&wasMutexGone] {
            QThread::msleep(100);
            wasMutexGone = watched::isMutexGone.load();
        });
    }
    QVERIFY(!wasMutexGone);
    QVERIFY(watched::isMutexGone);
}

QTEST_GUILESS_MAIN(tst_JobDestruction)
#include "tst_jobdestruction.moc"
