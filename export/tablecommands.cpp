// The commands of the layer table's context menu: choosing layers in bulk, and copying one row's parameters
// to all chosen rows.

#include "export/export.h"

#include "export/layercolumns.h"

#include <QComboBox>
#include <QCursor>
#include <QDebug>
#include <QMenu>
#include <QTableWidget>

void Export::on_PNListTable_customContextMenuRequest(QPoint /*pos*/)
{
    // Each request makes a menu of its own, which lives as long as the table.
    auto *menu = new QMenu(PNListTable);
    const auto addEntry = [this, menu](const QString &text, const char *slot) {
        connect(menu->addAction(text), SIGNAL(triggered(bool)), this, slot);
    };
    addEntry(tr("Clear layer(Make the selected item unselected)"), SLOT(on_ClearAll_clicked()));
    addEntry(tr("Select all layer"), SLOT(on_SelectAll_clicked()));
    addEntry(tr("Board Layer"), SLOT(on_BoardLayer_clicked()));
    // With no current row (-1) the entry is offered as well.
    if (PNListTable->currentRow() != 0)
        addEntry(tr("Set parameters to selected layer"), SLOT(on_SetParamater_clicked()));
    menu->exec(QCursor::pos());
}

void Export::on_ClearAll_clicked()
{
    for (int row = 0; row < PNListTable->rowCount(); ++row) {
        if (isChecked(row))
            setChecked(row, false);
    }
}

void Export::on_SelectAll_clicked()
{
    for (int row = 0; row < PNListTable->rowCount(); ++row) {
        if (!isChecked(row))
            setChecked(row, true);
    }
}

void Export::on_BoardLayer_clicked()
{
    // Row r is judged by record r of the whole matrix, which also holds the records that have no row.
    for (int row = 0; row < PNListTable->rowCount(); ++row) {
        if (!isChecked(row) && m_layers[size_t(row)].context == "BOARD")
            setChecked(row, true);
    }
}

void Export::on_SetParamater_clicked()
{
    const int source = PNListTable->currentRow();
    qDebug() << source;
    if (source < 0)
        return;
    for (int row = 0; row < PNListTable->rowCount(); ++row) {
        if (!isChecked(row))
            continue;
        copyComboBoxText(source, row, layer_column::Rotate);
        copyComboBoxText(source, row, layer_column::Mirror);
        copyItemText(source, row, layer_column::XScale);
        copyItemText(source, row, layer_column::YScale);
        copyComboBoxText(source, row, layer_column::Negate);
    }
}

bool Export::isChecked(int row) const
{
    return PNListTable->item(row, layer_column::Check)->data(Qt::DisplayRole).toBool();
}

void Export::setChecked(int row, bool checked)
{
    PNListTable->item(row, layer_column::Check)->setData(Qt::EditRole, checked);
}

QComboBox *Export::cellComboBox(int row, int column) const
{
    return static_cast<QComboBox *>(PNListTable->cellWidget(row, column));
}

void Export::copyComboBoxText(int fromRow, int toRow, int column)
{
    cellComboBox(toRow, column)->setCurrentText(cellComboBox(fromRow, column)->currentText());
}

void Export::copyItemText(int fromRow, int toRow, int column)
{
    PNListTable->setItem(toRow, column, new QTableWidgetItem(PNListTable->item(fromRow, column)->text()));
}
