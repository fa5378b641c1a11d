#include "workbench/mainwindow.h"

#include "cam/jobroot.h"
#include "platform/paths.h"
#include "pluginmanger/pluginhost.h"
#include "run/orvexapi.h"
#include "workbench/archivedrop.h"
#include "workbench/exportdialog.h"
#include "workbench/exportrepeat.h"
#include "workbench/historypane.h"
#include "workbench/hostsettings.h"
#include "workbench/importfolder.h"
#include "workbench/importwindows.h"
#include "workbench/jobcommands.h"
#include "workbench/joblistpanel.h"
#include "workbench/jobstore.h"
#include "workbench/languagemenu.h"
#include "workbench/layerpanel.h"
#include "workbench/logpane.h"
#include "workbench/manual.h"
#include "workbench/messagebar.h"
#include "workbench/parentwidget.h"
#include "workbench/recentfiles.h"
#include "workbench/recentjobs.h"
#include "workbench/resultspane.h"
#include "workbench/search/search.h"
#include "workbench/settingsdialog.h"
#include "workbench/shortcutsdialog.h"
#include "workbench/view/boardview.h"
#include "workbench/view/graphicview.h"
#include "workbench/view/viewcommands.h"
#include "workbench/windowmemory.h"
#include "workbench/windowplacer.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDesktopServices>
#include <QDir>
#include <QDockWidget>
#include <QFileInfo>
#include <QLabel>
#include <QLocale>
#include <QMenuBar>
#include <QMessageBox>
#include <QScreen>
#include <QStatusBar>
#include <QToolBar>
#include <QToolButton>
#include <QUrl>
#include <QVBoxLayout>

#include <glog/logging.h>

#include <algorithm>
#include <cmath>

namespace {

const int messageTime = 8000; // ms that a message stays in the status bar

QDockWidget *dock(const QString &title, const QString &name, QWidget *content)
{
    auto *dock = new QDockWidget(title);
    dock->setObjectName(name);
    dock->setWidget(content);
    return dock;
}

WindowMemory &noMemory()
{
    static WindowMemory memory;
    return memory;
}

} // namespace

MainWindow::MainWindow(LogCollector &log, QWidget *parent)
    : QMainWindow(parent), m_log(log), m_memory(&noMemory())
{
    setWindowTitle(tr("CAM Workbench"));
    buildPanels();
    buildMenus();
    new ArchiveDrop(*this);
    connect(&m_log, &LogCollector::logged, m_logPane, &LogPane::append);
    connect(&m_messages, &HostMessages::jobFolderAnnounced, this, &MainWindow::setJobFolder);
    connect(&m_messages, &HostMessages::fileImported, this, &MainWindow::takeImportedFile);
    connect(&m_messages, &HostMessages::exportReported, this, &MainWindow::takeExportReport);
    connect(&m_messages, &HostMessages::contextRequested, &m_exports, &ExportWatch::watchDialog);
    connect(&m_exports, &ExportWatch::looked, this, [this] {
        fillRepeatedExport();
        m_viewCommands->look();
    });
    connect(&m_exports, &ExportWatch::started, this, [this] {
        m_verifier.stop();
        m_view->showDifferences({});
        m_results->showResults(m_exports.results());
    });
    connect(&m_verifier, &ExportVerifier::changed, this, &MainWindow::showProofs);
    connect(&m_exports, &ExportWatch::changed, this, [this] { m_results->showResults(m_exports.results()); });
    connect(&m_exports, &ExportWatch::ended, this, &MainWindow::showExportResults);
    connect(&m_messages, &HostMessages::exportRefused, this, [this] {
        statusBar()->showMessage(tr("Open a job first, then export its layers."), messageTime);
    });
    resize(1240, 780);
    setJobFolder(QString());
    m_jobs->setFocus();
}

MainWindow::~MainWindow() = default;

