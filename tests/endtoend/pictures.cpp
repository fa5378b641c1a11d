// Takes the user guide's pictures, and those in which every window is looked at in other languages, colours
// and sizes:
//
//   pictures FOLDER [--language NAME] [--dark] [--size WIDTHxHEIGHT]
//
// It imports the sample job into a temporary folder, exports it, and saves each window as a picture in
// FOLDER. Sizes are those of the main window; QT_SCALE_FACTOR does what it does elsewhere.
#include "pluginmanger/pluginhost.h"
#include "workbench/exportdialog.h"
#include "workbench/hostsettings.h"
#include "workbench/languages.h"
#include "workbench/layerpanel.h"
#include "workbench/logcollector.h"
#include "workbench/mainwindow.h"
#include "workbench/manual.h"
#include "workbench/settingsdialog.h"
#include "workbench/shortcutsdialog.h"
#include "workbench/view/boardview.h"
#include "workbench/view/graphicview.h"
#include "workbench/view/printdialog.h"
#include "workbench/windowmemory.h"

#include <QAction>
#include <QApplication>
#include <QCommandLineParser>
#include <QDirIterator>
#include <QDockWidget>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPrinter>
#include <QStyleFactory>
#include <QTableWidget>
#include <QTimer>
#include <QToolButton>
#include <QTreeWidget>
#include <QtTest>

#include <cstdio>
#include <functional>
#include <stdexcept>

namespace {

struct Failure : std::runtime_error
{
    explicit Failure(const QString &text) : std::runtime_error(text.toStdString()) {}
};

// A folder of this run's own, whose name looks well in pictures: "cam" in the system's folder for such,
// "cam-2" while another run has that one.
class WorkFolder
{
public:
    WorkFolder()
    {
        QString name = "cam";
        for (int number = 2; !QDir::temp().mkdir(name); ++number) {
            if (number > 99)
                throw Failure("no folder can be made in " + QDir::tempPath());
            name = QString("cam-%1").arg(number);
        }
        m_dir = QDir(QDir::temp().filePath(name));
        QDir::setCurrent(m_dir.path());
    }
    ~WorkFolder()
    {
        QDir::setCurrent(QDir::tempPath());
        m_dir.removeRecursively();
    }
    WorkFolder(const WorkFolder &) = delete;
    WorkFolder &operator=(const WorkFolder &) = delete;

    QString filePath(const QString &name) const { return m_dir.filePath(name); }

private:
    QDir m_dir;
};

void pass(int ms)
{
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < ms)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 50);
}

void wait(const std::function<bool()> &until)
{
    QElapsedTimer timer;
    timer.start();
    while (!until()) {
        if (timer.elapsed() > 120000)
            throw Failure("the workbench does not get on");
        pass(50);
    }
}

void settle()
{
    pass(400);
}

QPalette darkPalette()
{
    QPalette palette(QColor(53, 53, 53), QColor(42, 42, 42));
    palette.setColor(QPalette::Window, QColor(53, 53, 53));
    palette.setColor(QPalette::Base, QColor(35, 35, 35));
    palette.setColor(QPalette::AlternateBase, QColor(45, 45, 45));
    palette.setColor(QPalette::Highlight, QColor(42, 130, 218));
    palette.setColor(QPalette::Link, QColor(90, 170, 255));
    palette.setColor(QPalette::ToolTipBase, QColor(53, 53, 53));
    palette.setColor(QPalette::ToolTipText, Qt::white);
#if QT_VERSION >= QT_VERSION_CHECK(5, 12, 0)
    palette.setColor(QPalette::PlaceholderText, QColor(160, 160, 160));
#endif
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, QColor(127, 127, 127));
    return palette;
}

class Pictures
{
public:
    explicit Pictures(const QString &folder) : m_folder(folder) { QDir().mkpath(folder); }
    void take(QWidget *window, const QString &name) const
    {
        QImage image;
        QImage before;
        // The view is drawn piece by piece, in the background.
        for (int i = 0; i < 20 && (image.isNull() || image != before); ++i) {
            before = image;
            settle();
            image = window->grab().toImage();
        }
        if (!image.save(m_folder + "/" + name + ".png"))
            throw Failure(m_folder + "/" + name + ".png cannot be written");
    }

private:
    QString m_folder;
};

void copyFolder(const QString &from, const QString &to)
{
    QDirIterator files(from, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString target = to + "/" + QDir(from).relativeFilePath(files.next());
        QDir().mkpath(QFileInfo(target).path());
        QFile::copy(files.filePath(), target);
    }
}

ExportDialog openExport(MainWindow &window)
{
    window.pressButton(window.exportAction());
    wait([] { return ExportDialog::find().window() != nullptr; });
    return ExportDialog::find();
}

