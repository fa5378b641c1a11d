#include "export/export.h"

#include "export/exportform.h"
#include "export/tablecommands.h"
#include "platform/gbktext.h"
#include "platform/paths.h"
#include "plugin/interface/exportformat.h"
#include "run/exportrun.h"

#include <QCloseEvent>
#include <QComboBox>
#include <QDebug>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QMessageBox>
#include <QProgressDialog>
#include <QPushButton>
#include <QRegExp>
#include <QStandardItemModel>
#include <QTableWidget>

#include <glog/logging.h>

#include <exception>

namespace {

QString withBackslashes(QString path)
{
    return path.replace(QRegExp("/"), "\\");
}

bool isFolder(const QString &path)
{
    return QFileInfo(platform::toLocal(path)).isDir();
}

} // namespace

Export::Export(QWidget *parent) : QWidget(parent)
{
    initWidgets();
    initTable();
    initConnections();
}

Export::~Export()
{
    // The run is below this on the stack, perhaps in the middle of setting the progress dialog's value: the
    // run deletes it, when its layer is finished.
    if (m_progressDialog) {
        m_progressDialog->setParent(nullptr, m_progressDialog->windowFlags());
        m_progressDialog->setVisible(!m_progressDialog->wasCanceled());
    }
    delete m_scaleModel;
}

void Export::initWidgets()
{
    const ExportForm form(this);
    PathButton = form.pathButton;
    PathLineEdit = form.pathEdit;
    SecondDirLineEdit = form.secondDirEdit;
    FormatComboBox = form.formatBox;
    ReferenceXLineEdit = form.referenceXEdit;
    ReferenceYLineEdit = form.referenceYEdit;
    PNListTable = form.table;
    OKButton = form.okButton;
    CancelButton = form.cancelButton;

    resize(800, 600);
    setWindowModality(Qt::ApplicationModal);
    setWindowTitle(m_job.stepName + tr("Export"));
    setAttribute(Qt::WA_DeleteOnClose);
}

void Export::initTable()
{
    m_scaleModel = new QStandardItemModel;
    m_layerTable = std::make_unique<LayerTable>(PNListTable, m_scaleModel, this);
}

void Export::initConnections()
{
    connect(CancelButton, SIGNAL(clicked(bool)), this, SLOT(on_CancelButton_Clicked()), Qt::QueuedConnection);
    connect(OKButton, SIGNAL(clicked(bool)), this, SLOT(on_OKButton_clicked()));
    connect(PathButton, SIGNAL(clicked(bool)), this, SLOT(on_PathButton_clicled()));
    connect(PathLineEdit, SIGNAL(editingFinished()), this, SLOT(on_PathLineEdit_finished()));
    connect(PNListTable, SIGNAL(customContextMenuRequested(QPoint)), this,
            SLOT(on_PNListTable_customContextMenuRequest(QPoint)));
}

void Export::setExportConfig(const ExportConfig &config)
{
    m_config = config;
    // The absolute form of an empty path would be the working folder, which nobody chose.
    m_absoluteOutputPath =
        config.outputPath.isEmpty() ? QString() : QDir(platform::toLocal(config.outputPath)).absolutePath();

    if (!config.outputPathSecond.isEmpty())
        SecondDirLineEdit->setText(config.outputPathSecond);
    // A configured ".gerber" is not preselected.
    if (config.outputFormat.isEmpty() ||
        export_format::typeOf(config.outputFormat) == ORVEX::API::export_type::gds)
        FormatComboBox->setCurrentIndex(0);
}

void Export::setJobInfo(ExportJobInfo *info)
{
    if (info) {
        m_job.list.swap(info->list);
        m_job.stepName = info->stepName;
        m_job.folderPath = info->folderPath;
        m_job.jobName = info->jobName;
    }
    m_job.folderPath = withBackslashes(m_job.folderPath);
    qDebug() << m_job.folderPath;

    if (m_absoluteOutputPath.isEmpty()) {
        PathLineEdit->setText(m_job.folderPath);
    } else {
        const QString path = withBackslashes(m_absoluteOutputPath);
        qDebug() << path;
        PathLineEdit->setText(path);
    }
    fillLayerTable();
}

void Export::setNewProfileList(QList<std::string> &list)
{
    m_newProfileList.swap(list);
}

void Export::fillLayerTable()
{
    queryMatrix();
    m_layerTable->addLayers(m_layers);
    // Out of a cell's box, as out of the table, Tab goes on to the buttons.
    if (QWidget *lastCell = m_layerTable->lastCellWidget()) {
        setTabOrder(lastCell, OKButton);
        setTabOrder(OKButton, CancelButton);
    }
    google::LogMessage("Export", 492, google::GLOG_INFO).stream()
        << "Export: " << platform::gbk("已获取导出层列表。料号：") << m_job.jobName.toStdString()
        << platform::gbk("；STEP：") << m_job.stepName.toStdString();
}

void Export::queryMatrix()
{
    // The host's text about a failure is not shown: the table then has no rows. Neither is an exception let
    // through, because the event loop above could not take it.
    std::string failure;
    try {
        ORVEX::API::get_matrix(m_job.jobName.toStdString(), m_matrixNames, m_layers);
        return;
    } catch (const std::exception &error) {
        failure = error.what();
    } catch (const char *text) {
        failure = text ? text : "a null text";
    } catch (...) {
        failure = "an exception of an unknown type";
    }
    m_matrixNames.clear();
    m_layers.clear();
    google::LogMessage("Export", __LINE__, google::GLOG_ERROR).stream()
        << "The layer matrix of job \"" << m_job.jobName.toStdString() << "\" was not read: " << failure;
}

