// Groups in which nothing is cleared are shown as they are painted; the others go through the booleans.
#include "cam/verify/painting.h"

#include "cam/verify/filepicture.h"
#include "cam/verify/sourcepicture.h"
#include "cam/verify/tiles.h"

#include <set>

namespace cam {

namespace {

// Those paints of a picture whose groups clear something.
class ClearedPart : public verify::Picture
{
public:
    explicit ClearedPart(verify::Picture &whole) : m_whole(whole)
    {
        std::set<std::uint32_t> groups;
        for (const verify::Paint &paint : whole.paints()) {
            if (!paint.dark || whole.isNegated())
                groups.insert(paint.group);
        }
        m_isNegated = whole.isNegated();
        for (std::uint32_t i = 0; i < whole.paints().size(); ++i) {
            if (groups.count(whole.paints()[i].group) == 0)
                continue;
            m_paints.push_back(whole.paints()[i]);
            m_numbers.push_back(i);
        }
    }
    void rings(std::uint32_t paint, std::vector<GridRing> &rings) override
    {
        m_whole.rings(m_numbers[paint], rings);
    }
    // The numbers in the whole picture, ascending.
    const std::vector<std::uint32_t> &numbers() const { return m_numbers; }

private:
    verify::Picture &m_whole;
    std::vector<std::uint32_t> m_numbers;
};

} // namespace

Painting::Painting(const LayerImage &image, const ExportOptions &options)
    : m_picture(std::make_unique<verify::SourcePicture>(image, options, verify::ArcCorners::Compass))
{
}

Painting::Painting(const std::filesystem::path &file) : m_picture(verify::readPicture(file)) {}

Painting::~Painting() = default;

GridBox Painting::extent() const
{
    GridBox box;
    for (const verify::Paint &paint : m_picture->paints()) {
        if (paint.dark && (!m_picture->isNegated() || paint.group == verify::baseGroup))
            box.add(paint.box);
    }
    return box;
}

void Painting::forEachArea(std::int64_t overlap,
                           const std::function<void(const std::vector<GridRing> &rings)> &visit,
                           const std::function<void(double)> &report)
{
    ClearedPart cleared(*m_picture);
    const std::size_t count = m_picture->paints().size();
    std::vector<GridRing> rings;
    for (std::size_t i = 0, next = 0; i < count; ++i) {
        if (next < cleared.numbers().size() && cleared.numbers()[next] == i) {
            ++next;
            continue;
        }
        rings.clear();
        m_picture->rings(static_cast<std::uint32_t>(i), rings);
        visit(rings);
        if (i % 1000 == 0)
            report(0.5 * static_cast<double>(i) / static_cast<double>(count));
    }
    verify::forEachTile(
        {&cleared}, {}, overlap, [&visit](const verify::Tile &tile) { visit(tile.areas[0]); },
        [&report](double share) { report(0.5 + 0.5 * share); });
}

} // namespace cam
