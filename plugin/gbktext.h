// The Chinese texts of the log are written in the GBK code page, whatever the platform's own is.
#pragma once

#include <string>

// `utf8` in the bytes of code page 936; characters outside it become "?".
std::string gbk(const char *utf8);
