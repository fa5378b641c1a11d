// A command's work on one job: its layers as tasks of the pool, and what became of their files. Export and
// verify choose layers and name files alike.
#pragma once

#include "cam/export/exportrequest.h"
#include "cam/odb/matrix.h"
#include "convert/arguments.h"
#include "convert/console.h"
#include "convert/jobsource.h"
#include "convert/report.h"
#include "convert/taskpool.h"

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>

namespace convert {

class JobRun
{
public:
    // What all jobs share.
    struct Shared
    {
        const LayerArguments &arguments;
        TaskPool &pool;
        const std::atomic<bool> &cancelled;
        std::atomic<int> layersDone{0}, layersInAll{0};
        std::function<void()> advanced; // a layer has been done; called on any thread
        // Takes the report of a job; called once for each, on any thread, unless the run is cancelled.
        std::function<void(const JobReport &)> finished;
    };

    JobRun(const QString &path, Shared &run);
    virtual ~JobRun() = default;

    // Unpacks the job and adds its layers to the pool.
    void start();

protected:
    // Whether isDoneAlready() is to be asked, which has to wait for the job's hash.
    virtual bool mayBeDoneAlready() const { return false; }
    // Whether an earlier run has done it all, which the report says then. Asked with the hash known and the
    // job not yet unpacked.
    virtual bool isDoneAlready() { return false; }
    // The files are planned.
    virtual void planned(const cam::Matrix &) {}
    // Does one file. `request` lacks the file; what is thrown becomes the file's error.
    virtual void work(const cam::LayerImage &image, const cam::ExportRequest &request, FileReport &file) = 0;
    // All layers are done.
    virtual void completed() {}

    // As the pattern says, relative to the output folder.
    QString fileName(const QString &step, const cam::MatrixLayer &layer, cam::FileFormat format) const;
    QString pathOf(const FileReport &file) const;
    // Throws Cancelled when somebody wants the program to end.
    std::function<void(double)> report() const;

    Shared &m_run;
    JobReport m_report;

private:
    struct LayerTask
    {
        std::string name;
        bool isNegative = false;        // its polarity
        std::vector<std::size_t> files; // of the report, one a format
    };

    void open();
    void plan(const cam::Matrix &matrix);
    void refuseSharedNames();
    void takeHash();
    void workOn(const LayerTask &task);
    cam::LayerImage readLayer(const cam::ExportRequest &request);
    void partDone();
    void finish();

    JobSource m_source;
    std::chrono::steady_clock::time_point m_start;
    std::vector<LayerTask> m_layers;
    bool m_isDoneAlready = false;
    QString m_hashError;
    // Tasks that have not ended, and layers that have not been read.
    std::atomic<std::size_t> m_left{0}, m_unread{0};
};

// Runs the jobs of the command line side by side. `make` makes the work on a job, `print` shows a report;
// neither is called by two threads at once. Ends early once `cancelled` is set.
ExitCode runJobs(const LayerArguments &arguments, Console &console, const std::atomic<bool> &cancelled,
                 const std::function<std::unique_ptr<JobRun>(const QString &path, JobRun::Shared &run)> &make,
                 const std::function<void(const JobReport &report)> &print);

} // namespace convert
