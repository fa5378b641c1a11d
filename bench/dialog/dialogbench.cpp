// How long the Export dialog takes to open and its table commands to run, and what many exports leave behind.
//
//   dialogbench [--cpu] [LAYERS...]   opens dialogs with so many layers (20, 200 and 2000): a line each, in
//   milliseconds dialogbench --exports N           exports one layer N times and prints memory and open files
//   as it goes
//
// "open" is the time from the construction to the first picture, on a display with the window system's share;
// all times are medians of five.

#include "export/export.h"
#include "export/layercolumns.h"
#include "tests/support/recordinghost.h"

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <memory>
#include <vector>

namespace {

std::vector<ORVEX::API::layer_info> layers(int count)
{
    const char *const types[] = {"SIGNAL",      "POWER_GROUND", "SOLDER_MASK",
                                 "SILK_SCREEN", "SOLDER_PASTE", "DRILL"};
    std::vector<ORVEX::API::layer_info> all;
    for (int i = 0; i < count; ++i)
        all.push_back(recording_host::layer("BOARD", types[i % 6], "layer_" + std::to_string(i)));
    return all;
}

std::unique_ptr<Export> openDialog(const QString &folder)
{
    ExportJobInfo job;
    job.stepName = "pcb";
    job.jobName = "job";
    job.folderPath = folder;
    auto dialog = std::make_unique<Export>(nullptr);
    dialog->setExportConfig(ExportConfig());
    dialog->setJobInfo(&job);
    dialog->show();
    // Until the table has drawn itself.
    struct PaintWatch : QObject
    {
        bool eventFilter(QObject *, QEvent *event) override
        {
            isPainted = isPainted || event->type() == QEvent::Paint;
            return false;
        }
        bool isPainted = false;
    } watch;
    dialog->findChild<QTableWidget *>("PNListTable")->viewport()->installEventFilter(&watch);
    while (!watch.isPainted)
        QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    QApplication::processEvents();
    return dialog;
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

// With --cpu the processor's time counts, on platforms where std::clock is that: on a busy machine it says
// more.
bool countsProcessorTime = false;

template <typename Work>
double milliseconds(const Work &work)
{
    QElapsedTimer timer;
    timer.start();
    const std::clock_t before = std::clock();
    work();
    QApplication::processEvents(); // the picture of the change belongs to it
    return countsProcessorTime ? 1000.0 * double(std::clock() - before) / CLOCKS_PER_SEC
                               : double(timer.nsecsElapsed()) / 1e6;
}

void measureDialog(int count, const QString &folder)
{
    recording_host::state().layers = layers(count);
    std::vector<double> opened, closed, selected, cleared, board, copied;
    for (int i = 0; i < 5; ++i) {
        std::unique_ptr<Export> dialog;
        opened.push_back(milliseconds([&] { dialog = openDialog(folder); }));
        auto *table = dialog->findChild<QTableWidget *>("PNListTable");
        board.push_back(milliseconds([&] { dialog->on_BoardLayer_clicked(); }));
        cleared.push_back(milliseconds([&] { dialog->on_ClearAll_clicked(); }));
        selected.push_back(milliseconds([&] { dialog->on_SelectAll_clicked(); }));
        table->setCurrentCell(1, layer_column::Layer);
        qobject_cast<QComboBox *>(table->cellWidget(1, layer_column::Rotate))->setCurrentText("90");
        table->item(1, layer_column::XScale)->setText("1.5");
        copied.push_back(milliseconds([&] { dialog->on_SetParamater_clicked(); }));
        closed.push_back(milliseconds([&] { dialog.reset(); }));
    }
    std::printf(
        "%5d layers: open %8.1f  board %7.1f  clear %7.1f  select %7.1f  set parameters %7.1f  close %7.1f\n",
        count, median(opened), median(board), median(cleared), median(selected), median(copied),
        median(closed));
    std::fflush(stdout);
}

// Resident memory in KiB and open files of this process; -1 where the platform does not tell.
long residentMemory()
{
    QFile status("/proc/self/status");
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith("VmRSS:"))
            return line.mid(6).trimmed().split(' ').first().toLong();
    }
    return -1;
}

int openFiles()
{
    return QDir("/proc/self/fd").entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System).size() - 1;
}

void measureExports(int count, const QString &folder)
{
    recording_host::state().layers = layers(20);
    const std::unique_ptr<Export> dialog = openDialog(folder);
    dialog->findChild<QTableWidget *>("PNListTable")
        ->item(3, layer_column::Check)
        ->setData(Qt::EditRole, true);
    auto *ok = dialog->findChild<QPushButton *>("OKButton");
    for (int i = 0; i <= count; ++i) {
        if (i % std::max(1, count / 10) == 0) {
            std::printf("%5d exports: %6ld KiB resident, %3d open files\n", i, residentMemory(), openFiles());
            std::fflush(stdout);
        }
        ok->click();
        QApplication::processEvents();
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); // the event loop of a host does it
        // The stand-in's records of the calls are its own memory.
        recording_host::state().exports.clear();
        recording_host::state().calls.clear();
    }
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    QStringList arguments = application.arguments();
    countsProcessorTime = arguments.removeAll("--cpu") > 0;
    const QTemporaryDir folder;
    const int exports = arguments.indexOf("--exports");
    if (exports >= 0) {
        measureExports(arguments.value(exports + 1).toInt(), folder.path());
        return 0;
    }
    const QStringList counts = arguments.size() > 1 ? arguments.mid(1) : QStringList{"20", "200", "2000"};
    for (const QString &count : counts)
        measureDialog(count.toInt(), folder.path());
    return 0;
}
