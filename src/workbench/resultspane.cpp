#include "workbench/resultspane.h"

#include "workbench/view/differences.h"

#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QHeaderView>
#include <QIcon>
#include <QLabel>
#include <QLocale>
#include <QPixmap>
#include <QTreeWidget>
#include <QUrl>
#include <QVBoxLayout>

namespace {

enum Column { Layer, Result, Proof, Size, File, ColumnCount };
// Of a line's first column: which of the places where its file differs.
const int placeRole = Qt::UserRole;

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
    case LayerResult::State::Found:
        return ResultsPane::tr("compared with its layer");
    default:
        return ResultsPane::tr("not exported: the log says why");
    }
}

QString proofText(const cam::Comparison &found)
{
    if (!found.reason.empty())
        return ResultsPane::tr("cannot say: %1").arg(QString::fromStdString(found.reason));
    if (found.isProven())
        return ResultsPane::tr("proven");
    return ResultsPane::tr("not proven, %n place(s) differ", nullptr, int(found.placesInAll));
}

QString placeText(const cam::DifferencePlace &place)
{
    const QLocale locale;
    return (place.isMissing ? ResultsPane::tr("%1 \u00b5m missing at %2, %3 mm, %4 mm\u00b2")
                            : ResultsPane::tr("%1 \u00b5m too much at %2, %3 mm, %4 mm\u00b2"))
        .arg(locale.toString(place.width / 1e3, 'f', 1), locale.toString(place.at.x / 1e6, 'f', 3),
             locale.toString(place.at.y / 1e6, 'f', 3), locale.toString(place.area, 'g', 3));
}

void paintAsBad(QTreeWidgetItem *item)
{
    for (int column = 0; column < ColumnCount; ++column) {
        item->setBackground(column, QColor(0xa8, 0x1e, 0x1e));
        item->setForeground(column, Qt::white);
    }
}

// In the color that the view fills it with.
QIcon iconOf(const cam::DifferencePlace &place)
{
    QPixmap pixmap(12, 12);
    pixmap.fill(Differences::color(place.isMissing));
    return QIcon(pixmap);
}

} // namespace

ResultsPane::ResultsPane(QWidget *parent)
    : QWidget(parent), m_summary(new QLabel), m_proof(new QLabel), m_list(new QTreeWidget)
{
    m_proof->setObjectName("ExportProof");
    m_proof->setContentsMargins(6, 0, 6, 6);
    m_proof->setWordWrap(true);
    m_proof->hide();
    m_summary->setMargin(6);
    m_summary->setWordWrap(true);
    m_summary->setText(tr("Nothing has been exported yet."));
    m_list->setObjectName("ExportResults");
    m_list->setHeaderLabels({tr("Layer"), tr("Result"), tr("Verification"), tr("Size"), tr("File")});
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    m_list->setAlternatingRowColors(true);
    m_list->setFrameShape(QFrame::NoFrame);
    m_list->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_list->header()->moveSection(Proof, Result); // results may be long
    connect(m_list, &QTreeWidget::itemClicked, this, &ResultsPane::choosePlace);
    connect(m_list, &QTreeWidget::itemActivated, this, &ResultsPane::activate);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_summary);
    layout->addWidget(m_proof);
    layout->addWidget(m_list, 1);
}

void ResultsPane::showResults(const ExportResults &results)
{
    m_summary->setText(results.summary());
    m_list->clear();
    m_list->setRootIsDecorated(false);
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
        if (isBad)
            paintAsBad(item);
    }
    m_proof->hide();
}

void ResultsPane::showProofs(const ExportVerifier &verifier)
{
    m_proof->setText(verifier.summary());
    m_proof->setVisible(!m_proof->text().isEmpty());
    for (const LayerProof &proof : verifier.proofs()) {
        for (QTreeWidgetItem *item : m_list->findItems(proof.layer, Qt::MatchFixedString, Layer)) {
            if (!item->text(Proof).isEmpty())
                continue; // shown before
            const cam::Comparison &found = proof.found;
            item->setText(Proof, proofText(found));
            item->setToolTip(Proof, proofText(found));
            if (found.isProven())
                continue;
            paintAsBad(item);
            if (!found.places.empty())
                item->setData(Layer, placeRole, 0);
            for (std::size_t i = 0; i < found.places.size(); ++i) {
                auto *line = new QTreeWidgetItem(item);
                line->setFirstColumnSpanned(true);
                line->setText(Layer, placeText(found.places[i]));
                line->setIcon(Layer, iconOf(found.places[i]));
                line->setData(Layer, placeRole, int(i));
            }
            if (const std::size_t more = found.placesInAll - found.places.size(); more > 0) {
                auto *line = new QTreeWidgetItem(item);
                line->setFirstColumnSpanned(true);
                line->setText(Layer, tr("and %n more place(s)", nullptr, int(more)));
            }
            m_list->setRootIsDecorated(true);
            item->setExpanded(true);
        }
    }
}

void ResultsPane::choosePlace(const QTreeWidgetItem *item)
{
    const QVariant place = item->data(Layer, placeRole);
    if (place.isValid())
        emit placeChosen((item->parent() ? item->parent() : item)->text(Layer), place.toInt());
}

void ResultsPane::activate(const QTreeWidgetItem *item)
{
    if (item->data(Layer, placeRole).isValid())
        return choosePlace(item);
    const QString file = item->data(File, Qt::UserRole).toString();
    if (!file.isEmpty())
        QDesktopServices::openUrl(QUrl::fromLocalFile(QFileInfo(file).absolutePath()));
}
