// Rows first, then equal rows one above the other. A run of fewer than three is cheaper as single places.
#include "cam/gdsii/arrays.h"

#include <algorithm>
#include <tuple>

namespace cam::gdsii {

namespace {

constexpr std::size_t shortestRun = 3;
constexpr std::size_t longestRun = 32767; // the format counts columns and rows in 15 bits

// The number of items from `first` on that are one step apart; `step` is set to that step.
template <typename Position>
std::size_t runLength(std::size_t first, std::size_t end, std::int64_t &step, const Position &position)
{
    if (end - first < 2)
        return 1;
    step = position(first + 1) - position(first);
    std::size_t count = 2;
    while (first + count < end && count < longestRun &&
           position(first + count) - position(first + count - 1) == step)
        ++count;
    return count;
}

std::vector<Placement> findRows(const std::vector<GridPoint> &places)
{
    std::vector<Placement> rows;
    for (std::size_t first = 0; first < places.size();) {
        std::size_t end = first + 1;
        while (end < places.size() && places[end].y == places[first].y)
            ++end;
        while (first < end) {
            std::int64_t step = 0;
            const std::size_t count =
                runLength(first, end, step, [&places](std::size_t i) { return places[i].x; });
            Placement row;
            row.at = places[first];
            if (count >= shortestRun) {
                row.columns = static_cast<int>(count);
                row.columnStep = step;
            }
            rows.push_back(row);
            first += static_cast<std::size_t>(row.columns);
        }
    }
    return rows;
}

} // namespace

std::vector<Placement> groupPlaces(std::vector<GridPoint> places)
{
    std::sort(places.begin(), places.end(),
              [](GridPoint a, GridPoint b) { return std::tie(a.y, a.x) < std::tie(b.y, b.x); });
    places.erase(std::unique(places.begin(), places.end()), places.end());
    std::vector<Placement> rows = findRows(places);

    const auto kind = [](const Placement &row) { return std::tie(row.at.x, row.columns, row.columnStep); };
    std::sort(rows.begin(), rows.end(), [&kind](const Placement &a, const Placement &b) {
        return kind(a) != kind(b) ? kind(a) < kind(b) : a.at.y < b.at.y;
    });
    std::vector<Placement> grouped;
    for (std::size_t first = 0; first < rows.size();) {
        std::size_t end = first + 1;
        while (end < rows.size() && kind(rows[end]) == kind(rows[first]))
            ++end;
        while (first < end) {
            std::int64_t step = 0;
            const std::size_t count =
                runLength(first, end, step, [&rows](std::size_t i) { return rows[i].at.y; });
            Placement group = rows[first];
            // Rows are worth an array of their own from two on.
            if (count >= (group.columns > 1 ? 2 : shortestRun)) {
                group.rows = static_cast<int>(count);
                group.rowStep = step;
            }
            grouped.push_back(group);
            first += static_cast<std::size_t>(group.rows);
        }
    }
    return grouped;
}

} // namespace cam::gdsii