void MainWindow::buildPanels()
{
    m_jobs = new JobListPanel;
    m_layers = new LayerPanel;
    m_view = new GraphicView;
    m_logPane = new LogPane;
    m_results = new ResultsPane;
    connect(m_results, &ResultsPane::placeChosen, this, &MainWindow::showPlace);
    m_messageBar = new MessageBar;
    auto *centre = new QWidget;
    auto *layout = new QVBoxLayout(centre);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_messageBar);
    layout->addWidget(m_view, 1);
    setCentralWidget(centre);
    QDockWidget *jobs = dock(tr("Jobs"), "JobsDock", m_jobs);
    QDockWidget *layers = dock(tr("Layers"), "LayersDock", m_layers);
    QDockWidget *log = dock(tr("Log"), "LogDock", m_logPane);
    addDockWidget(Qt::LeftDockWidgetArea, jobs);
    addDockWidget(Qt::LeftDockWidgetArea, layers);
    addDockWidget(Qt::BottomDockWidgetArea, log);
    m_resultsDock = dock(tr("Export results"), "ResultsDock", m_results);
    tabifyDockWidget(log, m_resultsDock);
    m_history = new HistoryPane;
    tabifyDockWidget(log, dock(tr("History"), "HistoryDock", m_history));
    connect(m_history, &HistoryPane::repeatAsked, this, &MainWindow::repeatExport);
    log->raise();
    connect(m_messageBar, &MessageBar::detailsAsked, this, [this] {
        m_resultsDock->show();
        m_resultsDock->raise();
    });
    m_search = new Search(*this, *layers, *m_layers, *m_view);
    setCorner(Qt::BottomLeftCorner, Qt::LeftDockWidgetArea);
    resizeDocks({jobs, log}, {410, 210}, Qt::Horizontal);
    resizeDocks({jobs, layers}, {200, 460}, Qt::Vertical);
    resizeDocks({log}, {210}, Qt::Vertical);

    connect(m_jobs, &JobListPanel::jobChosen, this, [this](const QString &name) {
        if (name == m_openJob)
            readOpenJobAgain();
        else
            openJob(name);
    });
    connect(m_jobs, &JobListPanel::renameAsked, this, &MainWindow::renameJob);
    connect(m_jobs, &JobListPanel::removeAsked, this, &MainWindow::removeJob);
    connect(m_jobs, &JobListPanel::folderAsked, this,
            [this](const QString &name) { JobCommands(this, m_jobRoot).show(name); });
    connect(m_layers, &LayerPanel::stepChosen, this, &MainWindow::updateContext);
    m_view->showText(tr("No job is open."));
}

