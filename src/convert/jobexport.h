// The export of one job.
#pragma once

#include "convert/jobrun.h"

#include <optional>

namespace convert {

class JobExport : public JobRun
{
public:
    JobExport(const QString &path, Shared &run, const ExportArguments &arguments);

private:
    bool mayBeDoneAlready() const override { return m_arguments.resume; }
    bool isDoneAlready() override;
    void work(const cam::LayerImage &image, const cam::ExportRequest &request, FileReport &file) override;
    void completed() override;

    std::optional<JobReport> earlierReport() const;
    QString recordPath() const;
    void writeRecord() const;

    const ExportArguments &m_arguments;
};

} // namespace convert
