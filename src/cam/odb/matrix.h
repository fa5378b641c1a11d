// A job's matrix: its steps and its layers.
#pragma once

#include "cam/model/featureset.h"

#include <string>
#include <string_view>
#include <vector>

namespace cam {

// The texts are the file's own; the words (context, type, polarity) are in upper case.
struct MatrixLayer
{
    int row = 0; // from 1
    std::string context;
    std::string type;
    std::string name;
    std::string polarity;
    std::string oldName;
    std::string startName;
    std::string endName;
    std::string addType;
    std::string color;

    bool isBoard() const { return context == "BOARD"; }
    bool isDrilled() const { return type == "DRILL" || type == "ROUT"; }
    // The layers of these types may have components or a thickness, and nothing to draw.
    bool hasFeatures() const { return type != "COMPONENT" && type != "DIELECTRIC"; }
    bool isCopper() const
    {
        return isBoard() && (type == "SIGNAL" || type == "POWER_GROUND" || type == "MIXED");
    }
};

struct Matrix
{
    std::vector<std::string> steps;  // in column order
    std::vector<MatrixLayer> layers; // in row order

    // The layer of that name, without regard to case; null when there is none.
    const MatrixLayer *find(std::string_view layer) const;
};

// Throws FormatError for a text that is no matrix. Rows and columns without a name are left out.
Matrix parseMatrix(std::string_view text, const std::string &file);

} // namespace cam
