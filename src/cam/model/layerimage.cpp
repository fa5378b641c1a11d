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

Transform exportTransform(const ExportOptions &options, Point datum)
{
    Transform map = Transform::translation(-datum).then(Transform::scaling(options.xScale, options.yScale));
    if (options.mirror)
        map = map.then(Transform::mirrorX());
    return map.then(Transform::rotation(options.angle)).then(Transform::translation(datum));
}

} // namespace cam
