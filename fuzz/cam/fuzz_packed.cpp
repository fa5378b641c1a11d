// The two compressions of a job's files, and fonts.
#include "host/cam/error.h"
#include "host/cam/odb/font.h"
#include "host/cam/odb/textfile.h"

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
        cam::parseFont(bytes, "input");
    } catch (const cam::Error &) {
    }
    return 0;
}
