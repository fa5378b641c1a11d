#include "cam/model/featureset.h"

#include <functional>

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

PadKey::PadKey(const Pad &pad, Polarity padPolarity)
    : angle(pad.angle), growth(pad.growth), symbol(pad.symbol), mirror(pad.mirror), polarity(padPolarity)
{
}

bool PadKey::operator==(const PadKey &other) const
{
    return angle == other.angle && growth == other.growth && symbol == other.symbol &&
           mirror == other.mirror && polarity == other.polarity;
}

std::size_t PadKeyHash::operator()(const PadKey &key) const
{
    const std::size_t hash = std::hash<double>()(key.angle) * 31 + std::hash<double>()(key.growth);
    return (hash * 31 + key.symbol) * 4 + (key.mirror ? 2 : 0) + static_cast<std::size_t>(key.polarity);
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
