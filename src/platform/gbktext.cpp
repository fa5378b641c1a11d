#include "platform/gbktext.h"

#include <QByteArray>
#include <QString>
#include <QTextCodec>

std::string platform::gbk(const char *utf8)
{
    return gbk(utf8, QTextCodec::codecForName("GBK"));
}

std::string platform::gbk(const char *utf8, const QTextCodec *codec)
{
    return codec ? codec->fromUnicode(QString::fromUtf8(utf8)).toStdString() : utf8;
}
