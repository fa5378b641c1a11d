// Every family of symbols, shrunk and grown beyond the width of its lines: contours that all readers fill
// alike, and each point as its distance from the plain symbol's edges has it.
#include "cam/model/selfcrossing.h"
#include "cam/model/standardsymbol.h"
#include "cam/model/winding.h"

#include <QtTest>

#include <cmath>
#include <optional>
#include <random>

using cam::ContourView;
using cam::Edge;
using cam::EdgeKind;
using cam::Point;
using cam::Shape;

namespace {

constexpr double near = 100.0; // nanometres: closer to an edge nothing is asked

struct Corner
{
    Point at;
    Point before, behind; // unit vectors along the edges that meet here, in their direction
    double turn;          // sine of the angle between them: positive to the left
    bool hasArc;
};

// A contour of the plain symbol, all of whose edges move by `move` nanometres outwards.
class MovedContour
{
public:
    MovedContour(const ContourView &contour, double move) : m_contour(contour), m_move(move)
    {
        std::vector<Point> starts{contour.start};
        for (const Edge &edge : contour)
            starts.push_back(edge.end);
        for (std::size_t i = 0; i < contour.edgeCount; ++i) {
            const std::size_t next = (i + 1) % contour.edgeCount;
            const Point arriving = alongAt(starts[i], contour.edges[i], 1.0);
            const Point leaving = alongAt(starts[next], contour.edges[next], 0.0);
            const bool hasArc =
                contour.edges[i].kind != EdgeKind::Line || contour.edges[next].kind != EdgeKind::Line;
            const double turn = cam::cross(arriving, leaving);
            if (std::fabs(turn) > 1e-3 || cam::dot(arriving, leaving) < 0.0)
                m_corners.push_back({contour.edges[i].end, arriving, leaving, turn, hasArc});
        }
    }

    // Nothing where it depends on how corners stay sharp, or is too close to say.
    std::optional<bool> contains(Point at) const
    {
        const bool inside = cam::windingNumber(m_contour, at) != 0;
        const double far = cam::distanceTo(m_contour, at);
        if (std::fabs(far - std::fabs(m_move)) < near || far < near)
            return std::nullopt;
        if (m_move > 0.0 ? inside : !inside)
            return inside;
        for (const Corner &corner : m_corners) {
            if (isBeyond(corner, at))
                return std::nullopt;
        }
        return inside ? far > -m_move : far < m_move;
    }

private:
    static Point alongAt(Point from, const Edge &edge, double share)
    {
        const Point left = cam::pointOf(from, edge, share).left;
        return {left.y, -left.x};
    }

    // Whether `at` may lie where the moved edges run on to keep a corner sharp.
    bool isBeyond(const Corner &corner, Point at) const
    {
        const bool isOuter = m_move > 0.0;
        if (isOuter != (corner.turn > 0.0))
            return false;
        const Point away = at - corner.at;
        const double halfSine =
            std::sqrt(std::max(1e-4, (1.0 - cam::dot(corner.before, corner.behind)) / 2.0));
        const double halfCosine = std::sqrt(std::max(1e-4, 1.0 - halfSine * halfSine));
        const double reach = std::fabs(m_move) / halfCosine;
        if (corner.hasArc) // moved arcs may meet elsewhere
            return cam::length(away) < 3.0 * reach + near;
        const bool isAhead = cam::dot(away, corner.before) > -near,
                   isBack = cam::dot(away, corner.behind) < near;
        return isAhead && isBack && cam::length(away) < reach + near;
    }

    ContourView m_contour;
    double m_move;
    std::vector<Corner> m_corners;
};

bool isDark(const Shape &shape, Point at)
{
    int sum = 0;
    for (std::size_t i = 0; i < shape.contours.size(); ++i) {
        if (cam::windingNumber(shape.contours[i], at) != 0)
            sum += shape.contours[i].isHole ? -1 : 1;
    }
    return sum > 0;
}

bool isNearEdge(const Shape &shape, Point at)
{
    for (std::size_t i = 0; i < shape.contours.size(); ++i) {
        if (cam::distanceTo(shape.contours[i], at) < near)
            return true;
    }
    return false;
}

std::vector<Point> samplesOf(const Shape &plain, const Shape &grown, double growth)
{
    std::vector<Point> samples;
    for (const Shape *shape : {&plain, &grown}) {
        for (std::size_t i = 0; i < shape->contours.size(); ++i) {
            Point from = shape->contours[i].start;
            for (const Edge &edge : shape->contours[i]) {
                for (const double share : {0.05, 0.4}) {
                    const cam::EdgePoint on = cam::pointOf(from, edge, share);
                    for (const double aside : {growth / 2.0, 0.0}) {
                        for (const double step : {-1.5 * near, 1.5 * near}) {
                            samples.push_back(on.at + on.left * (aside + step));
                            samples.push_back(on.at - on.left * (aside + step));
                        }
                    }
                }
                from = edge.end;
            }
        }
    }
    std::mt19937 random(1);
    const cam::Box box = cam::extent(plain);
    const double margin = std::fabs(growth);
    const auto between = [&](double low, double high) {
        return low + (high - low) * (static_cast<double>(random()) / 4294967296.0);
    };
    for (int i = 0; i < 25; ++i)
        samples.push_back({between(box.low.x - margin, box.high.x + margin),
                           between(box.low.y - margin, box.high.y + margin)});
    return samples;
}

} // namespace

