// A reader of GDSII stream files for tests, written from the format's description and not from the library's
// writer.
#pragma once

#include <QByteArray>
#include <QFile>
#include <QMap>
#include <QPoint>
#include <QPolygon>
#include <QString>
#include <QStringList>
#include <QVector>

#include <cmath>
#include <stdexcept>

struct GdsBoundary
{
    int layer = -1;
    int datatype = -1;
    QPolygon corners; // without the repeated first one
};

struct GdsReference
{
    QString structure;
    QPoint at;
    int columns = 1;
    int rows = 1;
    QPoint columnStep;
    QPoint rowStep;
};

struct GdsStructure
{
    QVector<GdsBoundary> boundaries;
    QVector<GdsReference> references;
};

class GdsFile
{
public:
    // Throws std::runtime_error for anything that does not follow the format.
    explicit GdsFile(const QByteArray &bytes) : m_bytes(bytes) { read(); }
    static GdsFile open(const QString &name)
    {
        QFile file(name);
        if (!file.open(QIODevice::ReadOnly))
            throw std::runtime_error("cannot open " + name.toStdString());
        return GdsFile(file.readAll());
    }

    int version = 0;
    QString nameOfLibrary;
    QVector<int> date;
    double userUnit = 0.0; // of a database unit
    double metres = 0.0;   // of a database unit
    QStringList order;     // the structures as they stand in the file
    QMap<QString, GdsStructure> structures;

    // Structures that no other refers to.
    QStringList tops() const
    {
        QStringList names = order;
        for (const GdsStructure &structure : structures) {
            for (const GdsReference &reference : structure.references)
                names.removeAll(reference.structure);
        }
        return names;
    }

    // All boundaries of a datatype below `structure`, moved to where they come to lie.
    QVector<QPolygon> flat(const QString &structure, int datatype = 0, QPoint at = {}) const
    {
        QVector<QPolygon> polygons;
        const GdsStructure &found = structures[structure];
        for (const GdsBoundary &boundary : found.boundaries) {
            if (boundary.datatype == datatype)
                polygons.append(boundary.corners.translated(at));
        }
        for (const GdsReference &reference : found.references) {
            for (int row = 0; row < reference.rows; ++row) {
                for (int column = 0; column < reference.columns; ++column)
                    polygons +=
                        flat(reference.structure, datatype,
                             at + reference.at + reference.columnStep * column + reference.rowStep * row);
            }
        }
        return polygons;
    }
    QVector<QPolygon> flat() const { return flat(tops().value(0)); }

