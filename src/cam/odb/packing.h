// The forms in which a job's files are packed, each told by its first bytes: gzip, compress (LZW), zip.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace cam {

constexpr std::size_t packingMark = 4; // as many first bytes tell the forms apart

// Whether `bytes`, at least the first of a file, begin as one of the forms does.
bool isPacked(std::string_view bytes);

// The text in a packed file. `member` is the name that the file has inside a zip archive, `name` is for
// messages. Throws Error for one that is damaged, cut off or followed by something else.
std::string unpack(std::string_view packed, std::string_view member, const std::string &name);

// The same of one form; `packed` begins with its mark.
std::string unpackGzip(std::string_view packed, const std::string &name);
std::string unpackCompress(std::string_view packed, const std::string &name);

} // namespace cam
