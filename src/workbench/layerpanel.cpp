#include "workbench/layerpanel.h"

#include "workbench/layerwords.h"
#include "workbench/viewcolor.h"

#include <QComboBox>
#include <QContextMenuEvent>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QSignalBlocker>
#include <QSlider>
#include <QStackedWidget>
#include <QStyledItemDelegate>
#include <QTableWidget>
#include <QVBoxLayout>
#if QT_CONFIG(colordialog)
#include <QColorDialog>
#else
#include <QInputDialog>
#endif

#include <algorithm>

// The table, whose eyes are pressed without choosing their row.
class LayerTable : public QTableWidget
{
public:
    enum Column { Name, Type, Eye, Opacity, ColumnCount };

    LayerTable() : QTableWidget(0, ColumnCount) {}
    std::function<void(int row)> eyePressed;

protected:
    void mousePressEvent(QMouseEvent *event) override
    {
        const QModelIndex at = indexAt(event->pos());
        if (event->button() == Qt::LeftButton && at.isValid() && at.column() == Eye)
            eyePressed(at.row());
        else
            QTableWidget::mousePressEvent(event);
    }
    // The second press of two quick ones on an eye.
    void mouseDoubleClickEvent(QMouseEvent *event) override
    {
        const QModelIndex at = indexAt(event->pos());
        if (at.isValid() && at.column() == Eye)
            eyePressed(at.row());
        else
            QTableWidget::mouseDoubleClickEvent(event);
    }
};

namespace {

using Column = LayerTable::Column;

// "power ground, negative"; "document, misc".
QString typeText(const ORVEX::API::layer_info &layer)
{
    QStringList parts{layerWord(layer.type)};
    if (layer.context != "BOARD" && !layer.context.empty())
        parts << layerWord(layer.context);
    if (layer.polarity == "NEGATIVE")
        parts << layerWord(layer.polarity);
    return parts.join(", ");
}

// Pixmaps are twice the size shown, so that they stay crisp on dense screens.
QIcon swatch(const QColor &color)
{
    QPixmap pixmap(32, 32);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(color.darker(150), 2));
    painter.setBrush(color);
    painter.drawRoundedRect(QRectF(3, 3, 26, 26), 5, 5);
    return QIcon(pixmap);
}

QPixmap eyePixmap(bool open, const QColor &color)
{
    QPixmap pixmap(32, 32);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    QColor line = color;
    line.setAlphaF(open ? 1.0 : 0.35);
    painter.setPen(QPen(line, 2.5));
    if (!open) {
        painter.drawArc(QRectF(3, 6, 26, 18), 200 * 16, 140 * 16);
        return pixmap;
    }
    QPainterPath lids;
    lids.moveTo(3, 16);
    lids.quadTo(16, 4, 29, 16);
    lids.quadTo(16, 28, 3, 16);
    painter.drawPath(lids);
    painter.setBrush(line);
    painter.drawEllipse(QPointF(16, 16), 4.5, 4.5);
    return pixmap;
}

// Draws the eye in the color that text has in its place: chosen or not, in a window in front or behind.
class EyeDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;
    static constexpr int openRole = Qt::UserRole;

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        const auto group = option->state & QStyle::State_Active ? QPalette::Active : QPalette::Inactive;
        const bool isChosen = option->state & QStyle::State_Selected;
        const QPixmap pixmap =
            eyePixmap(index.data(openRole).toBool(),
                      option->palette.color(group, isChosen ? QPalette::HighlightedText : QPalette::Text));
        option->features |= QStyleOptionViewItem::HasDecoration;
        option->decorationSize = {16, 16};
        option->icon = QIcon(pixmap);
        option->icon.addPixmap(pixmap, QIcon::Selected); // styles tint it otherwise
    }
};

bool isBoard(const ORVEX::API::layer_info &layer)
{
    return layer.context == "BOARD";
}

bool isCopper(const ORVEX::API::layer_info &layer)
{
    return isBoard(layer) &&
           (layer.type == "SIGNAL" || layer.type == "POWER_GROUND" || layer.type == "MIXED");
}

bool isDrilled(const ORVEX::API::layer_info &layer)
{
    return layer.type == "DRILL" || layer.type == "ROUT";
}

