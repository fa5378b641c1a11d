// What a layer or a written file shows, as polygons to draw.
#pragma once

#include "cam/model/exportoptions.h"
#include "cam/polygon/gridpolygon.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <vector>

namespace cam {

namespace verify {
class Picture;
}

class Painting
{
public:
    // What `options` make of `image`; both must outlive the painting. Throws Error for an export that is
    // refused as well.
    Painting(const LayerImage &image, const ExportOptions &options);
    // A GDSII or Gerber file. Throws Error for what cannot be read.
    explicit Painting(const std::filesystem::path &file);
    ~Painting();

    // Nanometres; holds all that is shown.
    GridBox extent() const;

    // Hands over polygons whose union is what is shown: each set by itself is filled where the windings add
    // up to anything but 0. What clears something else is resolved, in pieces that overlap by `overlap`
    // nanometres, so that no seam shows where that is a pixel or more. Passes on what `report` throws.
    void forEachArea(
        std::int64_t overlap, const std::function<void(const std::vector<GridRing> &rings)> &visit,
        const std::function<void(double)> &report = [](double) {});

private:
    std::unique_ptr<verify::Picture> m_picture;
};

} // namespace cam
