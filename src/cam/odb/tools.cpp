// Which words of the file and of the matrix say how holes are made.
#include "cam/odb/tools.h"

#include "cam/base/paths.h"
#include "cam/odb/structuredtext.h"

namespace cam {

ToolKinds parseTools(std::string_view text, const std::string &file)
{
    const StructuredText parsed = parseStructuredText(text, file);
    ToolKinds kinds;
    for (const StructuredBlock &block : parsed.blocks) {
        if (block.name != "TOOLS")
            continue;
        const std::string type = lowerCase(block.value("TYPE"));
        if (type == "plated" || type == "via")
            kinds.plated = true;
        else if (type == "non_plated")
            kinds.nonPlated = true;
        else
            kinds.unclear = true;
    }
    return kinds;
}

Plating platingOf(const ToolKinds &kinds, std::string_view addType)
{
    if (!kinds.unclear && kinds.plated && kinds.nonPlated)
        return Plating::Mixed;
    if (!kinds.unclear && kinds.plated)
        return Plating::Plated;
    if (!kinds.unclear && kinds.nonPlated)
        return Plating::NonPlated;
    const std::string word = lowerCase(addType);
    if (word == "plated" || word == "via")
        return Plating::Plated;
    if (word == "non_plated" || word == "backdrill")
        return Plating::NonPlated;
    return Plating::Unknown;
}

} // namespace cam