bool hasFeatures(const ORVEX::API::layer_info &layer)
{
    return layer.type != "COMPONENT" && layer.type != "DIELECTRIC";
}

// Copper layers over each other are told apart: the first one has the color of its class, the others go round
// the circle of hues.
QColor copperColor(const QColor &base, int number, int count)
{
    if (number == 0 || count < 2)
        return base;
    int hue = 0, saturation = 0, value = 0;
    base.getHsv(&hue, &saturation, &value);
    return QColor::fromHsv((hue + 360 * number / count) % 360, std::min(saturation, 190), 235);
}

// Of the layers and datatypes of files, one after the other.
QColor fileColor(int number)
{
    return QColor::fromHsv((200 + 67 * number) % 360, 150, 240);
}

} // namespace

LayerPanel::LayerPanel(QWidget *parent)
    : QWidget(parent), m_head(new QWidget), m_job(new QLabel), m_steps(new QComboBox),
      m_table(new LayerTable), m_empty(new QLabel), m_stack(new QStackedWidget), m_foot(new QWidget),
      m_opacity(new QSlider(Qt::Horizontal))
{
    QFont bold = m_job->font();
    bold.setBold(true);
    m_job->setFont(bold);
    m_steps->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    m_steps->setMinimumContentsLength(8);

    m_table->setHorizontalHeaderLabels({tr("Layer"), tr("Type"), QString(), tr("Opacity")});
    m_table->verticalHeader()->hide();
    m_table->verticalHeader()->setDefaultSectionSize(m_table->fontMetrics().height() + 8);
    QHeaderView *header = m_table->horizontalHeader();
    header->setHighlightSections(false);
    header->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    header->setSectionResizeMode(QHeaderView::ResizeToContents);
    header->setSectionResizeMode(Column::Type, QHeaderView::Stretch);
    header->setMinimumSectionSize(30);
    header->moveSection(Column::Eye, 0);
    m_table->setItemDelegateForColumn(Column::Eye, new EyeDelegate(m_table));
    m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setSelectionMode(QAbstractItemView::SingleSelection);
    m_table->setShowGrid(false);
    m_table->setAlternatingRowColors(true);
    m_table->setFrameShape(QFrame::NoFrame);
    m_table->setContextMenuPolicy(Qt::CustomContextMenu);
    m_table->installEventFilter(this);
    m_table->eyePressed = [this](int row) { toggle(row); };

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
    auto *foot = new QHBoxLayout(m_foot);
    foot->setContentsMargins(6, 0, 6, 4);
    auto *label = new QLabel(tr("&Opacity"));
    label->setBuddy(m_opacity);
    m_opacity->setRange(10, 100);
    m_opacity->setSingleStep(5);
    m_opacity->setPageStep(10);
    m_opacity->setToolTip(tr("How dense the chosen layer is drawn"));
    foot->addWidget(label);
    foot->addWidget(m_opacity, 1);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_head);
    layout->addWidget(m_stack, 1);
    layout->addWidget(m_foot);

    connect(m_steps, &QComboBox::currentTextChanged, this, &LayerPanel::stepChosen);
    connect(m_table, &QTableWidget::itemSelectionChanged, this, [this] {
        peekAtCurrent();
        updateSlider();
        emit layerChosen();
    });
    connect(m_table, &QTableWidget::cellDoubleClicked, this, [this](int row, int) { solo(row); });
    connect(m_table, &QWidget::customContextMenuRequested, this, &LayerPanel::openMenu);
    connect(m_opacity, &QSlider::valueChanged, this, [this](int percent) {
        const int row = currentRow();
        if (row < 0 || m_rows[std::size_t(row)].opacity == percent)
            return;
        m_rows[std::size_t(row)].opacity = percent;
        updateRow(row);
        emit shownChanged();
    });
    showNothing(tr("No job is open."));
}

// ---- rows

