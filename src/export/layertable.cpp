#include "export/layertable.h"

#include "export/cellcombobox.h"
#include "export/delegates/checkboxdelegate.h"
#include "export/delegates/comboboxdelegate.h"
#include "export/delegates/readonlydelegate.h"
#include "export/delegates/roratevalidatordelegate.h"
#include "export/delegates/scalevalidatordelegate.h"
#include "export/layercolumns.h"
#include "plugin/interface/layercolor.h"
#include "run/exporttime.h"

#include <QDebug>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QProgressBar>
#include <QStandardItemModel>
#include <QTableWidget>

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

} // namespace

LayerTable::LayerTable(QTableWidget *table, QStandardItemModel *scaleModel, QWidget *dialog)
    : m_table(table), m_scaleModel(scaleModel)
{
    setColumns(dialog);
    setHeader();
    m_table->setContextMenuPolicy(Qt::CustomContextMenu);
    m_table->setSelectionMode(QAbstractItemView::NoSelection);
    m_table->setTabKeyNavigation(false); // Tab goes on to the buttons, the arrow keys move in the table
    m_table->show();
}

void LayerTable::setColumns(QWidget *dialog)
{
    auto *readOnly = new ReadOnlyDelegate(dialog);
    auto *checkBox = new CheckBoxDelegate(dialog);
    // Those of whole words and of degrees are there, but no column uses them.
    new ComboBoxDelegate(m_table);
    new RorateValidatorDelegate(dialog);
    auto *scale = new ScaleValidatorDelegate(dialog);

    m_table->setColumnCount(layer_column::Count);
    m_table->setHorizontalHeaderLabels({"", tr("layer"), tr("rotate"), tr("Mirror"), tr("X Scale"),
                                        tr("Y Scale"), tr("Negate"), tr("Time")});
    m_table->setItemDelegateForColumn(layer_column::Check, checkBox);
    m_table->setItemDelegateForColumn(layer_column::Layer, readOnly);
    m_table->setItemDelegateForColumn(layer_column::XScale, scale);
    m_table->setItemDelegateForColumn(layer_column::YScale, scale);
    m_table->setItemDelegateForColumn(layer_column::Time, readOnly);
}

void LayerTable::setHeader()
{
    QHeaderView *header = m_table->horizontalHeader();
    // A style's own minimum may be wider than the check column.
    header->setMinimumSectionSize(checkColumnWidth);
    header->setSectionResizeMode(QHeaderView::Stretch);
    header->setSectionResizeMode(layer_column::Check, QHeaderView::Fixed);
    m_table->setColumnWidth(layer_column::Check, checkColumnWidth);
    // Before the first layout the table has a new child's width: enough for a column, and the layer's takes
    // the rest.
    for (int column = layer_column::Rotate; column < layer_column::Count; ++column) {
        header->setSectionResizeMode(column, QHeaderView::Fixed);
        m_table->setColumnWidth(column, m_table->width());
    }
    header->setHighlightSections(false);
    m_table->verticalHeader()->hide();
}

void LayerTable::addLayers(const std::vector<layer_info> &layers)
{
    int row = 0;
    for (const layer_info &layer : layers) {
        if (isOffered(layer))
            addRow(row++, layer);
    }
    for (int record = 0; record < int(layers.size()); ++record)
        addCellComboBoxes(record);
}

void LayerTable::addRow(int row, const layer_info &layer)
{
    m_table->insertRow(row);
    const QString name = QString::fromStdString(layer.name);
    auto *nameItem = new QTableWidgetItem(name);
    nameItem->setBackground(layerColor(layer));
    nameItem->setForeground(Qt::black); // readable on all these colours, whatever the palette's text is
    if (layer.context != "BOARD")
        qDebug() << name;

    m_table->setItem(row, layer_column::Check, new QTableWidgetItem("", checkItemType));
    m_table->setItem(row, layer_column::Layer, nameItem);
    for (int column : {layer_column::XScale, layer_column::YScale}) {
        m_table->setItem(row, column, new QTableWidgetItem("1"));
        m_scaleModel->setItem(row, column, new QStandardItem("1"));
    }
}

