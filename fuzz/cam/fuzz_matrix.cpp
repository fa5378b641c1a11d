// A matrix file; the same text also as a step header and a tools file.
#include "cam/base/error.h"
#include "cam/odb/matrix.h"
#include "cam/odb/stepheader.h"
#include "cam/odb/tools.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::string_view text(reinterpret_cast<const char *>(data), size);
    try {
        cam::parseMatrix(text, "input").find("top");
    } catch (const cam::Error &) {
    }
    try {
        cam::parseStepHeader(text, "input");
    } catch (const cam::Error &) {
    }
    try {
        cam::platingOf(cam::parseTools(text, "input"), "");
    } catch (const cam::Error &) {
    }
    return 0;
}
