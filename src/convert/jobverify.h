// The proof of one job's files.
#pragma once

#include "convert/jobrun.h"

namespace convert {

class JobVerify : public JobRun
{
public:
    using JobRun::JobRun;

private:
    void planned(const cam::Matrix &matrix) override;
    void work(const cam::LayerImage &image, const cam::ExportRequest &request, FileReport &file) override;
};

} // namespace convert