class tst_SymbolGrowth : public QObject
{
    Q_OBJECT

private slots:
    void contoursAreSimpleAndEdgesMoveByHalfOfIt_data();
    void contoursAreSimpleAndEdgesMoveByHalfOfIt();
};

void tst_SymbolGrowth::contoursAreSimpleAndEdgesMoveByHalfOfIt_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<double>("line"); // micrometres: the width of its lines, or about half of it
    const auto row = [](const QString &name, double line) {
        QTest::newRow(qPrintable(name)) << name << line;
    };
    for (const char *solid : {"r100",
                              "s100",
                              "rect200x100",
                              "rect200x100xr30",
                              "rect200x100xr50x13",
                              "rect200x100xc30",
                              "rect200x100xc50x124",
                              "oval200x100",
                              "oval100x200",
                              "di200x100",
                              "oct200x100x30",
                              "oct100x100x50",
                              "hex_l200x100x40",
                              "hex_l200x100x100",
                              "hex_s100x200x40",
                              "bfr200",
                              "bfs200",
                              "tri200x100",
                              "tri60x200",
                              "oval_h200x100",
                              "oval_h40x200",
                              "hole100xpx5x5",
                              "hplate200x100x40",
                              "hplate200x100x200x10x20",
                              "rhplate200x100x40",
                              "rhplate200x100x200",
                              "rhplate200x100x90x10x20",
                              "fhplate200x100x20x40",
                              "fhplate200x100x50x200",
                              "fhplate200x100x20x40x10x20",
                              "radhplate200x100x40",
                              "radhplate200x100x100",
                              "radhplate200x100x200x20",
                              "radhplate60x200x60x10",
                              "dshape200x100x20",
                              "dshape200x100x50",
                              "dshape60x200x30x20",
                              "r100_30",
                              "rect200x100xr30x1_30"})
        row(solid, 60);
    for (const char *ring : {"donut_r200x140",
                             "donut_r200x200",
                             "donut_r200x0",
                             "donut_s200x140",
                             "donut_s200x140xr20",
                             "donut_s200x140xr27",
                             "donut_s200x140xr50",
                             "donut_s200x140xr29x13",
                             "donut_sr200x140",
                             "donut_sr200x200",
                             "donut_rc300x200x30",
                             "donut_rc300x200x30xr27",
                             "donut_rc300x200x30xr50x24",
                             "donut_rc300x200x100",
                             "donut_o300x200x30",
                             "donut_o200x300x30",
                             "donut_o300x200x100",
                             "moire30x30x3x20x250x0",
                             "moire30x30x3x20x250x30",
                             "moire30x10x4x30x300x45"})
        row(ring, 30);
    for (const char *family : {"thr200x140", "ths200x140", "s_ths200x140", "sr_ths200x140", "sr_ths200x190",
                               "thr200x20", "ths200x20", "ths200x0", "s_ths200x200"}) {
        for (const char *gaps :
             {"x0x4x20", "x45x4x20", "x45x4x90", "x20x3x40", "x0x2x60", "x45x2x130", "x45x1x20", "x0x1x150",
              "x10x1x170", "x9x7x20", "x0x0x20", "x10x4x0", "x45x4x140", "x20x16x5"})
            row(QString(family) + gaps, 30);
    }
    for (const char *corners : {"xr27", "xr10", "xr50", "xr28x13", "xr100"}) {
        for (const char *gaps : {"x45x1x20", "x45x4x20", "x0x4x20", "x0x2x60", "x20x3x40"}) {
            row(QString("s_ths200x140") + gaps + corners, 30);
            row(QString("rc_ths300x200") + gaps + "x30" + corners, 30);
        }
    }
    for (const char *sides : {"300x200", "200x300", "400x100"}) {
        for (const char *gaps : {"x0x4x20", "x45x4x90", "x90x4x110", "x45x2x60", "x135x2x130", "x45x1x20",
                                 "x180x1x190", "x0x0x20", "x90x2x300"}) {
            for (const char *line : {"x30", "x50"}) {
                const double width = QString(line).mid(1).toDouble();
                row(QString("rc_ths") + sides + gaps + line, width);
                row(QString("rc_tho") + sides + gaps + line, width);
                row(QString("o_ths") + sides + gaps + line, width);
                row(QString("oblong_ths") + sides + gaps + line + "xs", width);
                row(QString("oblong_ths") + sides + gaps + line + "xr", width);
            }
        }
        for (const char *gaps : {"x0x3x40", "x100x5x30", "x20x1x80"})
            row(QString("o_ths") + sides + gaps + "x30", 30);
    }
    for (const char *open : {"x0x4x20", "x45x4x20", "x45x2x60", "x90x1x60", "x45x4x200", "x0x0x20"})
        row(QString("s_tho200x140") + open, 30);
    row("s_thr200x140x45x4x20", 30);
    row("s_thr200x140x45x4x90", 30);
    for (const char *stencil :
         {"cross300x200x30x40x50x50xs", "cross300x200x30x40x50x50xr", "cross300x200x30x40x50x50xr10",
          "cross300x200x30x40x0x0xs", "cross300x200x30x40x100x20xr10", "cross300x200x30x40x3x97xr",
          "cross300x200x30x40x8x50xr20", "cross200x200x200x40x50x50xs", "dogbone300x200x30x40x50xs",
          "dogbone300x200x30x40x50xr", "dogbone300x200x30x40x0xrx10", "dogbone300x200x90x40x97xr",
          "dogbone300x200x100x40x50xr", "dpack300x200x20x20x3x2", "dpack300x200x20x20x3x2x10",
          "dpack300x200x20x20x3x2x100", "cross300x200x30x40x50x50xs_20"})
        row(stencil, 40);
}

