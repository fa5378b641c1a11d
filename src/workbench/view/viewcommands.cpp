#include "workbench/view/viewcommands.h"

#include "workbench/exportdialog.h"
#include "workbench/filecomparison.h"
#include "workbench/layerpanel.h"
#include "workbench/view/boardview.h"
#include "workbench/view/filescenes.h"
#include "workbench/view/graphicview.h"
#include "workbench/view/picturefile.h"
#include "workbench/view/printdialog.h"
#include "workbench/view/printing.h"

#include <QAction>
#include <QFileDialog>
#include <QFileInfo>
#include <QLocale>
#include <QMenu>
#include <QPrinter>

#include <cmath>

namespace {

// What an export by `options` does to a layer, in words; empty when it stays as it is.
QString changeText(const cam::ExportOptions &options)
{
    const QLocale locale;
    QStringList parts;
    if (options.resize != 0.0)
        parts << (options.resize > 0.0 ? ViewCommands::tr("grown by %1 \u00b5m")
                                       : ViewCommands::tr("shrunk by %1 \u00b5m"))
                     .arg(locale.toString(std::fabs(options.resize) / 1000.0, 'g', 10));
    if (options.negative)
        parts << ViewCommands::tr("negated");
    if (options.xScale != 1.0 || options.yScale != 1.0)
        parts << ViewCommands::tr("scaled by %1 and %2")
                     .arg(locale.toString(options.xScale, 'g', 10), locale.toString(options.yScale, 'g', 10));
    if (options.mirror)
        parts << ViewCommands::tr("mirrored");
    if (options.angle != 0.0)
        parts << ViewCommands::tr("rotated by %1\u00b0").arg(locale.toString(options.angle, 'g', 10));
    return parts.join(", ");
}

void readDialog(const ExportDialog &dialog, const QString &layer, cam::ExportOptions &options)
{
    for (int row = 0; row < dialog.rowCount(); ++row) {
        if (dialog.layer(row).compare(layer, Qt::CaseInsensitive) != 0)
            continue;
        const LayerChange change = dialog.change(row);
        options.angle = change.angle;
        options.mirror = change.mirror;
        options.xScale = change.xScale;
        options.yScale = change.yScale;
        options.negative = change.negate;
    }
}

} // namespace

ViewCommands::ViewCommands(LayerPanel &layers, GraphicView &view, QMenu &fileMenu, QMenu &viewMenu,
                           QObject *parent)
    : QObject(parent), m_layers(layers), m_view(view)
{
    QAction *open = fileMenu.addAction(tr("&Open layer files ..."), this, &ViewCommands::chooseFiles);
    open->setObjectName("OpenLayerFiles");
    open->setShortcut(QKeySequence::Open);
    open->setStatusTip(tr("Show GDSII, Gerber and drill files over the job"));
    QAction *compare =
        fileMenu.addAction(tr("&Compare files with layers ..."), this, &ViewCommands::compareFiles);
    compare->setObjectName("CompareFiles");
    compare->setShortcut(Qt::CTRL + Qt::Key_D);
    compare->setStatusTip(tr("Compare GDSII and Gerber files with their layers, and mark where they differ"));
    QAction *save = fileMenu.addAction(tr("Save &picture ..."), this, &ViewCommands::choosePicture);
    save->setObjectName("SavePicture");
    save->setShortcut(QKeySequence::Save);
    save->setStatusTip(tr("Save what is seen as PNG, PDF or SVG"));
    QAction *print = fileMenu.addAction(tr("P&rint ..."), this, &ViewCommands::print);
    print->setObjectName("Print");
    print->setShortcut(QKeySequence::Print);
    print->setStatusTip(tr("Print what is seen, in its true size or as large as the page allows"));
    fileMenu.addSeparator();
    addViewMenu(viewMenu);
    connect(&m_layers, &LayerPanel::shownChanged, this, &ViewCommands::showRows);
    connect(&m_layers, &LayerPanel::stepChosen, this, &ViewCommands::openStep);
    connect(&m_layers, &LayerPanel::fileRemoved, &m_view, &GraphicView::closeFile);
    connect(&m_view, &GraphicView::filesDropped, this, &ViewCommands::openFiles);
    connect(&m_view, &GraphicView::fileRead, this, [this](const QString &path, const QStringList &parts) {
        m_layers.addFile(path, parts);
        if (parts.isEmpty())
            emit fileFailed(path, tr("%1: nothing is drawn in it").arg(path));
        emit fileOpened(path);
    });
    connect(&m_view, &GraphicView::fileFailed, this, [this](const QString &path, const QString &reason) {
        m_layers.removeFile(path);
        emit fileFailed(path, reason);
    });
}

