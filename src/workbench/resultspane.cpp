#include "workbench/resultspane.h"

#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QHeaderView>
#include <QLabel>
#include <QLocale>
#include <QTreeWidget>
#include <QUrl>
#include <QVBoxLayout>

namespace {

enum Column { Layer, Result, Size, File, ColumnCount };

QString stateText(const LayerResult &result)
{
    switch (result.state) {
    case LayerResult::State::Waiting:
        return ResultsPane::tr("waiting");
    case LayerResult::State::Running:
        return ResultsPane::tr("being written");
    case LayerResult::State::Written:
        return ResultsPane::tr("written");
    case LayerResult::State::Empty:
        return ResultsPane::tr("written, the layer is empty");
    case LayerResult::State::Failed:
        return ResultsPane::tr("failed: %1").arg(result.reason);
    case LayerResult::State::Cancelled:
        return ResultsPane::tr("cancelled");
    default:
        return ResultsPane::tr("not exported: the log says why");
    }
}

} // namespace

ResultsPane::ResultsPane(QWidget *parent) : QWidget(parent), m_summary(new QLabel), m_list(new QTreeWidget)
{
    m_summary->setMargin(6);
    m_summary->setWordWrap(true);
    m_summary->setText(tr("Nothing has been exported yet."));
    m_list->setObjectName("ExportResults");
    m_list->setHeaderLabels({tr("Layer"), tr("Result"), tr("Size"), tr("File")});
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    m_list->setAlternatingRowColors(true);
    m_list->setFrameShape(QFrame::NoFrame);
    m_list->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    connect(m_list, &QTreeWidget::itemActivated, this, [](const QTreeWidgetItem *item) {
        const QString file = item->data(File, Qt::UserRole).toString();
        if (!file.isEmpty())
            QDesktopServices::openUrl(QUrl::fromLocalFile(QFileInfo(file).absolutePath()));
    });
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_summary);
    layout->addWidget(m_list, 1);
}

void ResultsPane::showResults(const ExportResults &results)
{
    m_summary->setText(results.summary());
    m_list->clear();
    for (const LayerResult &result : results.layers) {
        auto *item = new QTreeWidgetItem(m_list);
        item->setText(Layer, result.layer);
        item->setText(Result, stateText(result));
        if (result.bytes >= 0)
            item->setText(Size, QLocale().formattedDataSize(result.bytes));
        item->setText(File, QDir::toNativeSeparators(result.file));
        item->setData(File, Qt::UserRole, result.file);
        item->setToolTip(Result, (QStringList{stateText(result)} + result.notes).join("\n"));
        const bool isBad = result.state == LayerResult::State::Failed ||
                           result.state == LayerResult::State::Cancelled ||
                           result.state == LayerResult::State::Missing;
        if (isBad) {
            for (int column = 0; column < ColumnCount; ++column) {
                item->setBackground(column, QColor(0xa8, 0x1e, 0x1e));
                item->setForeground(column, Qt::white);
            }
        }
    }
}
