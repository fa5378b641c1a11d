#include "workbench/commandline.h"

#include <QCommandLineParser>
#include <QDir>

namespace {

QString absolute(const QString &path)
{
    return path.isEmpty() ? QString() : QDir::cleanPath(QDir::current().absoluteFilePath(path));
}

} // namespace

CommandLine CommandLine::parse(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription("A small desktop CAM host: imports ODB++ jobs, shows their layers and "
                                     "exports them as GDSII and Gerber.");
    const QCommandLineOption batch("batch",
                                   "Import and export without a person, print a line a file, and end.");
    const QCommandLineOption format(
        "format", "Export only in this format: .gds or .gerber. (Both otherwise.)", "format");
    const QCommandLineOption out("out", "Folder of the exported files. (As the settings say otherwise.)",
                                 "folder");
    const QCommandLineOption jobs("jobs", "Folder that holds the jobs. (As the settings say otherwise.)",
                                  "folder");
    const QCommandLineOption settings(
        "settings", "Folder of the settings. (The place that the system has for the user's otherwise.)",
        "folder");
    const QCommandLineOption step("step", "Step to export. (The job's first one otherwise.)", "name");
    const QCommandLineOption overwrite(
        "overwrite", "Answer Yes when a job of the same name may be replaced. (No otherwise.)");
    const QCommandLineOption screenshots("screenshots", "Save pictures of the windows in this folder.",
                                         "folder");
    const QCommandLineOption verbose("verbose", "Print the log as well.");
    const QCommandLineOption open("open", "Open this job at the start.", "job");
    const QCommandLineOption help({"h", "help"}, "Show this text.");
    const QCommandLineOption version("version", "Show the version.");
    parser.addOptions(
        {batch, format, out, jobs, settings, step, overwrite, screenshots, verbose, open, help, version});
    parser.addPositionalArgument("archive", "ODB++ job archives (.tgz) to import.", "[archive.tgz ...]");

    CommandLine line;
    const bool understood = parser.parse(arguments);
    line.help = parser.helpText();
    line.showHelp = parser.isSet(help);
    line.showVersion = parser.isSet(version);
    if (!understood) {
        line.error = parser.errorText();
        return line;
    }
    line.batch = parser.isSet(batch);
    if (parser.isSet(format))
        line.formats = parser.values(format);
    for (const QString &text : line.formats) {
        if (text != export_format::gds && text != export_format::gerber)
            line.error = QString("--format %1: expected .gds or .gerber").arg(text);
    }
    line.outputFolder = absolute(parser.value(out));
    line.jobFolder = absolute(parser.value(jobs));
    line.settingsFolder = absolute(parser.value(settings));
    line.step = parser.value(step);
    line.screenshotFolder = absolute(parser.value(screenshots));
    line.overwrite = parser.isSet(overwrite);
    line.openJob = parser.value(open);
    line.verbose = parser.isSet(verbose);
    for (const QString &archive : parser.positionalArguments())
        line.archives << absolute(archive);
    if (line.error.isEmpty() && line.batch && line.archives.isEmpty())
        line.error = "--batch: expected at least one archive";
    return line;
}
