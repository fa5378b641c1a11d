// Reads an archive's list of entries out of the properties that a back end gives.
#pragma once

#include "archive/backend.h"
#include "archive/entry.h"

#include <vector>

namespace archive {

// The entries in archive order. Throws BitException when the list itself is damaged or ends early.
std::vector<Entry> readEntries(const InArchive &archive, const BitInFormat &format);

} // namespace archive
