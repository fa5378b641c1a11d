#include "workbench/historypane.h"

#include "workbench/statuscolor.h"

#include <QAction>
#include <QDesktopServices>
#include <QDir>
#include <QEvent>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLocale>
#include <QToolButton>
#include <QTreeWidget>
#include <QUrl>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace {

enum Column { When, Job, Step, Format, Layers, Verified, Parameters, Folder, ColumnCount };

QString number(double value)
{
    return QLocale().toString(value, 'g', 10);
}

QString changeText(const LayerChange &change)
{
    QStringList parts;
    if (change.angle != 0.0)
        parts << HistoryPane::tr("rotated by %1\u00b0").arg(number(change.angle));
    if (change.mirror)
        parts << HistoryPane::tr("mirrored");
    if (change.xScale != 1.0 || change.yScale != 1.0)
        parts << HistoryPane::tr("scaled by %1 and %2").arg(number(change.xScale), number(change.yScale));
    if (change.negate)
        parts << HistoryPane::tr("negated");
    return parts.join(", ");
}

QString settingsText(const PastExport &past)
{
    QStringList parts;
    if (std::fabs(past.resize) >= 0.5)
        parts << HistoryPane::tr("resized by %1 \u00b5m").arg(number(past.resize / 1000.0));
    parts << HistoryPane::tr("database unit %1 \u00b5m")
                 .arg(number(past.databaseUnit == 0.0 ? 0.001 : past.databaseUnit));
    if (past.withProfile)
        parts << HistoryPane::tr("with profile");
    return parts.join(", ");
}

// Of one layer or of several; the worst counts.
QString verdictText(const QVector<PastLayer> &layers)
{
    int proven = 0, known = 0;
    for (const PastLayer &layer : layers) {
        known += layer.isProven ? 1 : 0;
        proven += layer.isProven.value_or(false) ? 1 : 0;
    }
    if (proven < known)
        return layers.size() == 1
                   ? HistoryPane::tr("not proven")
                   : HistoryPane::tr("%1 of %2 not proven").arg(known - proven).arg(layers.size());
    if (known == 0)
        return HistoryPane::tr("not verified");
    return proven == layers.size() ? HistoryPane::tr("proven")
                                   : HistoryPane::tr("%1 of %2 proven").arg(proven).arg(layers.size());
}

void showVerdict(QTreeWidgetItem *item, const QVector<PastLayer> &layers, const QPalette &palette)
{
    item->setText(Verified, verdictText(layers));
    if (std::any_of(layers.begin(), layers.end(),
                    [](const PastLayer &layer) { return !layer.isProven.value_or(true); }))
        item->setForeground(Verified, statuscolor::failure(palette));
}

} // namespace

HistoryPane::HistoryPane(QWidget *parent)
    : QWidget(parent), m_state(new QLabel), m_list(new QTreeWidget), m_open(new QAction(this)),
      m_repeat(new QAction(this))
{
    m_state->setMargin(6);
    m_state->setWordWrap(true);
    m_list->setObjectName("ExportHistory");
    m_list->setColumnCount(ColumnCount);
    m_list->setUniformRowHeights(true);
    m_list->setAlternatingRowColors(true);
    m_list->setFrameShape(QFrame::NoFrame);
    m_list->setTextElideMode(Qt::ElideMiddle);
    m_list->setContextMenuPolicy(Qt::ActionsContextMenu);
    m_open->setObjectName("OpenExportFolder");
    m_repeat->setObjectName("RepeatExport");
    m_list->addActions({m_repeat, m_open});
    connect(m_open, &QAction::triggered, this, &HistoryPane::openFolder);
    connect(m_repeat, &QAction::triggered, this, [this] {
        if (const PastExport *past = current())
            emit repeatAsked(PastExport(*past)); // a copy: the export that follows reads the record again
    });
    connect(m_list, &QTreeWidget::itemExpanded, this, [this] { m_list->resizeColumnToContents(Parameters); });
    connect(m_list, &QTreeWidget::currentItemChanged, this, [this] {
        m_open->setEnabled(current());
        m_repeat->setEnabled(current());
    });

    auto *row = new QHBoxLayout;
    row->setContentsMargins(0, 0, 4, 0);
    row->addWidget(m_state, 1);
    for (QAction *action : {m_repeat, m_open}) {
        auto *button = new QToolButton;
        button->setDefaultAction(action);
        row->addWidget(button);
        action->setEnabled(false);
    }
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addLayout(row);
    layout->addWidget(m_list, 1);
    retranslate();
}

void HistoryPane::setRecord(const QString &path)
{
    m_record = path;
    refresh();
}

void HistoryPane::refresh()
{
    if (!isVisible())
        return;
    m_exports.clear();
    m_error.clear();
    if (!m_record.isEmpty())
        m_exports = readHistory(m_record, m_error);
    fill();
}

void HistoryPane::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    refresh();
}

void HistoryPane::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    QWidget::changeEvent(event);
}

void HistoryPane::retranslate()
{
    m_list->setHeaderLabels({tr("When"), tr("Job"), tr("Step"), tr("Format"), tr("Layers"), tr("Verified"),
                             tr("Parameters"), tr("Folder")});
    m_open->setText(tr("Open &folder"));
    m_open->setToolTip(tr("Open the folder of the files in the system's file manager"));
    m_repeat->setText(tr("Export &again ..."));
    m_repeat->setToolTip(tr("Open the Export dialog with the layers and parameters of this export"));
    fill();
}

void HistoryPane::fill()
{
    m_list->clear();
    const QLocale locale;
    for (int i = 0; i < m_exports.size(); ++i) {
        const PastExport &past = m_exports[i];
        auto *item = new QTreeWidgetItem(m_list);
        item->setData(0, Qt::UserRole, i);
        item->setText(When, locale.toString(past.time, QLocale::ShortFormat));
        item->setText(Job, past.job);
        item->setText(Step, past.step);
        item->setText(Format, past.format);
        item->setText(Layers, locale.toString(past.layers.size()));
        showVerdict(item, past.layers, palette());
        item->setText(Parameters, settingsText(past));
        item->setText(Folder, QDir::toNativeSeparators(past.folder));
        item->setToolTip(Folder, QDir::toNativeSeparators(past.folder));
        for (const PastLayer &layer : past.layers) {
            auto *row = new QTreeWidgetItem(item);
            row->setText(When, layer.layer);
            showVerdict(row, {layer}, palette());
            row->setText(Parameters, changeText(layer.change));
            row->setText(Folder, QFileInfo(layer.file).fileName());
        }
    }
    for (int column = 0; column < ColumnCount; ++column)
        m_list->resizeColumnToContents(column);
    if (!m_error.isEmpty())
        m_state->setText(tr("The record of exports cannot be read: %1").arg(m_error));
    else if (m_record.isEmpty())
        m_state->setText(tr("Exports are not recorded. File > Settings names a file for the record."));
    else if (m_exports.isEmpty())
        m_state->setText(tr("No export has been recorded yet."));
    else
        m_state->setText(tr("%n export(s), the newest first.", nullptr, m_exports.size()));
}

const PastExport *HistoryPane::current() const
{
    const QTreeWidgetItem *item = m_list->currentItem();
    if (!item)
        return nullptr;
    if (item->parent())
        item = item->parent();
    return &m_exports[item->data(0, Qt::UserRole).toInt()];
}

void HistoryPane::openFolder()
{
    if (const PastExport *past = current())
        QDesktopServices::openUrl(QUrl::fromLocalFile(past->folder));
}