void LayerPanel::showMatrix(const QString &job, const QStringList &steps,
                            const std::vector<ORVEX::API::layer_info> &layers)
{
    const QSignalBlocker quietSteps(m_steps);
    m_head->setVisible(!job.isEmpty());
    m_job->setText(job);
    m_job->setToolTip(job);
    m_steps->clear();
    m_steps->addItems(steps);
    m_steps->setEnabled(steps.size() > 1);
    std::vector<Row> rows;
    const auto copperCount = int(std::count_if(layers.begin(), layers.end(), isCopper));
    int copper = 0;
    for (const ORVEX::API::layer_info &layer : layers) {
        Row row;
        row.layer = layer;
        row.name = QString::fromStdString(layer.name);
        row.color = isCopper(layer) ? copperColor(viewColor(layer), copper++, copperCount) : viewColor(layer);
        rows.push_back(row);
    }
    std::copy_if(m_rows.begin(), m_rows.end(), std::back_inserter(rows),
                 [](const Row &row) { return !row.file.isEmpty(); });
    m_rows = rows;
    fillTable();
    m_empty->setText(tr("The job has no layers."));
    m_stack->setCurrentWidget(m_rows.empty() ? static_cast<QWidget *>(m_empty) : m_table);
}

void LayerPanel::showNothing(const QString &reason)
{
    showMatrix(QString(), {}, {});
    m_empty->setText(reason);
}

void LayerPanel::addUnreadFile(const QString &path)
{
    addRows(path, ViewRow::wholeFile, {QFileInfo(path).fileName()});
}

void LayerPanel::addFile(const QString &path, const QStringList &parts)
{
    addRows(path, 0, parts);
}

void LayerPanel::addRows(const QString &path, int firstPart, const QStringList &names)
{
    int number = int(files().size());
    m_rows.erase(
        std::remove_if(m_rows.begin(), m_rows.end(), [&](const Row &row) { return row.file == path; }),
        m_rows.end());
    for (int i = 0; i < names.size(); ++i) {
        Row row;
        row.file = path;
        row.part = firstPart + i;
        row.name = names[i];
        row.color = fileColor(number++);
        row.shown = true;
        m_rows.push_back(row);
    }
    fillTable();
    m_stack->setCurrentWidget(m_table);
    if (!names.isEmpty())
        m_table->scrollToItem(m_table->item(int(m_rows.size()) - 1, Column::Name));
    emit shownChanged();
}

void LayerPanel::removeFile(const QString &path)
{
    m_rows.erase(
        std::remove_if(m_rows.begin(), m_rows.end(), [&](const Row &row) { return row.file == path; }),
        m_rows.end());
    fillTable();
    emit fileRemoved(path);
    emit shownChanged();
}

QStringList LayerPanel::files() const
{
    QStringList paths;
    for (const Row &row : m_rows) {
        if (!row.file.isEmpty() && !paths.contains(row.file))
            paths << row.file;
    }
    return paths;
}

void LayerPanel::fillTable()
{
    const QSignalBlocker quiet(m_table);
    m_peeked = -1;
    m_beforeSolo.clear();
    m_table->clearSelection();
    m_table->setRowCount(0);
    for (const Row &row : m_rows)
        addTableRow(row);
    m_foot->setVisible(!m_rows.empty());
    updateSlider();
}

void LayerPanel::addTableRow(const Row &row)
{
    const int at = m_table->rowCount();
    m_table->insertRow(at);
    const ORVEX::API::layer_info &layer = row.layer;
    auto *name = new QTableWidgetItem(row.name);
    if (!row.file.isEmpty())
        name->setToolTip(row.file);
    else if (!layer.start_name.empty() || !layer.end_name.empty())
        name->setToolTip(tr("%1, from %2 to %3")
                             .arg(row.name, QString::fromStdString(layer.start_name),
                                  QString::fromStdString(layer.end_name)));
    else
        name->setToolTip(row.name);
    m_table->setItem(at, Column::Name, name);
    m_table->setItem(at, Column::Type,
                     new QTableWidgetItem(row.file.isEmpty() ? typeText(layer) : tr("file")));
    auto *eyeItem = new QTableWidgetItem;
    eyeItem->setToolTip(tr("Show or hide this layer (Space)"));
    m_table->setItem(at, Column::Eye, eyeItem);
    m_table->setItem(at, Column::Opacity, new QTableWidgetItem);
    updateRow(at);
}

