// The commands of the layer table's context menu: choosing layers in bulk, and copying one row's parameters
// to all chosen rows. During a run, when a menu may still be open, they do nothing.

#include "export/export.h"

#include "export/layercolumns.h"

#include <QComboBox>
#include <QCursor>
#include <QDebug>
#include <QMenu>
#include <QTableWidget>

void Export::on_PNListTable_customContextMenuRequest(QPoint /*pos*/)
{
    if (m_isRunning)
        return;
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
    if (m_isRunning)
        return;
    for (int row = 0; row < PNListTable->rowCount(); ++row) {
        if (isChecked(row))
            setChecked(row, false);
    }
}

void Export::on_SelectAll_clicked()
{
    if (m_isRunning)
        return;
    for (int row = 0; row < PNListTable->rowCount(); ++row) {
        if (!isChecked(row))
            setChecked(row, true);
    }
}

void Export::on_BoardLayer_clicked()
{
    if (m_isRunning)
        return;
    // Row r is judged by record r of the whole matrix, which also holds the records that have no row.
    for (int row = 0; row < PNListTable->rowCount(); ++row) {
        if (!isChecked(row) && m_layers[size_t(row)].context == "BOARD")
            setChecked(row, true);
    }
}

void Export::on_SetParamater_clicked()
{
    if (m_isRunning)
        return;
    const int source = PNListTable->currentRow();
    qDebug() << source;
    if (source < 0)
        return;
    const QString rotate = cellComboBox(source, layer_column::Rotate)->currentText();
    const QString mirror = cellComboBox(source, layer_column::Mirror)->currentText();
    const QString xScale = PNListTable->item(source, layer_column::XScale)->text();
    const QString yScale = PNListTable->item(source, layer_column::YScale)->text();
    const QString negate = cellComboBox(source, layer_column::Negate)->currentText();
    for (int row = 0; row < PNListTable->rowCount(); ++row) {
        if (!isChecked(row))
            continue;
        chooseText(row, layer_column::Rotate, rotate);
        chooseText(row, layer_column::Mirror, mirror);
        PNListTable->setItem(row, layer_column::XScale, new QTableWidgetItem(xScale));
        PNListTable->setItem(row, layer_column::YScale, new QTableWidgetItem(yScale));
        chooseText(row, layer_column::Negate, negate);
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

void Export::chooseText(int row, int column, const QString &text)
{
    QComboBox *box = cellComboBox(row, column);
    if (box->geometry().intersects(PNListTable->viewport()->rect())) {
        box->setCurrentText(text);
        return;
    }
    // Qt would mark the box for painting though it is scrolled out of sight, and compare it with all the
    // others then.
    box->setAttribute(Qt::WA_UpdatesDisabled, true);
    box->setCurrentText(text);
    box->setAttribute(Qt::WA_UpdatesDisabled, false);
}
