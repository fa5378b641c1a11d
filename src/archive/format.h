// The archive formats that are read.
#pragma once

namespace archive {

// An archive format, by 7-Zip's number for it.
struct BitInFormat
{
    unsigned char number;
};

namespace BitFormat {
inline constexpr BitInFormat GZip{0xEF};
inline constexpr BitInFormat Tar{0xEE};
} // namespace BitFormat

} // namespace archive
