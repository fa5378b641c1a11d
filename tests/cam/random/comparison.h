// A written file against the exact picture of its source: at random points, beside every edge of the file's
// own geometry, and beside the source's edges.
#pragma once

#include "cam/gerber/gerberimage.h"
#include "tests/cam/random/exactpicture.h"

#include <QString>
#include <QStringList>

#include <optional>
#include <random>

namespace testing {

// The picture of a written file.
class WrittenPicture
{
public:
    static WrittenPicture gerber(const QString &file);
    // Database units of `dbu` micrometres.
    static WrittenPicture gds(const QString &file, double dbu);

    bool isDark(cam::Point at) const;
    cam::Box extent() const { return m_image.extent(); }
    // Ends and middles of all edges.
    std::vector<cam::Point> edgePoints() const;
    // What is wrong with the file by itself: contours that cross themselves, modes that are not stated.
    QStringList faults() const;

private:
    // Objects by the squares that they reach: a picture may have a hundred thousand.
    void sortIntoCells();
    static constexpr int cellsAcross = 128;
    int cellAt(double at, double low, double high) const;

    cam::GerberImage m_image;
    cam::Box m_extent;
    std::vector<std::vector<std::uint32_t>> m_cells;
    bool m_isGerber = true;
};

struct Finding
{
    cam::Point at; // output coordinates
    bool sourceIsDark = false;
    bool fileIsDark = false;
};

// How near to the source's edges points are not judged, in nanometres.
constexpr double judgedFrom = 300.0;

// The first point found where both differ. `points`: how many are tried at most.
std::optional<Finding> firstDifference(const ExactPicture &source, const WrittenPicture &file,
                                       std::mt19937 &random, std::size_t points);

} // namespace testing
