// The layer table of the Export dialog: its columns and editors, and its rows, one for each layer of the
// job's matrix that can be exported.

#include "export/export.h"

#include "export/cellcombobox.h"
#include "export/delegates/checkboxdelegate.h"
#include "export/delegates/comboboxdelegate.h"
#include "export/delegates/readonlydelegate.h"
#include "export/delegates/roratevalidatordelegate.h"
#include "export/delegates/scalevalidatordelegate.h"
#include "export/layercolumns.h"
#include "platform/gbktext.h"

#include <QDebug>
#include <QHeaderView>
#include <QPushButton>
#include <QStandardItemModel>
#include <QTableWidget>

#include <glog/logging.h>

#include <exception>

using ORVEX::API::layer_info;

namespace {

const int checkColumnWidth = 30; // pixels
const int checkItemType = 2;

// The Mirror combo box's sheet differs from the others' by the semicolon after "transparent".
const char *const choiceStyleSheet =
    "QComboBox{background:transparent}QComboBox QAbstractItemView{selection-background-color:rgb(255, 255, "
    "255);selection-color:rgb(0, 0, 0);}QComboBox QAbstractItemView::item:selected{background-color:rgb(255, "
    "255, 255)}QComboBox QAbstractItemView::item{height:20px}";
const char *const mirrorStyleSheet =
    "QComboBox{background:transparent;}QComboBox QAbstractItemView{selection-background-color:rgb(255, 255, "
    "255);selection-color:rgb(0, 0, 0);}QComboBox QAbstractItemView::item:selected{background-color:rgb(255, "
    "255, 255)}QComboBox QAbstractItemView::item{height:20px}";

bool isOffered(const layer_info &layer)
{
    return layer.type != "GDS";
}

bool isBoardLayer(const layer_info &layer)
{
    return layer.context == "BOARD";
}

// The name cell's background by the kind of layer.
QColor layerColor(const layer_info &layer)
{
    const QColor otherLayer(72, 209, 204);
    if (!isBoardLayer(layer))
        return otherLayer;
    if (layer.type == "SIGNAL" || layer.type == "POWER_GROUND")
        return layer.polarity == "POSITIVE" ? QColor(255, 215, 0) : QColor(218, 165, 32);
    if (layer.type == "SOLDER_MASK")
        return QColor(0, 128, 128);
    if (layer.type == "SILK_SCREEN")
        return QColor(245, 255, 250);
    if (layer.type == "SOLDER_PASTE")
        return QColor(255, 235, 205);
    if (layer.type == "DRILL")
        return QColor(169, 169, 169);
    return otherLayer;
}

} // namespace

void Export::initTable()
{
    m_scaleModel = new QStandardItemModel;
    m_readOnlyDelegate = new ReadOnlyDelegate(this);
    m_checkBoxDelegate = new CheckBoxDelegate(this);
    m_comboBoxDelegate = new ComboBoxDelegate(PNListTable);
    m_rorateValidatorDelegate = new RorateValidatorDelegate(this);
    m_scaleValidatorDelegate = new ScaleValidatorDelegate(this);

    PNListTable->setColumnCount(layer_column::Count);
    PNListTable->setHorizontalHeaderLabels({"", tr("layer"), tr("rotate"), tr("Mirror"), tr("X Scale"),
                                            tr("Y Scale"), tr("Negate"), tr("Time")});
    PNListTable->setItemDelegateForColumn(layer_column::Check, m_checkBoxDelegate);
    PNListTable->setItemDelegateForColumn(layer_column::Layer, m_readOnlyDelegate);
    PNListTable->setItemDelegateForColumn(layer_column::XScale, m_scaleValidatorDelegate);
    PNListTable->setItemDelegateForColumn(layer_column::YScale, m_scaleValidatorDelegate);
    PNListTable->setItemDelegateForColumn(layer_column::Time, m_readOnlyDelegate);
    initHeader();
    PNListTable->setContextMenuPolicy(Qt::CustomContextMenu);
    PNListTable->setSelectionMode(QAbstractItemView::NoSelection);
    PNListTable->setTabKeyNavigation(false); // Tab goes on to the buttons, the arrow keys move in the table
    PNListTable->show();
}

