// The features of one layer of one step, or of one user-defined symbol, as compact records in drawing order:
// the reader fills it in one pass over the text, both writers walk it. A million lines take 48 MB.
#pragma once

#include "cam/model/contour.h"
#include "cam/model/featuresource.h"

#include <cstdint>
#include <vector>

namespace cam {

enum class Polarity : std::uint8_t { Positive, Negative };

enum class FeatureKind : std::uint8_t { Line, Arc, Pad, Surface };

// One feature in drawing order: `index` counts within the list of its kind.
struct Feature
{
    std::uint32_t index = 0;
    FeatureKind kind = FeatureKind::Line;
    Polarity polarity = Polarity::Positive;
};

// `symbol` is everywhere an index into the SymbolTable of the layer's image.

// The symbol swept along a segment, without turning it.
struct Line
{
    Point start;
    Point end;
    std::uint32_t symbol = 0;
};

// The symbol swept along an arc; one that ends where it starts is a full circle.
struct Arc
{
    Point start;
    Point end;
    Point center;
    std::uint32_t symbol = 0;
    bool clockwise = false;
};

// The symbol, first resized by `growth`, then turned by `angle`, then mirrored (x to -x), set at `at`.
struct Pad
{
    Point at;
    double angle = 0.0;  // degrees, CLOCKWISE as in the job's files, 0 <= angle < 360
    double growth = 0.0; // nanometres that the symbol's size grows by: its edges move outwards by half of it
    std::uint32_t symbol = 0;
    bool mirror = false;
};

// Contours firstContour ... firstContour + contourCount - 1 of the set's pool.
struct Surface
{
    std::uint32_t firstContour = 0;
    std::uint32_t contourCount = 0;
};

// The map from a symbol's own coordinates to the layer's.
Transform placement(const Pad &pad);

// All that pads have in common that look alike: everything but the position. A key of tables.
struct PadKey
{
    PadKey(const Pad &pad, Polarity padPolarity);
    bool operator==(const PadKey &other) const;

    double angle, growth;
    std::uint32_t symbol;
    bool mirror;
    Polarity polarity;
};

struct PadKeyHash
{
    std::size_t operator()(const PadKey &key) const;
};

// Texts and barcodes are lines, pads and surfaces here: the reader has drawn them.
struct FeatureSet
{
    std::vector<Feature> order;
    std::vector<Line> lines;
    std::vector<Arc> arcs;
    std::vector<Pad> pads;
    std::vector<Surface> surfaces;
    ContourPool contours;
    std::size_t negativeCount = 0;
    FeatureSources sources; // of `order`; empty where the features come from no file

    void add(const Line &line, Polarity polarity);
    void add(const Arc &arc, Polarity polarity);
    void add(const Pad &pad, Polarity polarity);
    void add(const Surface &surface, Polarity polarity);
    bool isEmpty() const { return order.empty(); }
};

} // namespace cam
