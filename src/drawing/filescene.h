// Layers of files: of a GDSII file what is on one of its layers, of a Gerber file all of it.
#pragma once

#include "cam/gdsii/gdsimage.h"
#include "cam/gerber/gerberimage.h"
#include "drawing/featureindex.h"
#include "drawing/figure.h"

#include <functional>
#include <memory>
#include <vector>

namespace drawing {

// What the boundaries and paths of one layer and datatype cover, below all top structures, and a point for
// each text. Structures stay references.
class GdsScene : public FigureScene
{
public:
    // `check` is called every few thousand shapes and may throw to cancel.
    GdsScene(
        std::shared_ptr<const cam::GdsImage> image, cam::GdsLayer on,
        const std::function<void()> &check = [] {});

    cam::Box extent() const override;
    void draw(Canvas &canvas, const cam::Transform &toSamples, const DrawMode &mode) const override;
    void findFigures(const cam::Box &box, const FigureVisit &visit) const override;
    void findTexts(const cam::Box &box, const TextVisit &visit) const override;

private:
    struct Structure
    {
        std::vector<std::uint32_t> boundaries, paths, texts; // those on the layer
        FeatureIndex index;                                  // of the boundaries, then of the paths
        FeatureIndex textIndex;                              // of their places
        cam::Box extent;                                     // with what is referred to, in database units
        bool isKnown = false;
    };

    void prepare(std::size_t structure, const std::function<void()> &check);
    cam::Box boxOf(std::size_t structure, std::uint32_t shape) const;
    void drawStructure(std::size_t structure, const cam::Transform &map, Canvas &canvas,
                       const DrawMode &mode) const;
    void drawShape(std::size_t structure, std::uint32_t shape, const cam::Transform &map, Canvas &canvas,
                   const DrawMode &mode) const;
    // False when `visit` has had enough.
    using StructureVisit =
        std::function<bool(std::size_t structure, const cam::Box &part, const cam::Transform &map)>;
    bool findStructures(std::size_t structure, const cam::Box &box, const cam::Transform &map,
                        const StructureVisit &visit) const;
    Figure figureOf(std::size_t structure, std::uint32_t shape, const cam::Transform &map) const;

    std::shared_ptr<const cam::GdsImage> m_image;
    cam::GdsLayer m_on;
    std::vector<Structure> m_structures;
};

// The layers that the boundaries, paths and texts of a file are on, in order.
std::vector<cam::GdsLayer> layersOf(const cam::GdsImage &image);

class GerberScene : public FigureScene
{
public:
    // `check` is called every few thousand objects and may throw to cancel.
    explicit GerberScene(
        std::shared_ptr<const cam::GerberImage> image, const std::function<void()> &check = [] {});

    const cam::GerberImage &image() const { return *m_image; }
    cam::Box extent() const override { return m_index.extent(); }
    void draw(Canvas &canvas, const cam::Transform &toSamples, const DrawMode &mode) const override;
    void findFigures(const cam::Box &box, const FigureVisit &visit) const override;

private:
    struct Work;
    void drawObject(std::uint32_t number, Work &work) const;
    cam::Box boxOf(std::uint32_t object) const;

    std::shared_ptr<const cam::GerberImage> m_image;
    FeatureIndex m_index;
    bool m_clears = false;
};

} // namespace drawing