void LayerTable::addCellComboBoxes(int record)
{
    // Placed by record, not by row: for each record that is not offered, one set finds no row.
    const QStringList noYes{tr("No"), tr("Yes")};
    m_rotateComboBox =
        addCellComboBox(record, layer_column::Rotate, {"0", "90", "180", "270"}, choiceStyleSheet);
    m_mirrorComboBox = addCellComboBox(record, layer_column::Mirror, noYes, mirrorStyleSheet);
    m_negateComboBox = addCellComboBox(record, layer_column::Negate, noYes, choiceStyleSheet);
}

QComboBox *LayerTable::addCellComboBox(int row, int column, const QStringList &entries,
                                       const char *styleSheet)
{
    auto *box = new CellComboBox(m_table);
    box->setStyleSheet(styleSheet);
    box->addItems(entries);
    if (row < m_table->rowCount())
        m_table->setCellWidget(row, column, box);
    else
        box->hide(); // it would show up in the table's corner
    return box;
}

QWidget *LayerTable::lastCellWidget() const
{
    return m_negateComboBox;
}

int LayerTable::rowCount() const
{
    return m_table->rowCount();
}

bool LayerTable::isChecked(int row) const
{
    return m_table->item(row, layer_column::Check)->data(Qt::DisplayRole).toBool();
}

void LayerTable::setChecked(int row, bool isChecked)
{
    m_table->item(row, layer_column::Check)->setData(Qt::EditRole, isChecked);
}

std::string LayerTable::layerName(int row) const
{
    return m_table->item(row, layer_column::Layer)->data(Qt::DisplayRole).toString().toStdString();
}

LayerExportParam LayerTable::param(int row) const
{
    const auto scale = [this, row](int column) {
        return m_table->item(row, column)->data(Qt::DisplayRole).toDouble();
    };
    LayerExportParam param;
    param.angle = comboBox(row, layer_column::Rotate)->currentText().toDouble();
    param.isMirror = comboBox(row, layer_column::Mirror)->currentText() == tr("Yes");
    param.xScale = scale(layer_column::XScale);
    param.yScale = scale(layer_column::YScale);
    param.isNegate = comboBox(row, layer_column::Negate)->currentText() == tr("Yes");
    return param;
}

void LayerTable::clearTimeCells()
{
    for (int row = 0; row < m_table->rowCount(); ++row)
        m_table->removeCellWidget(row, layer_column::Time);
}

void LayerTable::setTimeCell(int row, double seconds)
{
    auto *label = new QLabel(m_table);
    auto *bar = new QProgressBar(m_table);
    auto *layout = new QHBoxLayout(m_table);
    auto *container = new QWidget(m_table);

    label->setText(export_time::timeText(seconds));
    bar->setOrientation(Qt::Horizontal);
    bar->setRange(0, 100);
    bar->setValue(100);
    bar->setAlignment(Qt::AlignRight | Qt::AlignVCenter);

    layout->addWidget(bar);
    layout->addWidget(label);
    layout->setSpacing(1);
    // A style's margins around a layout would leave a row of text's height nothing to show.
    layout->setContentsMargins(1, 1, 1, 1);
    container->setLayout(layout);
    m_table->setCellWidget(row, layer_column::Time, container);
}

void LayerTable::copyParam(int from, int to)
{
    for (int column : {layer_column::Rotate, layer_column::Mirror})
        chooseText(to, column, comboBox(from, column)->currentText());
    for (int column : {layer_column::XScale, layer_column::YScale})
        m_table->setItem(to, column, new QTableWidgetItem(m_table->item(from, column)->text()));
    chooseText(to, layer_column::Negate, comboBox(from, layer_column::Negate)->currentText());
}

QComboBox *LayerTable::comboBox(int row, int column) const
{
    return static_cast<QComboBox *>(m_table->cellWidget(row, column));
}

void LayerTable::chooseText(int row, int column, const QString &text)
{
    QComboBox *box = comboBox(row, column);
    if (box->geometry().intersects(m_table->viewport()->rect())) {
        box->setCurrentText(text);
        return;
    }
    // Qt would mark the box for painting though it is scrolled out of sight, and compare it with all the
    // others then.
    box->setAttribute(Qt::WA_UpdatesDisabled, true);
    box->setCurrentText(text);
    box->setAttribute(Qt::WA_UpdatesDisabled, false);
}
