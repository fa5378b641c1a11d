// The one exception of the archive layer.
#pragma once

#include <stdexcept>

namespace archive {

// What went wrong, in UTF-8, with the file or the entry concerned.
class BitException : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

} // namespace archive
