// camconvert: ODB++ jobs to GDSII and Gerber files, without a window.
#include "convert/diffcommand.h"
#include "convert/exportcommand.h"
#include "convert/infocommand.h"
#include "convert/picturecommand.h"
#include "convert/verifycommand.h"
#include "platform/termination.h"
#include "version.h"

#include <QCoreApplication>

#include <cstdio>

namespace {

// What ended the run; 0 while nothing has.
std::atomic<int> terminatedBy{0};
std::atomic<bool> cancelled{false};

convert::ExitCode run(const convert::Arguments &arguments, convert::Console &console)
{
    using convert::Arguments;
    switch (arguments.command) {
    case Arguments::Command::Export:
        return runExport(arguments.exporting, console, cancelled);
    case Arguments::Command::Verify:
        return runVerify(arguments.verifying, console, cancelled);
    case Arguments::Command::Diff:
        return runDiff(arguments.diff, console, cancelled);
    case Arguments::Command::Picture:
        return runPicture(arguments.picture, console, cancelled);
    case Arguments::Command::Info:
        return runInfo(arguments.info, console, cancelled);
    case Arguments::Command::ShowText:
        break;
    }
    std::fputs(arguments.text.toLocal8Bit().constData(), stdout);
    return convert::Done;
}

int run(const convert::Arguments &arguments)
{
    if (!arguments.error.isEmpty()) {
        std::fprintf(stderr, "camconvert: %s (--help tells more)\n",
                     arguments.error.toLocal8Bit().constData());
        return convert::UsageError;
    }
    // Layers at work end at their next report, jobs being unpacked when they are: then private folders and
    // unfinished files are gone.
    platform::onTermination([](int signal) {
        terminatedBy = signal;
        cancelled = true;
    });
    convert::Console console;
    const convert::ExitCode code = run(arguments, console);
    return cancelled ? 128 + terminatedBy : code;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName("camconvert");
    QCoreApplication::setApplicationVersion(FILE_PROCESS_VERSION);
    return run(convert::Arguments::parse(QCoreApplication::arguments()));
}
