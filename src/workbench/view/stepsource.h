// What a job says about the open step besides its drawing: components, nets, attributes. Read when it is
// first asked for, by whichever thread asks.
#pragma once

#include "cam/odb/stepparts.h"

#include <QString>

#include <memory>
#include <mutex>
#include <optional>

struct StepContents
{
    cam::LayerImage steps;             // without features: the open step, and those nested in it
    std::vector<cam::StepParts> parts; // of each of them
    cam::AttributeTypes types;

    // By name in lower case; null where there is no such step.
    const cam::StepParts *partsOf(const std::string &step) const;
    // The components of a component layer; null where there are none.
    const cam::ComponentSide *sideOf(const std::string &step, const std::string &layer) const;
};

class StepSource
{
public:
    // `step` of the job in the folder `job`.
    StepSource(const QString &job, const QString &step) : m_job(job), m_step(step) {}

    // Waits while another thread reads. `check` may throw to cancel. Throws cam::Error for a job or a step
    // that cannot be read; what is wrong with a file of its contents goes to the log and costs that file.
    std::shared_ptr<const StepContents> read(const std::function<void()> &check = [] {});
    // Null while nobody has read it.
    std::shared_ptr<const StepContents> ready() const;
    cam::Job job() const;

private:
    QString m_job, m_step;
    std::mutex m_reading;
    mutable std::mutex m_access;
    std::shared_ptr<const StepContents> m_contents;
};
