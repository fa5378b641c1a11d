#include "platform/paths.h"

#include <QtGlobal>

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace platform {

QString toLocal(const QString &path)
{
#ifdef Q_OS_WIN
    return path;
#else
    QString local = path;
    return local.replace(QLatin1Char('\\'), QLatin1Char('/'));
#endif
}

std::wstring toLocal(const std::wstring &path)
{
#ifdef Q_OS_WIN
    return path;
#else
    std::wstring local = path;
    std::replace(local.begin(), local.end(), L'\\', L'/');
    return local;
#endif
}

QString toHandedOver(const QString &path)
{
    QString handedOver = path;
    return handedOver.replace(QLatin1Char('/'), QLatin1Char('\\'));
}

void touchFolder(const QString &folder)
{
    const auto now = std::filesystem::file_time_type::clock::now();
    std::error_code ignored;
    std::filesystem::last_write_time(std::filesystem::u8path(folder.toStdString()), now, ignored);
}

} // namespace platform