void MainWindow::buildMenus()
{
    m_toolBar = addToolBar(tr("Plug-ins"));
    m_toolBar->setObjectName("PluginToolBar");
    m_toolBar->setIconSize(QSize(32, 32));
    m_toolBar->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    m_toolBar->setMovable(false);

    QMenu *file = menuBar()->addMenu(tr("&File"));
    m_importPlace = file->addSeparator();
    auto *recent = new RecentJobs(file);
    connect(recent, &QMenu::aboutToShow, this,
            [this, recent] { recent->fill(m_memory->recentJobs(), m_jobRoot, jobNames()); });
    connect(recent, &RecentJobs::jobChosen, this, &MainWindow::openJob);
    file->addMenu(recent);
    auto *recentFiles = new RecentFiles(file);
    connect(recentFiles, &QMenu::aboutToShow, this,
            [this, recentFiles] { recentFiles->fill(m_memory->recentFiles()); });
    connect(recentFiles, &RecentFiles::fileChosen, this,
            [this](const QString &path) { m_viewCommands->openFiles({path}); });
    file->addMenu(recentFiles);
    file->addActions(m_jobs->jobActions());
    file->addSeparator();
    QAction *refresh = file->addAction(tr("&Refresh jobs"), this, [this] {
        refreshJobs();
        readOpenJobAgain();
    });
    refresh->setShortcut(QKeySequence::Refresh);
    refresh->setStatusTip(tr("List the jobs anew, and read the open one again"));
    file->addAction(tr("Show job &folder"), this,
                    [this] { QDesktopServices::openUrl(QUrl::fromLocalFile(m_jobRoot)); });
    file->addSeparator();
    QAction *settings = file->addAction(tr("&Settings ..."), this, &MainWindow::editSettings);
    settings->setObjectName("Settings");

    QMenu *view = menuBar()->addMenu(tr("&View"));
    view->setObjectName("ViewMenu");
    m_viewCommands = new ViewCommands(*m_layers, *m_view, *file, *view, this);
    m_search->addCommands(*view);
    file->addSeparator();
    QAction *quit = file->addAction(tr("&Quit"), this, &QWidget::close);
    quit->setShortcut(Qt::CTRL + Qt::Key_Q); // Windows has no key of its own
    connect(m_viewCommands, &ViewCommands::fileFailed, this,
            [this](const QString &, const QString &reason) { tellFailure(reason); });
    connect(m_viewCommands, &ViewCommands::fileOpened, this,
            [this](const QString &path) { m_memory->addRecentFile(QFileInfo(path).absoluteFilePath()); });
    connect(m_viewCommands, &ViewCommands::comparisonAsked, this, &MainWindow::compareFiles);
    connect(m_view, &GraphicView::fileRemarked, this, &MainWindow::tellWarning);
    for (QDockWidget *dock : findChildren<QDockWidget *>())
        view->addAction(dock->toggleViewAction());
    QMenu *help = menuBar()->addMenu(tr("&Help"));
    help->addAction(tr("&User guide"), this, [this] { Manual::open(this); })
        ->setShortcut(QKeySequence::HelpContents);
    help->addAction(tr("&Keyboard"), this, [this] { ShortcutsDialog(*this, this).exec(); })
        ->setShortcut(Qt::CTRL + Qt::Key_F1);
    help->addSeparator();
    help->addAction(tr("&About"), this, &MainWindow::showAbout);

    m_resizeStatus = new QLabel;
    m_resizeStatus->setObjectName("ResizeStatus");
    m_resizeStatus->setStyleSheet("background: #b06800; color: white; padding: 1px 6px;");
    m_resizeStatus->hide();
    statusBar()->addPermanentWidget(m_resizeStatus);
    m_placeStatus = new QLabel;
    m_jobStatus = new QLabel;
    statusBar()->addPermanentWidget(m_placeStatus);
    connect(m_view, &GraphicView::pointed, m_placeStatus, &QLabel::setText);
    statusBar()->addPermanentWidget(m_jobStatus);
}

void MainWindow::keepToScreen()
{
    if (const QScreen *screen = QGuiApplication::primaryScreen())
        resize(size().boundedTo(screen->availableSize() - QSize(8, 36))); // less a frame
    m_placer.reset(new WindowPlacer(*this));
}

void MainWindow::remember(WindowMemory &memory)
{
    m_memory = &memory;
    m_memory->restoreWindow(*this);
    m_jobs->restoreState(m_memory->state("jobs"));
    m_importFolder = new ImportFolder(*this, memory);
}

void MainWindow::offerLanguages(Languages &languages)
{
    auto *menu = new LanguageMenu(languages, *m_memory, this);
    for (QAction *action : menuBar()->actions()) {
        if (action->menu() && action->menu()->objectName() == "ViewMenu")
            action->menu()->addMenu(menu);
    }
}

void MainWindow::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange) {
        updateContext();
        showResize();
    }
    QMainWindow::changeEvent(event);
}

void MainWindow::openLastJob()
{
    const QString folder = m_memory->recentJobs().value(0);
    if (QFileInfo(folder).path() == m_jobRoot && jobNames().contains(QFileInfo(folder).fileName()))
        openJob(QFileInfo(folder).fileName());
}

