// The walk goes into each copy at once, so that steps come in the order in which a flat file paints them.
#include "cam/model/steps.h"

namespace cam {

namespace {

struct Walk
{
    const LayerImage &image;
    Copies copies;
    const StepVisit &visit;
    const RepeatVisit &visitRepeat;

    void step(std::uint32_t number, const Transform &place) const
    {
        visit(number, place);
        for (const StepRepeat &repeat : image.steps[number].repeats) {
            if (!visitRepeat || !visitRepeat(repeat, place))
                repeated(repeat, place);
        }
    }

    void repeated(const StepRepeat &repeat, const Transform &place) const
    {
        if (copies == Copies::First)
            return step(repeat.step, placement(repeat).then(place));
        for (std::uint32_t row = 0; row < repeat.ny; ++row) {
            for (std::uint32_t column = 0; column < repeat.nx; ++column)
                step(repeat.step, placement(repeat, column, row).then(place));
        }
    }
};

} // namespace

void forEachStep(const LayerImage &image, Copies copies, const StepVisit &visit,
                 const RepeatVisit &visitRepeat)
{
    Walk{image, copies, visit, visitRepeat}.step(static_cast<std::uint32_t>(image.steps.size() - 1),
                                                 Transform());
}

} // namespace cam
