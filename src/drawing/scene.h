// Something that can be drawn: a layer of a job, or of a file. Immutable once it is made, so that several
// threads may draw parts of it at once.
#pragma once

#include "drawing/canvas.h"

#include <functional>

namespace drawing {

// Ends a drawing or a reading that nobody waits for any more. Not an error.
struct Cancelled
{
};

struct DrawMode
{
    // Features smaller than a pixel are drawn by the share of it that they cover, and corners that lie in one
    // sample become one. Without it everything is drawn sample by sample, and may vanish between samples.
    bool levelOfDetail = true;
    // Called every few hundred features; throws Cancelled to end the drawing.
    std::function<void()> check = [] {};
};

class Scene
{
public:
    Scene();
    virtual ~Scene() = default;
    Scene(const Scene &) = delete;
    Scene &operator=(const Scene &) = delete;

    // Of this scene alone, as long as the program runs: a key for what has been drawn of it.
    std::uint64_t number() const { return m_number; }

    // Holds everything that is drawn; may be a little larger. Empty for an empty scene. Nanometres.
    virtual cam::Box extent() const = 0;

    // Draws what lies on `canvas`. `toSamples` maps nanometres to the canvas's samples. Passes on what
    // `mode.check` throws.
    virtual void draw(Canvas &canvas, const cam::Transform &toSamples, const DrawMode &mode) const = 0;

private:
    std::uint64_t m_number;
};

// The inverse of a map whose determinant is not 0.
cam::Transform inverse(const cam::Transform &map);
// The box around `box`, mapped.
cam::Box mapped(const cam::Box &box, const cam::Transform &map);
// All of a canvas, in the coordinates that `toSamples` maps.
cam::Box visiblePart(const Canvas &canvas, const cam::Transform &toSamples);

} // namespace drawing
