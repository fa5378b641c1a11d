// How long the question whether a job has ended waits for it: a microsecond, with the job's lock held. The
// wait is looked at where it reaches the system.

#include "import/unzipprogress.h"
#include "run/progress.h"

#include <QtTest>

#include <chrono>
#include <cstdarg>
#include <functional>
#include <thread>

#include <dlfcn.h>
#include <linux/futex.h>
#include <sys/syscall.h>
#include <time.h>

namespace {

// Called with the nanoseconds that a waiting has left, on the thread that is about to wait.
thread_local std::function<void(long long)> onWait;

// Nanoseconds until `deadline` of the clock that the futex operation `operation` goes by.
long long nanosecondsUntil(const timespec &deadline, int operation)
{
    timespec now;
    clock_gettime(operation & FUTEX_CLOCK_REALTIME ? CLOCK_REALTIME : CLOCK_MONOTONIC, &now);
    return (deadline.tv_sec - now.tv_sec) * 1000000000LL + (deadline.tv_nsec - now.tv_nsec);
}

} // namespace

// The standard library waits for a future through this function of the C library; the program's own comes
// first.
extern "C" Q_DECL_EXPORT long syscall(long number, ...) noexcept
{
    using Call = long (*)(long, ...);
    static const auto call = reinterpret_cast<Call>(dlsym(RTLD_NEXT, "syscall"));
    va_list list;
    va_start(list, number);
    long arguments[6];
    for (long &argument : arguments)
        argument = va_arg(list, long);
    va_end(list);
    if (number == SYS_futex && onWait) {
        const int operation = int(arguments[1]);
        const auto *deadline = reinterpret_cast<const timespec *>(arguments[3]);
        if ((operation & FUTEX_CMD_MASK) == FUTEX_WAIT_BITSET && deadline)
            onWait(nanosecondsUntil(*deadline, operation));
    }
    return call(number, arguments[0], arguments[1], arguments[2], arguments[3], arguments[4], arguments[5]);
}

namespace {

// Asks a job whose task does not end, and looks at each wait.
template <typename Job>
void checkTheWait()
{
    Job job;
    std::promise<void> end;
    job.task = end.get_future();
    std::vector<long long> waits;
    int unlocked = 0;
    onWait = [&](long long nanoseconds) {
        waits.push_back(nanoseconds);
        std::thread([&] {
            if (job.mutex.try_lock()) {
                ++unlocked;
                job.mutex.unlock();
            }
        }).join();
    };
    const int questions = 20;
    for (int i = 0; i < questions; ++i) {
        if (job.isFinish())
            break;
    }
    onWait = nullptr;
    QCOMPARE(waits.size(), size_t(questions));
    // What is left of a microsecond when the system is reached; on a busy machine nothing is.
    for (long long nanoseconds : waits)
        QVERIFY2(nanoseconds <= 1000, qPrintable(QString::number(nanoseconds)));
    QCOMPARE(unlocked, 0);
    end.set_value();
    QVERIFY(job.isFinish());
}

} // namespace

class tst_PollWait : public QObject
{
    Q_OBJECT

private slots:
    void exportsAreWaitedForAMicrosecond() { checkTheWait<Progress>(); }
    void importsAreWaitedForAMicrosecond() { checkTheWait<UnzipProgress>(); }
};

QTEST_APPLESS_MAIN(tst_PollWait)
#include "tst_pollwait.moc"
