#include "workbench/view/searchmarks.h"

#include "cam/model/steps.h"
#include "workbench/view/componentscene.h"

#include <QPainter>

#include <algorithm>

void SearchMarks::set(const std::shared_ptr<const SearchTarget> &target,
                      const std::shared_ptr<const StepContents> &contents)
{
    clear();
    m_target = target;
    m_contents = contents;
}

bool SearchMarks::clear()
{
    const bool had = bool(m_target);
    m_target.reset();
    m_marks.clear();
    m_hasMore = m_hasLayer = false;
    m_current = -1;
    return had;
}

bool SearchMarks::add(Mark mark)
{
    m_hasMore = m_marks.size() >= mostMarks;
    if (m_hasMore)
        return false;
    m_marks.push_back(std::move(mark));
    return true;
}

bool SearchMarks::setLayers(const std::vector<std::shared_ptr<const drawing::LayerScene>> &layers)
{
    const std::size_t before = m_marks.size();
    m_marks.clear();
    m_hasMore = m_hasLayer = false;
    if (!m_target)
        return false;
    addParts(layers.empty() ? cam::Transform() : layers.front()->placement());
    for (const auto &scene : layers)
        addFeatures(scene);
    if (m_current >= int(m_marks.size()))
        m_current = -1;
    return before == 0 && !m_marks.empty();
}

void SearchMarks::addFeatures(const std::shared_ptr<const drawing::LayerScene> &scene)
{
    const cam::LayerImage &image = scene->image();
    for (const SearchTarget::Features &found : m_target->features)
        m_hasLayer = m_hasLayer || found.layer == image.layer;
    cam::forEachStep(image, cam::Copies::All, [&](std::uint32_t step, const cam::Transform &place) {
        const cam::Transform map = place.then(scene->placement());
        for (const SearchTarget::Features &found : m_target->features) {
            if (found.layer != image.layer || found.step != image.steps[step].name)
                continue;
            for (const std::uint32_t record : found.records) {
                const auto range = image.steps[step].features.sources.featuresOf(record);
                if (range.first == range.second)
                    continue; // it draws nothing
                Mark mark{scene, step, range.first, range.second, map, nullptr, {}};
                for (std::uint32_t i = mark.first; i < mark.last; ++i)
                    mark.box.add(featureBox(*scene, {step, i, map}));
                if (!mark.box.isEmpty() && !add(std::move(mark)))
                    return;
            }
        }
    });
}

void SearchMarks::addParts(const cam::Transform &toView)
{
    if (m_target->parts.empty())
        return;
    const cam::LayerImage &steps = m_contents->steps;
    cam::forEachStep(steps, cam::Copies::All, [&](std::uint32_t step, const cam::Transform &place) {
        for (const SearchTarget::Part &part : m_target->parts) {
            if (part.step != steps.steps[step].name)
                continue;
            const cam::ComponentSide *side = m_contents->sideOf(part.step, part.layer);
            const cam::Component &component = side->components[part.index];
            const cam::EdaData &eda = m_contents->parts[step].eda;
            Mark mark;
            mark.place = place.then(toView);
            mark.outline = std::make_shared<const cam::ContourPool>(outlineOf(component, *side, eda));
            mark.box = drawing::mapped(componentBox(component, *side, eda), mark.place);
            if (!add(std::move(mark)))
                return;
        }
    });
}

QString SearchMarks::neededLayer() const
{
    if (!m_target || m_hasLayer || !m_target->parts.empty() || m_target->features.empty())
        return QString();
    return QString::fromStdString(m_target->features.front().layer);
}

void SearchMarks::step(int direction)
{
    const int count = int(m_marks.size());
    if (count == 0)
        return;
    if (m_current < 0)
        m_current = direction > 0 ? 0 : count - 1;
    else
        m_current = (m_current + direction + count) % count;
}

cam::Box SearchMarks::box() const
{
    if (m_current >= 0)
        return m_marks[std::size_t(m_current)].box;
    cam::Box all;
    for (const Mark &mark : m_marks)
        all.add(mark.box);
    return all;
}

void SearchMarks::paint(QPainter &painter, const BoardView &view)
{
    constexpr double smallest = 10.0;  // pixels: of what is smaller the box is enough
    constexpr std::size_t dense = 200; // marks: with more of them thick ones would hide what they mark
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setClipRect(view.rect());
    const QRectF seen = QRectF(view.rect()).adjusted(-8, -8, 8, 8);
    for (std::size_t i = 0; i < m_marks.size(); ++i) {
        const Mark &mark = m_marks[i];
        const QRectF box = QRectF(view.toScreen(mark.box.low), view.toScreen(mark.box.high)).normalized();
        if (!seen.intersects(box.adjusted(-1, -1, 1, 1)))
            continue;
        const bool isCurrent = int(i) == m_current;
        painter.setPen(QPen(markColor(), isCurrent ? 3 : m_marks.size() > dense ? 1 : 2));
        if (isCurrent || m_marks.size() == 1)
            painter.drawRect(box.adjusted(-8, -8, 8, 8));
        if (std::max(box.width(), box.height()) < smallest) {
            painter.drawRect(box.adjusted(-1, -1, 1, 1));
        } else if (mark.scene) {
            for (std::uint32_t feature = mark.first; feature < mark.last; ++feature)
                paintFeature(painter, view, *mark.scene, {mark.step, feature, mark.place});
        } else if (mark.outline->isEmpty()) {
            painter.drawRect(box);
        } else {
            paintContours(painter, view, *mark.outline, mark.place);
        }
    }
}