void LayerPanel::updateRow(int at)
{
    const Row &row = m_rows[std::size_t(at)];
    m_table->item(at, Column::Name)->setIcon(swatch(row.color));
    m_table->item(at, Column::Eye)->setData(EyeDelegate::openRole, row.shown);
    m_table->item(at, Column::Eye)->setData(Qt::AccessibleTextRole, row.shown ? tr("shown") : tr("hidden"));
    m_table->item(at, Column::Opacity)->setText(tr("%1 %").arg(row.opacity));
}

// ---- steps and the chosen layer

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

int LayerPanel::layerCount() const
{
    return int(
        std::count_if(m_rows.begin(), m_rows.end(), [](const Row &row) { return row.file.isEmpty(); }));
}

QStringList LayerPanel::layerNames() const
{
    QStringList names;
    for (const Row &row : m_rows) {
        if (row.file.isEmpty())
            names << row.name;
    }
    return names;
}

void LayerPanel::chooseNone()
{
    const QSignalBlocker quiet(m_table);
    m_table->clearSelection();
    peekAtCurrent();
    updateSlider();
}

void LayerPanel::chooseFirstCopper()
{
    const auto copper = std::find_if(m_rows.begin(), m_rows.end(), [](const Row &row) {
        return row.file.isEmpty() && row.layer.context == "BOARD" && row.layer.type == "SIGNAL";
    });
    if (layerCount() > 0)
        m_table->selectRow(copper == m_rows.end() ? 0 : int(copper - m_rows.begin()));
}

bool LayerPanel::chooseLayer(const QString &name)
{
    for (std::size_t row = 0; row < m_rows.size(); ++row) {
        if (m_rows[row].file.isEmpty() && m_rows[row].name.compare(name, Qt::CaseInsensitive) == 0) {
            m_table->selectRow(int(row));
            return true;
        }
    }
    return false;
}

int LayerPanel::currentRow() const
{
    const QList<QTableWidgetItem *> selected = m_table->selectedItems();
    return selected.isEmpty() ? -1 : selected.first()->row();
}

const ORVEX::API::layer_info *LayerPanel::currentLayer() const
{
    const int row = currentRow();
    return row < 0 || !m_rows[std::size_t(row)].file.isEmpty() ? nullptr : &m_rows[std::size_t(row)].layer;
}

void LayerPanel::updateSlider()
{
    const QSignalBlocker quiet(m_opacity);
    const int row = currentRow();
    m_foot->setEnabled(row >= 0);
    if (row >= 0)
        m_opacity->setValue(m_rows[std::size_t(row)].opacity);
}

// ---- what is seen

// A layer that is chosen is seen as long as it is chosen: one goes through the layers by the arrow keys. What
// the eye was opened for stays.
void LayerPanel::peekAtCurrent()
{
    const int current = currentRow();
    if (current == m_peeked)
        return;
    if (m_peeked >= 0 && m_peeked < int(m_rows.size())) {
        m_rows[std::size_t(m_peeked)].shown = false;
        updateRow(m_peeked);
    }
    m_peeked = -1;
    if (current >= 0 && !m_rows[std::size_t(current)].shown) {
        m_rows[std::size_t(current)].shown = true;
        m_peeked = current;
        updateRow(current);
    }
    emit shownChanged();
}

// The first eye that is pressed keeps what was only looked at.
void LayerPanel::toggle(int row)
{
    m_rows[std::size_t(row)].shown = !m_rows[std::size_t(row)].shown;
    m_peeked = -1;
    updateRow(row);
    emit shownChanged();
}

void LayerPanel::setOnly(const std::function<bool(const Row &)> &wanted)
{
    m_peeked = -1;
    for (std::size_t row = 0; row < m_rows.size(); ++row) {
        m_rows[row].shown = wanted(m_rows[row]);
        updateRow(int(row));
    }
    emit shownChanged();
}

void LayerPanel::solo(int row)
{
    std::vector<bool> shown;
    for (const Row &other : m_rows)
        shown.push_back(other.shown);
    const bool isAlone = shown[std::size_t(row)] && std::count(shown.begin(), shown.end(), true) == 1;
    if (isAlone && m_beforeSolo.size() == m_rows.size()) {
        std::size_t at = 0;
        const std::vector<bool> before = m_beforeSolo;
        m_beforeSolo.clear();
        setOnly([&](const Row &) { return before[at++]; });
        return;
    }
    m_beforeSolo = shown;
    std::size_t at = 0;
    setOnly([&](const Row &) { return at++ == std::size_t(row); });
}

