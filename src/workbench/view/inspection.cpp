#include "workbench/view/inspection.h"

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <iterator>

namespace {

QString text(const char *source)
{
    return QCoreApplication::translate("Inspection", source);
}

QString nameOf(cam::FeatureKind kind)
{
    switch (kind) {
    case cam::FeatureKind::Line:
        return text(QT_TRANSLATE_NOOP("Inspection", "Line"));
    case cam::FeatureKind::Arc:
        return text(QT_TRANSLATE_NOOP("Inspection", "Arc"));
    case cam::FeatureKind::Pad:
        return text(QT_TRANSLATE_NOOP("Inspection", "Pad"));
    case cam::FeatureKind::Surface:
        break;
    }
    return text(QT_TRANSLATE_NOOP("Inspection", "Surface"));
}

QString symbolText(const cam::Symbol &symbol, LengthUnit unit)
{
    QString line =
        text(QT_TRANSLATE_NOOP("Inspection", "Symbol %1")).arg(QString::fromStdString(symbol.name));
    if (!symbol.standard)
        return line + text(QT_TRANSLATE_NOOP("Inspection", ", the job's own"));
    const cam::Box box = cam::extent(cam::shapeOf(*symbol.standard));
    if (box.isEmpty())
        return line;
    return line +
           QString(", %1 \u00d7 %2")
               .arg(lengthText(box.high.x - box.low.x, unit), lengthText(box.high.y - box.low.y, unit));
}

} // namespace

QStringList describeFeature(const drawing::LayerScene &scene, const drawing::FoundFeature &found,
                            LengthUnit unit)
{
    const cam::StepImage &step = scene.image().steps[found.step];
    const cam::FeatureSet &features = step.features;
    const cam::Feature &feature = features.order[found.index];
    const auto symbol = [&](std::uint32_t number) { return symbolText(scene.image().symbols[number], unit); };
    QStringList lines;
    lines << nameOf(feature.kind) + (feature.polarity == cam::Polarity::Positive
                                         ? QString()
                                         : text(QT_TRANSLATE_NOOP("Inspection", ", clears")));
    switch (feature.kind) {
    case cam::FeatureKind::Line: {
        const cam::Line &line = features.lines[feature.index];
        lines << symbol(line.symbol)
              << text(QT_TRANSLATE_NOOP("Inspection", "From %1")).arg(placeText(line.start, unit))
              << text(QT_TRANSLATE_NOOP("Inspection", "To %1")).arg(placeText(line.end, unit))
              << text(QT_TRANSLATE_NOOP("Inspection", "Length %1"))
                     .arg(lengthText(cam::distance(line.start, line.end), unit));
        break;
    }
    case cam::FeatureKind::Arc: {
        const cam::Arc &arc = features.arcs[feature.index];
        lines << symbol(arc.symbol)
              << text(QT_TRANSLATE_NOOP("Inspection", "From %1")).arg(placeText(arc.start, unit))
              << text(QT_TRANSLATE_NOOP("Inspection", "To %1")).arg(placeText(arc.end, unit))
              << text(QT_TRANSLATE_NOOP("Inspection", "Center %1")).arg(placeText(arc.center, unit))
              << text(QT_TRANSLATE_NOOP("Inspection", "Radius %1"))
                     .arg(lengthText(cam::distance(arc.start, arc.center), unit));
        break;
    }
    case cam::FeatureKind::Pad: {
        const cam::Pad &pad = features.pads[feature.index];
        lines << symbol(pad.symbol)
              << text(QT_TRANSLATE_NOOP("Inspection", "At %1")).arg(placeText(pad.at, unit));
        if (pad.angle != 0.0)
            lines << text(QT_TRANSLATE_NOOP("Inspection", "Turned clockwise by %1\u00b0")).arg(pad.angle);
        if (pad.mirror)
            lines << text(QT_TRANSLATE_NOOP("Inspection", "Mirrored"));
        if (pad.growth != 0.0)
            lines << text(QT_TRANSLATE_NOOP("Inspection", "Resized by %1")).arg(lengthText(pad.growth, unit));
        break;
    }
    case cam::FeatureKind::Surface: {
        const cam::Surface &surface = features.surfaces[feature.index];
        cam::Box box;
        std::size_t edges = 0;
        for (std::uint32_t i = 0; i < surface.contourCount; ++i) {
            box.add(cam::extent(features.contours[surface.firstContour + i]));
            edges += features.contours[surface.firstContour + i].edgeCount;
        }
        lines << QString("%1 \u00d7 %2")
                     .arg(lengthText(box.high.x - box.low.x, unit), lengthText(box.high.y - box.low.y, unit))
              << text(QT_TRANSLATE_NOOP("Inspection", "%1 contours, %2 edges"))
                     .arg(surface.contourCount)
                     .arg(edges);
        break;
    }
    }
    const cam::FeatureSource source = features.sources[found.index];
    if (source.line == 0)
        lines << text(QT_TRANSLATE_NOOP("Inspection", "Step %1, feature %2"))
                     .arg(QString::fromStdString(step.name))
                     .arg(found.index + 1);
    else
        lines << text(QT_TRANSLATE_NOOP("Inspection", "Step %1, feature %2, line %3 of its file"))
                     .arg(QString::fromStdString(step.name))
                     .arg(source.record + 1)
                     .arg(source.line);
    return lines;
}

