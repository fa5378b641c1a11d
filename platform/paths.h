// Paths as the operating system wants them. The plug-in builds and hands over the same path texts on every
// platform, with backslashes; only here do they become local ones.
#pragma once

#include <QString>

#include <string>

namespace platform {

// `path` as the operating system takes it: unchanged on Windows, elsewhere with every backslash as "/".
QString toLocal(const QString &path);
std::wstring toLocal(const std::wstring &path);

} // namespace platform
