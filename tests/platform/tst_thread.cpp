// Threads that step back.

#include "platform/thread.h"

#include <QtTest>

#include <thread>

#ifdef Q_OS_WIN
#include <windows.h>
#else
#include <sys/resource.h>
#endif

namespace {

// Of the calling thread: the greater the more important.
int priority()
{
#ifdef Q_OS_WIN
    return GetThreadPriority(GetCurrentThread());
#else
    return -getpriority(PRIO_PROCESS, 0);
#endif
}

} // namespace

class tst_Thread : public QObject
{
    Q_OBJECT

private slots:
    void onlyTheCallingThreadStepsBack();
    void onceIsEnough();
};

void tst_Thread::onlyTheCallingThreadStepsBack()
{
    const int before = priority();
    int inBackground = before;
    std::thread([&inBackground] {
        platform::workInBackground();
        inBackground = priority();
    }).join();
    QVERIFY2(inBackground < before, qPrintable(QString::number(inBackground)));
    QCOMPARE(priority(), before);
}

void tst_Thread::onceIsEnough()
{
    int once = 0, twice = 0;
    std::thread([&once, &twice] {
        platform::workInBackground();
        once = priority();
        platform::workInBackground();
        twice = priority();
    }).join();
    QCOMPARE(twice, once);
}

QTEST_APPLESS_MAIN(tst_Thread)
#include "tst_thread.moc"
