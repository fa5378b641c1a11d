// Which repeats become blocks, and which steps clash with what is painted before them.
#include "cam/gerber/stepplan.h"

#include "cam/gerber/copyclashes.h"
#include "cam/model/steps.h"

#include <cmath>
#include <optional>

namespace cam {

namespace {

// Nanometres by which rounding the distance between copies may set the last one off. Panels in inches are
// seldom whole nanometres; a twentieth of a micrometre is half of what arcs may stray.
constexpr double mostStepError = 50.0;

// The file's own step and repeat: along the axes, towards larger coordinates. Nothing for copies that are not
// so, or that lie apart by what is no whole number of the grid's steps.
std::optional<PlannedStep> blockOf(const StepRepeat &repeat, const Transform &map, const Grid &grid)
{
    Point along = map.linear({repeat.nx > 1 ? repeat.dx : 0.0, 0.0});
    Point across = map.linear({0.0, repeat.ny > 1 ? repeat.dy : 0.0});
    PlannedStep block;
    block.step = repeat.step;
    block.columns = repeat.nx;
    block.rows = repeat.ny;
    const bool isTurned = along.x == 0.0 && across.y == 0.0;
    if (isTurned) {
        std::swap(along, across);
        std::swap(block.columns, block.rows);
    }
    if (along.y != 0.0 || across.x != 0.0)
        return std::nullopt;
    block.pitch = grid.round({std::fabs(along.x), std::fabs(across.y)});
    const double errorX = std::fabs(std::fabs(along.x) - static_cast<double>(block.pitch.x)) * block.columns;
    const double errorY = std::fabs(std::fabs(across.y) - static_cast<double>(block.pitch.y)) * block.rows;
    const bool standsStill =
        (block.columns > 1 && block.pitch.x == 0) || (block.rows > 1 && block.pitch.y == 0);
    if (standsStill || errorX > mostStepError || errorY > mostStepError)
        return std::nullopt;
    Point toFirst; // the copy with the smallest coordinates
    if (along.x < 0.0)
        toFirst.x = along.x * (block.columns - 1);
    if (across.y < 0.0)
        toFirst.y = across.y * (block.rows - 1);
    block.map = placement(repeat).then(map).then(Transform::translation(toFirst));
    return block;
}

class Planner
{
public:
    Planner(DrawnSymbols &drawn, const Transform &map, double growth)
        : m_drawn(drawn), m_map(map), m_clashes(drawn, growth)
    {
    }

    std::vector<PlannedStep> run()
    {
        forEachStep(
            m_drawn.image(), Copies::All,
            [this](std::uint32_t step, const Transform &place) { addStep(step, place); },
            [this](const StepRepeat &repeat, const Transform &place) { return addBlock(repeat, place); });
        return std::move(m_plan);
    }

private:
    void addStep(std::uint32_t step, const Transform &place)
    {
        PlannedStep planned;
        planned.step = step;
        planned.map = place.then(m_map);
        planned.isResolved = m_clashes.clashes(step, planned.map);
        m_clashes.addPainted(step, planned.map);
        m_plan.push_back(planned);
    }

    // Blocks hold features only: the file knows one level of step and repeat.
    bool addBlock(const StepRepeat &repeat, const Transform &place)
    {
        const StepImage &child = m_drawn.image().steps[repeat.step];
        const bool repeats = repeat.nx > 1 || repeat.ny > 1;
        if (!repeats || !child.repeats.empty() || child.features.isEmpty())
            return false;
        std::optional<PlannedStep> block = blockOf(repeat, place.then(m_map), m_drawn.grid());
        if (!block)
            return false;
        block->isResolved = copiesClash(*block);
        m_plan.push_back(*block);
        return true;
    }

    // Whether copies clash with each other, or one of them with what has been painted before.
    bool copiesClash(const PlannedStep &block)
    {
        bool clashes =
            m_clashes.clashesAmongCopies(block.step, block.map, block.columns, block.rows, block.pitch);
        std::vector<Transform> copies;
        for (std::uint32_t row = 0; row < block.rows; ++row) {
            for (std::uint32_t column = 0; column < block.columns; ++column) {
                const Point by{static_cast<double>(block.pitch.x) * column,
                               static_cast<double>(block.pitch.y) * row};
                copies.push_back(block.map.then(Transform::translation(by)));
                clashes = clashes || m_clashes.clashes(block.step, copies.back());
            }
        }
        for (const Transform &copy : copies)
            m_clashes.addPainted(block.step, copy);
        return clashes;
    }

    DrawnSymbols &m_drawn;
    Transform m_map;
    CopyClashes m_clashes;
    std::vector<PlannedStep> m_plan;
};

} // namespace

std::vector<PlannedStep> planSteps(DrawnSymbols &drawn, const Transform &map, double growth)
{
    return Planner(drawn, map, growth).run();
}

} // namespace cam
