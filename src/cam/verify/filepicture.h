// Written files as pictures, by the library's readers.
#pragma once

#include "cam/gdsii/gdsimage.h"
#include "cam/gerber/gerberimage.h"
#include "cam/verify/cleanness.h"
#include "cam/verify/corners.h"
#include "cam/verify/picture.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>

namespace cam::verify {

class GerberPicture : public Picture
{
public:
    GerberPicture(GerberImage image, ArcCorners curves);

    void rings(std::uint32_t paint, std::vector<GridRing> &rings) override { take(paint, rings, true); }
    bool plainRings(std::uint32_t paint, std::vector<GridRing> &rings) override
    {
        return take(paint, rings, false);
    }

private:
    // What a flashed shape covers, about its own origin.
    struct Drawn
    {
        bool isKnown = false;
        std::vector<GridRing> rings;
        GridBox box;
        std::uint32_t corners = 0;
    };
    bool take(std::uint32_t paint, std::vector<GridRing> &rings, bool areClean);
    bool draw(const GerberObject &object, Point at, bool areClean, Cleanness &cleanness,
              std::vector<GridRing> &rings) const;

    GerberImage m_image;
    ArcCorners m_curves;
    std::vector<std::uint32_t> m_objects; // by paint
    std::vector<Cleanness> m_cleanness;   // by paint
    std::vector<Drawn> m_drawn;           // by shape
};

class GdsPicture : public Picture
{
public:
    // The shapes whose datatype is `datatype`, or all whose datatype is another one. Throws Error for more
    // shapes than are compared, and for a line without width, which makes no image.
    GdsPicture(GdsImage image, std::uint16_t datatype, bool isOther);

    void rings(std::uint32_t paint, std::vector<GridRing> &rings) override { take(paint, rings, true); }
    bool plainRings(std::uint32_t paint, std::vector<GridRing> &rings) override
    {
        return take(paint, rings, false);
    }

private:
    // A boundary or a path of a structure, or all shapes of a structure that is small and refers to no other.
    struct Part
    {
        std::uint32_t structure = 0;
        std::uint32_t first = 0, count = 0; // boundaries, then paths
        GridBox box;                        // in the structure's own coordinates
        std::uint32_t corners = 0;
        Cleanness cleanness = Cleanness::Unknown;
    };
    struct Origin
    {
        std::uint32_t part = 0;
        std::uint32_t map = 0;
    };
    void addParts(std::size_t structure);
    void place(std::size_t structure, const Transform &map);
    bool take(std::uint32_t paint, std::vector<GridRing> &rings, bool areClean);
    void draw(const Part &part, const Transform &map, std::vector<GridRing> &rings) const;
    bool isWanted(GdsLayer on) const { return (on.datatype == m_datatype) != m_isOther; }

    GdsImage m_image;
    std::uint16_t m_datatype;
    bool m_isOther;
    std::vector<std::vector<std::uint32_t>> m_partsOf; // by structure
    std::vector<Part> m_parts;
    std::vector<Transform> m_maps; // to nanometres, copy by copy
    std::vector<Origin> m_origins; // by paint
};

// Whether a file is GDSII, by its first bytes. Throws Error when it cannot be opened.
bool isGds(const std::filesystem::path &file);

// What a file shows, GDSII, Excellon or else Gerber, without the step's profile. Throws Error for what cannot
// be read, for a drill file that leaves open how its numbers are written, and for a GDSII file with shapes
// that are not on the layer `layer`, where that is given. `report` takes the share that has been read, 0 to
// 1, and may throw to cancel.
std::unique_ptr<Picture> readPicture(
    const std::filesystem::path &file, std::optional<std::uint16_t> layer = std::nullopt,
    const std::function<void(double)> &report = [](double) {});

} // namespace cam::verify
