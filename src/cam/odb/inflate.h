// One deflate stream, as gzip and zip hold it, unpacked by zlib.
#pragma once

#include <cstddef>
#include <limits>
#include <string>
#include <string_view>

namespace cam {

// What surrounds the stream: a gzip header and trailer, which zlib checks, or nothing.
enum class DeflateForm { Gzip, Raw };

struct InflatedStream
{
    enum State { Whole, Damaged, TooLong } state = Damaged;
    std::string text;
    std::size_t used = 0; // bytes of the input
};

// Unpacks the stream at the start of `packed`. It is Damaged when it is cut off as well, and TooLong as soon
// as its text has more than `most` bytes. Throws Error, with `name`, when zlib cannot be started.
InflatedStream inflateStream(std::string_view packed, DeflateForm form, const std::string &name,
                             std::size_t most = std::numeric_limits<std::size_t>::max());

} // namespace cam
