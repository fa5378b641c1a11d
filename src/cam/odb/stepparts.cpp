#include "cam/odb/stepparts.h"

#include "cam/base/error.h"
#include "cam/base/paths.h"

#include <optional>
#include <set>

namespace cam {

namespace fs = std::filesystem;

namespace {

std::optional<fs::path> findFolder(const fs::path &from, std::initializer_list<std::string_view> names)
{
    std::optional<fs::path> folder = from;
    for (const std::string_view name : names) {
        folder = findEntry(*folder, name);
        if (!folder)
            return std::nullopt;
    }
    return folder;
}

bool startsWith(const std::string &text, std::string_view start)
{
    return text.compare(0, start.size(), start) == 0;
}

// The names, as TextFile takes them, of the files that define attributes: "sysattr", "sysattr.fab",
// "userattr", each perhaps packed.
std::set<std::string> definitionFiles(const fs::path &folder)
{
    std::set<std::string> names;
    std::error_code ignored;
    for (const fs::directory_entry &entry : fs::directory_iterator(folder, ignored)) {
        std::string name = lowerCase(entry.path().filename().u8string());
        if (!startsWith(name, "sysattr") && !startsWith(name, "userattr"))
            continue;
        for (const std::string_view ending : {".gz", ".z", ".zip"}) {
            if (name.size() > ending.size() &&
                std::string_view(name).substr(name.size() - ending.size()) == ending)
                name.resize(name.size() - ending.size());
        }
        names.insert(name);
    }
    return names;
}

// Runs `read`, and keeps what is wrong with a file.
template <typename Read>
void attempt(std::vector<std::string> &failures, const Read &read)
{
    try {
        read();
    } catch (const Error &failure) {
        failures.emplace_back(failure.what());
    }
}

} // namespace

AttributeTypes readAttributeTypes(const Job &job, std::vector<std::string> &failures)
{
    AttributeTypes types;
    const auto folder = findFolder(job.folder(), {"misc"});
    if (!folder)
        return types;
    for (const std::string &name : definitionFiles(*folder)) {
        attempt(failures, [&] {
            const TextFile file(*folder, name);
            types.add(file.text(), file.name());
        });
    }
    return types;
}

StepParts readStepParts(const Job &job, const std::string &step, const AttributeTypes &types,
                        const std::function<void()> &check)
{
    StepParts parts;
    const auto folder = findFolder(job.folder(), {"steps", step});
    if (!folder)
        return parts;
    LengthUnit unit = LengthUnit::Inch;
    attempt(parts.failures, [&] { unit = job.defaultUnit(); });
    if (const auto eda = findFolder(*folder, {"eda"}); eda && TextFile::exists(*eda, "data")) {
        attempt(parts.failures, [&] {
            LineFile file(*eda, "data");
            parts.eda = readEdaData(file.lines(), file.name(), unit, types, check);
        });
    }
    for (const MatrixLayer &layer : job.matrix().layers) {
        if (layer.type != "COMPONENT")
            continue;
        ComponentSide side;
        side.layer = lowerCase(layer.name);
        side.isBottom = side.layer.find("bot") != std::string::npos;
        const auto layerFolder = findFolder(*folder, {"layers", layer.name});
        if (layerFolder && TextFile::exists(*layerFolder, "components")) {
            attempt(parts.failures, [&] {
                LineFile file(*layerFolder, "components");
                side.components = readComponents(file.lines(), file.name(), unit, types, check);
            });
        }
        parts.sides.push_back(std::move(side));
    }
    return parts;
}

void listLayerFeatures(const Job &job, const std::string &step, const std::string &layer,
                       const FeatureListVisit &visit, const std::function<void()> &check)
{
    const auto folder = findFolder(job.folder(), {"steps", step, "layers", layer});
    if (!folder || !TextFile::exists(*folder, "features"))
        return;
    LineFile file(*folder, "features");
    listFeatures(file.lines(), visit, check);
}

} // namespace cam
