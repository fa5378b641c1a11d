// Finds the features of a set that may reach into a box: a grid of cells, each with the features whose boxes
// touch it, in drawing order. About six bytes a feature.
#pragma once

#include "cam/model/point.h"

#include <cstdint>
#include <functional>
#include <vector>

namespace drawing {

class FeatureIndex
{
public:
    FeatureIndex() = default;
    // `boxOf` is called three times for each of `count` features; those with an empty box are never found.
    // What it throws is passed on.
    FeatureIndex(std::uint32_t count, const std::function<cam::Box(std::uint32_t)> &boxOf);

    // Of all boxes.
    const cam::Box &extent() const { return m_extent; }

    // Features whose boxes may touch `box`, each once, in drawing order.
    void find(const cam::Box &box, std::vector<std::uint32_t> &found) const;
    // Whether `box` holds so much of the features that walking all of them is as good.
    bool isMost(const cam::Box &box) const;

private:
    struct Cells
    {
        int firstX, firstY, lastX, lastY;
    };
    Cells cellsOf(const cam::Box &box) const;
    std::size_t cell(int x, int y) const
    {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(m_across) + static_cast<std::size_t>(x);
    }

    cam::Box m_extent;
    int m_across = 1, m_up = 1;
    double m_cellWidth = 1.0, m_cellHeight = 1.0; // nanometres
    std::vector<std::uint32_t> m_starts;          // of each cell in m_features, and the end
    std::vector<std::uint32_t> m_features;
    std::vector<std::uint32_t> m_large; // those that touch many cells: in none of them
};

} // namespace drawing
