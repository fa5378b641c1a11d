// The workbench program: settles the platform and the settings, loads the plug-ins, and shows the window or
// runs the batch.
#include "pluginmanger/pluginhost.h"
#include "workbench/batch/batchrun.h"
#include "workbench/commandline.h"
#include "workbench/hostsettings.h"
#include "workbench/logcollector.h"
#include "workbench/mainwindow.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QFont>
#include <QLibraryInfo>
#include <QTimer>

#include <glog/logging.h>

#include <cstdio>
#include <cstring>
#include <memory>

namespace {

void printLine(std::FILE *stream, const QString &line)
{
    std::fprintf(stream, "%s\n", line.toLocal8Bit().constData());
    std::fflush(stream);
}

bool hasArgument(int argc, char **argv, const char *wanted)
{
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], wanted) == 0)
            return true;
    }
    return false;
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
    std::unique_ptr<RunFolder> runFolder;
    if (!options.jobFolder.isEmpty()) {
        runFolder.reset(new RunFolder(options.jobFolder));
    } else {
        hostsettings::writeDefaults();
        hostsettings::mendJobFolder();
    }

    LogCollector log;
    if (options.batch) {
        QObject::connect(&log, &LogCollector::logged, &log, [&options](const LogRecord &record) {
            if (options.verbose || record.level >= LogRecord::Warning)
                printLine(stderr,
                          record.source.isEmpty() ? record.text : record.text + " [" + record.source + "]");
        });
    }
    auto window = std::make_unique<MainWindow>(log);
    window->show();
    PluginHost::instance().loadFolder(QCoreApplication::applicationDirPath() + "/plugins");
    window->addPlugins();

    if (!options.openJob.isEmpty())
        window->openJob(options.openJob);

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

} // namespace

int main(int argc, char **argv)
{
    const bool isBatch = hasArgument(argc, argv, "--batch");
    if (isBatch)
        drawOffscreen(argv[0]);
    QApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    startLog(argv[0]);
    QApplication application(argc, argv);
    QApplication::setApplicationName("workbench");
    QApplication::setApplicationVersion("1.0");

    // This platform has no font of its own choice; its stand-in is larger than any desktop's.
    if (QApplication::platformName() == "offscreen")
        QApplication::setFont(QFont("DejaVu Sans", 9));

    const CommandLine options = CommandLine::parse(QCoreApplication::arguments());
    if (options.showHelp) {
        printLine(stdout, options.help);
        return 0;
    }
    if (options.showVersion) {
        printLine(stdout, "workbench " + QApplication::applicationVersion());
        return 0;
    }
    if (!options.error.isEmpty()) {
        printLine(stderr, "workbench: " + options.error + " (--help lists the options)");
        return 2;
    }
    return runProgram(application, options);
}