void tst_SymbolGrowth::contoursAreSimpleAndEdgesMoveByHalfOfIt()
{
    QFETCH(const QString, name);
    QFETCH(const double, line);
    const auto symbol = cam::parseStandardSymbol(name.toStdString(), cam::SymbolUnit::Micrometres);
    const Shape plain = cam::shapeOf(symbol);
    // Two of them for each symbol, so that the test takes seconds; families have many symbols.
    const double shares[] = {-1.5, -0.97, -0.6, 0.1, 0.4, 2.5};
    const int first = qChecksum(name.toLatin1().constData(), uint(name.size())) % 3;
    for (const double share : {shares[first], shares[first + 3]}) {
        const double growth = share * line * 1000.0;
        const QByteArray where = " by " + QByteArray::number(growth / 1000.0) + " um";
        Shape grown;
        try {
            grown = cam::shapeOf(symbol, growth);
        } catch (const cam::SymbolError &error) {
            QFAIL(error.what() + where);
        }
        for (std::size_t i = 0; i < grown.contours.size(); ++i) {
            QVERIFY2(!cam::crossesItself(grown.contours[i], 1.0), "crosses itself" + where);
            QVERIFY2(cam::signedArea(grown.contours[i]) > 0.0, "runs clockwise" + where);
        }
        std::vector<MovedContour> moved;
        for (std::size_t i = 0; i < plain.contours.size(); ++i)
            moved.emplace_back(plain.contours[i], plain.contours[i].isHole ? -growth / 2.0 : growth / 2.0);
        for (const Point at : samplesOf(plain, grown, growth)) {
            if (isNearEdge(grown, at))
                continue;
            int sum = 0;
            bool isKnown = true;
            for (std::size_t i = 0; i < moved.size() && isKnown; ++i) {
                const std::optional<bool> inside = moved[i].contains(at);
                isKnown = inside.has_value();
                if (isKnown && *inside)
                    sum += plain.contours[i].isHole ? -1 : 1;
            }
            if (isKnown && isDark(grown, at) != (sum > 0))
                QFAIL((sum > 0 ? "not dark at " : "dark at ") + QByteArray::number(at.x / 1000.0) + ", " +
                      QByteArray::number(at.y / 1000.0) + where);
        }
    }
}

QTEST_APPLESS_MAIN(tst_SymbolGrowth)
#include "tst_symbolgrowth.moc"