// Half a millimetre upwards in the file, every tenth flash.
bool movePads(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadWrite))
        return false;
    QStringList lines = QString::fromLatin1(file.readAll()).split('\n');
    int flashes = 0;
    for (QString &line : lines) {
        const int y = line.indexOf('Y');
        if (line.endsWith("D03*") && y >= 0 && ++flashes % 10 == 1)
            line.replace(y + 1, line.size() - y - 5,
                         QString::number(line.mid(y + 1, line.size() - y - 5).toLongLong() + 500000));
    }
    return file.resize(0) && file.write(lines.join('\n').toLatin1()) > 0;
}

void show(MainWindow &window, const char *dock)
{
    auto *widget = window.findChild<QDockWidget *>(dock);
    widget->show();
    widget->raise();
}

// Copper with the drills over it, what is measured between a pad and a hole, a pad with its net, components,
// what is printed, and what is found.
void takeViews(MainWindow &window, const Pictures &pictures)
{
    auto *view = window.findChild<GraphicView *>();
    BoardView &board = view->board();
    const auto wholeView = [&] {
        wait([&] { return window.isViewDrawn(); });
        return board.viewport();
    };
    const auto trigger = [&window](const char *name) { window.findChild<QAction *>(name)->trigger(); };
    trigger("DrillOverCopper");
    wholeView();
    pictures.take(&window, "viewing");
    const cam::Box frame = board.frame();
    const auto placeOf = [&frame](double across, double up) {
        return cam::Point{frame.low.x + across * (frame.high.x - frame.low.x),
                          frame.low.y + up * (frame.high.y - frame.low.y)};
    };
    const drawing::Viewport before = wholeView();
    board.setViewport(placeOf(0.30, 0.35), before.pixel / 2.5);
    wholeView();
    trigger("Measure");
    for (const cam::Point place : {placeOf(0.186, 0.317), placeOf(0.328, 0.358)})
        QTest::mouseClick(&board, Qt::LeftButton, Qt::NoModifier, board.toScreen(place).toPoint());
    pictures.take(&window, "measuring");
    trigger("Measure");
    auto *layers = window.findChild<LayerPanel *>();
    trigger("TopSide");
    for (const QString &layer : layers->layerNames())
        layers->setShown(layer, layer == "TOP" || layer == "SILK_TOP");
    wholeView();
    QTest::mouseClick(&board, Qt::LeftButton, Qt::NoModifier,
                      board.toScreen(placeOf(0.2196, 0.478)).toPoint());
    pictures.take(&window, "inspecting");
    QTest::keyClick(&board, Qt::Key_Escape);
    for (const QString &layer : layers->layerNames())
        layers->setShown(layer, layer == "COMP_+_TOP" || layer == "MASK_TOP");
    view->fitBoard();
    wholeView();
    QTest::mouseClick(&board, Qt::LeftButton, Qt::NoModifier, board.toScreen(placeOf(0.45, 0.5)).toPoint());
    pictures.take(&window, "components");
    QTest::keyClick(&board, Qt::Key_Escape);
    trigger("DrillOverCopper");
    view->fitBoard();
    wholeView();
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setPageOrientation(QPageLayout::Landscape);
    PrintDialog print(board, printer, "beacon: " + board.title(), &window);
    print.show();
    pictures.take(&print, "print");
    print.close();
    layers->chooseLayer("TOP");
    trigger("Find");
    auto *search = window.findChild<QDockWidget *>("SearchDock");
    auto *line = search->findChild<QLineEdit *>();
    QTest::keyClicks(line, "led4");
    wait([&] { return search->findChild<QTreeWidget *>()->topLevelItemCount() > 0; });
    settle();
    QTest::keyClick(line, Qt::Key_Return);
    pictures.take(&window, "searching");
    QTest::keyClick(line, Qt::Key_Escape);
    view->fitBoard();
    window.openJob("beacon"); // as it was
    wait([&] { return !window.isReadingLayer(); });
}

