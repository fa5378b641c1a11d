// Reads GDSII stream files: records of a two-byte length, a type, a data type and big-endian data.
#include "workbench/view/layerdrawing.h"

#include <QFile>
#include <QHash>
#include <QSet>
#include <QTransform>
#include <QtEndian>

#include <cmath>

namespace {

// Record types by the format's names.
enum Record : int {
    UNITS = 0x03,
    ENDLIB = 0x04,
    BGNSTR = 0x05,
    STRNAME = 0x06,
    ENDSTR = 0x07,
    BOUNDARY = 0x08,
    PATH = 0x09,
    SREF = 0x0A,
    AREF = 0x0B,
    DATATYPE = 0x0E,
    XY = 0x10,
    ENDEL = 0x11,
    SNAME = 0x12,
    COLROW = 0x13,
    STRANS = 0x1A,
    MAG = 0x1B,
    ANGLE = 0x1C,
    BOX = 0x2D,
};

const int outlineDataType = 1;
const int deepest = 64;        // levels of references; deeper ones can only be a circle
const int mostAreas = 1000000; // more do not fit into a picture, nor the memory for them

struct Reference
{
    QString name;
    QPolygonF points; // one, or three of an array: origin, end of the columns, end of the rows
    bool mirrored = false;
    double magnification = 1.0;
    double angle = 0.0; // degrees, counter-clockwise
    int columns = 1;
    int rows = 1;
};

struct Structure
{
    QVector<QPolygonF> areas;
    QVector<QPolygonF> outlines;
    QVector<Reference> references;
};

// An eight-byte real: sign bit, exponent to the base 16 (excess 64), seven bytes of fraction.
double realAt(const uchar *bytes)
{
    double fraction = 0.0;
    for (int i = 7; i > 0; --i)
        fraction = (fraction + bytes[i]) / 256.0;
    const double value = fraction * std::pow(16.0, int(bytes[0] & 0x7f) - 64);
    return bytes[0] & 0x80 ? -value : value;
}

class Reader
{
public:
    explicit Reader(const QString &path) : m_file(path)
    {
        if (!m_file.open(QIODevice::ReadOnly))
            throw GdsError(path.toStdString() + ": " + m_file.errorString().toStdString());
        m_bytes = m_file.readAll();
    }

    LayerDrawing read()
    {
        while (next() && m_type != ENDLIB)
            takeRecord();
        if (m_type != ENDLIB)
            fail("expected the record ENDLIB before the end of the file");
        LayerDrawing drawing;
        for (auto it = m_structures.cbegin(); it != m_structures.cend(); ++it) {
            if (!m_referred.contains(it.key()))
                place(it.key(), QTransform(), drawing, 0);
        }
        for (const QVector<QPolygonF> *polygons : {&drawing.areas, &drawing.outlines}) {
            for (const QPolygonF &polygon : *polygons)
                drawing.bounds |= polygon.boundingRect();
        }
        return drawing;
    }

private:
    [[noreturn]] void fail(const std::string &expectation) const
    {
        throw GdsError(m_file.fileName().toStdString() + ", byte " + std::to_string(m_position) + ": " +
                       expectation);
    }

    bool next()
    {
        m_position += m_length;
        if (m_position + 4 > m_bytes.size())
            return false;
        const uchar *head = reinterpret_cast<const uchar *>(m_bytes.constData()) + m_position;
        m_length = qFromBigEndian<quint16>(head);
        m_type = head[2];
        if (m_length < 4 || m_position + m_length > m_bytes.size())
            fail("expected a record of at least 4 bytes that ends within the file");
        m_data = head + 4;
        m_dataSize = m_length - 4;
        return true;
    }

    int int16At(int index) const
    {
        if (m_dataSize < 2 * (index + 1))
            fail("expected a 2-byte number");
        return qFromBigEndian<qint16>(m_data + 2 * index);
    }

    double real(int index) const
    {
        if (m_dataSize < 8 * (index + 1))
            fail("expected an 8-byte real");
        return realAt(m_data + 8 * index);
    }

    qint32 int32At(int index) const
    {
        if (m_dataSize < 4 * (index + 1))
            fail("expected a 4-byte number");
        return qFromBigEndian<qint32>(m_data + 4 * index);
    }

    QString text() const
    {
        QByteArray bytes(reinterpret_cast<const char *>(m_data), m_dataSize);
        while (bytes.endsWith('\0'))
            bytes.chop(1);
        return QString::fromLatin1(bytes);
    }

