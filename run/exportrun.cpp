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

} // namespace

void Export::on_OKButton_clicked()
{
    // A closed dialog is deleted as soon as events are processed, and a run processes them.
    if (m_isClosing)
        return;
    // Another dialog may have opened meanwhile, or an import may have begun.
    const BackgroundTurn turn("An export is running", "OK");
    if (!turn.isMine())
        return;
    setRunning(true);
    readRunFields();
    collectLayerParams();
    reportExport();
    createProgressDialog();
    runExport();
    delete m_progressDialog;
    m_progressDialog = nullptr;
    fillTimeCells();
    setRunning(false);
}

void Export::setRunning(bool running)
{
    m_isRunning = running;
    OKButton->setEnabled(!running);
    CancelButton->setEnabled(!running);
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
    emit on_send_exprot_xml_to_fileprocess(report);
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
    // Layer names are no rich text, whatever characters they hold.
    for (QLabel *label : m_progressDialog->findChildren<QLabel *>())
        label->setTextFormat(Qt::PlainText);
}

void Export::runExport()
{
    placeProgressDialog();
    for (auto &layer : m_layerParams) {
        Progress job;
        setJobStatics(layer.first, layer.second);
        m_progressDialog->setRange(0, 100);
        m_progressDialog->setWindowModality(Qt::ApplicationModal);
        m_progressDialog->setLabelText(tr("layer :") + QString::fromStdString(layer.first).toLower());
        if (m_progressDialog->wasCanceled())
            return;
        setOutputFile(layer.first);
        layer.second.seconds = exportLayer(job);
    }
}

void Export::placeProgressDialog()
{
    if (const QScreen *screen = QGuiApplication::primaryScreen())
        m_progressDialog->move(screen->availableGeometry().right() - m_progressDialog->width(), 0);
    m_progressDialog->setCancelButton(nullptr);
    m_progressDialog->show();
    // A title bar and no buttons. Changing the flags hides the dialog; the first progress value shows it
    // again.
    m_progressDialog->setWindowFlags(Qt::Dialog | Qt::WindowTitleHint);
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
    QElapsedTimer timer;
    timer.start();
    while (!job.isFinish()) {
        m_progressDialog->setValue(export_time::shownProgress(job.get_value()));
        QApplication::processEvents();
        QThread::msleep(pollInterval);
    }
    m_progressDialog->setValue(100);
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
