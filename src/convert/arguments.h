// The command line of camconvert, taken apart and checked.
#pragma once

#include "cam/export/exportrequest.h"
#include "convert/layerchoice.h"
#include "convert/plot.h"

#include <QString>
#include <QStringList>

#include <vector>

namespace convert {

// Documented exit codes. A run that a signal has ended has 128 and the signal's number.
enum ExitCode { Done = 0, SomethingFailed = 1, UsageError = 2, NotProven = 3 };

// Which layers of which jobs, as which files, and how they are changed on the way.
struct LayerArguments
{
    QStringList jobs; // archives and job folders, as given
    std::vector<cam::FileFormat> formats;
    QString folder; // below which the files are
    QString step;   // empty: the job's first one
    LayerChoice layers;
    QString namePattern;
    cam::ExportOptions options; // but for file and report
    bool positive = false;
    QString json; // a file, "-" for the standard output; empty: none
    int threads = 1;
    double megabytes = 0.0; // that layers at work may take together, by estimate
};

struct ExportArguments : LayerArguments
{
    bool resume = false;
    bool verify = false; // read each file back and compare it with its layer
};

struct DiffArguments
{
    QString first, second;
    bool areFiles = false; // GDSII or Gerber; else jobs
    QString step;
    LayerChoice layers;
    QString picture; // file name; empty: none
    PictureSize size;
    QString json; // as above
    int threads = 1;
    double megabytes = 0.0;
};

struct PictureArguments
{
    QString job;
    QString file; // ends in .png or .svg
    QString step;
    LayerChoice layers;
    PictureSize size;
    bool mirror = false;
};

struct InfoArguments
{
    QStringList jobs;
    bool asJson = false;
};

struct Arguments
{
    enum class Command { Export, Verify, Diff, Picture, Info, ShowText };
    Command command = Command::ShowText;
    QString text;  // of ShowText: help or version
    QString error; // not empty: the command line is wrong, and nothing else counts
    ExportArguments exporting;
    LayerArguments verifying;
    DiffArguments diff;
    PictureArguments picture;
    InfoArguments info;

    // `arguments` as the program was given them, its own name first.
    static Arguments parse(const QStringList &arguments);
};

} // namespace convert