QStringList describeComponent(const ComponentScene &scene, std::uint32_t step,
                              const cam::Component &component, LengthUnit unit)
{
    constexpr std::size_t mostLines = 16;
    const std::string &stepName = scene.image().steps[step].name;
    const cam::ComponentSide *side = scene.contents().sideOf(stepName, scene.image().layer);
    const cam::EdaData &eda = scene.contents().partsOf(stepName)->eda;
    QStringList lines;
    lines << text(QT_TRANSLATE_NOOP("Inspection", "Component %1")).arg(fileText(component.name))
          << text(QT_TRANSLATE_NOOP("Inspection", "Part %1")).arg(fileText(component.part));
    if (const cam::Package *package = packageOf(component, eda)) {
        const cam::Box &box = package->box;
        lines << text(QT_TRANSLATE_NOOP("Inspection", "Package %1, %2 \u00d7 %3"))
                     .arg(fileText(package->name), lengthText(box.high.x - box.low.x, unit),
                          lengthText(box.high.y - box.low.y, unit));
    }
    lines << text(QT_TRANSLATE_NOOP("Inspection", "At %1")).arg(placeText(component.at, unit))
          << (side->isBottom ? text(QT_TRANSLATE_NOOP("Inspection", "On the bottom side"))
                             : text(QT_TRANSLATE_NOOP("Inspection", "On the top side")));
    if (component.angle != 0.0)
        lines << text(QT_TRANSLATE_NOOP("Inspection", "Turned clockwise by %1\u00b0")).arg(component.angle);
    lines << text(QT_TRANSLATE_NOOP("Inspection", "%1 pins")).arg(component.toeprints.size());
    lines << text(QT_TRANSLATE_NOOP("Inspection", "Step %1, line %2 of its file"))
                 .arg(QString::fromStdString(stepName))
                 .arg(component.line);
    std::vector<cam::Attribute> words = component.attributes;
    std::copy_if(component.properties.begin(), component.properties.end(), std::back_inserter(words),
                 [](const cam::Attribute &property) { return !property.value.empty(); });
    for (std::size_t i = 0; i < words.size() && i < mostLines; ++i)
        lines << attributeText(words[i]);
    if (words.size() > mostLines)
        lines << text(QT_TRANSLATE_NOOP("Inspection", "and %1 more")).arg(words.size() - mostLines);
    return lines;
}

void Inspection::setLayers(const std::vector<Layer> &layers)
{
    m_layers = layers;
    clear();
}

void Inspection::setSource(const std::shared_ptr<StepSource> &source)
{
    m_source = source;
    clear();
}

bool Inspection::press(cam::Point place, double reach)
{
    if (!m_hits.empty() && cam::distance(place, m_place) <= reach) {
        m_current = (m_current + 1) % m_hits.size();
        askForFacts();
        return true;
    }
    clear();
    m_place = place;
    for (const Layer &layer : m_layers)
        findIn(layer, place, reach);
    askForFacts();
    return !m_hits.empty();
}