void MainWindow::tell(const QString &text)
{
    m_messageBar->show(MessageBar::Kind::Good, text);
}

void MainWindow::tellWarning(const QString &text)
{
    LOG(WARNING) << text.toStdString();
    m_messageBar->show(MessageBar::Kind::Warning, text);
}

void MainWindow::tellFailure(const QString &text)
{
    LOG(ERROR) << text.toStdString();
    m_messageBar->show(MessageBar::Kind::Failure, text);
}

void MainWindow::addPlugins()
{
    for (const LoadedPlugin &plugin : PluginHost::instance().plugins()) {
        if (!setPluginParentWidget(plugin, this))
            LOG(WARNING) << plugin.name.toStdString()
                         << " exports no setParentWidget: its direct messages have no sender";
        QAction *importAction = plugin.plugin->InitImportTool(this);
        QAction *exportAction = plugin.plugin->InitExportTool();
        for (QAction *action : {importAction, exportAction}) {
            if (!action)
                continue;
            action->setParent(this); // plug-ins leave their actions to the host
            m_toolBar->addAction(action);
            menuBar()->actions().first()->menu()->insertAction(m_importPlace, action);
            m_pluginActions << action;
        }
        if (plugin.name == "File_Process") {
            m_importAction = importAction;
            m_exportAction = exportAction;
        }
    }
    // Plug-ins have read the settings now, and keep what they read.
    const HostSettings settings = hostsettings::read();
    m_resize = hostsettings::resizeInNanometres(settings.resize, settings.resizeUnit);
    m_viewCommands->setResize(m_resize);
    showResize();
    m_history->setRecord(settings.exportDatabase);
    if (m_importAction) {
        m_importAction->setShortcut(Qt::CTRL + Qt::Key_I);
        // After the plug-in, which has connected itself first.
        connect(m_importAction, &QAction::triggered, this, [this] { deleteClosedImportWindows(*this); });
    }
    if (m_exportAction)
        m_exportAction->setShortcut(Qt::CTRL + Qt::Key_E);
    if (m_importAction)
        m_importAction->setStatusTip(tr("Take in ODB++ job archives, GDSII, Gerber and drill files"));
    if (m_exportAction)
        m_exportAction->setStatusTip(tr("Write layers of the open job as GDSII or Gerber files"));
    updateContext();
    statusBar()->showMessage(PluginHost::instance().plugins().isEmpty()
                                 ? tr("No plug-in is loaded; the log says why.")
                                 : tr("Ready"),
                             messageTime);
}

void MainWindow::showResize()
{
    m_resizeStatus->setText(hostsettings::resizeText(m_resize, QString()));
    m_resizeStatus->setVisible(m_resize != 0.0);
}

void MainWindow::pressButton(QAction *action)
{
    if (auto *button = qobject_cast<QToolButton *>(m_toolBar->widgetForAction(action)))
        button->click();
}

QStringList MainWindow::jobNames() const
{
    return m_jobs->jobNames();
}

bool MainWindow::isReadingLayer() const
{
    return m_view->isReading();
}

bool MainWindow::isViewDrawn() const
{
    return m_view->isDrawn();
}

bool MainWindow::chooseStep(const QString &step)
{
    return m_layers->setCurrentStep(step);
}

void MainWindow::setJobFolder(const QString &folder)
{
    m_jobFolder = folder;
    refreshJobs();
}

void MainWindow::refreshJobs()
{
    const QString rootBefore = m_jobRoot;
    m_jobRoot = hostsettings::jobRoot(m_jobFolder);
    ORVEX::HOST::set_job_root(QDir::toNativeSeparators(m_jobRoot).toStdString());
    m_jobs->setJobs(m_jobRoot, listJobs(m_jobRoot));
    if (!m_openJob.isEmpty() && (m_jobRoot != rootBefore || !jobNames().contains(m_openJob))) {
        LOG(INFO) << "the open job " << m_openJob.toStdString() << " is gone";
        m_openJob.clear();
        m_layers->showNothing(tr("No job is open."));
        m_viewCommands->closeJob(tr("No job is open."));
    }
    m_jobs->setCurrentJob(m_openJob);
    updateContext();
}

