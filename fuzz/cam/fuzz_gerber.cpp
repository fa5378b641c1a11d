// A Gerber file: read it, look at some points, and search it for contours that cross themselves. Whatever it
// holds may end in an exception and in nothing else.
#include "cam/base/error.h"
#include "cam/gerber/gerberreader.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    try {
        const cam::GerberImage image = cam::readGerber({reinterpret_cast<const char *>(data), size}, "input");
        if (image.objects.size() > 1000 || image.contours.edgeCount() > 10000)
            return 0; // the fuzzer has better things to do
        const cam::Box box = image.extent();
        if (!box.isEmpty()) {
            image.isDark(box.low);
            image.isDark((box.low + box.high) * 0.5);
        }
        cam::crossingContours(image);
    } catch (const cam::Error &) {
        // What a fault is answered with.
    }
    return 0;
}