void Export::on_PathButton_clicled()
{
    if (isRunning())
        return;
    QFileDialog fileDialog;
    fileDialog.setWindowTitle(tr("Export"));
    fileDialog.setDirectory("/");
    fileDialog.setNameFilter("all(*.*)");
    fileDialog.setFileMode(QFileDialog::Directory);
    fileDialog.setViewMode(QFileDialog::Detail);

    // The host may close the dialog while the folder is being chosen.
    const QPointer<Export> self(this);
    if (fileDialog.exec() != QDialog::Accepted || !self)
        return;
    m_exportPath = fileDialog.selectedFiles().value(0);
    fileDialog.close();
    PathLineEdit->setText(m_exportPath);
    OKButton->setEnabled(true);
}

void Export::on_PathLineEdit_finished()
{
    // The warning takes the focus from the line edit, which ends its editing a second time. So does a run's
    // progress dialog.
    if (m_isWarning || isRunning())
        return;
    const QString path = PathLineEdit->text();
    qDebug() << path;
    const bool isValid = isFolder(path);
    const QPointer<Export> self(this);
    if (!isValid && !m_isClosing)
        warnOfMissingPath();
    if (self)
        OKButton->setEnabled(isValid);
}

void Export::warnOfMissingPath()
{
    m_isWarning = true;
    const QPointer<Export> self(this);
    // On the heap: the box is the dialog's child, and the dialog may be closed while the box is open.
    const QPointer<QMessageBox> box = new QMessageBox(
        QMessageBox::Warning, tr("Warning"), tr("The path you selected is not exist"), QMessageBox::Ok, this);
    box->exec();
    delete box;
    if (self)
        m_isWarning = false;
}

void Export::on_CancelButton_Clicked()
{
    close();
}

void Export::closeEvent(QCloseEvent *event)
{
    // Closing deletes the dialog, and a run works on it until its last layer is done.
    if (isRunning()) {
        event->ignore();
        return;
    }
    m_isClosing = true;
    event->accept();
}

void Export::on_PNListTable_customContextMenuRequest(QPoint /*pos*/)
{
    if (!isRunning())
        TableCommands(*m_layerTable).runMenu(this);
}

// The table's commands: a menu may still be open when a run begins.
void Export::on_ClearAll_clicked()
{
    if (!isRunning())
        TableCommands(*m_layerTable).clearAll();
}

void Export::on_SelectAll_clicked()
{
    if (!isRunning())
        TableCommands(*m_layerTable).selectAll();
}

void Export::on_BoardLayer_clicked()
{
    if (!isRunning())
        TableCommands(*m_layerTable).selectBoardLayers(m_layers);
}

void Export::on_SetParamater_clicked()
{
    if (!isRunning())
        TableCommands(*m_layerTable).copyParameters();
}

void Export::on_OKButton_clicked()
{
    // A closed dialog is deleted as soon as events are processed, and a run processes them.
    if (m_isClosing)
        return;
    ExportRun run(this, *this);
    if (!run.begin())
        return;
    m_progressDialog = run.progressDialog();
    runExport();
    run.end(); // this object may be gone, which the run knows
}

void Export::runExport()
{
    m_run->exportLayers();
}

void Export::setRun(ExportRun *run)
{
    m_run = run;
    OKButton->setEnabled(!run);
    CancelButton->setEnabled(!run);
}

ExportOrder Export::takeFields()
{
    const QString path = PathLineEdit->text();
    const QString secondDir = SecondDirLineEdit->text();
    const QString format = FormatComboBox->currentText();
    if (secondDir.isEmpty())
        qDebug() << "null prefix";
    m_outputDir = path + "/" + secondDir + "/" + m_job.jobName;
    m_exportPath = m_outputDir;
    m_runFields = {path.toStdString(), secondDir.toStdString(), format.toStdString(),
                   ReferenceXLineEdit->text().toDouble(), ReferenceYLineEdit->text().toDouble()};

    ExportOrder order;
    order.jobName = m_job.jobName;
    order.stepName = m_job.stepName;
    order.outputDir = m_outputDir;
    order.format = format;
    order.resize = m_config.resizeValue;
    order.dbu = m_config.dbu;
    order.isProfileTop = m_config.profileDot;
    return order;
}

// Of two checked rows with one name, the later one counts.
LayerExportParams Export::takeLayers()
{
    m_layerParams.clear();
    for (int row = 0; row < m_layerTable->rowCount(); ++row) {
        const bool checked = m_layerTable->isChecked(row);
        qDebug() << checked;
        if (checked)
            m_layerParams[m_layerTable->layerName(row)] = m_layerTable->param(row);
        qDebug() << m_layerParams.size();
    }
    return m_layerParams;
}

void Export::sendReport(const PluginMetaData &report)
{
    emit on_send_exprot_xml_to_fileprocess(report);
}

void Export::showTimes(const LayerExportParams &layers)
{
    m_layerParams = layers;
    m_layerTable->clearTimeCells();
    for (int row = 0; row < m_layerTable->rowCount(); ++row) {
        const bool checked = m_layerTable->isChecked(row);
        qDebug() << checked;
        if (checked)
            addTimeCell(row);
    }
}

void Export::addTimeCell(int row)
{
    const auto layer = m_layerParams.find(m_layerTable->layerName(row));
    m_layerTable->setTimeCell(row, layer != m_layerParams.end() ? layer->second.seconds : 0.0);
}