// With the step and the layer that are shown, where the job still has them.
void MainWindow::readOpenJobAgain()
{
    if (m_openJob.isEmpty())
        return;
    const QString step = m_layers->currentStep();
    const ORVEX::API::layer_info *layer = m_layers->currentLayer();
    const QString layerName = layer ? QString::fromStdString(layer->name) : QString();
    openJob(m_openJob);
    m_layers->setCurrentStep(step);
    m_layers->chooseLayer(layerName);
}

void MainWindow::openJob(const QString &name)
{
    std::vector<std::string> names;
    std::vector<ORVEX::API::layer_info> layers;
    const std::string failure = ORVEX::API::get_matrix(name.toStdString(), names, layers);
    QStringList steps;
    for (const std::string &step : names)
        steps << QString::fromStdString(step);
    m_openJob = name;
    m_jobs->setCurrentJob(name);
    m_memory->addRecentJob(m_jobRoot + "/" + name);
    if (failure.empty()) {
        m_layers->showMatrix(name, steps, layers);
        LOG(INFO) << "opened the job " << name.toStdString() << ": " << layers.size() << " layers, "
                  << names.size() << (names.size() == 1 ? " step" : " steps");
    } else {
        m_layers->showNothing(
            tr("The job's layers cannot be read:\n%1").arg(QString::fromStdString(failure)));
        LOG(ERROR) << "the layers of the job " << name.toStdString() << " cannot be read: " << failure;
    }
    updateContext();
    m_view->showText(tr("Choose a layer."));
    m_viewCommands->openJob(QDir(m_jobRoot).filePath(m_openJob));
    m_layers->chooseFirstCopper();
}

void MainWindow::renameJob(const QString &name)
{
    if (name == m_openJob)
        m_view->stopReading(); // an open file keeps its folder's name, on Windows
    const QString newName = JobCommands(this, m_jobRoot).rename(name);
    if (newName.isEmpty())
        return m_viewCommands->showRows(); // and reads on
    const bool wasOpen = name == m_openJob;
    m_memory->removeRecentJob(m_jobRoot + "/" + name);
    refreshJobs();
    if (wasOpen)
        openJob(newName);
}

void MainWindow::removeJob(const QString &name)
{
    if (name == m_openJob)
        m_view->stopReading();
    if (!JobCommands(this, m_jobRoot).remove(name))
        return m_viewCommands->showRows();
    m_memory->removeRecentJob(m_jobRoot + "/" + name);
    refreshJobs();
    statusBar()->showMessage(tr("The job %1 is in the wastebasket.").arg(name), messageTime);
}

void MainWindow::takeImportedFile(const QString &path)
{
    if (m_importFolder)
        m_importFolder->keepFolderOf(path);
    const QStringList before = jobNames();
    refreshJobs();
    const QFileInfo file(path);
    if (file.suffix().toLower() != "tgz") {
        takeLayerFile(file);
        emit fileImported(path, QString());
        return;
    }
    // The folder is named as the archive; when that name was taken, as inside the archive.
    QString job = file.completeBaseName();
    QStringList arrived;
    for (const QString &name : jobNames()) {
        if (!before.contains(name))
            arrived << name;
    }
    if (arrived.size() == 1)
        job = arrived.first();
    if (!jobNames().contains(job)) {
        LOG(ERROR) << path.toStdString() << " was unpacked, but holds no ODB++ job: there is no folder "
                   << m_jobRoot.toStdString() << "/" << job.toStdString() << " with a matrix in it";
        m_messageBar->show(MessageBar::Kind::Failure, tr("%1 holds no ODB++ job.").arg(file.fileName()));
        emit fileImported(path, QString());
        return;
    }
    openJob(job);
    statusBar()->showMessage(tr("Imported %1 as the job %2.").arg(file.fileName(), job), messageTime);
    emit fileImported(path, job);
}

