#include "convert/layerchoice.h"

#include "cam/base/paths.h"
#include "convert/jobsource.h"

#include <algorithm>

namespace convert {

namespace fs = std::filesystem;

bool LayerChoice::isMeant(const cam::MatrixLayer &layer) const
{
    if (names.isEmpty())
        return layer.hasFeatures() && (!onlyBoard || layer.isBoard());
    return std::any_of(names.begin(), names.end(), [&](const QString &name) {
        return cam::lowerCase(name.toStdString()) == cam::lowerCase(layer.name);
    });
}

QStringList LayerChoice::missingIn(const cam::Matrix &matrix) const
{
    QStringList missing;
    for (const QString &name : names) {
        if (!matrix.find(name.toStdString()))
            missing << name;
    }
    return missing;
}

QString chosenStep(const cam::Matrix &matrix, const QString &wanted)
{
    const std::string name = cam::lowerCase(wanted.toStdString());
    QStringList steps;
    for (const std::string &step : matrix.steps) {
        if (name.empty() || cam::lowerCase(step) == name)
            return lowerCase(step);
        steps << lowerCase(step);
    }
    throw std::runtime_error("expected a step" + (name.empty() ? "" : " " + name) + ", found " +
                             (steps.isEmpty() ? "none" : steps.join(", ").toStdString()));
}

double estimatedMegabytes(const fs::path &job, const std::string &layer)
{
    double bytes = 0.0;
    const auto steps = cam::findEntry(job, "steps");
    std::error_code ignored;
    for (fs::directory_iterator step(steps.value_or(fs::path()), ignored), end; step != end;
         step.increment(ignored)) {
        const auto layers = cam::findEntry(step->path(), "layers");
        const auto folder = layers ? cam::findEntry(*layers, layer) : std::nullopt;
        if (!folder)
            continue;
        for (const auto &[name, factor] :
             {std::pair("features", 1.0), std::pair("features.Z", 4.0), std::pair("features.gz", 6.0)}) {
            if (const auto file = cam::findEntry(*folder, name))
                bytes += factor * double(fs::file_size(*file, ignored));
        }
    }
    return 10.0 + 15.0 * bytes / 1e6;
}

} // namespace convert
