// The background job that unpacks one job archive into the job root: the gzip stream into a tar, the tar into
// the job's folder. Its parameters and results are class statics, which the user-interface thread writes
// before the start and reads after the end.
#pragma once

#include "run/backgroundjob.h"

#include <string>

class UnzipProgress : public BackgroundJob
{
public:
    UnzipProgress();
    // Waits until a running task has ended.
    ~UnzipProgress();

    // Starts the work on a new thread; throws std::system_error when there is none.
    void do_process();
    // Whether the task has ended, or none was started; waits a microsecond at most.
    bool isFinish();
    // 0 while the work runs, 100 after a success, -1 after a failure.
    double get_value();

    static std::wstring sourcePath;      // of the archive, with backslashes
    static std::wstring tarName;         // in: the tar's file name; out: the name of the job's folder
    static std::wstring unzipedFilePath; // the job root, with a backslash at its end
    static std::string removeCmd;        // parameters of the clean-up command
    // In: the folder of the job root that may be unpacked over, empty for none; out: empty when none was.
    static std::wstring mergeFolder;

private:
    static void process(ORVEX::COMMON::progress_value<void> *progress);
    static void unpack(ORVEX::COMMON::progress_value<void> *progress);
    static void mysystem(const std::string &file, const std::string &parameters);
};
