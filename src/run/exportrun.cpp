// The export run of the Export dialog: from the OK button over one background job a layer to the Time cells.

#include "export/export.h"

#include "export/layercolumns.h"
#include "platform/paths.h"
#include "run/backgroundturn.h"
#include "run/exporttime.h"
#include "run/progress.h"

#include <QApplication>
#include <QComboBox>
#include <QDebug>
#include <QDir>
#include <QElapsedTimer>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QProgressDialog>
#include <QPushButton>
#include <QScreen>
#include <QTableWidget>
#include <QThread>

#include <glog/logging.h>

#include <system_error>

namespace {

const qint32 ExportReport = 10000403;
const unsigned long pollInterval = 200; // milliseconds

std::string lowerCase(const QString &text)
{
    return text.toLower().toStdString();
}

bool isInput(const QEvent *event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::ShortcutOverride:
    case QEvent::Shortcut:
    case QEvent::InputMethod:
    case QEvent::ContextMenu:
    case QEvent::TabletPress:
    case QEvent::TabletMove:
    case QEvent::TabletRelease:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop:
        return true;
    default:
        return false;
    }
}

// Whether `object` is `dialog` or something in it, open popup lists and menus included. Dialogs that it has
// opened, the run's progress dialog among them, take their own input.
bool belongsTo(const QWidget *dialog, const QObject *object)
{
    while (object && object != dialog && !qobject_cast<const QDialog *>(object))
        object = object->parent();
    return object == dialog;
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

// What a run changes of its dialog is undone with this object, however the run ends. It outlives a dialog
// that the host deletes meanwhile.
class Export::Running
{
public:
    explicit Running(Export *dialog) : m_dialog(dialog) { m_dialog->setRunning(true); }
    ~Running()
    {
        delete progressDialog;
        if (m_dialog)
            m_dialog->setRunning(false);
    }
    Running(const Running &) = delete;
    Running &operator=(const Running &) = delete;

    QPointer<QProgressDialog> progressDialog;

private:
    const QPointer<Export> m_dialog;
};

void Export::on_OKButton_clicked()
{
    // A closed dialog is deleted as soon as events are processed, and a run processes them.
    if (m_isClosing)
        return;
    // Another dialog may have opened meanwhile, or an import may have begun.
    const BackgroundTurn turn("An export is running", "OK");
    if (!turn.isMine())
        return;
    // The host may delete the dialog whenever others get to run: its receivers, and all that events reach.
    const QPointer<Export> self(this);
    Running running(this);
    readRunFields();
    collectLayerParams();
    reportExport();
    if (!self)
        return;
    createProgressDialog();
    running.progressDialog = m_progressDialog;
    runExport();
    if (!self)
        return;
    delete m_progressDialog;
    fillTimeCells();
}

void Export::setRunning(bool running)
{
    m_isRunning = running;
    OKButton->setEnabled(!running);
    CancelButton->setEnabled(!running);
    if (running) {
        QCoreApplication::instance()->installEventFilter(this);
    } else {
        QCoreApplication::instance()->removeEventFilter(this);
        setEnabled(true);
    }
}

// The progress dialog is modal, but it comes late and may be closed.
bool Export::eventFilter(QObject *watched, QEvent *event)
{
    return (m_isRunning && isInput(event) && belongsTo(this, watched)) ||
           QWidget::eventFilter(watched, event);
}

void Export::readRunFields()
{
    const QString path = PathLineEdit->text();
    const QString secondDir = SecondDirLineEdit->text();
    if (secondDir.isEmpty())
        qDebug() << "null prefix";
    m_outputDir = path + "/" + secondDir + "/" + m_jobName;
    m_exportPath = m_outputDir;
    const QString localDir = platform::toLocal(m_outputDir);
    if (!QDir(localDir).exists())
        QDir().mkpath(localDir);
    // The CAM library gets the path in lower case. Of folders that differ only in case, which not every
    // system takes for one, it writes to the one that was changed last.
    platform::touchFolder(localDir);

    m_pathText = path.toStdString();
    m_secondDirText = secondDir.toStdString();
    m_formatText = FormatComboBox->currentText().toStdString();
    m_referenceX = ReferenceXLineEdit->text().toDouble();
    m_referenceY = ReferenceYLineEdit->text().toDouble();
}

void Export::collectLayerParams()
{
    m_layerParams.clear();
    for (int row = 0; row < PNListTable->rowCount(); ++row) {
        const bool checked = isChecked(row);
        qDebug() << checked;
        if (checked)
            m_layerParams[layerName(row)] = layerParam(row);
        qDebug() << m_layerParams.size();
    }
}

std::string Export::layerName(int row) const
{
    return PNListTable->item(row, layer_column::Layer)->data(Qt::DisplayRole).toString().toStdString();
}

LayerExportParam Export::layerParam(int row) const
{
    const auto scale = [this, row](int column) {
        return PNListTable->item(row, column)->data(Qt::DisplayRole).toDouble();
    };
    LayerExportParam param;
    param.angle = cellComboBox(row, layer_column::Rotate)->currentText().toDouble();
    param.isMirror = cellComboBox(row, layer_column::Mirror)->currentText() == tr("Yes");
    param.xScale = scale(layer_column::XScale);
    param.yScale = scale(layer_column::YScale);
    param.isNegate = cellComboBox(row, layer_column::Negate)->currentText() == tr("Yes");
    return param;
}

void Export::reportExport()
{
    QList<std::string> layerNames;
    for (const auto &layer : m_layerParams)
        layerNames << layer.first;
    if (layerNames.isEmpty() || FormatComboBox->currentText() != ".gds")
        return;

    PluginMetaData report;
    report.fromPlugin = "File_Process";
    report.toPlugin = "ListBar_PNList";
    report.msgType = ExportReport;
    report.params["path"] = m_outputDir;
    report.payload = &layerNames;
    try {
        emit on_send_exprot_xml_to_fileprocess(report);
    } catch (...) {
        // Neither the export nor the event loop above has to do with what goes wrong at a receiver.
        google::LogMessage("Export", __LINE__, google::GLOG_ERROR).stream()
            << "A receiver of the export's report has failed with an exception";
    }
}

void Export::createProgressDialog()
{
    m_progressDialog = new QProgressDialog(tr("Processing"), tr("Cancel"), 0, 100, this);
    m_progressDialog->setMinimumDuration(1);
    m_progressDialog->setWindowTitle(tr("Please wait"));
    m_progressDialog->setFixedSize(250, 60);
    // The dialog stays between the layers, and a cancelled mark stays until the next layer looks at it.
    m_progressDialog->setAutoReset(false);
    m_progressDialog->setAutoClose(false);
    // The Escape key closes it without a close event.
    connect(m_progressDialog, SIGNAL(rejected()), m_progressDialog, SLOT(cancel()));
    // Without it the dialog would look as if it took input.
    connect(m_progressDialog, &QProgressDialog::canceled, this, [this] { setEnabled(false); });
    // Layer names are no rich text, whatever characters they hold.
    for (QLabel *label : m_progressDialog->findChildren<QLabel *>())
        label->setTextFormat(Qt::PlainText);
}

void Export::runExport()
{
    const QPointer<Export> self(this);
    place(*m_progressDialog);
    if (!self)
        return;
    for (auto &layer : m_layerParams) {
        Progress job;
        setJobStatics(layer.first, layer.second);
        m_progressDialog->setRange(0, 100);
        m_progressDialog->setWindowModality(Qt::ApplicationModal);
        m_progressDialog->setLabelText(tr("layer :") + QString::fromStdString(layer.first).toLower());
        if (m_progressDialog->wasCanceled())
            return;
        setOutputFile(layer.first);
        const double seconds = exportLayer(job);
        if (!self || !m_progressDialog)
            return; // the layer was finished, as after a cancel
        layer.second.seconds = seconds;
    }
}

void Export::setJobStatics(const std::string &layerName, const LayerExportParam &param)
{
    Progress::m_job_name = lowerCase(m_jobName);
    Progress::m_step = lowerCase(m_stepName);
    Progress::m_layer_name = lowerCase(QString::fromStdString(layerName));
    Progress::resize = m_resizeValue;
    Progress::isProfiletop = m_profileDot;
    Progress::dbuValue = m_dbu;
    Progress::isReserse = param.isNegate;
    Progress::isRotate = param.angle != 0.0;
    Progress::angle = param.angle;
    Progress::XScale = param.xScale;
    Progress::YScale = param.yScale;
    Progress::isScale = !(param.xScale == 1.0 && param.yScale == 1.0);
    Progress::isMirror = param.isMirror;
}

void Export::setOutputFile(const std::string &layerName)
{
    const QString format = QString::fromStdString(m_formatText);
    Progress::m_file_name = lowerCase(m_outputDir + "\\" + QString::fromStdString(layerName) + format);
    Progress::m_Suffix =
        format.toLower() == ".gds" ? ORVEX::API::export_type::gds : ORVEX::API::export_type::gerber;
}

double Export::exportLayer(Progress &job)
{
    try {
        job.do_process();
    } catch (const std::system_error &error) {
        // Without a thread the job counts as ended.
        google::LogMessage("Export", __LINE__, google::GLOG_ERROR).stream()
            << "The export of layer \"" << Progress::m_layer_name << "\" was not started: " << error.what();
    }
    // From the first event on this object may be gone.
    const QPointer<QProgressDialog> progress(m_progressDialog);
    QElapsedTimer timer;
    timer.start();
    while (!job.isFinish()) {
        if (progress)
            progress->setValue(export_time::shownProgress(job.get_value()));
        QApplication::processEvents();
        QThread::msleep(pollInterval);
    }
    if (progress)
        progress->setValue(100);
    return double(export_time::wholeSeconds(timer.elapsed()));
}

void Export::fillTimeCells()
{
    for (int row = 0; row < PNListTable->rowCount(); ++row)
        PNListTable->removeCellWidget(row, layer_column::Time);
    for (int row = 0; row < PNListTable->rowCount(); ++row) {
        const bool checked = isChecked(row);
        qDebug() << checked;
        if (checked)
            addTimeCell(row);
    }
}

void Export::addTimeCell(int row)
{
    auto *label = new QLabel(PNListTable);
    auto *bar = new QProgressBar(PNListTable);
    auto *layout = new QHBoxLayout(PNListTable);
    auto *container = new QWidget(PNListTable);

    const auto layer = m_layerParams.find(layerName(row));
    label->setText(export_time::timeText(layer != m_layerParams.end() ? layer->second.seconds : 0.0));
    bar->setOrientation(Qt::Horizontal);
    bar->setRange(0, 100);
    bar->setValue(100);
    bar->setAlignment(Qt::AlignRight | Qt::AlignVCenter);

    layout->addWidget(bar);
    layout->addWidget(label);
    layout->setSpacing(1);
    // A style's margins around a layout would leave a row of text's height nothing to show.
    layout->setContentsMargins(1, 1, 1, 1);
    container->setLayout(layout);
    PNListTable->setCellWidget(row, layer_column::Time, container);
}
