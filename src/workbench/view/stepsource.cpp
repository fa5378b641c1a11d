#include "workbench/view/stepsource.h"

#include <glog/logging.h>

const cam::StepParts *StepContents::partsOf(const std::string &step) const
{
    for (std::size_t i = 0; i < steps.steps.size(); ++i) {
        if (steps.steps[i].name == step)
            return &parts[i];
    }
    return nullptr;
}

const cam::ComponentSide *StepContents::sideOf(const std::string &step, const std::string &layer) const
{
    const cam::StepParts *found = partsOf(step);
    if (!found)
        return nullptr;
    for (const cam::ComponentSide &side : found->sides) {
        if (side.layer == layer)
            return &side;
    }
    return nullptr;
}

cam::Job StepSource::job() const
{
    return cam::Job(std::filesystem::u8path(m_job.toStdString()));
}

std::shared_ptr<const StepContents> StepSource::ready() const
{
    const std::lock_guard<std::mutex> lock(m_access);
    return m_contents;
}

std::shared_ptr<const StepContents> StepSource::read(const std::function<void()> &check)
{
    const std::lock_guard<std::mutex> reading(m_reading);
    if (const auto known = ready())
        return known;
    const cam::Job job = this->job();
    auto contents = std::make_shared<StepContents>();
    std::vector<std::string> failures;
    contents->types = cam::readAttributeTypes(job, failures);
    contents->steps = job.readSteps(m_step.toStdString());
    for (const cam::StepImage &step : contents->steps.steps) {
        contents->parts.push_back(cam::readStepParts(job, step.name, contents->types, check));
        const std::vector<std::string> &more = contents->parts.back().failures;
        failures.insert(failures.end(), more.begin(), more.end());
    }
    for (const std::string &failure : failures)
        LOG(WARNING) << "components, nets and attributes: " << failure;
    const std::lock_guard<std::mutex> lock(m_access);
    m_contents = contents;
    return m_contents;
}
