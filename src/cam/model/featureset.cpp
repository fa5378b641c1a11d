#include "cam/model/featureset.h"

namespace cam {

namespace {

template <typename Record>
void append(FeatureSet &set, std::vector<Record> &list, const Record &record, FeatureKind kind,
            Polarity polarity)
{
    set.order.push_back({static_cast<std::uint32_t>(list.size()), kind, polarity});
    list.push_back(record);
    if (polarity == Polarity::Negative)
        ++set.negativeCount;
}

} // namespace

Transform placement(const Pad &pad)
{
    Transform map = Transform::rotation(-pad.angle);
    if (pad.mirror)
        map = map.then(Transform::mirrorX());
    return map.then(Transform::translation(pad.at));
}

void FeatureSet::add(const Line &line, Polarity polarity)
{
    append(*this, lines, line, FeatureKind::Line, polarity);
}

void FeatureSet::add(const Arc &arc, Polarity polarity)
{
    append(*this, arcs, arc, FeatureKind::Arc, polarity);
}

void FeatureSet::add(const Pad &pad, Polarity polarity)
{
    append(*this, pads, pad, FeatureKind::Pad, polarity);
}

void FeatureSet::add(const Surface &surface, Polarity polarity)
{
    append(*this, surfaces, surface, FeatureKind::Surface, polarity);
}

} // namespace cam
