// An Export dialog as a user has it before him: filled from the recording host's layers, shown, and driven
// through its widgets. What is left of it is deleted with this object.
#pragma once

#include "export/export.h"
#include "export/layercolumns.h"
#include "tests/support/recordinghost.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QtTest>

class OpenDialog
{
public:
    // The job's folder is a temporary one, with "/" in its path.
    explicit OpenDialog(const std::vector<ORVEX::API::layer_info> &layers = {},
                        const ExportConfig &config = {})
    {
        recording_host::state().layers = layers;
        m_job.stepName = "Pcb";
        m_job.jobName = "Job1";
        m_job.folderPath = m_folder.path();
        m_dialog = new Export(nullptr);
        m_dialog->setExportConfig(config);
        m_dialog->setJobInfo(&m_job);
        m_dialog->show();
        if (!QTest::qWaitForWindowExposed(m_dialog))
            qFatal("the Export dialog was not shown");
        // A window system may lose the wish of a window that it has only just shown.
        for (int attempt = 0; attempt < 40; ++attempt) {
            m_dialog->activateWindow();
            if (QTest::qWaitForWindowActive(m_dialog, 250))
                return;
        }
        qWarning("the Export dialog is not the active window");
    }
    ~OpenDialog() { delete m_dialog; }

    OpenDialog(const OpenDialog &) = delete;
    OpenDialog &operator=(const OpenDialog &) = delete;

    Export *operator->() const { return m_dialog; }
    Export *get() const { return m_dialog; }
    QString folder() const { return m_folder.path(); }

    template <typename Widget>
    Widget *child(const char *name) const
    {
        auto *widget = m_dialog->findChild<Widget *>(name);
        if (!widget)
            qFatal("the Export dialog has no %s", name);
        return widget;
    }
    QTableWidget *table() const { return child<QTableWidget>("PNListTable"); }
    QLineEdit *edit(const char *name) const { return child<QLineEdit>(name); }
    QPushButton *button(const char *name) const { return child<QPushButton>(name); }
    QComboBox *format() const { return child<QComboBox>("FormatComboBox"); }

    QComboBox *combo(int row, int column) const
    {
        return qobject_cast<QComboBox *>(table()->cellWidget(row, column));
    }
    QString text(int row, int column) const
    {
        const QTableWidgetItem *item = table()->item(row, column);
        return item ? item->text() : QString();
    }
    bool isChecked(int row) const
    {
        return table()->item(row, layer_column::Check)->data(Qt::DisplayRole).toBool();
    }
    void setChecked(std::initializer_list<int> rows) const
    {
        for (int row : rows)
            table()->item(row, layer_column::Check)->setData(Qt::EditRole, true);
    }
    QList<int> checkedRows() const
    {
        QList<int> rows;
        for (int row = 0; row < table()->rowCount(); ++row) {
            if (isChecked(row))
                rows << row;
        }
        return rows;
    }

    QRect cell(int row, int column) const
    {
        return table()->visualRect(table()->model()->index(row, column));
    }
    void pressCell(int row, int column, Qt::MouseButton button = Qt::LeftButton) const
    {
        QTest::mousePress(table()->viewport(), button, Qt::NoModifier, cell(row, column).center());
    }
    void clickCell(int row, int column, Qt::MouseButton button = Qt::LeftButton) const
    {
        QTest::mouseClick(table()->viewport(), button, Qt::NoModifier, cell(row, column).center());
    }
    // The line edit that is open in the table, or null.
    QLineEdit *editor() const { return table()->viewport()->findChild<QLineEdit *>(); }

    // Enough rows for every test that needs several: board layers but for the last.
    static std::vector<ORVEX::API::layer_info> sixLayers()
    {
        using recording_host::layer;
        return {layer("BOARD", "SOLDER_PASTE", "spt"), layer("BOARD", "SOLDER_MASK", "smt"),
                layer("BOARD", "SIGNAL", "top"),       layer("BOARD", "POWER_GROUND", "gnd", "NEGATIVE"),
                layer("BOARD", "SIGNAL", "bot"),       layer("MISC", "DOCUMENT", "notes")};
    }

private:
    QTemporaryDir m_folder;
    ExportJobInfo m_job;
    QPointer<Export> m_dialog;
};
