// Where the CAM library looks for jobs; for hosts.
#pragma once

#include "run/orvexapi_export.h"

#include <string>

namespace ORVEX::HOST {

// From now on jobs are the folders in `folder` (UTF-8, either kind of slash). An empty text takes that back:
// then the key "Job_Path/path" of the settings file "oxconfig.ini" in the working folder says where they are,
// and without one they are in "job" in the working folder. May be called at any time, from any thread.
ORVEX_API_DECL void set_job_root(const std::string &folder);

// What holds now.
ORVEX_API_DECL std::string job_root();

} // namespace ORVEX::HOST
