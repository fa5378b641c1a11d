// What a job says about the parts and the nets of one step, besides what is drawn.
#pragma once

#include "cam/odb/components.h"
#include "cam/odb/edadata.h"
#include "cam/odb/featurelist.h"
#include "cam/odb/job.h"

#include <string>
#include <vector>

namespace cam {

// The components of one component layer.
struct ComponentSide
{
    std::string layer; // lower case
    bool isBottom = false;
    std::vector<Component> components;
};

struct StepParts
{
    EdaData eda;
    std::vector<ComponentSide> sides; // in the matrix's order
    // Why a file of them could not be read; what it would have told is missing. Each message names the file.
    std::vector<std::string> failures;
};

// What the job's files of definitions say about attributes; a broken one is added to `failures`.
AttributeTypes readAttributeTypes(const Job &job, std::vector<std::string> &failures);

// Of `step` itself, without those nested in it. `check` may throw to cancel. A step without such files has
// neither nets nor components; nothing here throws for what a file holds.
StepParts readStepParts(
    const Job &job, const std::string &step, const AttributeTypes &types,
    const std::function<void()> &check = [] {});

// The features of one layer of `step` itself; see listFeatures(). None where the step does not have the
// layer. Throws Error for a file that cannot be opened or unpacked.
void listLayerFeatures(
    const Job &job, const std::string &step, const std::string &layer, const FeatureListVisit &visit,
    const std::function<void()> &check = [] {});

} // namespace cam
