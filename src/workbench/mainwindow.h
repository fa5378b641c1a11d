// The workbench: the plug-ins' toolbar, the jobs, the layers of the open job, and the log.
#pragma once

#include "workbench/exporthistory.h"
#include "workbench/exportverifier.h"
#include "workbench/exportwatch.h"
#include "workbench/hostmessages.h"

#include <QMainWindow>

#include <memory>

class GraphicView;
class HistoryPane;
class ImportFolder;
class JobListPanel;
class Languages;
class LayerPanel;
class LogCollector;
class LogPane;
class MessageBar;
class ResultsPane;
class Search;
class WindowMemory;
class ViewCommands;
class WindowPlacer;

class QAction;
class QDockWidget;
class QFileInfo;
class QLabel;
class QToolBar;

class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit MainWindow(LogCollector &log, QWidget *parent = nullptr);
    ~MainWindow() override;

    // From now on this window, and those that plug-ins open, keep to the screen. Without it they have the
    // size that they ask for, as pictures of them want it.
    void keepToScreen();

    // Restores what `memory`, which outlives this window, has kept, and has it keep what comes.
    void remember(WindowMemory &memory);
    // Has the user choose among `languages`, which outlive this window. After remember().
    void offerLanguages(Languages &languages);
    // The job that was open when the window was closed, where there still is one.
    void openLastJob();
    // Says it above the view; what has failed stays until it is dismissed.
    void tell(const QString &text);
    void tellWarning(const QString &text);
    void tellFailure(const QString &text);

    // Asks every loaded plug-in for its actions and puts them into the toolbar. Messages that plug-ins send
    // meanwhile are taken in.
    void addPlugins();

    // The toolbar's actions of the plug-in that imports and exports, or null.
    QAction *importAction() const { return m_importAction; }
    QAction *exportAction() const { return m_exportAction; }
    // Presses the toolbar's button of `action`.
    void pressButton(QAction *action);

    QString openJobName() const { return m_openJob; }
    QString jobRoot() const { return m_jobRoot; }
    QStringList jobNames() const;
    bool chooseStep(const QString &step);
    // What became of the last export.
    const ExportWatch &exports() const { return m_exports; }
    // What the comparison of its files with their layers has found.
    const ExportVerifier &verifier() const { return m_verifier; }
    // Exports are not compared with their layers any more, for whom nobody reads what is found.
    void doNotVerify() { m_verifies = false; }
    // Whether a layer is being read for the view.
    bool isReadingLayer() const;
    // Whether the view shows all that is to be seen.
    bool isViewDrawn() const;

public slots:
    void openJob(const QString &name);
    void refreshJobs();

signals:
    // A plug-in has taken in a file; the jobs have been listed anew and `job`, which came of it, is open. An
    // empty name says that the file holds no job.
    void fileImported(const QString &path, const QString &job);

protected:
    void closeEvent(QCloseEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void buildPanels();
    void buildMenus();
    void setJobFolder(const QString &folder);
    void takeImportedFile(const QString &path);
    void takeLayerFile(const QFileInfo &file);
    void showExportResults();
    void showProofs();
    void keepVerdicts();
    void showPlace(const QString &layer, int place);
    void compareFiles(const ExportResults &files, const QStringList &unknown);
    void takeExportReport(const QString &folder, const QStringList &layers);
    void readOpenJobAgain();
    void renameJob(const QString &name);
    void removeJob(const QString &name);
    void repeatExport(const PastExport &past);
    void fillRepeatedExport();
    void updateContext();
    void editSettings();
    // Has plug-ins read the settings, which they do once in their lives.
    void restartPlugins();
    void showResize();
    void showAbout();

    LogCollector &m_log;
    HostMessages m_messages;
    ExportWatch m_exports;
    ExportVerifier m_verifier;
    ExportResults m_compared; // what the verifier compares
    bool m_verifies = true;
    int m_keptVerdicts = 0; // of the verifier's proofs
    std::unique_ptr<WindowPlacer> m_placer;
    WindowMemory *m_memory; // never null
    ImportFolder *m_importFolder = nullptr;
    JobListPanel *m_jobs = nullptr;
    LayerPanel *m_layers = nullptr;
    GraphicView *m_view = nullptr;
    ViewCommands *m_viewCommands = nullptr;
    LogPane *m_logPane = nullptr;
    ResultsPane *m_results = nullptr;
    Search *m_search = nullptr;
    HistoryPane *m_history = nullptr;
    PastExport m_repeated; // waits for its Export dialog to open; without layers nothing does
    QDockWidget *m_resultsDock = nullptr;
    MessageBar *m_messageBar = nullptr;
    QToolBar *m_toolBar = nullptr;
    double m_resize = 0.0;            // nanometres, as plug-ins have read it
    QLabel *m_resizeStatus = nullptr; // seen while exports change the size of features
    QLabel *m_placeStatus = nullptr;
    QLabel *m_jobStatus = nullptr;    // at the right end of the status bar
    QAction *m_importPlace = nullptr; // plug-ins' actions stand before it in the menu
    QList<QAction *> m_pluginActions;
    QAction *m_importAction = nullptr;
    QAction *m_exportAction = nullptr;

    QString m_jobFolder; // as the plug-in announced it
    QString m_jobRoot;   // where the jobs are: absolute and local
    QString m_openJob;
};
