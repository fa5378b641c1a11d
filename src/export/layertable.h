// The layer table of the Export dialog: its columns and editors, and its rows, one for each layer of the
// job's matrix that can be exported.
#pragma once

#include "run/layerexportparam.h"
#include "run/orvexapi.h"

#include <QCoreApplication>
#include <QString>
#include <QStringList>

#include <string>
#include <vector>

class QComboBox;
class QStandardItemModel;
class QTableWidget;
class QWidget;

class LayerTable
{
    Q_DECLARE_TR_FUNCTIONS(Export)

public:
    // Sets the columns, their editors and the header of `table`, which has no rows yet. `scaleModel` gets a
    // "1" for each scale of each row. Both belong to `dialog` and live as long as this object.
    LayerTable(QTableWidget *table, QStandardItemModel *scaleModel, QWidget *dialog);

    // Adds a row for each of `layers` that can be exported.
    void addLayers(const std::vector<ORVEX::API::layer_info> &layers);

    QTableWidget *widget() const { return m_table; }
    // The last widget of the last row in the order of the Tab key; null without layers.
    QWidget *lastCellWidget() const;

    int rowCount() const;
    bool isChecked(int row) const;
    void setChecked(int row, bool isChecked);
    std::string layerName(int row) const; // UTF-8
    // What the row asks for; it has no seconds yet.
    LayerExportParam param(int row) const;

    void clearTimeCells();
    // Puts a full bar and the export's time into the row's Time cell.
    void setTimeCell(int row, double seconds);

    // Copies rotation, mirror, scales and negation from one row to another, or to itself.
    void copyParam(int from, int to);

private:
    void setColumns(QWidget *dialog);
    void setHeader();
    void addRow(int row, const ORVEX::API::layer_info &layer);
    void addCellComboBoxes(int record);
    QComboBox *addCellComboBox(int row, int column, const QStringList &entries, const char *styleSheet);
    QComboBox *comboBox(int row, int column) const;
    void chooseText(int row, int column, const QString &text);

    QTableWidget *const m_table;
    QStandardItemModel *const m_scaleModel;
    QComboBox *m_rotateComboBox = nullptr; // the cell combo boxes that were created last
    QComboBox *m_mirrorComboBox = nullptr;
    QComboBox *m_negateComboBox = nullptr;
};
