// The forms in which a job's files are packed, and fonts.
#include "cam/base/error.h"
#include "cam/odb/font.h"
#include "cam/odb/packing.h"
#include "cam/odb/zip.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::string_view bytes(reinterpret_cast<const char *>(data), size);
    try {
        cam::unpackCompress(bytes, "input");
    } catch (const cam::Error &) {
    }
    try {
        cam::unpackGzip(bytes, "input");
    } catch (const cam::Error &) {
    }
    try {
        cam::unpackZip(bytes, "features", "input");
    } catch (const cam::Error &) {
    }
    try {
        cam::parseFont(bytes, "input");
    } catch (const cam::Error &) {
    }
    return 0;
}
