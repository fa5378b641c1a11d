// A matrix file; the same text also as a step header, a tools file and a settings file.
#include "host/cam/error.h"
#include "host/cam/odb/matrix.h"
#include "host/cam/odb/stepheader.h"
#include "host/cam/odb/tools.h"
#include "host/cam/settings.h"

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
    cam::settingIn(text, "Job_Path", "path");
    return 0;
}
