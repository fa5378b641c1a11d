// The host's settings file "oxconfig.ini" in the working folder: a host that only makes the calls of
// run/orvexapi.h says there where its jobs are, and whether exports are recorded.
#pragma once

#include <string>

namespace cam {

// The text of `key` ("Section/key"), UTF-8; empty when the file or the key is missing.
std::string hostSetting(const char *key);

} // namespace cam
