#include "cam/jobroot.h"

#include "cam/settings.h"

#include <mutex>

namespace ORVEX::HOST {

namespace {

// The host sets it on its own thread while an export may run on another.
struct ChosenRoot
{
    std::mutex mutex;
    std::string folder;
};

ChosenRoot &chosenRoot()
{
    static ChosenRoot chosen;
    return chosen;
}

} // namespace

void set_job_root(const std::string &folder)
{
    ChosenRoot &chosen = chosenRoot();
    const std::lock_guard<std::mutex> lock(chosen.mutex);
    chosen.folder = folder;
}

std::string job_root()
{
    ChosenRoot &chosen = chosenRoot();
    {
        const std::lock_guard<std::mutex> lock(chosen.mutex);
        if (!chosen.folder.empty())
            return chosen.folder;
    }
    const std::string configured = cam::hostSetting("Job_Path/path");
    return configured.empty() ? "job" : configured;
}

} // namespace ORVEX::HOST
