// A GDSII file: read it, and place what it holds. Whatever it holds may end in an exception and in nothing
// else.
#include "cam/base/error.h"
#include "cam/gdsii/gdsreader.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <sstream>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    std::istringstream stream(std::string(reinterpret_cast<const char *>(data), size));
    try {
        const cam::GdsImage image = cam::readGds(stream, "input");
        for (const std::size_t top : image.tops) {
            if (image.structures[top].shapesInAll > 10000)
                continue; // the fuzzer has better things to do
            cam::placeShapes(image, top, cam::Transform(), [](const cam::GdsShape &shape) {
                for (const cam::Point corner : shape.corners) {
                    if (!std::isfinite(corner.x) || !std::isfinite(corner.y))
                        std::abort(); // the reader has promised it
                }
            });
        }
    } catch (const cam::Error &) {
        // What a fault is answered with.
    }
    return 0;
}
