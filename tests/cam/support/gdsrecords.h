// Records of GDSII stream files, put together by tests.
#pragma once

#include <QByteArray>
#include <QVector>
#include <QtEndian>

namespace gdsrecords {

inline QByteArray record(int type, int dataType, const QByteArray &data = {})
{
    QByteArray bytes(4, '\0');
    qToBigEndian<quint16>(quint16(data.size() + 4), reinterpret_cast<uchar *>(bytes.data()));
    bytes[2] = char(type);
    bytes[3] = char(dataType);
    return bytes + data;
}

inline QByteArray shorts(const QVector<int> &values)
{
    QByteArray bytes(values.size() * 2, '\0');
    for (int i = 0; i < values.size(); ++i)
        qToBigEndian<qint16>(qint16(values[i]), reinterpret_cast<uchar *>(bytes.data()) + 2 * i);
    return bytes;
}

inline QByteArray longs(const QVector<int> &values)
{
    QByteArray bytes(values.size() * 4, '\0');
    for (int i = 0; i < values.size(); ++i)
        qToBigEndian<qint32>(values[i], reinterpret_cast<uchar *>(bytes.data()) + 4 * i);
    return bytes;
}

// 0.001 (of a user unit) and 1e-9 metres, as the format writes them.
inline QByteArray nanometreUnits()
{
    return record(0x03, 5, QByteArray::fromHex("3e4189374bc6a7ef") + QByteArray::fromHex("3944b82fa09b5a51"));
}

inline QByteArray name(int type, QByteArray text)
{
    if (text.size() % 2)
        text += '\0';
    return record(type, 6, text);
}

inline QByteArray boundary(int dataType, const QVector<int> &xy)
{
    return record(0x08, 0) + record(0x0d, 2, shorts({1})) + record(0x0e, 2, shorts({dataType})) +
           record(0x10, 3, longs(xy)) + record(0x11, 0);
}

inline QByteArray structure(const QByteArray &title, const QByteArray &elements)
{
    return record(0x05, 2, shorts({0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0})) + name(0x06, title) + elements +
           record(0x07, 0);
}

// A reference; `turns` are its records from STRANS to ANGLE.
inline QByteArray reference(const QByteArray &to, const QVector<int> &xy, const QByteArray &turns = {})
{
    return record(0x0a, 0) + name(0x12, to) + turns + record(0x10, 3, longs(xy)) + record(0x11, 0);
}

inline QByteArray array(const QByteArray &to, const QVector<int> &counts, const QVector<int> &xy)
{
    return record(0x0b, 0) + name(0x12, to) + record(0x13, 2, shorts(counts)) + record(0x10, 3, longs(xy)) +
           record(0x11, 0);
}

// A path on layer 1, datatype 0.
inline QByteArray path(int type, int width, const QVector<int> &xy, const QByteArray &extensions = {})
{
    return record(0x09, 0) + record(0x0d, 2, shorts({1})) + record(0x0e, 2, shorts({0})) +
           record(0x21, 2, shorts({type})) + record(0x0f, 3, longs({width})) + extensions +
           record(0x10, 3, longs(xy)) + record(0x11, 0);
}

inline QByteArray head()
{
    return record(0x00, 2, shorts({600})) + record(0x01, 2, shorts({0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0})) +
           name(0x02, "LIB");
}

inline QByteArray library(const QByteArray &structures)
{
    return head() + nanometreUnits() + structures + record(0x04, 0);
}

} // namespace gdsrecords
