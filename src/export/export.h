// The Export dialog: output folder, second directory, format and reference offset, the table of the job's
// layers, and the run that exports the checked ones.
//
// The widgets are made by ExportForm; the table's rows and commands are LayerTable's and TableCommands', the
// run is ExportRun's. This class keeps what they work on, and reacts to the user.
#pragma once

#include "export/exportconfig.h"
#include "export/layertable.h"
#include "plugin/interface/exportjobinfo.h"
#include "plugin/interface/pluginmetadata.h"
#include "run/exportorder.h"
#include "run/exportrundialog.h"
#include "run/orvexapi.h"

#include <QList>
#include <QPoint>
#include <QPointer>
#include <QString>
#include <QWidget>

#include <memory>
#include <string>
#include <vector>

class QComboBox;
class QLineEdit;
class QProgressDialog;
class QPushButton;
class QStandardItemModel;
class QTableWidget;

class Export : public QWidget, private ExportRunDialog
{
    Q_OBJECT

public:
    explicit Export(QWidget *parent);
    ~Export() override;

    // Takes over the export defaults. To be called before setJobInfo, which shows the output folder.
    void setExportConfig(const ExportConfig &config);
    // Takes over the job's step, folder and name, exchanges the lists, and fills the layer table. A null
    // `info` leaves the texts empty.
    void setJobInfo(ExportJobInfo *info);
    // Exchanges the profile list with `list`.
    void setNewProfileList(QList<std::string> &list);

signals:
    // The report of a GDSII export to the host's layer list. Its payload is a QList<std::string> with the
    // layer names and lives only while the signal is delivered.
    void on_send_exprot_xml_to_fileprocess(PluginMetaData data);

public slots:
    void on_CancelButton_Clicked();
    void on_OKButton_clicked();
    void on_PathButton_clicled();
    void on_PNListTable_customContextMenuRequest(QPoint pos);
    void on_PathLineEdit_finished();
    void on_SelectAll_clicked();
    void on_ClearAll_clicked();
    void on_BoardLayer_clicked();
    void on_SetParamater_clicked();

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    friend struct ExportAccess; // the tests' way to what no widget shows

    void initWidgets();
    void initTable();
    void initConnections();
    void fillLayerTable();
    void queryMatrix();
    void warnOfMissingPath();

    void runExport();
    void addTimeCell(int row);
    bool isRunning() const { return m_run != nullptr; }
    void setRun(ExportRun *run) override;
    ExportOrder takeFields() override;
    LayerExportParams takeLayers() override;
    void sendReport(const PluginMetaData &report) override;
    void showTimes(const LayerExportParams &layers) override;

    QPushButton *PathButton = nullptr;
    QLineEdit *PathLineEdit = nullptr;
    QLineEdit *SecondDirLineEdit = nullptr;
    QComboBox *FormatComboBox = nullptr;
    QLineEdit *ReferenceXLineEdit = nullptr;
    QLineEdit *ReferenceYLineEdit = nullptr;
    QTableWidget *PNListTable = nullptr;
    QPushButton *OKButton = nullptr;
    QPushButton *CancelButton = nullptr;
    QPointer<QProgressDialog> m_progressDialog; // null outside a run

    QString m_exportPath; // the folder chosen with the path button; after a run the run's output folder
    QString m_outputDir;  // of the last run
    LayerExportParams m_layerParams; // likewise
    struct RunFields
    {
        std::string path; // the texts in UTF-8
        std::string secondDir;
        std::string format;
        double referenceX = 0.0; // micrometres; no export takes an offset yet
        double referenceY = 0.0;
    };
    RunFields m_runFields;      // likewise
    ExportRun *m_run = nullptr; // the one under way

    QStandardItemModel *m_scaleModel = nullptr; // "1" in the scale columns of each row; has no parent
    std::unique_ptr<LayerTable> m_layerTable;

    ExportJobInfo m_job; // the folder with backslashes; the list is kept for its sender, not read here
    QList<std::string> m_newProfileList; // likewise
    std::vector<std::string> m_matrixNames;
    std::vector<ORVEX::API::layer_info> m_layers;

    ExportConfig m_config;
    QString m_absoluteOutputPath; // empty when the configured one is

    bool m_isWarning = false; // the path warning is open
    bool m_isClosing = false; // the window has been closed and will be deleted
};