void MainWindow::takeLayerFile(const QFileInfo &file)
{
    LOG(INFO) << file.filePath().toStdString() << " was taken in as a single layer file";
    m_viewCommands->openFiles({file.filePath()});
}

void MainWindow::takeExportReport(const QString &folder, const QStringList &layers)
{
    LOG(INFO) << "exporting " << layers.size() << " layers to " << folder.toStdString() << ": "
              << layers.join(", ").toStdString();
    statusBar()->showMessage(tr("Exporting %n layer(s) to %1", nullptr, layers.size())
                                 .arg(QDir::toNativeSeparators(platform::toLocal(folder))),
                             messageTime);
}

void MainWindow::showExportResults()
{
    const ExportResults &results = m_exports.results();
    m_results->showResults(results);
    statusBar()->clearMessage(); // that layers are being exported
    m_resultsDock->show();
    m_resultsDock->raise();
    m_history->refresh();
    const QString summary = results.summary();
    for (const LayerResult &result : results.layers) {
        if (result.state == LayerResult::State::Cancelled)
            LOG(WARNING) << "the export of " << result.layer.toStdString() << " was cancelled";
    }
    m_messageBar->show(results.isComplete() ? MessageBar::Kind::Good : MessageBar::Kind::Failure, summary,
                       results.folder(), true);
    m_compared = results;
    if (m_verifies)
        m_verifier.start(results);
    m_keptVerdicts = 0;
    showProofs();
}

void MainWindow::compareFiles(const ExportResults &files, const QStringList &unknown)
{
    if (!unknown.isEmpty())
        tellWarning(tr("No layer of the job is named like %1.").arg(unknown.join(", ")));
    if (files.layers.isEmpty() || m_exports.isRunning())
        return;
    m_compared = files;
    m_keptVerdicts = 0;
    m_verifier.start(files);
    m_results->showResults(files);
    m_resultsDock->show();
    m_resultsDock->raise();
    showProofs();
}

void MainWindow::showPlace(const QString &layer, int place)
{
    for (const LayerProof &proof : m_verifier.proofs()) {
        if (proof.layer != layer)
            continue;
        const QString job = QString::fromStdString(proof.request.job.filename().u8string());
        for (const QString &name : jobNames()) {
            if (name != m_openJob && name.compare(job, Qt::CaseInsensitive) == 0)
                openJob(name);
        }
        m_layers->setCurrentStep(QString::fromStdString(proof.request.step));
    }
    m_viewCommands->goToDifference(layer, place);
}

void MainWindow::showProofs()
{
    m_results->showProofs(m_verifier);
    keepVerdicts();
    m_view->showDifferences(m_verifier.proofs());
    if (m_verifier.isRunning() || m_verifier.unproven().isEmpty())
        return;
    // Below the failure of an export before it says which one it is about.
    const bool isBelow = m_messageBar->isFailure() && m_compared.isComplete();
    m_messageBar->show(MessageBar::Kind::Failure,
                       (isBelow ? m_compared.summary() + " " : QString()) + m_verifier.summary(),
                       m_compared.folder(), true);
}

// Each when it is found: the window may be closed before the last one.
void MainWindow::keepVerdicts()
{
    const QVector<LayerProof> &proofs = m_verifier.proofs();
    if (m_keptVerdicts == proofs.size())
        return;
    for (; m_keptVerdicts < proofs.size(); ++m_keptVerdicts) {
        const LayerProof &proof = proofs[m_keptVerdicts];
        for (const LayerResult &result : m_compared.layers) {
            if (result.layer == proof.layer && result.state != LayerResult::State::Found)
                keepVerdict(m_history->record(), result.request, proof.found.isProven());
        }
    }
    m_history->refresh();
}