void Export::initHeader()
{
    QHeaderView *header = PNListTable->horizontalHeader();
    // A style's own minimum may be wider than the check column.
    header->setMinimumSectionSize(checkColumnWidth);
    header->setSectionResizeMode(QHeaderView::Stretch);
    header->setSectionResizeMode(layer_column::Check, QHeaderView::Fixed);
    PNListTable->setColumnWidth(layer_column::Check, checkColumnWidth);
    // Before the first layout the table has a new child's width: enough for a column, and the layer's takes
    // the rest.
    for (int column = layer_column::Rotate; column < layer_column::Count; ++column) {
        header->setSectionResizeMode(column, QHeaderView::Fixed);
        PNListTable->setColumnWidth(column, PNListTable->width());
    }
    header->setHighlightSections(false);
    PNListTable->verticalHeader()->hide();
}

void Export::fillLayerTable()
{
    queryMatrix();
    int row = 0;
    for (const layer_info &layer : m_layers) {
        if (isOffered(layer))
            addLayerRow(row++, layer);
    }
    for (int record = 0; record < int(m_layers.size()); ++record)
        addCellComboBoxes(record);
    // Out of a cell's box, as out of the table, Tab goes on to the buttons.
    if (m_negateComboBox) {
        setTabOrder(m_negateComboBox, OKButton);
        setTabOrder(OKButton, CancelButton);
    }
    google::LogMessage("Export", 492, google::GLOG_INFO).stream()
        << "Export: " << gbk("已获取导出层列表。料号：") << m_jobName.toStdString() << gbk("；STEP：")
        << m_stepName.toStdString();
}

void Export::queryMatrix()
{
    // The host's text about a failure is not shown: the table then has no rows. Neither is an exception let
    // through, because the event loop above could not take it.
    std::string failure;
    try {
        ORVEX::API::get_matrix(m_jobName.toStdString(), m_matrixNames, m_layers);
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
        << "The layer matrix of job \"" << m_jobName.toStdString() << "\" was not read: " << failure;
}

void Export::addLayerRow(int row, const layer_info &layer)
{
    PNListTable->insertRow(row);
    const QString name = QString::fromStdString(layer.name);
    auto *nameItem = new QTableWidgetItem(name);
    nameItem->setBackground(layerColor(layer));
    nameItem->setForeground(Qt::black); // readable on all these colours, whatever the palette's text is
    if (!isBoardLayer(layer))
        qDebug() << name;

    PNListTable->setItem(row, layer_column::Check, new QTableWidgetItem("", checkItemType));
    PNListTable->setItem(row, layer_column::Layer, nameItem);
    for (int column : {layer_column::XScale, layer_column::YScale}) {
        PNListTable->setItem(row, column, new QTableWidgetItem("1"));
        m_scaleModel->setItem(row, column, new QStandardItem("1"));
    }
}

void Export::addCellComboBoxes(int record)
{
    // Placed by record, not by row: for each record that is not offered, one set finds no row.
    const QStringList noYes{tr("No"), tr("Yes")};
    m_rotateComboBox =
        addCellComboBox(record, layer_column::Rotate, {"0", "90", "180", "270"}, choiceStyleSheet);
    m_mirrorComboBox = addCellComboBox(record, layer_column::Mirror, noYes, mirrorStyleSheet);
    m_negateComboBox = addCellComboBox(record, layer_column::Negate, noYes, choiceStyleSheet);
}

QComboBox *Export::addCellComboBox(int row, int column, const QStringList &entries, const QString &styleSheet)
{
    auto *box = new CellComboBox(PNListTable);
    box->setStyleSheet(styleSheet);
    box->addItems(entries);
    if (row < PNListTable->rowCount())
        PNListTable->setCellWidget(row, column, box);
    else
        box->hide(); // it would show up in the table's corner
    return box;
}
