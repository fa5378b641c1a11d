#include "workbench/logtext.h"

#include <QTextCodec>

namespace {

bool decode(const char *codecName, const QByteArray &bytes, QString &text)
{
    QTextCodec *codec = QTextCodec::codecForName(codecName);
    if (!codec)
        return false;
    QTextCodec::ConverterState state;
    text = codec->toUnicode(bytes.constData(), bytes.size(), &state);
    return state.invalidChars == 0 && state.remainingChars == 0;
}

bool isAscii(char byte)
{
    return static_cast<unsigned char>(byte) < 0x80;
}

QString decodeRun(const QByteArray &run)
{
    QString text;
    if (!decode("UTF-8", run, text))
        decode("GB18030", run, text); // contains GBK, and every Qt has it
    return text;
}

} // namespace

QString decodeLogText(const QByteArray &bytes)
{
    QString text;
    if (decode("UTF-8", bytes, text))
        return text;
    text.clear();
    for (int begin = 0; begin < bytes.size();) {
        const bool ascii = isAscii(bytes[begin]);
        int end = begin;
        while (end < bytes.size() && isAscii(bytes[end]) == ascii)
            ++end;
        const QByteArray run = bytes.mid(begin, end - begin);
        text += ascii ? QString::fromLatin1(run) : decodeRun(run);
        begin = end;
    }
    return text;
}
