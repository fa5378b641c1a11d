// A drill file: tell it by its first bytes, read it, and make a layer of it. Whatever it holds may end in an
// exception and in nothing else.
#include "cam/base/error.h"
#include "cam/excellon/excellonreader.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::string_view text(reinterpret_cast<const char *>(data), size);
    cam::isExcellon(text);
    try {
        const cam::DrillImage image = cam::readExcellon(text, "input");
        if (image.works.size() != image.features.order.size())
            std::abort();
        cam::layerOf(image);
    } catch (const cam::Error &) {
        // What a fault is answered with.
    }
    return 0;
}
