// What files of layers hold, figure by figure: to be found, named and snapped to.
#pragma once

#include "cam/model/layerimage.h"
#include "drawing/scene.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace drawing {

// Where it is drawn: nanometres.
struct Figure
{
    enum class Kind : std::uint8_t {
        Boundary, // of GDSII, as Path and Text
        Path,
        Text,
        Flash, // of Gerber, as Stroke and Region
        Stroke,
        Region,
        Hit, // of a drill file, as Slot and Rout
        Slot,
        Rout
    };
    Kind kind = Kind::Boundary;
    bool dark = true;
    cam::Point at; // the middle of a flash or a hole, the place of a text
    // The middle line of a path, a stroke or a slot: where it starts, and its edges.
    cam::Point start;
    std::vector<cam::Edge> line;
    double width = 0.0; // of the line
    // Of everything else, and of paths with their corners; a point is covered where more islands than holes
    // run around it. Empty for what is as wide as its line, or covers nothing.
    cam::ContourPool outline;
    cam::Box box;
    int number = 0;                               // of the aperture or the tool
    cam::Point size;                              // of the aperture
    cam::Plating plating = cam::Plating::Unknown; // of a hole
    std::string name;                             // of the aperture's shape, or of the structure it is in
    std::string words;                            // of a text
    std::size_t lineNumber = 0;                   // of the file; 0 where it has no lines
};

class FigureScene : public Scene
{
public:
    // Figures that may touch `box`, in the order in which they are painted, until `visit` returns false.
    using FigureVisit = std::function<bool(Figure &&figure)>;
    virtual void findFigures(const cam::Box &box, const FigureVisit &visit) const = 0;

    // The texts whose places lie in `box`, until `visit` returns false.
    using TextVisit = std::function<bool(cam::Point at, const std::string &words)>;
    virtual void findTexts(const cam::Box &box, const TextVisit &visit) const;
};

// The figures that cover `at`, or come nearer to it than `reach`: the one that was painted last comes first.
// At most `most` of them.
std::vector<Figure> figuresAt(const FigureScene &scene, cam::Point at, double reach, std::size_t most = 20);

} // namespace drawing
