// The commands of the layer table's context menu: choosing layers in bulk, and copying one row's parameters
// to all chosen rows.
#pragma once

#include "run/orvexapi.h"

#include <QCoreApplication>

#include <vector>

class LayerTable;
class QObject;

class TableCommands
{
    Q_DECLARE_TR_FUNCTIONS(Export)

public:
    explicit TableCommands(LayerTable &table);

    // Opens the menu at the mouse cursor and returns when it is closed. Its entries run the dialog's slots.
    void runMenu(QObject *dialog) const;

    void clearAll();
    void selectAll();
    // Adds the layers of the board to the chosen ones. `layers` is the whole matrix of the job.
    void selectBoardLayers(const std::vector<ORVEX::API::layer_info> &layers);
    // Copies the current row's parameters to all chosen rows; does nothing without a current row.
    void copyParameters();

private:
    LayerTable &m_table;
};
