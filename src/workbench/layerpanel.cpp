#include "workbench/layerpanel.h"

#include "workbench/viewcolor.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPainter>
#include <QSignalBlocker>
#include <QStackedWidget>
#include <QTableWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace {

enum Column { Name, Type, Context, Polarity, ColumnCount };

// "SOLDER_MASK" as a person writes it.
QString readable(const std::string &word)
{
    QString text = QString::fromStdString(word).toLower();
    text.replace('_', ' ');
    return text;
}

QIcon swatch(const QColor &color)
{
    QPixmap pixmap(32, 32); // twice the size shown, so that it stays crisp on dense screens
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(color.darker(150), 2));
    painter.setBrush(color);
    painter.drawRoundedRect(QRectF(3, 3, 26, 26), 5, 5);
    return QIcon(pixmap);
}

} // namespace

LayerPanel::LayerPanel(QWidget *parent)
    : QWidget(parent), m_head(new QWidget), m_job(new QLabel), m_steps(new QComboBox),
      m_table(new QTableWidget(0, ColumnCount)), m_empty(new QLabel), m_stack(new QStackedWidget)
{
    QFont bold = m_job->font();
    bold.setBold(true);
    m_job->setFont(bold);
    m_steps->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    m_steps->setMinimumContentsLength(8);

    m_table->setHorizontalHeaderLabels({tr("Layer"), tr("Type"), tr("Context"), tr("Polarity")});
    m_table->verticalHeader()->hide();
    m_table->verticalHeader()->setDefaultSectionSize(m_table->fontMetrics().height() + 8);
    m_table->horizontalHeader()->setHighlightSections(false);
    m_table->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    m_table->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_table->horizontalHeader()->setSectionResizeMode(Name, QHeaderView::Stretch);
    m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setSelectionMode(QAbstractItemView::SingleSelection);
    m_table->setShowGrid(false);
    m_table->setAlternatingRowColors(true);
    m_table->setFrameShape(QFrame::NoFrame);

    m_empty->setAlignment(Qt::AlignCenter);
    m_empty->setWordWrap(true);
    m_empty->setMargin(16);
    m_stack->addWidget(m_table);
    m_stack->addWidget(m_empty);

    auto *head = new QHBoxLayout(m_head);
    head->setContentsMargins(6, 6, 6, 0);
    head->addWidget(m_job, 1);
    head->addWidget(new QLabel(tr("Step")));
    head->addWidget(m_steps);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_head);
    layout->addWidget(m_stack, 1);

    connect(m_steps, &QComboBox::currentTextChanged, this, &LayerPanel::stepChosen);
    connect(m_table, &QTableWidget::itemSelectionChanged, this, &LayerPanel::layerChosen);
    showNothing(tr("No job is open."));
}

void LayerPanel::showMatrix(const QString &job, const QStringList &steps,
                            const std::vector<ORVEX::API::layer_info> &layers)
{
    const QSignalBlocker quietSteps(m_steps);
    const QSignalBlocker quietTable(m_table);
    m_head->setVisible(!job.isEmpty());
    m_job->setText(job);
    m_steps->clear();
    m_steps->addItems(steps);
    m_steps->setEnabled(steps.size() > 1);
    m_layers = layers;
    m_table->setRowCount(0);
    for (const ORVEX::API::layer_info &layer : layers)
        addRow(layer);
    m_empty->setText(tr("The job has no layers."));
    m_stack->setCurrentWidget(layers.empty() ? static_cast<QWidget *>(m_empty) : m_table);
}

void LayerPanel::showNothing(const QString &reason)
{
    showMatrix(QString(), {}, {});
    m_empty->setText(reason);
}

QString LayerPanel::currentStep() const
{
    return m_steps->currentText();
}

bool LayerPanel::setCurrentStep(const QString &step)
{
    const int index = m_steps->findText(step, Qt::MatchFixedString);
    if (index >= 0)
        m_steps->setCurrentIndex(index);
    return index >= 0;
}

void LayerPanel::chooseNone()
{
    const QSignalBlocker quiet(m_table);
    m_table->clearSelection();
}

void LayerPanel::chooseFirstCopper()
{
    const auto copper =
        std::find_if(m_layers.cbegin(), m_layers.cend(), [](const ORVEX::API::layer_info &layer) {
            return layer.context == "BOARD" && layer.type == "SIGNAL";
        });
    if (!m_layers.empty())
        m_table->selectRow(copper == m_layers.cend() ? 0 : int(copper - m_layers.cbegin()));
}

bool LayerPanel::chooseLayer(const QString &name)
{
    for (std::size_t row = 0; row < m_layers.size(); ++row) {
        if (QString::fromStdString(m_layers[row].name) == name) {
            m_table->selectRow(int(row));
            return true;
        }
    }
    return false;
}

const ORVEX::API::layer_info *LayerPanel::currentLayer() const
{
    const QList<QTableWidgetItem *> selected = m_table->selectedItems();
    return selected.isEmpty() ? nullptr : &m_layers[size_t(selected.first()->row())];
}

void LayerPanel::addRow(const ORVEX::API::layer_info &layer)
{
    const int row = m_table->rowCount();
    m_table->insertRow(row);
    auto *name = new QTableWidgetItem(swatch(viewColor(layer)), QString::fromStdString(layer.name));
    if (!layer.start_name.empty() || !layer.end_name.empty())
        name->setToolTip(
            tr("from %1 to %2")
                .arg(QString::fromStdString(layer.start_name), QString::fromStdString(layer.end_name)));
    m_table->setItem(row, Name, name);
    m_table->setItem(row, Type, new QTableWidgetItem(readable(layer.type)));
    m_table->setItem(row, Context, new QTableWidgetItem(readable(layer.context)));
    m_table->setItem(row, Polarity, new QTableWidgetItem(readable(layer.polarity)));
}
