// Which copies of nested steps must not be painted with clear objects: a step's negative features erase
// within that step only, but a clear object of the file erases all that was painted before it.
#pragma once

#include "cam/polygon/drawing.h"
#include "cam/polygon/neighbourhood.h"

#include <map>
#include <memory>
#include <vector>

namespace cam {

class CopyClashes
{
public:
    CopyClashes(DrawnSymbols &drawn, double growth);

    // `step` has been painted; `map` leads to the output.
    void addPainted(std::uint32_t step, const Transform &map);
    // Whether a negative feature of `step` may reach a positive one of what has been painted.
    bool clashes(std::uint32_t step, const Transform &map);
    // The same of copies among each other, columns x rows of them, `pitch` apart.
    bool clashesAmongCopies(std::uint32_t step, const Transform &map, std::uint32_t columns,
                            std::uint32_t rows, GridPoint pitch);

private:
    // A step's features under the linear part of a map, about its own origin.
    struct Variant
    {
        std::vector<GridBox> positives;
        GridBox positiveBox, negativeBox;
        std::unique_ptr<Neighbourhood> negatives;
    };
    struct Painted
    {
        const Variant *variant;
        GridPoint at;
    };

    const Variant &variantOf(std::uint32_t step, const Transform &map);
    static bool reaches(const Variant &variant, GridPoint at, const Variant &other, GridPoint otherAt);

    DrawnSymbols &m_drawn;
    double m_growth;
    bool m_isNeeded; // a nested step has negative features
    std::map<std::pair<std::uint32_t, LinearPart>, Variant> m_variants;
    std::vector<Painted> m_painted;
};

} // namespace cam
