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
    void thePriorityIsGivenBack();
};

void tst_Thread::onlyTheCallingThreadStepsBack()
{
    const int before = threadPriority();
    int inBackground = before;
    std::thread([&inBackground] {
        const platform::BackgroundWork work;
        inBackground = threadPriority();
    }).join();
    QVERIFY2(inBackground < before, qPrintable(QString::number(inBackground)));
    QCOMPARE(threadPriority(), before);
}

void tst_Thread::onceIsEnough()
{
    int once = 0, twice = 0;
    std::thread([&once, &twice] {
        const platform::BackgroundWork work;
        once = threadPriority();
        const platform::BackgroundWork again;
        twice = threadPriority();
    }).join();
    QCOMPARE(twice, once);
}

// A pool's thread gets other work afterwards.
void tst_Thread::thePriorityIsGivenBack()
{
    if (!mayRaisePriority())
        QSKIP("this user may not make a thread more important again");
    int before = 0, after = 0;
    std::thread([&] {
        before = threadPriority();
        {
            const platform::BackgroundWork work;
        }
        after = threadPriority();
    }).join();
    QCOMPARE(after, before);
}

QTEST_APPLESS_MAIN(tst_Thread)
#include "tst_thread.moc"
