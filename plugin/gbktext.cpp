#include "plugin/gbktext.h"

#include <QByteArray>
#include <QString>
#include <QTextCodec>

std::string gbk(const char *utf8)
{
    return QTextCodec::codecForName("GBK")->fromUnicode(QString::fromUtf8(utf8)).toStdString();
}
