// The Export dialog: output folder, second directory, format and reference offset, the table of the job's
// layers, and the run that exports the checked ones. Its members are implemented in export/ (dialog, table,
// commands) and in run/exportrun.cpp.
#pragma once

#include "export/exportconfig.h"
#include "plugin/interface/exportjobinfo.h"
#include "plugin/interface/pluginmetadata.h"
#include "run/layerexportparam.h"
#include "run/orvexapi.h"

#include <QList>
#include <QPoint>
#include <QPointer>
#include <QString>
#include <QWidget>

#include <map>
#include <string>
#include <vector>

class CheckBoxDelegate;
class ComboBoxDelegate;
class Progress;
class ReadOnlyDelegate;
class RorateValidatorDelegate;
class ScaleValidatorDelegate;

class QBoxLayout;
class QComboBox;
class QFrame;
class QLabel;
class QLineEdit;
class QProgressDialog;
class QPushButton;
class QStandardItemModel;
class QTableWidget;

class Export : public QWidget
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
    // Keeps all input from the dialog while it exports.
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    friend struct ExportAccess; // the tests' way to what no widget shows

    // export.cpp
    void initWidgets();
    QBoxLayout *createPathRow();
    QBoxLayout *createNameRow();
    QBoxLayout *createSecondDirGroup();
    QBoxLayout *createFormatGroup();
    QBoxLayout *createReferenceRow();
    QBoxLayout *createOffsetGroup(const QString &axis, QLabel *&label, QLineEdit *&edit, QLabel *&unit,
                                  QFrame *&endLine);
    QBoxLayout *createButtonRow();
    void fitFonts();
    void initConnections();
    void initReferenceValidators();
    void warnOfMissingPath();

    // layertable.cpp
    void initTable();
    void initHeader();
    void fillLayerTable();
    void queryMatrix();
    void addLayerRow(int row, const ORVEX::API::layer_info &layer);
    void addCellComboBoxes(int record);
    QComboBox *addCellComboBox(int row, int column, const QStringList &entries, const QString &styleSheet);

    // tablecommands.cpp
    bool isChecked(int row) const;
    void setChecked(int row, bool checked);
    QComboBox *cellComboBox(int row, int column) const;
    void chooseText(int row, int column, const QString &text);

    // run/exportrun.cpp
    class Running;
    void setRunning(bool running);
    void readRunFields();
    void collectLayerParams();
    std::string layerName(int row) const;
    LayerExportParam layerParam(int row) const;
    void reportExport();
    void createProgressDialog();
    void runExport();
    void setJobStatics(const std::string &layerName, const LayerExportParam &param);
    void setOutputFile(const std::string &layerName);
    double exportLayer(Progress &job); // returns its whole seconds
    void fillTimeCells();
    void addTimeCell(int row);

    QPushButton *PathButton = nullptr;
    QFrame *m_pathLine = nullptr;
    QLineEdit *PathLineEdit = nullptr;
    QLabel *SecondDirLabel = nullptr;
    QFrame *m_secondDirLine = nullptr;
    QLineEdit *SecondDirLineEdit = nullptr;
    QFrame *m_secondDirEndLine = nullptr;
    QLabel *FormatLabel = nullptr;
    QFrame *m_formatLine = nullptr;
    QComboBox *FormatComboBox = nullptr;
    QLabel *ReferenceLabel = nullptr;
    QFrame *m_referenceLine = nullptr;
    QLabel *XLabel = nullptr;
    QLineEdit *ReferenceXLineEdit = nullptr;
    QLabel *XUnitLabel = nullptr;
    QFrame *m_xEndLine = nullptr;
    QLabel *YLabel = nullptr;
    QLineEdit *ReferenceYLineEdit = nullptr;
    QLabel *YUnitLabel = nullptr;
    QFrame *m_yEndLine = nullptr;
    QTableWidget *PNListTable = nullptr;
    QPushButton *OKButton = nullptr;
    QPushButton *CancelButton = nullptr;
    QPointer<QProgressDialog> m_progressDialog; // null outside a run

    QString m_exportPath; // the folder chosen with the path button; after a run the run's output folder

    // What a run works on: the texts of its fields and the checked rows by layer name, in ascending byte
    // order.
    QString m_outputDir;
    std::string m_pathText;
    std::string m_secondDirText;
    std::string m_formatText;  // also the suffix of the exported files
    double m_referenceX = 0.0; // micrometres, as m_referenceY
    double m_referenceY = 0.0;
    std::map<std::string, LayerExportParam> m_layerParams;

    QStandardItemModel *m_scaleModel = nullptr; // "1" in the scale columns of each row; has no parent
    ReadOnlyDelegate *m_readOnlyDelegate = nullptr;
    CheckBoxDelegate *m_checkBoxDelegate = nullptr;
    ComboBoxDelegate *m_comboBoxDelegate = nullptr;
    RorateValidatorDelegate *m_rorateValidatorDelegate = nullptr;
    ScaleValidatorDelegate *m_scaleValidatorDelegate = nullptr;
    QComboBox *m_rotateComboBox = nullptr; // the cell combo boxes that were created last
    QComboBox *m_mirrorComboBox = nullptr;
    QComboBox *m_negateComboBox = nullptr;

    QString m_stepName;
    QString m_folderPath; // with backslashes
    QString m_jobName;
    std::vector<std::string> m_jobList;  // kept for its sender, not read here
    QList<std::string> m_newProfileList; // likewise

    std::vector<std::string> m_matrixNames;
    std::vector<ORVEX::API::layer_info> m_layers;

    QString m_outputPath;
    QString m_absoluteOutputPath; // empty when m_outputPath is
    QString m_outputPathSecond;
    QString m_outputFormat;
    QString m_resizeUnit;
    double m_resizeValue = 0.0; // nanometres
    double m_dbu = 0.0;
    bool m_profileDot = false;
    bool m_mirror = false;

    // Room for the run options that the host's export offers and the dialog has no fields for yet.
    struct RunOptions
    {
        bool flag1 = true;
        bool flag2 = false, flag3 = false, flag4 = false, flag5 = false, flag6 = false;
        int int1 = 1, int2 = 1;
        int int3 = 0;
    };
    RunOptions m_runOptions;

    bool m_isRunning = false;
    bool m_isWarning = false; // the path warning is open
    bool m_isClosing = false; // the window has been closed and will be deleted
};