void MainWindow::repeatExport(const PastExport &past)
{
    QString job;
    for (const QString &name : jobNames()) {
        if (name.compare(past.job, Qt::CaseInsensitive) == 0)
            job = name;
    }
    if (job.isEmpty() || !m_exportAction) {
        tellFailure(tr("There is no job %1 any more.").arg(past.job));
        return;
    }
    if (job != m_openJob)
        openJob(job);
    if (!chooseStep(past.step)) {
        tellFailure(tr("The job %1 has no step %2 any more.").arg(job, past.step));
        return;
    }
    m_repeated = past;
    pressButton(m_exportAction);
}

// The dialog opens when the plug-in has been given the job, later than the button is pressed.
void MainWindow::fillRepeatedExport()
{
    ExportDialog dialog = ExportDialog::find();
    if (m_repeated.layers.isEmpty() || !dialog.window() || !dialog.problem().isEmpty())
        return;
    const PastExport past = m_repeated;
    m_repeated = PastExport();
    const QStringList notes = ExportRepeat::fill(dialog, past, m_resize);
    if (!notes.isEmpty())
        tell(notes.join(' '));
}

void MainWindow::updateContext()
{
    ExportJobInfo context;
    if (!m_openJob.isEmpty()) {
        context.stepName = m_layers->currentStep();
        context.folderPath = m_jobRoot + "/" + m_openJob;
        context.jobName = m_openJob;
    }
    m_messages.setJobContext(context);
    if (m_exportAction)
        m_exportAction->setEnabled(!m_openJob.isEmpty());
    setWindowTitle(m_openJob.isEmpty() ? tr("CAM Workbench") : tr("%1 - CAM Workbench").arg(m_openJob));
    m_jobStatus->setText(m_openJob.isEmpty() ? tr("No job open")
                                             : tr("%1  |  step %2  |  %3 layers")
                                                   .arg(m_openJob, m_layers->currentStep())
                                                   .arg(m_layers->layerCount()));
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    // A plug-in's modal window means that its command is still on the stack, or that the user has choices to
    // lose.
    if (QWidget *modal = QApplication::activeModalWidget()) {
        modal->raise();
        statusBar()->showMessage(tr("Close \"%1\" first.").arg(modal->windowTitle()), messageTime);
        event->ignore();
        return;
    }
    m_memory->keepWindow(*this);
    m_memory->setState("jobs", m_jobs->state());
    QMainWindow::closeEvent(event);
}

void MainWindow::editSettings()
{
    SettingsDialog dialog(hostsettings::read(), this);
    if (dialog.exec() != QDialog::Accepted)
        return;
    if (!hostsettings::write(dialog.values())) {
        tellFailure(
            tr("The settings cannot be written to %1.").arg(QDir::toNativeSeparators(QDir::currentPath())));
        return;
    }
    restartPlugins();
    statusBar()->showMessage(tr("The new settings hold from now on."), messageTime);
}

void MainWindow::restartPlugins()
{
    qDeleteAll(m_pluginActions);
    m_pluginActions.clear();
    m_importAction = m_exportAction = nullptr;
    PluginHost::instance().restartPlugins();
    addPlugins();
    refreshJobs();
}

void MainWindow::showAbout()
{
    QStringList plugins;
    for (const LoadedPlugin &plugin : PluginHost::instance().plugins())
        plugins << plugin.name;
    QMessageBox::about(
        this, tr("About CAM Workbench"),
        tr("<b>CAM Workbench %1</b><p>A small desktop host for CAM plug-ins.</p><p>Plug-ins: %2</p>"
           "<p>Qt %3</p>")
            .arg(QApplication::applicationVersion(), plugins.isEmpty() ? tr("none") : plugins.join(", "),
                 qVersion()));
}
