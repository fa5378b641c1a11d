// The symbols of a layer as they are drawn, each once for every way in which it is resized: about their own
// origin, in nanometres.
#pragma once

#include "cam/model/layerimage.h"

#include <map>
#include <vector>

namespace drawing {

struct SymbolShape
{
    // A standard symbol with its true arcs, or a symbol of the job's own as polygons that may overlap.
    cam::Shape shape;
    std::vector<std::vector<cam::Point>> polygons;
    bool isOwn = false;
    cam::Box box;        // empty: it draws nothing
    double area = 0.0;   // square nanometres
    double reach = 0.0;  // how far it reaches from its origin
    double radius = 0.0; // of a round symbol; 0 for others
};

class SymbolShapes
{
public:
    // `image` must outlive the object.
    explicit SymbolShapes(const cam::LayerImage &image) : m_image(image) {}

    // Makes the shape known. Throws cam::SymbolError where the numbers of a standard symbol make none.
    void add(std::uint32_t symbol, double growth);
    // A shape that has been added. References stay valid.
    const SymbolShape &at(std::uint32_t symbol, double growth) const { return m_shapes.at({symbol, growth}); }

private:
    using Key = std::pair<std::uint32_t, double>;
    const cam::LayerImage &m_image;
    std::map<Key, SymbolShape> m_shapes;
};

} // namespace drawing
