// An ODB++ job folder: the way in to its matrix and its layers.
#pragma once

#include "cam/model/layerimage.h"
#include "cam/odb/matrix.h"

#include <filesystem>
#include <functional>
#include <map>
#include <string>

namespace cam {

// What a reading met that it could not draw, or drew in a simpler form, or that may be read in more than one
// way: name to count.
struct ReadingNotes
{
    std::map<std::string, std::size_t> unsupported;
    std::map<std::string, std::size_t> simplified;
    std::map<std::string, std::size_t> readings; // the name says how it was read
    std::map<std::string, std::size_t> expected; // likewise, of what is the rule for layers of that type
};

class Job
{
public:
    // `folder` holds matrix/matrix, steps/ and so on. Throws Error when there is no matrix file in it,
    // FormatError when that cannot be read.
    explicit Job(std::filesystem::path folder);

    const std::filesystem::path &folder() const { return m_folder; }
    const std::string &name() const { return m_name; }
    const Matrix &matrix() const { return m_matrix; }

    // Everything of one layer of one step, with the steps nested in it; the names without regard to case. Any
    // of the steps may lack the layer; when all of them do, it is empty.
    // `report` takes the share that is done, 0 to 1 and never less than before, and may throw to cancel.
    // Throws Error when the job has no such step or layer, or a folder of the layer no features file (but for
    // component and dielectric layers), FormatError for what cannot be read. What cannot be drawn is left out
    // of the image and counted in `notes`.
    LayerImage readLayer(
        const std::string &step, const std::string &layer, ReadingNotes &notes,
        const std::function<void(double)> &report = [](double) {}) const;

    // The steps as readLayer() has them, without features: where each nested one lies, profile and datum.
    // Throws as readLayer() does.
    LayerImage readSteps(const std::string &step) const;
    // What holds in files that state no unit. Throws FormatError for a misc/info that cannot be read.
    LengthUnit defaultUnit() const;

private:
    std::filesystem::path m_folder;
    std::string m_name; // the folder's, in lower case
    Matrix m_matrix;
};

} // namespace cam