    QPolygonF points() const
    {
        if (m_dataSize % 8 != 0)
            fail("expected pairs of 4-byte coordinates");
        QPolygonF polygon;
        polygon.reserve(m_dataSize / 8);
        for (int i = 0; i < m_dataSize / 8; ++i)
            polygon << QPointF(int32At(2 * i) * m_millimetres, int32At(2 * i + 1) * m_millimetres);
        return polygon;
    }

    void takeRecord()
    {
        switch (m_type) {
        case UNITS:
            m_millimetres = real(1) * 1000.0; // the second number is a database unit in metres
            break;
        case BGNSTR:
            m_name.clear();
            break;
        case STRNAME:
            m_name = text();
            m_structures[m_name];
            break;
        case BOUNDARY:
        case PATH:
        case BOX:
        case SREF:
        case AREF:
            m_element = m_type;
            m_dataType = 0;
            m_reference = Reference();
            break;
        case DATATYPE:
            m_dataType = int16At(0);
            break;
        case SNAME:
            m_reference.name = text();
            break;
        case STRANS:
            m_reference.mirrored = int16At(0) & 0x8000;
            break;
        case MAG:
            m_reference.magnification = real(0);
            break;
        case ANGLE:
            m_reference.angle = real(0);
            break;
        case COLROW:
            m_reference.columns = int16At(0);
            m_reference.rows = int16At(1);
            break;
        case XY:
            m_points = points();
            break;
        case ENDEL:
            endElement();
            break;
        default:
            break;
        }
    }

    void endElement()
    {
        Structure &structure = m_structures[m_name];
        if (m_element == BOUNDARY || m_element == BOX) {
            (m_dataType == outlineDataType ? structure.outlines : structure.areas) << m_points;
        } else if (m_element == PATH) {
            structure.outlines << m_points;
        } else if (m_element == SREF || m_element == AREF) {
            m_reference.points = m_points;
            const int expected = m_element == SREF ? 1 : 3;
            if (m_points.size() != expected || m_reference.columns < 1 || m_reference.rows < 1)
                fail("expected a reference with " + std::to_string(expected) + " points and positive counts");
            structure.references << m_reference;
            m_referred << m_reference.name;
        }
        m_element = 0;
    }

    void place(const QString &name, const QTransform &transform, LayerDrawing &drawing, int depth) const
    {
        if (depth > deepest)
            throw GdsError(m_file.fileName().toStdString() + ": the structure " + name.toStdString() +
                           " contains itself");
        const auto found = m_structures.constFind(name);
        if (found == m_structures.cend())
            throw GdsError(m_file.fileName().toStdString() + ": expected a structure " + name.toStdString());
        if (drawing.areas.size() > mostAreas)
            throw GdsError(m_file.fileName().toStdString() + ": expected at most " +
                           std::to_string(mostAreas) + " areas");
        for (const QPolygonF &polygon : found->areas)
            drawing.areas << transform.map(polygon);
        for (const QPolygonF &polygon : found->outlines)
            drawing.outlines << transform.map(polygon);
        for (const Reference &reference : found->references)
            placeReference(reference, transform, drawing, depth);
    }

    void placeReference(const Reference &reference, const QTransform &outer, LayerDrawing &drawing,
                        int depth) const
    {
        const QPointF origin = reference.points[0];
        const bool isArray = reference.points.size() == 3;
        const QPointF column = isArray ? (reference.points[1] - origin) / reference.columns : QPointF();
        const QPointF row = isArray ? (reference.points[2] - origin) / reference.rows : QPointF();
        for (int r = 0; r < reference.rows; ++r) {
            for (int c = 0; c < reference.columns; ++c) {
                const QPointF place = origin + column * c + row * r;
                QTransform inner; // the last call acts first: mirrored about x, scaled, rotated, moved
                inner.translate(place.x(), place.y());
                inner.rotate(reference.angle);
                inner.scale(reference.magnification, reference.magnification * (reference.mirrored ? -1 : 1));
                this->place(reference.name, inner * outer, drawing, depth + 1);
            }
        }
    }

    QFile m_file;
    QByteArray m_bytes;
    int m_position = 0; // of the current record
    int m_length = 0;
    int m_type = -1;
    const uchar *m_data = nullptr;
    int m_dataSize = 0;

    double m_millimetres = 1e-6; // a database unit
    QHash<QString, Structure> m_structures;
    QSet<QString> m_referred;
    QString m_name; // of the current structure
    int m_element = 0;
    int m_dataType = 0;
    QPolygonF m_points;
    Reference m_reference;
};

} // namespace

LayerDrawing readGds(const QString &path)
{
    return Reader(path).read();
}
