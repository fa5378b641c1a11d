#include "cam/odb/matrix.h"

#include "cam/base/error.h"
#include "cam/base/paths.h"
#include "cam/odb/structuredtext.h"

#include <algorithm>

namespace cam {

namespace {

std::string upperCase(std::string text)
{
    for (char &c : text) {
        if (c >= 'a' && c <= 'z')
            c = static_cast<char>(c - ('a' - 'A'));
    }
    return text;
}

// The name of a step or layer. It becomes the name of files, read and written: one that a customer's archive
// brings must not lead out of their folders.
std::string entityName(const StructuredText &text, const StructuredBlock &block)
{
    const StructuredField *field = block.find("NAME");
    if (!field)
        return {};
    if (!isPlainName(field->value))
        throw FormatError(text.file, field->line,
                          "a name without separators for NAME, found \"" + field->value + "\"");
    return field->value;
}

MatrixLayer toLayer(const StructuredText &text, const StructuredBlock &block)
{
    MatrixLayer layer;
    layer.row = text.integer(block, "ROW", 0);
    layer.context = upperCase(block.value("CONTEXT"));
    layer.type = upperCase(block.value("TYPE"));
    layer.name = entityName(text, block);
    layer.polarity = upperCase(block.value("POLARITY", "POSITIVE"));
    layer.oldName = block.value("OLD_NAME");
    layer.startName = block.value("START_NAME");
    layer.endName = block.value("END_NAME");
    layer.addType = block.value("ADD_TYPE");
    layer.color = block.value("COLOR");
    return layer;
}

} // namespace

const MatrixLayer *Matrix::find(std::string_view layer) const
{
    const std::string wanted = lowerCase(layer);
    const auto found = std::find_if(layers.begin(), layers.end(), [&wanted](const MatrixLayer &candidate) {
        return lowerCase(candidate.name) == wanted;
    });
    return found == layers.end() ? nullptr : &*found;
}

Matrix parseMatrix(std::string_view text, const std::string &file)
{
    const StructuredText parsed = parseStructuredText(text, file);
    std::vector<std::pair<int, std::string>> steps;
    Matrix matrix;
    for (const StructuredBlock &block : parsed.blocks) {
        const std::string name = entityName(parsed, block);
        if (name.empty())
            continue;
        if (block.name == "STEP")
            steps.emplace_back(parsed.integer(block, "COL", 0), name);
        else if (block.name == "LAYER")
            matrix.layers.push_back(toLayer(parsed, block));
    }
    const auto byNumber = [](const auto &a, const auto &b) { return a.first < b.first; };
    std::stable_sort(steps.begin(), steps.end(), byNumber);
    for (auto &step : steps)
        matrix.steps.push_back(std::move(step.second));
    const auto byRow = [](const MatrixLayer &a, const MatrixLayer &b) { return a.row < b.row; };
    std::stable_sort(matrix.layers.begin(), matrix.layers.end(), byRow);
    return matrix;
}

} // namespace cam
