// camconvert: ODB++ jobs to GDSII and Gerber files, without a window.
#include "convert/exportcommand.h"
#include "convert/infocommand.h"
#include "platform/termination.h"

#include <QCoreApplication>

#include <cstdio>

namespace {

// What ended the run; 0 while nothing has.
std::atomic<int> terminatedBy{0};
std::atomic<bool> cancelled{false};

int run(const convert::Arguments &arguments)
{
    using convert::Arguments;
    if (!arguments.error.isEmpty()) {
        std::fprintf(stderr, "camconvert: %s (--help tells more)\n",
                     arguments.error.toLocal8Bit().constData());
        return convert::UsageError;
    }
    if (arguments.command == Arguments::Command::ShowText) {
        std::fputs(arguments.text.toLocal8Bit().constData(), stdout);
        return convert::Done;
    }
    // Layers at work end at their next report, jobs being unpacked when they are: then private folders and
    // unfinished files are gone.
    platform::onTermination([](int signal) {
        terminatedBy = signal;
        cancelled = true;
    });
    convert::Console console;
    const convert::ExitCode code = arguments.command == Arguments::Command::Export
                                       ? runExport(arguments.exporting, console, cancelled)
                                       : runInfo(arguments.info, console, cancelled);
    return cancelled ? 128 + terminatedBy : code;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName("camconvert");
    QCoreApplication::setApplicationVersion(PROGRAM_VERSION);
    return run(convert::Arguments::parse(QCoreApplication::arguments()));
}
