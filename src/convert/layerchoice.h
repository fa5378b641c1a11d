// Which step and which layers of a job the command line means.
#pragma once

#include "cam/odb/matrix.h"

#include <QString>
#include <QStringList>

#include <filesystem>

namespace convert {

struct LayerChoice
{
    QStringList names;      // without regard to case; empty: all that have drawings
    bool onlyBoard = false; // of those only the layers of the board

    bool isMeant(const cam::MatrixLayer &layer) const;
    // Of `names`, those that no layer of the matrix has.
    QStringList missingIn(const cam::Matrix &matrix) const;
};

// The step `wanted`, in lower case; the first one where that is empty. Throws std::runtime_error when there
// is none.
QString chosenStep(const cam::Matrix &matrix, const QString &wanted);

// What reading and drawing a layer takes: about fifteen times its features' files, and more where those are
// packed or small.
double estimatedMegabytes(const std::filesystem::path &job, const std::string &layer);

} // namespace convert
