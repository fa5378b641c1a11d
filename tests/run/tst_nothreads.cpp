// An export on a system that has no thread to give.

#include "import/unzipprogress.h"
#include "run/progress.h"
#include "tests/export/opendialog.h"
#include "tests/support/logcapture.h"
#include "tests/support/threadfailure.h"

#include <system_error>

using namespace layer_column;
using recording_host::state;

class tst_NoThreads : public QObject
{
    Q_OBJECT

private slots:
    void init() { recording_host::reset(); }
    void jobsAreNotDeferred();
    void layersAreLoggedAndCountAsDone();
    void theNextRunIsAsGoodAsAny();
};

// Without a thread, the standard library would defer a task that it may.
void tst_NoThreads::jobsAreNotDeferred()
{
    const ThreadFailure limit(0);
    Progress exportJob;
    QVERIFY_EXCEPTION_THROWN(exportJob.do_process(), std::system_error);
    QVERIFY(!exportJob.task.valid());
    UnzipProgress importJob;
    QVERIFY_EXCEPTION_THROWN(importJob.do_process(), std::system_error);
    QVERIFY(!importJob.task.valid());
}

void tst_NoThreads::layersAreLoggedAndCountAsDone()
{
    OpenDialog dialog(OpenDialog::sixLayers());
    dialog.setChecked({2, 4});
    const LogCapture log;
    {
        const ThreadFailure limit(0);
        QTest::mouseClick(dialog.button("OKButton"), Qt::LeftButton);
    }
    QVERIFY(state().exports.empty());
    QVERIFY(dialog.table()->cellWidget(2, Time));
    QVERIFY(dialog.table()->cellWidget(4, Time));
    int logged = 0;
    for (const LogLine &line : log.lines()) {
        if (line.severity == google::GLOG_ERROR && line.message.find("was not started") != std::string::npos)
            ++logged;
    }
    QCOMPARE(logged, 2);
}

void tst_NoThreads::theNextRunIsAsGoodAsAny()
{
    OpenDialog dialog(OpenDialog::sixLayers());
    dialog.setChecked({2, 4});
    {
        const ThreadFailure limit(1);
        QTest::mouseClick(dialog.button("OKButton"), Qt::LeftButton);
    }
    QCOMPARE(state().exports.size(), size_t(1));
    QTest::mouseClick(dialog.button("OKButton"), Qt::LeftButton);
    QCOMPARE(state().exports.size(), size_t(3));
}

QTEST_MAIN(tst_NoThreads)
#include "tst_nothreads.moc"
