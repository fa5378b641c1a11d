#include "cam/model/layerimage.h"

#include "cam/model/exportoptions.h"

namespace cam {

Transform placement(const StepRepeat &repeat)
{
    Transform map = Transform::translation(-repeat.childDatum).then(Transform::rotation(-repeat.angle));
    if (repeat.mirror)
        map = map.then(Transform::mirrorX());
    return map.then(Transform::translation(repeat.at));
}

Transform placement(const StepRepeat &repeat, std::uint32_t column, std::uint32_t row)
{
    return placement(repeat).then(Transform::translation({repeat.dx * column, repeat.dy * row}));
}

Transform exportTransform(const ExportOptions &options, Point datum)
{
    Transform map = Transform::translation(-datum).then(Transform::scaling(options.xScale, options.yScale));
    if (options.mirror)
        map = map.then(Transform::mirrorX());
    return map.then(Transform::rotation(options.angle)).then(Transform::translation(datum));
}

} // namespace cam
