// The workbench program: settles the platform and the settings, loads the plug-ins, and shows the window or
// runs the batch.
#include "platform/termination.h"
#include "pluginmanger/pluginhost.h"
#include "version.h"
#include "workbench/batch/batchrun.h"
#include "workbench/commandline.h"
#include "workbench/hostsettings.h"
#include "workbench/languages.h"
#include "workbench/logcollector.h"
#include "workbench/mainwindow.h"
#include "workbench/windowmemory.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QFont>
#include <QLibraryInfo>
#include <QProgressDialog>
#include <QTimer>

#include <glog/logging.h>

#include <cstdio>
#include <memory>
#include <optional>

namespace {

const int usageError = 2;

void printLine(std::FILE *stream, const QString &line)
{
    std::fprintf(stream, "%s\n", line.toLocal8Bit().constData());
    std::fflush(stream);
}

// Where no windows are drawn, Qt on Windows knows the fonts of one folder only, and its own has none.
void useWindowsFonts()
{
    const QByteArray windows = qgetenv("WINDIR");
    if (!windows.isEmpty() && qEnvironmentVariableIsEmpty("QT_QPA_FONTDIR"))
        qputenv("QT_QPA_FONTDIR", windows + "/Fonts");
}

// Nobody looks at the windows of a batch run, and nobody's mouse should get into its way.
void drawOffscreen(const char *program)
{
    if (!qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        return;
    const QString here = QFileInfo(QString::fromLocal8Bit(program)).absolutePath();
    for (const QString &folder : {QLibraryInfo::location(QLibraryInfo::PluginsPath), here}) {
        if (!QDir(folder + "/platforms").entryList({"*qoffscreen*"}).isEmpty()) {
            qputenv("QT_QPA_PLATFORM", "offscreen");
            useWindowsFonts();
            return;
        }
    }
}

// Where the plug-ins are: in an installed tree where the package put them, in a build folder beside the
// program.
QString pluginFolder()
{
    const QDir here(QCoreApplication::applicationDirPath());
    const QString installed = QDir::cleanPath(here.filePath(FILE_PROCESS_PLUGINS_FROM_PROGRAM));
    return QFileInfo::exists(installed) ? installed : here.filePath("plugins");
}

// The log goes to the window and, in a batch run, to the standard error stream; to no file.
void startLog(const char *program)
{
    google::InitGoogleLogging(program);
    for (const google::LogSeverity severity :
         {google::GLOG_INFO, google::GLOG_WARNING, google::GLOG_ERROR, google::GLOG_FATAL})
        google::SetLogDestination(severity, "");
    FLAGS_stderrthreshold = google::GLOG_FATAL;
}

// Destroys what belongs to plug-ins, in the order in which one thing needs the other: their windows, then the
// main window with their actions and file dialogs, then they themselves.
void shutDown(std::unique_ptr<MainWindow> window)
{
    for (QWidget *open : QApplication::topLevelWidgets()) {
        if (open != window.get() && !open->parentWidget())
            open->close();
    }
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    window.reset();
    PluginHost::instance().destroyPlugins();
}

int runProgram(QApplication &application, const CommandLine &options)
{
    const UserFolders folders = options.settingsFolder.isEmpty() ? UserFolders::ofSystem()
                                                                 : UserFolders::below(options.settingsFolder);
    std::unique_ptr<RunFolder> runFolder;
    hostsettings::Entered entered;
    const bool isForOnce = options.batch || !options.jobFolder.isEmpty();
    if (!isForOnce)
        entered = hostsettings::enter(folders);
    if (isForOnce || !entered.failure.isEmpty())
        runFolder.reset(new RunFolder(options.jobFolder, folders));

    LogCollector log;
    if (options.batch) {
        QObject::connect(&log, &LogCollector::logged, &log, [&options](const LogRecord &record) {
            if (options.verbose || record.level >= LogRecord::Warning)
                printLine(stderr,
                          record.source.isEmpty() ? record.text : record.text + " [" + record.source + "]");
        });
    }
    std::unique_ptr<WindowMemory> memory(new WindowMemory); // a batch remembers nothing
    if (!options.batch)
        memory.reset(new WindowMemory(QDir(folders.settings).filePath("workbench.ini")));
    std::unique_ptr<Languages> languages; // a batch speaks English
    if (!options.batch) {
        languages.reset(new Languages);
        languages->choose(memory->language());
    }
    auto window = std::make_unique<MainWindow>(log);
    if (!options.batch) {
        window->keepToScreen();
        window->remember(*memory);
        window->offerLanguages(*languages);
    }
    window->show();
    PluginHost::instance().loadFolder(pluginFolder());
    window->addPlugins();

    if (!options.openJob.isEmpty() && !window->jobNames().contains(options.openJob)) {
        printLine(stderr, QString("workbench: --open %1: there is no such job in %2")
                              .arg(options.openJob, QDir::toNativeSeparators(window->jobRoot())));
        shutDown(std::move(window));
        return usageError;
    }
    if (!options.openJob.isEmpty())
        window->openJob(options.openJob);
    else if (options.archives.isEmpty())
        window->openLastJob();
    if (!entered.failure.isEmpty())
        window->tellFailure(QCoreApplication::translate("main", "Settings of this run will be lost: %1")
                                .arg(entered.failure));
    if (!entered.takenOver.isEmpty())
        window->tell(QCoreApplication::translate("main",
                                                 "The settings of %1 have been taken over. From now on they "
                                                 "are in %2.")
                         .arg(QDir::toNativeSeparators(entered.takenOver),
                              QDir::toNativeSeparators(folders.settings)));

    std::unique_ptr<BatchRun> batch;
    if (options.batch || !options.archives.isEmpty())
        batch.reset(new BatchRun(*window, options, [](const QString &line) { printLine(stdout, line); }));
    if (options.batch)
        QTimer::singleShot(0, batch.get(), [&batch] { QCoreApplication::exit(batch->run()); });
    else if (batch)
        QTimer::singleShot(0, batch.get(), [&batch] {
            batch->importAttended();
            batch.reset();
            QApplication::setAttribute(Qt::AA_DontUseNativeDialogs, false);
        });
    // A native file dialog has no widgets that this program could fill in.
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs, bool(batch));
    const int code = application.exec();
    batch.reset();
    shutDown(std::move(window));
    return code;
}

// What needs no window: help, version, and a command line that makes no sense. It needs no display either.
std::optional<int> answerAtOnce(int argc, char **argv, CommandLine &options)
{
    const QCoreApplication application(argc, argv);
    options = CommandLine::parse(QCoreApplication::arguments());
    if (options.showHelp) {
        printLine(stdout, options.help);
        return 0;
    }
    if (options.showVersion) {
        printLine(stdout, "workbench " + QCoreApplication::applicationVersion());
        return 0;
    }
    if (!options.error.isEmpty()) {
        printLine(stderr, "workbench: " + options.error + " (--help lists the options)");
        return usageError;
    }
    return std::nullopt;
}

// A command of a plug-in that is at work is cancelled where it can be; its own loop ends before the program's
// does.
void endProgram(int signal)
{
    for (QWidget *open : QApplication::topLevelWidgets()) {
        if (auto *progress = qobject_cast<QProgressDialog *>(open))
            progress->cancel();
    }
    QCoreApplication::exit(128 + signal);
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication::setOrganizationName("File_Process");
    QCoreApplication::setApplicationName("workbench");
    QCoreApplication::setApplicationVersion(FILE_PROCESS_VERSION);
    CommandLine options;
    if (const std::optional<int> code = answerAtOnce(argc, argv, options))
        return *code;

    if (options.batch)
        drawOffscreen(argv[0]);
    QApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    startLog(argv[0]);
    QApplication application(argc, argv);
    platform::onTermination([&application](int signal) {
        QMetaObject::invokeMethod(
            &application, [signal] { endProgram(signal); }, Qt::QueuedConnection);
    });

    // This platform has no font of its own choice; its stand-in is larger than any desktop's.
    if (QApplication::platformName() == "offscreen")
        QApplication::setFont(QFont("DejaVu Sans", 9));
    return runProgram(application, options);
}
