// Both kinds of file as painted objects, and the choice of points.
#include "tests/cam/random/comparison.h"

#include "cam/gerber/gerberreader.h"
#include "cam/model/selfcrossing.h"
#include "cam/model/winding.h"
#include "tests/cam/support/gdsfile.h"

#include <algorithm>
#include <cmath>

namespace testing {

using cam::Point;

WrittenPicture WrittenPicture::gerber(const QString &file)
{
    WrittenPicture picture;
    picture.m_image = cam::readGerberFile(std::filesystem::u8path(file.toStdString()));
    picture.sortIntoCells();
    return picture;
}

WrittenPicture WrittenPicture::gds(const QString &file, double dbu)
{
    WrittenPicture picture;
    picture.m_isGerber = false;
    cam::GerberImage &image = picture.m_image;
    const double unit = dbu * 1000.0;
    for (const QPolygon &polygon : GdsFile::open(file).flat()) {
        std::vector<Point> corners;
        for (const QPoint p : polygon)
            corners.push_back(Point{double(p.x()), double(p.y())} * unit);
        const auto number = static_cast<std::uint32_t>(image.contours.size());
        image.contours.addPolygon(corners.data(), corners.size(), false);
        image.parts.push_back({number, 1, true});
        cam::GerberShape shape{number, 1, cam::extent(image.contours[number])};
        image.shapes.push_back(shape);
        cam::GerberObject object;
        object.shape = number;
        object.kind = cam::GerberObjectKind::Region;
        object.line = number + 1; // the polygon's number
        image.objects.push_back(object);
    }
    picture.sortIntoCells();
    return picture;
}

int WrittenPicture::cellAt(double at, double low, double high) const
{
    return std::clamp(int((at - low) / (high - low) * cellsAcross), 0, cellsAcross - 1);
}

void WrittenPicture::sortIntoCells()
{
    m_extent = m_image.extent();
    m_cells.resize(std::size_t(cellsAcross * cellsAcross));
    for (std::uint32_t i = 0; i < m_image.objects.size(); ++i) {
        const cam::GerberObject &object = m_image.objects[i];
        const cam::Box &box = m_image.shapes[object.shape].extent;
        if (box.isEmpty())
            continue;
        const Point low = box.low + object.at, high = box.high + object.at;
        const int right = cellAt(high.x, m_extent.low.x, m_extent.high.x);
        const int top = cellAt(high.y, m_extent.low.y, m_extent.high.y);
        for (int x = cellAt(low.x, m_extent.low.x, m_extent.high.x); x <= right; ++x) {
            for (int y = cellAt(low.y, m_extent.low.y, m_extent.high.y); y <= top; ++y)
                m_cells[std::size_t(y * cellsAcross + x)].push_back(i);
        }
    }
}

bool WrittenPicture::isDark(Point at) const
{
    const bool isOutside = m_extent.isEmpty() || at.x < m_extent.low.x || at.x > m_extent.high.x ||
                           at.y < m_extent.low.y || at.y > m_extent.high.y;
    if (isOutside)
        return false;
    const int x = cellAt(at.x, m_extent.low.x, m_extent.high.x);
    const int y = cellAt(at.y, m_extent.low.y, m_extent.high.y);
    const auto &cell = m_cells[std::size_t(y * cellsAcross + x)];
    for (auto number = cell.rbegin(); number != cell.rend(); ++number) {
        const cam::GerberObject &object = m_image.objects[*number];
        if (m_image.covers(m_image.shapes[object.shape], at - object.at))
            return object.dark;
    }
    return false;
}

std::vector<Point> WrittenPicture::edgePoints() const
{
    std::vector<Point> points;
    for (const cam::GerberObject &object : m_image.objects) {
        const cam::GerberShape &shape = m_image.shapes[object.shape];
        for (std::uint32_t i = 0; i < shape.partCount; ++i) {
            const cam::GerberPart &part = m_image.parts[shape.firstPart + i];
            for (std::uint32_t j = 0; j < part.contourCount; ++j) {
                const cam::ContourView contour = m_image.contours[part.firstContour + j];
                Point from = contour.start;
                for (const cam::Edge &edge : contour) {
                    for (const double share : {0.0, 0.01, 0.5, 0.99})
                        points.push_back(cam::pointOf(from, edge, share).at + object.at);
                    from = edge.end;
                }
            }
        }
    }
    return points;
}

QStringList WrittenPicture::faults() const
{
    QStringList faults;
    for (const std::size_t line : cam::crossingContours(m_image))
        faults.append(
            QString("%1 %2: a contour that crosses itself").arg(m_isGerber ? "line" : "polygon").arg(line));
    for (const cam::GerberRemark &remark : m_image.remarks) {
        const char *const names[] = {"an open contour", "an uneven arc", "a mode kept behind a region",
                                     "a mode kept in a region"};
        // The job's numbers are rounded more coarsely than the file's: what that makes of an arc is judged by
        // its points.
        if (remark.doubt != cam::GerberDoubt::UnevenArc)
            faults.append(QString("line %1: %2").arg(remark.line).arg(names[int(remark.doubt)]));
    }
    return faults;
}

std::optional<Finding> firstDifference(const ExactPicture &source, const WrittenPicture &file,
                                       std::mt19937 &random, std::size_t points)
{
    std::vector<Point> around = file.edgePoints();
    const std::vector<Point> ofSource = source.edgePoints();
    cam::Box box;
    for (const Point p : ofSource)
        box.add(p);
    for (const Point p : around)
        box.add(p);
    around.insert(around.end(), ofSource.begin(), ofSource.end());
    if (box.isEmpty())
        return std::nullopt;
    std::shuffle(around.begin(), around.end(), random);

    const auto differs = [&](Point at) -> std::optional<Finding> {
        const ExactPicture::Reading reading = source.at(at, judgedFrom);
        if (!reading.isCertain)
            return std::nullopt;
        const bool dark = file.isDark(at);
        if (dark == reading.dark)
            return std::nullopt;
        return Finding{at, reading.dark, dark};
    };
    const double room = 0.05;
    std::uniform_real_distribution<double> x(box.low.x - room * (box.high.x - box.low.x) - 1000.0,
                                             box.high.x + room * (box.high.x - box.low.x) + 1000.0);
    std::uniform_real_distribution<double> y(box.low.y - room * (box.high.y - box.low.y) - 1000.0,
                                             box.high.y + room * (box.high.y - box.low.y) + 1000.0);
    for (std::size_t i = 0; i < points / 4; ++i) {
        if (const auto found = differs({x(random), y(random)}))
            return found;
    }
    // Eight directions at two distances from each point of an edge.
    std::size_t tried = points / 4;
    for (const Point edge : around) {
        const double turn = std::uniform_real_distribution<double>(0.0, 6.2832)(random);
        for (int i = 0; i < 8; ++i) {
            const Point direction = {std::cos(turn + i * 0.785398), std::sin(turn + i * 0.785398)};
            for (const double far : {450.0, 1500.0}) {
                if (const auto found = differs(edge + direction * far))
                    return found;
                ++tried;
            }
        }
        if (tried > points)
            break;
    }
    return std::nullopt;
}

} // namespace testing