// A component is hit inside of its outline, too, where nothing is drawn.
void Inspection::findIn(const Layer &layer, cam::Point place, double reach)
{
    const auto *components = dynamic_cast<const ComponentScene *>(layer.scene.get());
    for (const drawing::FoundFeature &feature : drawing::featuresAt(*layer.scene, place, reach))
        addHit({layer, feature, components ? components->componentOf(feature.step, feature.index) : nullptr});
    if (!components)
        return;
    for (const drawing::FoundFeature &feature : components->componentsAt(place))
        addHit({layer, feature, components->componentOf(feature.step, feature.index)});
}

// Of what one record draws with many features, a text or a component, one is enough.
void Inspection::addHit(const Hit &hit)
{
    const auto recordOf = [](const Hit &some) {
        return some.layer.scene->image().steps[some.feature.step].features.sources[some.feature.index];
    };
    for (const Hit &known : m_hits) {
        const cam::Point offset = known.feature.place.offset - hit.feature.place.offset;
        if (known.layer.scene == hit.layer.scene && known.feature.step == hit.feature.step &&
            offset == cam::Point{} && recordOf(known).line != 0 &&
            recordOf(known).record == recordOf(hit).record)
            return;
    }
    m_hits.push_back(hit);
}

void Inspection::askForFacts()
{
    m_facts.forget();
    if (m_hits.empty() || !m_source || m_hits[m_current].component)
        return;
    const Hit &hit = m_hits[m_current];
    const cam::LayerImage &image = hit.layer.scene->image();
    const cam::StepImage &step = image.steps[hit.feature.step];
    const cam::FeatureSource source = step.features.sources[hit.feature.index];
    if (source.line != 0)
        m_facts.ask(m_source, step.name, image.layer, source);
}

bool Inspection::clear()
{
    const bool had = !m_hits.empty();
    m_facts.forget();
    m_hits.clear();
    m_current = 0;
    return had;
}

QStringList Inspection::text(LengthUnit unit) const
{
    if (m_hits.empty())
        return {};
    const Hit &hit = m_hits[m_current];
    QStringList lines{tr("Layer %1").arg(hit.layer.name)};
    if (hit.component)
        lines << describeComponent(static_cast<const ComponentScene &>(*hit.layer.scene), hit.feature.step,
                                   *hit.component, unit);
    else
        lines << describeFeature(*hit.layer.scene, hit.feature, unit) << m_facts.lines();
    if (m_hits.size() > 1)
        lines << tr("%1 of %2 here; click again for the next").arg(m_current + 1).arg(m_hits.size());
    return lines;
}

void Inspection::paint(QPainter &painter, const BoardView &view)
{
    if (m_hits.empty())
        return;
    const Hit &hit = m_hits[m_current];
    const drawing::LayerScene &scene = *hit.layer.scene;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(markColor(), 2));
    painter.setClipRect(view.rect());
    const cam::FeatureSources &sources = scene.image().steps[hit.feature.step].features.sources;
    const auto all = sources.featuresOf(sources[hit.feature.index].record);
    for (std::uint32_t i = all.first; i < all.second; ++i)
        paintFeature(painter, view, scene, {hit.feature.step, i, hit.feature.place});
    if (all.first == all.second)
        paintFeature(painter, view, scene, hit.feature);
    QStringList lines = this->text(view.unit());
    const int lineHeight = painter.fontMetrics().lineSpacing();
    const int fitting = std::max(3, (view.height() - 2 * painter.fontMetrics().height() - 24) / lineHeight);
    if (lines.size() > fitting) {
        lines = lines.mid(0, fitting - 1);
        lines << QString("...");
    }
    const QString text = lines.join('\n');
    QRect box = painter.fontMetrics().boundingRect(QRect(0, 0, 2000, 2000), 0, text).adjusted(-8, -5, 8, 5);
    box.moveTopRight(QPoint(view.width() - 8, 6 + 2 * painter.fontMetrics().height())); // below the title
    painter.fillRect(box, QColor(24, 28, 32, 225));
    painter.setPen(QColor(240, 220, 255));
    painter.drawText(box.adjusted(8, 5, -8, -5), Qt::AlignLeft, text);
}
