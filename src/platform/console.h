// What a program's standard streams are connected to.
#pragma once

#include <cstdio>

namespace platform {

// Whether a person looks at `stream` on a terminal, rather than a file or another program.
bool isTerminal(std::FILE *stream);

} // namespace platform