    // In square database units; overlaps count as often as they occur.
    static double area(const QVector<QPolygon> &polygons)
    {
        double doubled = 0.0;
        for (const QPolygon &polygon : polygons) {
            for (int i = 0; i < polygon.size(); ++i) {
                const QPoint a = polygon[i] - polygon[0], b = polygon[(i + 1) % polygon.size()] - polygon[0];
                doubled += double(a.x()) * b.y() - double(a.y()) * b.x();
            }
        }
        return doubled / 2.0;
    }
    static QRect extent(const QVector<QPolygon> &polygons)
    {
        int left = INT32_MAX, right = INT32_MIN, low = INT32_MAX, high = INT32_MIN;
        for (const QPolygon &polygon : polygons) {
            for (const QPoint &p : polygon) {
                left = qMin(left, p.x());
                right = qMax(right, p.x());
                low = qMin(low, p.y());
                high = qMax(high, p.y());
            }
        }
        return QRect(QPoint(left, low), QPoint(right, high));
    }

private:
    [[noreturn]] void fail(const char *what) const
    {
        throw std::runtime_error(std::string(what) + " at byte " + std::to_string(m_at));
    }
    int word(int at) const { return (quint8(m_bytes[at]) << 8) | quint8(m_bytes[at + 1]); }
    int signedWord(int at) const { return qint16(word(at)); }
    int longWord(int at) const { return int(quint32(word(at)) << 16 | quint32(word(at + 2))); }
    double real(int at) const
    {
        double mantissa = 0.0;
        for (int i = 7; i >= 1; --i)
            mantissa = (mantissa + quint8(m_bytes[at + i])) / 256.0;
        const int exponent = (quint8(m_bytes[at]) & 0x7f) - 64;
        return (quint8(m_bytes[at]) & 0x80 ? -1.0 : 1.0) * mantissa * std::pow(16.0, exponent);
    }
    // Moves to the next record; true when it is of the type.
    bool next(int type)
    {
        if (m_at + m_length + 4 > m_bytes.size())
            fail("the file ends in the middle");
        if ((word(m_at + m_length + 2)) != type)
            return false;
        m_at += m_length;
        m_length = word(m_at);
        if (m_length < 4 || m_length % 2 != 0 || m_at + m_length > m_bytes.size())
            fail("a record of bad length");
        return true;
    }
    void expect(int type, const char *name)
    {
        if (!next(type))
            fail(name);
    }
    QString text() const
    {
        QByteArray raw = m_bytes.mid(m_at + 4, m_length - 4);
        if (raw.endsWith('\0'))
            raw.chop(1);
        return QString::fromLatin1(raw);
    }
    QPolygon points() const
    {
        QPolygon list;
        for (int at = m_at + 4; at < m_at + m_length; at += 8)
            list.append(QPoint(longWord(at), longWord(at + 4)));
        return list;
    }
    void read()
    {
        expect(0x0002, "HEADER");
        version = signedWord(m_at + 4);
        expect(0x0102, "BGNLIB");
        for (int i = 0; i < 12; ++i)
            date.append(signedWord(m_at + 4 + 2 * i));
        expect(0x0206, "LIBNAME");
        nameOfLibrary = text();
        expect(0x0305, "UNITS");
        userUnit = real(m_at + 4);
        metres = real(m_at + 12);
        while (next(0x0502))
            readStructure();
        expect(0x0400, "ENDLIB");
        if (m_at + m_length != m_bytes.size())
            fail("bytes behind ENDLIB");
        for (const GdsStructure &structure : structures) {
            for (const GdsReference &reference : structure.references) {
                if (!structures.contains(reference.structure))
                    fail("a reference to nothing");
            }
        }
    }
    void readStructure()
    {
        expect(0x0606, "STRNAME");
        const QString name = text();
        if (structures.contains(name) || name.isEmpty() || name.size() > 32)
            fail("a structure name that is taken, empty or too long");
        for (const QChar c : name) {
            if (!(c.isLetterOrNumber() && c.unicode() < 128) && c != '_' && c != '$' && c != '?')
                fail("an illegal structure name");
        }
        order.append(name);
        GdsStructure structure;
        while (!next(0x0700)) {
            if (next(0x0800))
                structure.boundaries.append(readBoundary());
            else if (next(0x0A00))
                structure.references.append(readReference(false));
            else if (next(0x0B00))
                structure.references.append(readReference(true));
            else
                fail("an element that was not expected");
        }
        structures.insert(name, structure);
    }
    GdsBoundary readBoundary()
    {
        GdsBoundary boundary;
        expect(0x0D02, "LAYER");
        boundary.layer = signedWord(m_at + 4);
        expect(0x0E02, "DATATYPE");
        boundary.datatype = signedWord(m_at + 4);
        expect(0x1003, "XY");
        boundary.corners = points();
        if (boundary.corners.size() < 4 || boundary.corners.first() != boundary.corners.last())
            fail("a boundary that is not closed");
        boundary.corners.removeLast();
        expect(0x1100, "ENDEL");
        return boundary;
    }
    GdsReference readReference(bool isArray)
    {
        GdsReference reference;
        expect(0x1206, "SNAME");
        reference.structure = text();
        if (isArray) {
            expect(0x1302, "COLROW");
            reference.columns = signedWord(m_at + 4);
            reference.rows = signedWord(m_at + 6);
            if (reference.columns < 1 || reference.rows < 1)
                fail("an array of nothing");
        }
        expect(0x1003, "XY");
        const QPolygon list = points();
        if (list.size() != (isArray ? 3 : 1))
            fail("a reference with the wrong number of points");
        reference.at = list[0];
        if (isArray) {
            reference.columnStep = (list[1] - list[0]) / reference.columns;
            reference.rowStep = (list[2] - list[0]) / reference.rows;
            if (reference.columnStep * reference.columns != list[1] - list[0] ||
                reference.rowStep * reference.rows != list[2] - list[0])
                fail("array steps that are no whole numbers");
        }
        expect(0x1100, "ENDEL");
        return reference;
    }

    QByteArray m_bytes;
    int m_at = 0;
    int m_length = 0;
};
