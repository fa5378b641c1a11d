// The host's settings file "oxconfig.ini" in the working folder, as far as the library needs it. The host
// writes it with Qt, whose rules for quotes and escapes are followed.
#pragma once

#include <string>
#include <string_view>

namespace cam {

// The text of `section`/`key`; empty when the file, the section or the key is missing.
std::string readSetting(std::string_view section, std::string_view key);

// The same out of a file's text (UTF-8).
std::string settingIn(std::string_view text, std::string_view section, std::string_view key);

} // namespace cam