void LayerPanel::showPreset(Preset preset)
{
    int firstCopper = -1, lastCopper = -1;
    for (int row = 0; row < layerCount(); ++row) {
        if (!isCopper(m_rows[std::size_t(row)].layer))
            continue;
        firstCopper = firstCopper < 0 ? row : firstCopper;
        lastCopper = row;
    }
    int at = -1;
    setOnly([&](const Row &row) {
        ++at;
        if (!row.file.isEmpty())
            return row.shown;
        const bool isSide = isBoard(row.layer) && hasFeatures(row.layer) && !isDrilled(row.layer);
        switch (preset) {
        case Preset::AllCopper:
            return isCopper(row.layer);
        case Preset::TopSide:
            return isSide && at <= firstCopper;
        case Preset::BottomSide:
            return isSide && at >= lastCopper && lastCopper >= 0;
        case Preset::DrillOverCopper:
            break;
        }
        return isCopper(row.layer) || isDrilled(row.layer);
    });
}

QVector<ViewRow> LayerPanel::shownRows(bool fromBelow) const
{
    QVector<ViewRow> layers, drilled, files;
    for (const Row &row : m_rows) {
        if (!row.shown)
            continue;
        ViewRow shown;
        shown.name = row.name;
        shown.file = row.file;
        shown.part = row.part;
        shown.color = row.color;
        shown.opacity = row.opacity / 100.0;
        (!row.file.isEmpty() ? files : isDrilled(row.layer) ? drilled : layers) << shown;
    }
    if (!fromBelow)
        std::reverse(layers.begin(), layers.end());
    return layers + drilled + files;
}

bool LayerPanel::isShown(const QString &name) const
{
    return std::any_of(m_rows.begin(), m_rows.end(),
                       [&](const Row &row) { return row.name == name && row.shown; });
}

void LayerPanel::setShown(const QString &name, bool shown)
{
    for (std::size_t row = 0; row < m_rows.size(); ++row) {
        if (m_rows[row].name != name)
            continue;
        m_rows[row].shown = shown;
        if (m_peeked == int(row))
            m_peeked = -1;
        updateRow(int(row));
    }
    emit shownChanged();
}

// ---- commands

void LayerPanel::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() != QEvent::LanguageChange)
        return;
    for (std::size_t row = 0; row < m_rows.size(); ++row) {
        if (m_rows[row].file.isEmpty())
            m_table->item(int(row), Column::Type)->setText(typeText(m_rows[row].layer));
    }
}

bool LayerPanel::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress && currentRow() >= 0) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key == Qt::Key_Space) {
            toggle(currentRow());
            return true;
        }
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            solo(currentRow());
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

void LayerPanel::chooseColor(int row)
{
    const QString title = tr("Color of %1").arg(m_rows[std::size_t(row)].name);
    const QColor before = m_rows[std::size_t(row)].color;
#if QT_CONFIG(colordialog)
    const QColor color = QColorDialog::getColor(before, this, title);
#else // by its name, or as #rrggbb
    const QColor color(QInputDialog::getText(this, title, title, QLineEdit::Normal, before.name()));
#endif
    if (!color.isValid())
        return;
    m_rows[std::size_t(row)].color = color;
    updateRow(row);
    emit shownChanged();
}

void LayerPanel::openMenu(const QPoint &place)
{
    const QModelIndex at = m_table->indexAt(place);
    if (!at.isValid())
        return;
    const int row = at.row();
    QMenu menu;
    menu.addAction(m_rows[std::size_t(row)].shown ? tr("Hide") : tr("Show"), this,
                   [this, row] { toggle(row); });
    menu.addAction(tr("Show only this one"), this, [this, row] { solo(row); });
    menu.addAction(tr("Color ..."), this, [this, row] { chooseColor(row); });
    const QString file = m_rows[std::size_t(row)].file;
    if (!file.isEmpty())
        menu.addAction(tr("Remove %1 from the list").arg(QFileInfo(file).fileName()), this,
                       [this, file] { removeFile(file); });
    menu.exec(m_table->viewport()->mapToGlobal(place));
}
