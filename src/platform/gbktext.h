// The Chinese texts of the log are written in the GBK code page, whatever the platform's own is.
#pragma once

#include <string>

class QTextCodec;

namespace platform {

// `utf8` in the bytes of code page 936; characters outside it become "?".
std::string gbk(const char *utf8);
// In the bytes of `codec`; unchanged when it is null, as in a Qt that was built without the large codecs.
std::string gbk(const char *utf8, const QTextCodec *codec);

} // namespace platform
