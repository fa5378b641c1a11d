// Features as polygons on the grid: what the GDSII writer stores, and what booleans work on.
#pragma once

#include "cam/model/layerimage.h"
#include "cam/model/sweep.h"
#include "cam/polygon/gridpolygon.h"
#include "cam/polygon/paintedarea.h"

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <unordered_map>

namespace cam {

// A pool's contours as rings, rounded: islands counter-clockwise, holes clockwise.
void contourRings(const ContourPool &pool, const Transform &map, const Grid &grid,
                  std::vector<GridRing> &rings);
// Only contours first ... first + count - 1.
void contourRings(const ContourPool &pool, std::size_t first, std::size_t count, const Transform &map,
                  const Grid &grid, std::vector<GridRing> &rings);

// A symbol as it comes to lie in the output, about its own origin.
struct DrawnSymbol
{
    std::uint32_t symbol = 0;
    std::vector<GridRing> polygons; // without holes; they may overlap
    GridBox box;
    std::size_t corners = 0;
};

// The drawn symbols of one output, each drawn once for each way in which it is turned, mirrored, scaled and
// resized.
class DrawnSymbols
{
public:
    // `mostCorners`: of one polygon. `image` must outlive the object.
    DrawnSymbols(const LayerImage &image, Grid grid, std::size_t mostCorners);

    // The number of the drawn symbol `symbol` under the linear part of `map`. Numbers count up from 0.
    std::uint32_t number(std::uint32_t symbol, const Transform &map, double growth);
    const DrawnSymbol &operator[](std::uint32_t number) const { return m_drawn[number]; }
    std::size_t size() const { return m_drawn.size(); }

    const LayerImage &image() const { return m_image; }
    const Grid &grid() const { return m_grid; }
    std::size_t mostCorners() const { return m_mostCorners; }

private:
    DrawnSymbol draw(const Symbol &symbol, const Transform &map, double growth);

    struct Key
    {
        std::uint32_t symbol;
        LinearPart map;
        double growth;
        bool operator<(const Key &other) const;
    };
    const LayerImage &m_image;
    Grid m_grid;
    std::size_t m_mostCorners;
    std::map<Key, std::uint32_t> m_numbers;
    std::deque<DrawnSymbol> m_drawn; // references stay valid while more symbols are drawn
};

// The features of one set under one map. An item of the PaintSource is an index into the set's order.
class FeatureDrawing : public PaintSource
{
public:
    // `growth`: nanometres of the features' own plane, half to each side of positive features; see
    // ExportOptions::resize.
    FeatureDrawing(DrawnSymbols &symbols, const FeatureSet &features, const Transform &map, double growth);

    void rings(std::uint32_t item, std::vector<GridRing> &rings) override;

    // A box around the feature; a little larger than it for sweeps. Empty when it draws nothing.
    GridBox box(std::uint32_t item);
    // About how many corners its rings have.
    std::size_t corners(std::uint32_t item);

    // The polygons of a line or an arc; they may overlap.
    void sweep(const Feature &feature, const std::function<void(const GridRing &)> &polygon);
    // Where a pad stands, and as which drawn symbol.
    GridPoint padPosition(const Feature &feature) const;
    std::uint32_t padSymbol(const Feature &feature);
    // The contours of a surface, as they are: islands counter-clockwise, holes clockwise.
    void surface(const Feature &feature, std::vector<GridRing> &rings);

    // What negative features may reach, these included: by item. Empty where there are no negative features.
    // `report` is called at least every thousand features.
    std::vector<bool> reachedByNegatives(const std::function<void()> &report);
    // The area that all features, painted in their order, leave dark: polygons without holes. `report` takes
    // the share that is done, 0 to 1, and may throw to cancel.
    void resolve(const std::function<void(const GridRing &)> &polygon,
                 const std::function<void(double)> &report);

private:
    double growthOf(const Feature &feature) const
    {
        return feature.polarity == Polarity::Positive ? m_growth : -m_growth;
    }
    SweptSymbol &sweptSymbol(std::uint32_t symbol, Polarity polarity);
    double symbolReach(std::uint32_t symbol, double growth);
    GridBox mappedBox(const Box &box) const;

    DrawnSymbols &m_symbols;
    const FeatureSet &m_features;
    Transform m_map;
    double m_growth;
    double m_tolerance; // of curves, in nanometres of the features' own plane
    std::vector<std::unique_ptr<SweptSymbol>> m_swept[2]; // by polarity, then symbol
    std::vector<double> m_reaches[2]; // by the sign of the growth, then symbol; -1 when not known yet
    std::unordered_map<PadKey, std::uint32_t, PadKeyHash> m_padSymbols;
    GridRing m_ring; // scratch
};

} // namespace cam
