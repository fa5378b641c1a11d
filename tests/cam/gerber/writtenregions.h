// The regions of a written Gerber file, as a reader takes them: read by the format's own rules, each contour
// measured by how often it goes around a place.
#pragma once

#include "cam/model/contour.h"

#include <QString>
#include <QStringList>

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <vector>

namespace testing {

// A contour with its arcs in steps of a quarter degree. Nanometres.
struct WrittenRegion
{
    bool dark = true;
    std::vector<cam::Point> corners;

    // How often the contour goes around `at`, counter-clockwise.
    int winding(cam::Point at) const
    {
        int sum = 0;
        for (std::size_t i = 0; i < corners.size(); ++i) {
            const cam::Point a = corners[i], b = corners[(i + 1) % corners.size()];
            const bool crosses = (a.y > at.y) != (b.y > at.y);
            if (crosses && at.x < a.x + (b.x - a.x) * (at.y - a.y) / (b.y - a.y))
                sum += b.y > a.y ? 1 : -1;
        }
        return sum;
    }
};

class WrittenRegions
{
public:
    explicit WrittenRegions(const QString &text)
    {
        for (const QString &line : text.split('\n'))
            record(line);
    }

    const std::vector<WrittenRegion> &list() const { return m_regions; }
    // The strokes and flashes between the regions are not looked at.
    bool isDark(cam::Point at) const
    {
        for (auto region = m_regions.rbegin(); region != m_regions.rend(); ++region) {
            if (region->winding(at) != 0)
                return region->dark;
        }
        return false;
    }
    // What is wrong with the contours: empty where each goes around every place once, or not at all, and that
    // in one direction. Level lines at `levels` heights are asked; what is narrower than `sliver` nanometres
    // is left to rounding.
    QString faults(int levels = 41, double sliver = 8.0) const
    {
        for (std::size_t n = 0; n < m_regions.size(); ++n) {
            const std::vector<cam::Point> &corners = m_regions[n].corners;
            cam::Box box;
            for (const cam::Point corner : corners)
                box.add(corner);
            int direction = 0;
            for (int level = 0; level < levels; ++level) {
                const double share = (level + 0.5) / levels;
                const double y = std::floor(box.low.y + share * (box.high.y - box.low.y)) + 0.5;
                const QString fault = faultAt(corners, y, sliver, direction);
                if (!fault.isEmpty())
                    return QString("region %1 at %2: %3").arg(n).arg(y).arg(fault);
            }
        }
        return {};
    }

private:
    static QString faultAt(const std::vector<cam::Point> &corners, double y, double sliver, int &direction)
    {
        std::vector<std::pair<double, int>> crossings;
        for (std::size_t i = 0; i < corners.size(); ++i) {
            const cam::Point a = corners[i], b = corners[(i + 1) % corners.size()];
            if ((a.y > y) != (b.y > y))
                crossings.emplace_back(a.x + (b.x - a.x) * (y - a.y) / (b.y - a.y), b.y > a.y ? -1 : 1);
        }
        std::sort(crossings.begin(), crossings.end());
        int winding = 0;
        for (std::size_t i = 0; i + 1 < crossings.size(); ++i) {
            winding += crossings[i].second;
            if (winding == 0 || crossings[i + 1].first - crossings[i].first < sliver)
                continue;
            const int here = winding > 0 ? 1 : -1;
            if (std::abs(winding) > 1)
                return QString("goes around %1 times").arg(winding);
            if (direction == -here)
                return "runs in both directions";
            direction = here;
        }
        return {};
    }

    void record(const QString &line)
    {
        if (line.startsWith("%LP")) {
            m_dark = line.startsWith("%LPD");
        } else if (line == "G36*") {
            m_isInRegion = true;
            m_regions.push_back({m_dark, {}});
        } else if (line == "G37*") {
            m_isInRegion = false;
        } else if (line == "G01*" || line == "G02*" || line == "G03*") {
            m_mode = line[2].digitValue();
        } else if (line.startsWith('X') || line.startsWith('Y')) {
            coordinates(line);
        } else if (line.startsWith("%SR")) {
            throw std::runtime_error("step and repeat");
        }
    }

    void coordinates(const QString &line)
    {
        cam::Point end = m_at, center = m_at;
        for (int i = 0; i < line.size() && line[i] != 'D';) {
            int last = i + 1;
            while (last < line.size() && (line[last].isDigit() || line[last] == '-'))
                ++last;
            const double value = line.mid(i + 1, last - i - 1).toDouble();
            switch (line[i].toLatin1()) {
            case 'X':
                end.x = value;
                break;
            case 'Y':
                end.y = value;
                break;
            case 'I':
                center.x += value;
                break;
            case 'J':
                center.y += value;
                break;
            default:
                throw std::runtime_error("record " + line.toStdString());
            }
            i = last;
        }
        if (m_isInRegion)
            extend(end, center, line.endsWith("D01*"));
        m_at = end;
    }

    void extend(cam::Point end, cam::Point center, bool isDrawn)
    {
        std::vector<cam::Point> &corners = m_regions.back().corners;
        if (!isDrawn && !corners.empty())
            throw std::runtime_error("a region of two contours");
        if (isDrawn && m_mode != 1) {
            const cam::EdgeKind kind =
                m_mode == 2 ? cam::EdgeKind::ArcClockwise : cam::EdgeKind::ArcCounterClockwise;
            const double swept = cam::sweptDegrees(m_at, {end, center, kind});
            const int steps = static_cast<int>(std::fabs(swept) / 0.25) + 1;
            for (int i = 1; i < steps; ++i)
                corners.push_back(center + cam::Transform::rotation(swept * i / steps).linear(m_at - center));
        }
        corners.push_back(end);
    }

    std::vector<WrittenRegion> m_regions;
    bool m_dark = true;
    bool m_isInRegion = false;
    int m_mode = 1;
    cam::Point m_at;
};

} // namespace testing
