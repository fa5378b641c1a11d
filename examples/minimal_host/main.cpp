// The smallest host of the plug-in: a window with its two actions, and an answer to its question for the open
// job.
//
//     minimal_host FOLDER/JOB           Export lists the layers of the unpacked job JOB
//     minimal_host FOLDER/JOB --check   presses Export, prints what the dialog lists, and ends
#include <cam/jobroot.h>
#include <plugin/interface/exportjobinfo.h>
#include <plugin/interface/messages.h>
#include <pluginmanger/pluginhost.h>

#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QFileInfo>
#include <QMainWindow>
#include <QTableWidget>
#include <QTimer>
#include <QToolBar>

#include <cstdio>

namespace {

void sendJobContext(const QFileInfo &job)
{
    ExportJobInfo context;
    context.jobName = job.fileName();
    context.folderPath = job.absoluteFilePath();
    PluginMetaData answer;
    answer.fromPlugin = messages::graphicView;
    answer.toPlugin = messages::fileProcess;
    answer.msgType = messages::JobContext;
    answer.payload = &context; // the plug-in keeps nothing of it
    PluginHost::instance().deliver(answer);
}

// Returns the program's exit code: 0 when there is an Export dialog that lists layers.
int printDialog()
{
    for (QWidget *window : QApplication::topLevelWidgets()) {
        const auto *table = window->isVisible() ? window->findChild<QTableWidget *>() : nullptr;
        if (!table)
            continue;
        std::printf("%s: %d layers\n", window->metaObject()->className(), table->rowCount());
        return table->rowCount() > 0 ? 0 : 1;
    }
    std::fputs("minimal_host: no Export dialog\n", stderr);
    return 1;
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() < 2) {
        std::fputs("usage: minimal_host FOLDER/JOB [--check]\n", stderr);
        return 2;
    }
    const QFileInfo job(QDir::cleanPath(arguments[1]));
    ORVEX::HOST::set_job_root(job.absolutePath().toStdString());

    // One click on Export asks several times, before it is done with the click: it gets one answer,
    // afterwards.
    PluginHost &host = PluginHost::instance();
    QTimer answer;
    answer.setSingleShot(true);
    QObject::connect(&answer, &QTimer::timeout, [&job] { sendJobContext(job); });
    for (const char *name : {messages::graphicView, messages::jobList})
        host.addReceiver(name, [&answer](const PluginMetaData &message) {
            if (message.msgType == messages::RequestJobContext)
                answer.start(0);
        });

    QString error;
    if (!host.load(PLUGIN_FILE, &error)) {
        std::fprintf(stderr, "minimal_host: %s\n", qPrintable(error));
        return 1;
    }
    QMainWindow window;
    FileProInterface *plugin = host.plugins().first().plugin;
    QAction *exportAction = plugin->InitExportTool();
    window.addToolBar("File")->addActions({plugin->InitImportTool(&window), exportAction});
    window.show();
    if (arguments.contains("--check")) {
        exportAction->trigger();
        QTimer::singleShot(500, [] { QApplication::exit(printDialog()); });
    }
    return QApplication::exec();
}