int takeAll(const QCommandLineParser &parser)
{
    if (parser.isSet("dark"))
        QApplication::setPalette(darkPalette());
    const Pictures pictures(QFileInfo(parser.positionalArguments().value(0, "pictures")).absoluteFilePath());

    const WorkFolder work;
    copyFolder(SAMPLE_JOBS "/beacon", work.filePath("jobs/beacon"));
    copyFolder(SAMPLE_JOBS "/beacon", work.filePath("jobs/beacon_rev_a"));
    QDir().mkpath("export");
    HostSettings settings;
    settings.jobFolder = work.filePath("jobs");
    settings.outputFolder = work.filePath("export");
    settings.exportDatabase = work.filePath("exports.sqlite");
    hostsettings::write(settings);

    LogCollector log;
    WindowMemory memory(work.filePath("workbench.ini"));
    Languages languages;
    languages.choose(parser.value("language"));
    auto window = std::make_unique<MainWindow>(log);
    window->keepToScreen();
    window->remember(memory);
    window->offerLanguages(languages);
    const QStringList wanted = parser.value("size").split('x');
    window->resize(wanted.value(0).toInt(), wanted.value(1).toInt());
    window->show();
    // By a short way: the log shows it.
    QFile::link(QCoreApplication::applicationDirPath(), work.filePath("bin"));
    PluginHost::instance().loadFolder(work.filePath("bin/plugins"));
    window->addPlugins();
    window->openJob("beacon");
    wait([&] { return !window->isReadingLayer(); });
    pictures.take(window.get(), "workbench");
    takeViews(*window, pictures);

    window->resizeDocks({window->findChild<QDockWidget *>("LogDock")}, {260}, Qt::Vertical);
    ExportDialog dialog = openExport(*window);
    if (!dialog.problem().isEmpty())
        throw Failure(dialog.problem());
    for (int row = 0; row < dialog.rowCount(); ++row)
        dialog.setRow(row, LayerChange());
    pictures.take(dialog.window(), "export-dialog");
    dialog.pressOk();
    wait([&] { return !window->exports().isRunning(); });
    pictures.take(dialog.window(), "export-dialog-done");
    dialog.pressCancel();
    wait([] { return !ExportDialog::find().window(); });
    wait([&] { return !window->verifier().isRunning(); });
    pictures.take(window.get(), "results");

    const auto exportGerber = [&window](const QStringList &layers, const LayerChange &change) {
        ExportDialog open = openExport(*window);
        for (int row = 0; row < open.rowCount(); ++row) {
            if (layers.contains(open.layer(row)))
                open.setRow(row, change);
        }
        open.chooseFormat(".gerber");
        open.pressOk();
        wait([&] { return !window->exports().isRunning(); });
        open.pressCancel();
        wait([] { return !ExportDialog::find().window(); });
        wait([&] { return !window->verifier().isRunning(); });
    };
    QDir().mkpath("export/OX/beacon/top.gerber"); // a folder is in the way of a file
    LayerChange turned;
    turned.angle = 90.0;
    turned.mirror = true;
    exportGerber({"TOP", "BOTTOM"}, turned);
    pictures.take(window.get(), "results-failed");
    QTest::mouseClick(window->findChild<QToolButton *>("Dismiss"), Qt::LeftButton);

    bool isMoved = false;
    QObject::connect(&window->exports(), &ExportWatch::changed, window.get(), [&] {
        ExportResults written = window->exports().results();
        const LayerResult *bottom = written.find("bottom");
        if (!isMoved && bottom && bottom->isGood())
            isMoved = movePads(bottom->file);
    });
    exportGerber({"BOTTOM", "MASK_BOT", "SILK_BOT"}, LayerChange());
    auto *results = window->findChild<QTreeWidget *>("ExportResults");
    for (QTreeWidgetItem *layer : results->findItems("BOTTOM", Qt::MatchFixedString)) {
        results->scrollToItem(layer, QAbstractItemView::PositionAtTop);
        results->setCurrentItem(layer->child(0));
        emit results->itemActivated(layer->child(0), 0);
    }
    pictures.take(window.get(), "differences");

    show(*window, "HistoryDock");
    settle();
    auto *history = window->findChild<QTreeWidget *>("ExportHistory");
    history->setCurrentItem(history->topLevelItem(0));
    history->topLevelItem(0)->setExpanded(true);
    pictures.take(window.get(), "history");
    show(*window, "LogDock");
    pictures.take(window.get(), "log");

    const auto takeDialog = [&pictures](QDialog &&open, const char *name) {
        open.show();
        pictures.take(&open, name);
    };
    takeDialog(SettingsDialog(hostsettings::read(), window.get()), "settings");
    settings.jobFolder = "/my jobs";
    settings.outputFolder.clear();
    settings.resize = 12.5;
    takeDialog(SettingsDialog(settings, window.get()), "settings-warned");
    takeDialog(ShortcutsDialog(*window, window.get()), "keyboard");
    Manual::open(window.get());
    pictures.take(window->findChild<Manual *>(), "manual");
    for (QAction *action : window->menuBar()->actions()) {
        QMenu *menu = action->menu();
        menu->popup(QPoint(0, 0));
        pictures.take(menu, "menu-" + QString::number(window->menuBar()->actions().indexOf(action)));
        menu->close();
    }
    window.reset();
    PluginHost::instance().destroyPlugins();
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    QApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QApplication application(argc, argv);
    QApplication::setApplicationVersion("2.28.54");
    QApplication::setStyle(QStyleFactory::create("Fusion"));
    QApplication::setFont(QFont("DejaVu Sans", 9));
    QCommandLineParser parser;
    const QCommandLineOption language("language", "of the windows", "name", "en");
    const QCommandLineOption dark("dark", "with light text on dark windows");
    const QCommandLineOption size("size", "of the main window", "width x height", "1240x780");
    parser.addOptions({language, dark, size});
    parser.addPositionalArgument("folder", "where the pictures go");
    parser.process(application);
    try {
        return takeAll(parser);
    } catch (const Failure &failure) {
        fprintf(stderr, "pictures: %s\n", failure.what());
        return 1;
    }
}
