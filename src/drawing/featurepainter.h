// Draws the features of a set: symbols at their places, pens along lines and arcs, surfaces.
#pragma once

#include "cam/model/sweep.h"
#include "drawing/flattening.h"
#include "drawing/scene.h"
#include "drawing/symbolshapes.h"

#include <memory>
#include <unordered_map>

namespace drawing {

// What is known of a surface beside its contours.
struct SurfaceSize
{
    cam::Box box;
    double area = 0.0;      // square nanometres
    double perimeter = 0.0; // nanometres, about
    // The contours when they are resized, as corners: islands counter-clockwise, holes clockwise.
    std::vector<std::vector<cam::Point>> resized;
};

// Features that are drawn together: of a step.
struct DrawableFeatures
{
    const cam::FeatureSet *features = nullptr;
    std::vector<SurfaceSize> surfaces; // by index
};

class FeaturePainter : private cam::PolygonSink
{
public:
    // `resize` as in ExportOptions. All must outlive the painter, which is for one thread.
    FeaturePainter(const cam::LayerImage &image, const SymbolShapes &shapes, double resize,
                   const DrawMode &mode);
    ~FeaturePainter() override;

    // The following features are drawn on `canvas`, mapped by `map` to its samples.
    void begin(Canvas &canvas, const cam::Transform &map);
    // The feature `index` of the drawing's order.
    void draw(const DrawableFeatures &drawing, std::uint32_t index);

    // Contours as they are, without regard to detail.
    void fillContours(const cam::ContourPool &pool, bool dark);

private:
    // A pen under the current map.
    struct Pen
    {
        const SymbolShape *shape = nullptr;
        double width = 0.0;  // samples, where it is thinnest
        double radius = 0.0; // samples, of a round pen where circles stay circles
        std::vector<cam::Point> halfCircle;
        std::unique_ptr<cam::SweptSymbol> swept;
    };
    // A symbol as it comes to lie, about its own origin, in samples.
    struct PlacedSymbol
    {
        Rings rings;
        bool isEmpty = false;
        bool isConvex = false;
        double radius = 0.0;                // of a disc
        cam::Point middle;                  // of its box
        double shorter = 0.0, longer = 0.0; // sides of its box
        cam::Point halfLonger;              // from the middle to the end of the longer side
        double area = 0.0;
    };
    // Everything that depends on the map but for its offset.
    struct Linear
    {
        cam::Transform map;
        double stretch = 1.0; // samples a nanometre at most
        bool keepsCircles = true;
        FillRule rule = FillRule::Positive;
        std::vector<Pen> pens[2]; // by polarity, then symbol
        std::unordered_map<cam::PadKey, PlacedSymbol, cam::PadKeyHash> symbols;
    };

    double growthOf(cam::Polarity polarity) const
    {
        return polarity == cam::Polarity::Positive ? m_resize : -m_resize;
    }
    Pen &pen(std::uint32_t symbol, cam::Polarity polarity);
    const PlacedSymbol &placed(const cam::Pad &pad, cam::Polarity polarity);
    void drawLine(const cam::Line &line, cam::Polarity polarity);
    void drawArc(const cam::Arc &arc, cam::Polarity polarity);
    void drawPad(const cam::Pad &pad, cam::Polarity polarity);
    void drawSurface(const DrawableFeatures &drawing, const cam::Surface &surface, const SurfaceSize &size);
    void addContours(const cam::ContourPool &pool, std::size_t first, std::size_t count);
    void endRing(bool isHole);
    void dropIfOutside();
    void drawEdges();
    void polygon(const cam::Point *corners, std::size_t count) override;
    double tolerance() const;

    const cam::LayerImage &m_image;
    const SymbolShapes &m_shapes;
    double m_resize;
    const DrawMode &m_mode;
    std::map<cam::LinearPart, Linear> m_linears;
    Canvas *m_canvas = nullptr;
    Linear *m_linear = nullptr;
    cam::Transform m_map;
    cam::Box m_visible; // of the canvas, in what m_map maps
    bool m_isDark = true;
    Rings m_rings; // scratch, as what follows
    std::vector<cam::Point> m_corners;
};

} // namespace drawing