ViewCommands::~ViewCommands() = default;

void ViewCommands::addViewMenu(QMenu &menu)
{
    const auto add = [&menu](const QString &text, const QString &name, const QKeySequence &key,
                             const QString &tip) {
        QAction *action = menu.addAction(text);
        action->setObjectName(name);
        action->setShortcut(key);
        action->setStatusTip(tip);
        return action;
    };
    connect(add(tr("&Fit board"), "FitBoard", Qt::Key_F, tr("Show all of the board")), &QAction::triggered,
            &m_view, &GraphicView::fitBoard);
    connect(add(tr("Fit &everything"), "FitAll", Qt::SHIFT + Qt::Key_F, tr("Show everything that is drawn")),
            &QAction::triggered, &m_view, &GraphicView::fitAll);
    m_fromBelow =
        add(tr("Seen from &below"), "FromBelow", Qt::Key_B, tr("Look at the board from its bottom side"));
    m_fromBelow->setCheckable(true);
    connect(m_fromBelow, &QAction::toggled, this, [this](bool fromBelow) {
        m_view.setFromBelow(fromBelow);
        showRows();
    });
    m_asExported = add(tr("&As exported"), "AsExported", Qt::Key_E,
                       tr("Show layers as exports change them, or as they are in the job"));
    m_asExported->setCheckable(true);
    m_asExported->setChecked(true);
    connect(m_asExported, &QAction::toggled, this, &ViewCommands::showRows);
    connect(add(tr("Next &unit"), "NextUnit", Qt::Key_U, tr("Millimetres, inches, mils")),
            &QAction::triggered, &m_view, &GraphicView::changeUnit);
    m_differences = add(tr("&Differences"), "Differences", Qt::Key_D,
                        tr("Show where files that have been compared differ from their layers"));
    m_differences->setCheckable(true);
    m_differences->setChecked(true);
    connect(m_differences, &QAction::toggled, &m_view, &GraphicView::setDifferencesSeen);
    QAction *measure = add(tr("&Measure"), "Measure", Qt::Key_M,
                           tr("Press two places; centers, corners, ends and edges catch the mouse"));
    measure->setCheckable(true);
    connect(measure, &QAction::toggled, &m_view, &GraphicView::setMeasuring);
    connect(&m_view, &GraphicView::measuringEnded, measure, [measure] { measure->setChecked(false); });
    menu.addSeparator();
    const struct
    {
        QString text;
        const char *name;
        LayerPanel::Preset preset;
        int key;
    } presets[] = {
        {tr("All &copper"), "AllCopper", LayerPanel::Preset::AllCopper, Qt::CTRL + Qt::Key_1},
        {tr("&Top side"), "TopSide", LayerPanel::Preset::TopSide, Qt::CTRL + Qt::Key_2},
        {tr("B&ottom side, from below"), "BottomSide", LayerPanel::Preset::BottomSide, Qt::CTRL + Qt::Key_3},
        {tr("&Drill over copper"), "DrillOverCopper", LayerPanel::Preset::DrillOverCopper,
         Qt::CTRL + Qt::Key_4},
    };
    for (const auto &set : presets) {
        QAction *action = add(set.text, set.name, set.key, tr("Show these layers and no others"));
        connect(action, &QAction::triggered, this, [this, preset = set.preset] {
            m_fromBelow->setChecked(preset == LayerPanel::Preset::BottomSide);
            m_layers.showPreset(preset);
        });
    }
    menu.addSeparator();
}

void ViewCommands::openJob(const QString &folder)
{
    m_job = folder;
    m_fromBelow->setChecked(false);
    openStep();
}

void ViewCommands::closeJob(const QString &reason)
{
    openJob(QString());
    m_view.showText(reason);
    if (!rows().isEmpty())
        showRows();
}

