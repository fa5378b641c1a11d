#include "run/exportrun.h"

#include "platform/paths.h"
#include "plugin/interface/exportformat.h"
#include "plugin/interface/messages.h"
#include "run/exporttime.h"
#include "run/progress.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QLabel>
#include <QScreen>
#include <QThread>

#include <glog/logging.h>

#include <system_error>

namespace {

const unsigned long pollMilliseconds = 200;

std::string lowerCase(const QString &text)
{
    return text.toLower().toStdString();
}

// Puts the progress dialog into the top right corner of the screen.
void place(QProgressDialog &progress)
{
    if (const QScreen *screen = QGuiApplication::primaryScreen())
        progress.move(screen->availableGeometry().right() - progress.width(), 0);
    progress.setCancelButton(nullptr);
    progress.show();
    // A title bar and no buttons. Changing the flags hides the dialog; the first progress value shows it
    // again.
    progress.setWindowFlags(Qt::Dialog | Qt::WindowTitleHint);
}

} // namespace

ExportRun::ExportRun(QWidget *window, ExportRunDialog &dialog)
    : m_turn("An export is running", "OK"), m_window(window), m_dialog(dialog)
{
}

ExportRun::~ExportRun()
{
    delete m_progressDialog;
    if (!m_inputLock || !m_window) // it did not begin, or there is nothing left to undo
        return;
    m_dialog.setRun(nullptr);
    m_inputLock.reset();
    m_window->setEnabled(true); // a cancel disables it
}

bool ExportRun::begin()
{
    // Another dialog may have opened meanwhile, or an import may have begun.
    if (!m_turn.isMine())
        return false;
    m_dialog.setRun(this);
    m_inputLock = std::make_unique<InputLock>(m_window);
    m_order = m_dialog.takeFields();
    makeOutputFolder();
    m_order.layers = m_dialog.takeLayers();
    report();
    if (!m_window)
        return false;
    createProgressDialog();
    return true;
}

void ExportRun::makeOutputFolder() const
{
    const QString folder = platform::toLocal(m_order.outputDir);
    if (!QDir(folder).exists())
        QDir().mkpath(folder);
    // The CAM library gets the path in lower case. Of folders that differ only in case, which not every
    // system takes for one, it writes to the one that was changed last.
    platform::touchFolder(folder);
}

void ExportRun::report()
{
    QList<std::string> layerNames;
    for (const auto &layer : m_order.layers)
        layerNames << layer.first;
    if (layerNames.isEmpty() || m_order.format != export_format::gds)
        return;

    PluginMetaData report;
    report.fromPlugin = messages::fileProcess;
    report.toPlugin = messages::layerList;
    report.msgType = messages::ExportReport;
    report.params["path"] = m_order.outputDir;
    report.payload = &layerNames;
    try {
        m_dialog.sendReport(report);
    } catch (...) {
        // Neither the export nor the event loop above has to do with what goes wrong at a receiver.
        google::LogMessage("Export", __LINE__, google::GLOG_ERROR).stream()
            << "A receiver of the export's report has failed with an exception";
    }
}

void ExportRun::createProgressDialog()
{
    m_progressDialog = new QProgressDialog(tr("Processing"), tr("Cancel"), 0, 100, m_window);
    m_progressDialog->setMinimumDuration(1);
    m_progressDialog->setWindowTitle(tr("Please wait"));
    m_progressDialog->setFixedSize(250, 60);
    // The dialog stays between the layers, and a cancelled mark stays until the next layer looks at it.
    m_progressDialog->setAutoReset(false);
    m_progressDialog->setAutoClose(false);
    // The Escape key closes it without a close event.
    QObject::connect(m_progressDialog, SIGNAL(rejected()), m_progressDialog, SLOT(cancel()));
    // Without it the Export dialog would look as if it took input.
    QWidget *window = m_window;
    QObject::connect(m_progressDialog, &QProgressDialog::canceled, window,
                     [window] { window->setEnabled(false); });
    // Layer names are no rich text, whatever characters they hold.
    for (QLabel *label : m_progressDialog->findChildren<QLabel *>())
        label->setTextFormat(Qt::PlainText);
}

void ExportRun::exportLayers()
{
    place(*m_progressDialog);
    if (!m_window)
        return;
    for (auto &layer : m_order.layers) {
        Progress job;
        setJobStatics(layer.first, layer.second);
        m_progressDialog->setRange(0, 100);
        m_progressDialog->setWindowModality(Qt::ApplicationModal);
        m_progressDialog->setLabelText(tr("layer :") + QString::fromStdString(layer.first).toLower());
        if (m_progressDialog->wasCanceled())
            return;
        setOutputFile(layer.first);
        const double seconds = exportLayer(job);
        if (!m_window || !m_progressDialog)
            return; // the layer was finished, as after a cancel
        layer.second.seconds = seconds;
    }
}

void ExportRun::setJobStatics(const std::string &layerName, const LayerExportParam &param) const
{
    Progress::m_job_name = lowerCase(m_order.jobName);
    Progress::m_step = lowerCase(m_order.stepName);
    Progress::m_layer_name = lowerCase(QString::fromStdString(layerName));
    Progress::resize = m_order.resize;
    Progress::isProfiletop = m_order.isProfileTop;
    Progress::dbuValue = m_order.dbu;
    Progress::isReserse = param.isNegate;
    Progress::isRotate = param.angle != 0.0;
    Progress::angle = param.angle;
    Progress::XScale = param.xScale;
    Progress::YScale = param.yScale;
    Progress::isScale = !(param.xScale == 1.0 && param.yScale == 1.0);
    Progress::isMirror = param.isMirror;
}

void ExportRun::setOutputFile(const std::string &layerName) const
{
    const QString name = QString::fromStdString(layerName);
    Progress::m_file_name = lowerCase(m_order.outputDir + "\\" + name + m_order.format);
    Progress::m_Suffix = export_format::typeOf(m_order.format);
}

// Returns the whole seconds that the layer took.
double ExportRun::exportLayer(Progress &job) const
{
    try {
        job.do_process();
    } catch (const std::system_error &error) {
        // Without a thread the job counts as ended.
        google::LogMessage("Export", __LINE__, google::GLOG_ERROR).stream()
            << "The export of layer \"" << Progress::m_layer_name << "\" was not started: " << error.what();
    }
    QElapsedTimer timer;
    timer.start();
    while (!job.isFinish()) {
        if (m_progressDialog)
            m_progressDialog->setValue(export_time::shownProgress(job.get_value()));
        QApplication::processEvents();
        QThread::msleep(pollMilliseconds);
    }
    if (m_progressDialog)
        m_progressDialog->setValue(100);
    return double(export_time::wholeSeconds(timer.elapsed()));
}

void ExportRun::end()
{
    if (!m_window)
        return;
    delete m_progressDialog;
    m_dialog.showTimes(m_order.layers);
}
