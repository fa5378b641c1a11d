// Paths as the operating system wants them. The plug-in builds and hands over the same path texts on every
// platform, with backslashes; only here do they become local ones.
#pragma once

#include <QString>

#include <string>

namespace platform {

// `path` as the operating system takes it: unchanged on Windows, elsewhere with every backslash as "/".
QString toLocal(const QString &path);
std::wstring toLocal(const std::wstring &path);

// `path` as it is handed to the plug-in on every platform, with every "/" as a backslash: the plug-in's
// clean-up commands carry it without quotes, and the command interpreter reads a "/" as the begin of a
// switch.
QString toHandedOver(const QString &path);

// Makes now the time at which the local folder `folder` was last changed, where the system allows it.
void touchFolder(const QString &folder);

} // namespace platform
