// The loop around zlib's inflate, in pieces that its 32-bit counters can hold.
#include "cam/odb/inflate.h"

#include "cam/base/error.h"

#include <algorithm>
#include <vector>

#include <zlib.h>

namespace cam {

InflatedStream inflateStream(std::string_view packed, DeflateForm form, const std::string &name,
                             std::size_t most)
{
    z_stream stream{};
    if (inflateInit2(&stream, form == DeflateForm::Gzip ? 16 + MAX_WBITS : -MAX_WBITS) != Z_OK)
        throw Error(name + ": zlib cannot be started");
    struct Closer
    {
        z_stream &stream;
        ~Closer() { inflateEnd(&stream); }
    } closer{stream};

    InflatedStream result;
    std::vector<char> chunk(256 * 1024);
    int state = Z_OK;
    while (state != Z_STREAM_END) {
        const std::size_t portion = std::min<std::size_t>(packed.size() - result.used, 1u << 30);
        stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(packed.data() + result.used));
        stream.avail_in = static_cast<uInt>(portion);
        stream.next_out = reinterpret_cast<Bytef *>(chunk.data());
        stream.avail_out = static_cast<uInt>(chunk.size());
        state = inflate(&stream, Z_NO_FLUSH);
        result.used += portion - stream.avail_in;
        result.text.append(chunk.data(), chunk.size() - stream.avail_out);
        if (result.text.size() > most) {
            result.state = InflatedStream::TooLong;
            return result;
        }
        const bool isStuck = state == Z_BUF_ERROR || (state == Z_OK && result.used == packed.size() &&
                                                      stream.avail_out == chunk.size());
        if (isStuck || (state != Z_OK && state != Z_STREAM_END))
            return result;
    }
    result.state = InflatedStream::Whole;
    return result;
}

} // namespace cam
