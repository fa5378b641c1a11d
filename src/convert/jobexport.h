// The export of one job: its layers as tasks of the pool, and what became of them.
#pragma once

#include "cam/odb/matrix.h"
#include "convert/arguments.h"
#include "convert/jobsource.h"
#include "convert/report.h"
#include "convert/taskpool.h"

#include <atomic>
#include <chrono>
#include <functional>
#include <optional>

namespace convert {

class JobExport
{
public:
    // What all jobs share.
    struct Run
    {
        const ExportArguments &arguments;
        TaskPool &pool;
        const std::atomic<bool> &cancelled;
        std::atomic<int> layersDone{0}, layersInAll{0};
        std::function<void()> advanced; // a layer has been done; called on any thread
    };

    // `finished` is called once, on any thread, unless the run is cancelled.
    JobExport(const QString &path, Run &run, std::function<void(const JobReport &)> finished);

    // Unpacks the job and adds its layers to the pool.
    void start();

private:
    struct LayerTask
    {
        std::string name;
        bool isNegative = false;        // its polarity
        std::vector<std::size_t> files; // of the report, one a format
    };

    void open();
    void plan();
    std::vector<const cam::MatrixLayer *> chosenLayers(const cam::Matrix &matrix);
    QString fileName(const cam::MatrixLayer &layer, cam::FileFormat format) const;
    void refuseSharedNames();
    double estimatedMegabytes(const std::string &layer) const;
    void exportLayer(const LayerTask &task);
    void write(const cam::LayerImage &image, const cam::ExportRequest &request, FileReport &file) const;
    void layerDone();
    void finish();

    std::optional<JobReport> earlierReport() const;
    QString recordPath() const;
    void writeRecord() const;

    Run &m_run;
    JobSource m_source;
    std::function<void(const JobReport &)> m_finished;
    JobReport m_report;
    std::chrono::steady_clock::time_point m_start;
    std::vector<LayerTask> m_layers;
    std::atomic<std::size_t> m_left{0};
};

} // namespace convert
