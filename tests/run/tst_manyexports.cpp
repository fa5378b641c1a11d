// Many exports and dialogs in one process leave nothing behind.

#include "run/progress.h"
#include "tests/export/opendialog.h"
#include "tests/run/processresources.h"

#include <QPixmapCache>

#include <chrono>
#include <stdexcept>
#include <thread>

using recording_host::ExportCall;
using recording_host::state;

namespace {

void exportLayer(int number)
{
    Progress::m_layer_name = "layer" + std::to_string(number);
    Progress job;
    job.do_process();
    while (!job.isFinish())
        std::this_thread::sleep_for(std::chrono::microseconds(50));
}

// The stand-in's records are not what is measured.
void forgetCalls()
{
    state().exports.clear();
    state().calls.clear();
    state().matrixJobs.clear();
}

void deleteWhatIsDue()
{
    QApplication::processEvents();
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

} // namespace

class tst_ManyExports : public QObject
{
    Q_OBJECT

private slots:
    void init() { recording_host::reset(); }
    void thousandJobsLeaveNothing();
    void thousandFailingJobsLeaveNothing();
    void runsOfOneDialogLeaveNothing();
    void dialogsLeaveNothing();

private:
    // Does `work` some times to warm up and then `times` times more; compares what the process holds.
    template <typename Work>
    void compareBeforeAndAfter(int times, const Work &work);
};

template <typename Work>
void tst_ManyExports::compareBeforeAndAfter(int times, const Work &work)
{
    for (int i = 0; i < times / 2; ++i)
        work(i);
    const long memory = heldMemory();
    const int files = openFiles();
    const int threads = runningThreads();
    for (int i = 0; i < times; ++i)
        work(i);
    const long grown = heldMemory() - memory;
    // A kilobyte a time would be a megabyte; the allocator's own ups and downs are less than that.
    QVERIFY2(grown < 1000, qPrintable(QString("memory grew by %1 KiB").arg(grown)));
    QCOMPARE(openFiles(), files);
    QCOMPARE(runningThreads(), threads);
}

void tst_ManyExports::thousandJobsLeaveNothing()
{
    compareBeforeAndAfter(1000, [](int i) {
        exportLayer(i);
        forgetCalls();
    });
}

void tst_ManyExports::thousandFailingJobsLeaveNothing()
{
    state().onExport = [](const ExportCall &) -> bool { throw std::runtime_error(std::string(1000, 'x')); };
    compareBeforeAndAfter(1000, [](int i) {
        exportLayer(i);
        forgetCalls();
    });
}

void tst_ManyExports::runsOfOneDialogLeaveNothing()
{
    // Each run waits for a poll, so they are few; a leak of 30 KiB a run would show.
    OpenDialog dialog(OpenDialog::sixLayers());
    dialog.setChecked({0});
    compareBeforeAndAfter(30, [&dialog](int) {
        dialog.button("OKButton")->click();
        forgetCalls();
        deleteWhatIsDue();
    });
}

void tst_ManyExports::dialogsLeaveNothing()
{
    state().layers = OpenDialog::sixLayers();
    compareBeforeAndAfter(200, [](int) {
        ExportJobInfo job;
        job.jobName = "job";
        auto *dialog = new Export(nullptr);
        dialog->setJobInfo(&job);
        dialog->show();
        QApplication::processEvents();
        dialog->close();
        deleteWhatIsDue();
        forgetCalls();
    });
}

int main(int argc, char **argv)
{
    // The plug-in's debug lines would be most of the output, and the tst_test log would keep them.
    qputenv("QT_LOGGING_RULES", "default.debug=false");
    QApplication application(argc, argv);
    QPixmapCache::setCacheLimit(0); // Qt's pictures of controls, which it keeps up to 10 MB of
    tst_ManyExports tst_test;
    return QTest::qExec(&tst_test, argc, argv);
}
#include "tst_manyexports.moc"
