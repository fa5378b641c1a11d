#include "platform/console.h"

#include <io.h>

namespace platform {

bool isTerminal(std::FILE *stream)
{
    return _isatty(_fileno(stream)) != 0;
}

} // namespace platform
