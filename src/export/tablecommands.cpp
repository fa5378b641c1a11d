#include "export/tablecommands.h"

#include "export/layertable.h"

#include <QCursor>
#include <QDebug>
#include <QMenu>
#include <QTableWidget>

TableCommands::TableCommands(LayerTable &table) : m_table(table) {}

void TableCommands::runMenu(QObject *dialog) const
{
    QTableWidget *table = m_table.widget();
    // Each request makes a menu of its own, which lives as long as the table.
    auto *menu = new QMenu(table);
    const auto addEntry = [dialog, menu](const QString &text, const char *slot) {
        QObject::connect(menu->addAction(text), SIGNAL(triggered(bool)), dialog, slot);
    };
    addEntry(tr("Clear layer(Make the selected item unselected)"), SLOT(on_ClearAll_clicked()));
    addEntry(tr("Select all layer"), SLOT(on_SelectAll_clicked()));
    addEntry(tr("Board Layer"), SLOT(on_BoardLayer_clicked()));
    // With no current row (-1) the entry is offered as well.
    if (table->currentRow() != 0)
        addEntry(tr("Set parameters to selected layer"), SLOT(on_SetParamater_clicked()));
    menu->exec(QCursor::pos());
}

void TableCommands::clearAll()
{
    for (int row = 0; row < m_table.rowCount(); ++row) {
        if (m_table.isChecked(row))
            m_table.setChecked(row, false);
    }
}

void TableCommands::selectAll()
{
    for (int row = 0; row < m_table.rowCount(); ++row) {
        if (!m_table.isChecked(row))
            m_table.setChecked(row, true);
    }
}

void TableCommands::selectBoardLayers(const std::vector<ORVEX::API::layer_info> &layers)
{
    // Row r is judged by record r of the whole matrix, which also holds the records that have no row.
    for (int row = 0; row < m_table.rowCount(); ++row) {
        if (!m_table.isChecked(row) && layers[size_t(row)].context == "BOARD")
            m_table.setChecked(row, true);
    }
}

void TableCommands::copyParameters()
{
    const int source = m_table.widget()->currentRow();
    qDebug() << source;
    if (source < 0)
        return;
    for (int row = 0; row < m_table.rowCount(); ++row) {
        if (m_table.isChecked(row))
            m_table.copyParam(source, row);
    }
}
