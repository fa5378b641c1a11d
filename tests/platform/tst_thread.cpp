// Threads that step back.

#include "platform/thread.h"
#include "tests/support/threadpriority.h"

#include <QtTest>

#include <thread>

class tst_Thread : public QObject
{
    Q_OBJECT

private slots:
    void onlyTheCallingThreadStepsBack();
    void onceIsEnough();
};

void tst_Thread::onlyTheCallingThreadStepsBack()
{
    const int before = threadPriority();
    int inBackground = before;
    std::thread([&inBackground] {
        platform::workInBackground();
        inBackground = threadPriority();
    }).join();
    QVERIFY2(inBackground < before, qPrintable(QString::number(inBackground)));
    QCOMPARE(threadPriority(), before);
}

void tst_Thread::onceIsEnough()
{
    int once = 0, twice = 0;
    std::thread([&once, &twice] {
        platform::workInBackground();
        once = threadPriority();
        platform::workInBackground();
        twice = threadPriority();
    }).join();
    QCOMPARE(twice, once);
}

QTEST_APPLESS_MAIN(tst_Thread)
#include "tst_thread.moc"