void ViewCommands::openStep()
{
    m_view.openStep(m_job, m_layers.currentStep());
    showRows();
}

void ViewCommands::setResize(double resize)
{
    m_resize = resize;
    look();
}

QVector<ViewRow> ViewCommands::rows() const
{
    QVector<ViewRow> rows = m_layers.shownRows(m_fromBelow->isChecked());
    if (!m_asExported->isChecked())
        return rows;
    for (ViewRow &row : rows) {
        if (!row.file.isEmpty())
            continue;
        row.options = optionsOf(row.name);
        row.change = changeText(row.options);
    }
    return rows;
}

// How the view shows a layer of the job.
cam::ExportOptions ViewCommands::optionsOf(const QString &layer) const
{
    cam::ExportOptions options;
    if (!m_asExported->isChecked())
        return options;
    options.resize = m_resize;
    const ExportDialog dialog = ExportDialog::find();
    if (dialog.window() && dialog.problem().isEmpty())
        readDialog(dialog, layer, options);
    return options;
}

void ViewCommands::showRows()
{
    const QVector<ViewRow> rows = this->rows();
    m_shownChanges.clear();
    for (const ViewRow &row : rows)
        m_shownChanges << row.change;
    m_view.showRows(rows);
}

void ViewCommands::look()
{
    QStringList changes;
    for (const ViewRow &row : rows())
        changes << row.change;
    if (changes != m_shownChanges)
        showRows();
}

void ViewCommands::openFiles(const QStringList &paths)
{
    for (const QString &path : paths) {
        m_view.closeFile(path);
        m_layers.addUnreadFile(path);
    }
}

void ViewCommands::chooseFiles()
{
    openFiles(QFileDialog::getOpenFileNames(&m_view, tr("Open layer files"), QString(),
                                            tr("Layer files (%1)").arg(layerFilePatterns().join(' ')) + ";;" +
                                                tr("All files") + " (*)"));
}

void ViewCommands::compareFiles()
{
    if (m_job.isEmpty())
        return;
    const QStringList files = QFileDialog::getOpenFileNames(
        &m_view, tr("Compare files with layers"), QString(),
        tr("Layer files (%1)").arg(layerFilePatterns().join(' ')) + ";;" + tr("All files") + " (*)");
    if (files.isEmpty())
        return;
    const ORVEX::API::layer_info *chosen = m_layers.currentLayer();
    const FileComparison comparison =
        compareWithLayers(files, m_job, m_layers.currentStep(), m_layers.layerNames(),
                          chosen ? QString::fromStdString(chosen->name) : QString(),
                          [this](const QString &layer) { return optionsOf(layer); });
    emit comparisonAsked(comparison.files, comparison.unknown);
}

void ViewCommands::goToDifference(const QString &layer, int place)
{
    m_differences->setChecked(true);
    m_layers.chooseLayer(layer);
    if (!m_layers.isShown(layer))
        m_layers.setShown(layer, true);
    m_view.goToDifference(layer, place);
}

void ViewCommands::choosePicture()
{
    QString path = QFileDialog::getSaveFileName(&m_view, tr("Save picture"), QString(),
                                                tr("Pictures (%1)").arg(pictureFilePatterns().join(' ')));
    if (path.isEmpty())
        return;
    if (QFileInfo(path).suffix().isEmpty())
        path += ".png";
    const QString failure = savePicture(m_view.board(), path);
    if (!failure.isEmpty())
        emit fileFailed(path, failure);
}

void ViewCommands::print()
{
    if (!m_printer) {
        m_printer = std::make_unique<QPrinter>(QPrinter::HighResolution);
        m_printer->setPageOrientation(QPageLayout::Landscape);
    }
    const BoardView &board = m_view.board();
    const QString job = QFileInfo(m_job).fileName();
    const QString title = job.isEmpty() ? board.title() : job + ": " + board.title();
    PrintDialog dialog(board, *m_printer, title, m_view.window());
    if (dialog.exec() != QDialog::Accepted)
        return;
    const QString failure =
        printView(board, *m_printer, pageLayout(board, *m_printer, dialog.factor()), dialog.title());
    if (failure.isEmpty())
        return;
    emit fileFailed(m_printer->outputFileName(), failure);
    m_printer.reset(); // Qt may take one that has failed for still printing
}
