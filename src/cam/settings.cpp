// Read by the library that hosts write it with.
#include "cam/settings.h"

#include <QSettings>

namespace cam {

std::string hostSetting(const char *key)
{
    QSettings settings("oxconfig.ini", QSettings::IniFormat);
    settings.setIniCodec("utf-8");
    return settings.value(key).toString().toStdString();
}

} // namespace cam
