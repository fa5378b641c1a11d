// What is drawn is chosen first, as an image; then it is written down as files.
#include "tests/cam/random/randomjob.h"

#include "cam/base/error.h"
#include "tests/cam/random/randomsurface.h"

#include <QMap>
#include <QStringList>

#include <cmath>
#include <optional>

namespace testing {

using cam::Point;

namespace {

class JobMaker
{
public:
    explicit JobMaker(unsigned seed) : m_random(seed) { m_job.seed = seed; }

    RandomJob make()
    {
        m_isInch = oneIn(2);
        chooseOptions();
        cam::LayerImage &image = m_job.image;
        image.job = "job";
        image.layer = "top";
        image.context = "BOARD";
        image.type = "SIGNAL";
        image.copperRank = 1;
        image.copperCount = 2;
        addOwnSymbols();
        const int levels = oneIn(2) ? 1 : any(2, 3);
        for (int level = 0; level < levels; ++level)
            addStep(level, level + 1 == levels);
        image.datum = image.top().datum;
        if (!m_job.options.negative || !oneIn(3))
            addProfile();
        return std::move(m_job);
    }

private:
    int any(int low, int high) { return std::uniform_int_distribution<int>(low, high)(m_random); }
    bool oneIn(int count) { return any(1, count) == 1; }
    template <typename Value>
    Value oneOf(std::initializer_list<Value> values)
    {
        return values.begin()[any(0, int(values.size()) - 1)];
    }

    void chooseOptions()
    {
        cam::ExportOptions &options = m_job.options;
        options.dbu = 0.001;
        if (oneIn(2))
            options.angle = oneOf({90.0, 180.0, 270.0, 30.0, 45.0, 17.5, 301.25});
        options.mirror = oneIn(3);
        if (oneIn(4))
            options.xScale = options.yScale = oneOf({0.5, 1.25, 2.0, 1.0005});
        else if (oneIn(5)) {
            options.xScale = oneOf({0.9, 1.01, 1.5});
            options.yScale = oneOf({0.8, 1.0, 1.2});
        }
        if (oneIn(4))
            options.resize = oneOf({50000.0, -30000.0, 10000.0, 200000.0, -120000.0});
        options.negative = oneIn(5);
    }

    // Nanometres that the files can hold exactly: 0.1 um or 0.00001 inch.
    double length(double low, double high)
    {
        const double step = m_isInch ? 254.0 : 100.0;
        return step * any(int(low / step), int(high / step));
    }
    Point position(double reach = 4e6) { return {length(-reach, reach), length(-reach, reach)}; }
    cam::Polarity polarity(int oneNegativeIn = 4)
    {
        return oneIn(oneNegativeIn) ? cam::Polarity::Negative : cam::Polarity::Positive;
    }

    // ---- symbols

    std::uint32_t symbol(const QString &name, cam::SymbolUnit unit)
    {
        cam::SymbolTable &symbols = m_job.image.symbols;
        for (std::uint32_t i = 0; i < symbols.size(); ++i) {
            if (symbols[i].name == name.toStdString() && symbols[i].unit == unit && symbols[i].standard)
                return i;
        }
        cam::Symbol added;
        added.name = name.toStdString();
        added.unit = unit;
        added.standard = cam::parseStandardSymbol(added.name, unit);
        symbols.push_back(std::move(added));
        return std::uint32_t(symbols.size() - 1);
    }

    // `share` of the symbol's size as a number of its name.
    QString number(double micrometres)
    {
        return m_nameUnit == cam::SymbolUnit::Mils ? QString::number(std::round(micrometres / 2.54) / 10.0)
                                                   : QString::number(std::round(micrometres));
    }

    std::uint32_t roundPen()
    {
        m_nameUnit = oneIn(2) ? cam::SymbolUnit::Mils : cam::SymbolUnit::Micrometres;
        return symbol("r" + number(any(100, 800)), m_nameUnit);
    }

    std::uint32_t otherPen(bool mayBeOwn)
    {
        if (mayBeOwn && m_ownPen && oneIn(3))
            return *m_ownPen;
        m_nameUnit = oneIn(2) ? cam::SymbolUnit::Mils : cam::SymbolUnit::Micrometres;
        const QString a = number(any(200, 800)), b = number(any(200, 800));
        return symbol(
            oneOf<QString>({"s" + a, "rect" + a + "x" + b, "oval" + a + "x" + b, "di" + a + "x" + b}),
            m_nameUnit);
    }

    QString standardName()
    {
        const double w = any(400, 2000), h = any(400, 2000), least = std::min(w, h);
        const QString width = number(w), height = number(h), line = number(least * any(10, 40) / 100.0),
                      inner = number(w * any(30, 90) / 100.0), gap = number(least * any(5, 25) / 100.0),
                      corner = number(least * any(5, 50) / 100.0),
                      quarter = number(least * any(5, 24) / 100.0);
        const QString by = width + "x" + height;
        const QString angle = oneOf<QString>({"0", "45", "90", "30", "22.5"}),
                      spokes = oneOf<QString>({"1", "2", "3", "4"});
        const QString square = oneOf<QString>({"1", "2", "4"}), eighth = oneOf<QString>({"0", "45", "90"});
        const QString corners = oneOf<QString>({"", "x1", "x24", "x134", "x3"});
        const QString radii = oneIn(2) ? "x" + quarter + "x" + gap : QString();
        const QString ends = oneOf<QString>({"r", "s"}) + (oneIn(2) ? number(least / 20) : QString());
        switch (any(0, 44)) {
        case 0:
            return "r" + width;
        case 1:
            return "s" + width;
        case 2:
            return "rect" + by;
        case 3:
            return "rect" + by + "xr" + corner + corners;
        case 4:
            return "rect" + by + "xc" + quarter + corners;
        case 5:
            return "oval" + by;
        case 6:
            return "di" + by;
        case 7:
            return "oct" + by + "x" + quarter;
        case 8:
            return "donut_r" + width + "x" + inner;
        case 9:
            return "donut_s" + width + "x" + inner;
        case 10:
            return "donut_s" + width + "x" + inner + "xr" + quarter + corners;
        case 11:
            return "donut_sr" + width + "x" + inner;
        case 12:
            return "donut_rc" + by + "x" + line;
        case 13:
            return "donut_rc" + by + "x" + line + "xr" + quarter + corners;
        case 14:
            return "donut_o" + by + "x" + line;
        case 15:
            return "hex_l" + by + "x" + number(w * any(5, 50) / 100.0);
        case 16:
            return "hex_s" + by + "x" + number(h * any(5, 50) / 100.0);
        case 17:
            return "bfr" + width;
        case 18:
            return "bfs" + width;
        case 19:
            return "tri" + by;
        case 20:
            return "oval_h" + by;
        case 21:
            return "thr" + width + "x" + inner + "x" + angle + "x" + spokes + "x" + gap;
        case 22:
            return "ths" + width + "x" + inner + "x" + angle + "x" + spokes + "x" + gap;
        case 23:
            return "s_ths" + width + "x" + inner + "x" + eighth + "x" + spokes + "x" + gap;
        case 24:
            return "s_ths" + width + "x" + inner + "x" + eighth + "x" + square + "x" + gap + "xr" + quarter;
        case 25:
            return "s_tho" + width + "x" + inner + "x" + eighth + "x" + square + "x" + gap;
        case 26:
            return "s_thr" + width + "x" + inner + "x45x4x" + gap;
        case 27:
            return "sr_ths" + width + "x" + inner + "x" + angle + "x" + spokes + "x" + gap;
        case 28:
            return "rc_ths" + by + "x" + eighth + "x" + square + "x" + gap + "x" + line;
        case 29:
            return "rc_ths" + by + "x" + eighth + "x" + square + "x" + gap + "x" + line + "xr" + quarter;
        case 30:
            return "rc_tho" + by + "x" + eighth + "x" + square + "x" + gap + "x" + line;
        case 31:
            return "o_ths" + by + "x" + angle + "x" + spokes + "x" + gap + "x" + line;
        case 32:
            return "oblong_ths" + by + "x" + eighth + "x" + square + "x" + gap + "x" + line +
                   oneOf<QString>({"xr", "xs"});
        case 33:
            return "el" + by;
        case 34:
            return "moire" + number(least / 20) + "x" + number(least / 20) + "x3x" + number(least / 30) +
                   "x" + number(least) + "x" + angle;
        case 35:
            return "hole" + width + "xpx0x0";
        case 36:
            return "hplate" + by + "x" + number(w * any(5, 100) / 100.0) + radii;
        case 37:
            return "rhplate" + by + "x" + number(w * any(5, 99) / 100.0) + radii;
        case 38:
            return "fhplate" + by + "x" + number(h * any(5, 49) / 100.0) + "x" +
                   number(w * any(5, 99) / 100.0) + radii;
        case 39:
            return "radhplate" + by + "x" + number(w * any(5, 99) / 100.0) +
                   (oneIn(2) ? "x" + quarter : QString());
        case 40:
            return "dshape" + by + "x" + number(least * any(5, 49) / 100.0) +
                   (oneIn(2) ? "x" + quarter : QString());
        case 41:
            return "cross" + by + "x" + line + "x" + gap + "x" + QString::number(any(0, 100)) + "x" +
                   QString::number(any(0, 100)) + "x" + ends;
        case 42:
            return "dogbone" + by + "x" + quarter + "x" + line + "x" + QString::number(any(0, 100)) + "x" +
                   ends;
        case 43:
            return "dpack" + by + "x" + number(w / 10) + "x" + number(h / 10) + "x" +
                   QString::number(any(1, 4)) + "x" + QString::number(any(1, 4)) +
                   (oneIn(2) ? "x" + number(least / 30) : QString());
        default:
            return "null" + number(1);
        }
    }

    std::uint32_t padSymbol(bool mayBeOwn)
    {
        if (mayBeOwn && !m_own.empty() && oneIn(5))
            return m_own[std::size_t(any(0, int(m_own.size()) - 1))];
        for (;;) { // some names make no shape
            m_nameUnit = oneIn(2) ? cam::SymbolUnit::Mils : cam::SymbolUnit::Micrometres;
            try {
                const QString turned =
                    oneIn(8) ? "_" + oneOf<QString>({"30", "90", "-12.5", "200"}) : QString();
                return symbol(standardName() + turned, m_nameUnit);
            } catch (const cam::SymbolError &) {
            }
        }
    }

    // Some solid pads: what a stroke makes of holes and of negative features is its own affair.
    void addOwnPen()
    {
        auto features = std::make_unique<cam::FeatureSet>();
        const int size = any(1, 3);
        for (int i = 0; i < size; ++i) {
            cam::Pad pad;
            pad.at = position(0.3e6);
            pad.symbol = oneIn(2) ? roundPen() : otherPen(false);
            pad.mirror = oneIn(2);
            pad.angle = oneOf({0.0, 90.0, 30.0});
            features->add(pad, cam::Polarity::Positive);
        }
        cam::Symbol own;
        own.name = "pen";
        own.features = std::move(features);
        m_job.image.symbols.push_back(std::move(own));
        m_ownPen = std::uint32_t(m_job.image.symbols.size() - 1);
    }

    void addOwnSymbols()
    {
        if (oneIn(3))
            addOwnPen();
        const int count = any(0, 3);
        for (int i = 0; i < count; ++i) {
            auto features = std::make_unique<cam::FeatureSet>();
            const int size = any(1, 5);
            for (int j = 0; j < size; ++j)
                addFeature(*features, 0.8e6, 3, i > 0 && oneIn(3));
            cam::Symbol own;
            own.name = "own" + std::to_string(i);
            own.features = std::move(features);
            m_job.image.symbols.push_back(std::move(own));
            m_own.push_back(std::uint32_t(m_job.image.symbols.size() - 1));
        }
    }

    // ---- features

    void addFeature(cam::FeatureSet &features, double reach, int oneNegativeIn, bool mayBeOwn)
    {
        switch (any(0, 9)) {
        case 0:
        case 1: {
            cam::Line line{position(reach), position(reach), oneIn(3) ? otherPen(mayBeOwn) : roundPen()};
            if (oneIn(8))
                line.end = line.start;
            else if (oneIn(3))
                line.end.y = line.start.y;
            return features.add(line, polarity(oneNegativeIn));
        }
        case 2:
        case 3:
            return addArc(features, reach, oneNegativeIn, mayBeOwn);
        case 4: {
            const double step = m_isInch ? 2540.0 * any(10, 40) : 10000.0 * any(3, 10);
            const int cells = any(4, 12);
            addRandomSurface(features, m_random, position(reach), step * reach / 4e6, cells,
                             std::size_t(any(1, 8)), polarity(oneNegativeIn) == cam::Polarity::Positive);
            return;
        }
        default: {
            cam::Pad pad;
            pad.at = position(reach);
            pad.symbol = padSymbol(mayBeOwn);
            pad.mirror = oneIn(2);
            pad.angle = oneIn(2) ? 90.0 * any(0, 3) : oneOf({45.0, 30.0, 12.25, 200.5});
            if (oneIn(6))
                pad.growth = length(-0.1e6, 0.3e6);
            return features.add(pad, polarity(oneNegativeIn));
        }
        }
    }

    void addArc(cam::FeatureSet &features, double reach, int oneNegativeIn, bool mayBeOwn)
    {
        cam::Arc arc;
        arc.center = position(reach);
        arc.clockwise = oneIn(2);
        arc.symbol = oneIn(6) ? otherPen(mayBeOwn) : roundPen();
        const double radius = length(0.1e6, reach / 2.0);
        const auto on = [&](double degrees) {
            const double step = m_isInch ? 254.0 : 100.0, angle = degrees * 3.14159265358979323846 / 180.0;
            return arc.center + Point{std::round(radius * std::cos(angle) / step) * step,
                                      std::round(radius * std::sin(angle) / step) * step};
        };
        const double from = oneIn(2) ? 90.0 * any(0, 3) : double(any(0, 359));
        arc.start = on(from);
        arc.end = oneIn(6) ? arc.start : on(oneIn(2) ? from + 90.0 * any(1, 3) : double(any(0, 359)));
        // An error of the program that wrote the job; not of full circles, of which rounding would make
        // nothing.
        if (oneIn(15) && arc.end != arc.start)
            arc.end = arc.center + (arc.end - arc.center) * 1.5;
        features.add(arc, polarity(oneNegativeIn));
    }

    // ---- steps

    void addStep(int level, bool isTop)
    {
        cam::LayerImage &image = m_job.image;
        cam::StepImage step;
        step.name = isTop ? "pcb" : "step" + std::to_string(level);
        if (oneIn(2))
            step.datum = position(2e6);
        const int count = level == 0 ? any(3, 12) : any(0, 4);
        for (int i = 0; i < count; ++i)
            addFeature(step.features, 4e6, 4, true);
        for (int i = 0; level > 0 && i < any(1, 2); ++i) {
            cam::StepRepeat repeat;
            repeat.step = std::uint32_t(any(0, level - 1));
            repeat.at = position(4e6);
            repeat.childDatum = image.steps[repeat.step].datum;
            repeat.angle = oneIn(4) ? 15.25 * (1 + m_job.seed % 7) : 90.0 * any(0, 3);
            repeat.mirror = oneIn(3);
            repeat.nx = std::uint32_t(any(1, 3));
            repeat.ny = std::uint32_t(any(1, 2));
            // Overlapping copies, and some beside each other; also towards smaller coordinates.
            repeat.dx = oneIn(3) ? length(8e6, 12e6) : length(-3e6, 3e6);
            repeat.dy = oneIn(3) ? length(8e6, 12e6) : length(-3e6, 3e6);
            step.repeats.push_back(repeat);
        }
        image.steps.push_back(std::move(step));
    }

    void addProfile()
    {
        const double size = m_isInch ? 6.35e6 : 6e6;
        const Point corners[] = {
            {-size, -size}, {size, -size}, {size, size}, {size / 2.0, size}, {-size, size / 2.0}};
        m_job.image.profile.addPolygon(corners, 5, false);
    }

    std::mt19937 m_random;
    RandomJob m_job;
    bool m_isInch = false;
    cam::SymbolUnit m_nameUnit = cam::SymbolUnit::Micrometres;
    std::vector<std::uint32_t> m_own;
    std::optional<std::uint32_t> m_ownPen;
};

// ---- the files

class JobWriter
{
public:
    explicit JobWriter(const RandomJob &job) : m_job(job), m_random(job.seed + 1000000) {}

    QByteArray features(const cam::FeatureSet &set)
    {
        chooseUnit();
        QByteArray records;
        QMap<std::uint32_t, int> numbers; // of the file, by the image's
        QByteArray names;
        const auto number = [&](std::uint32_t symbol) {
            if (!numbers.contains(symbol)) {
                const int next = numbers.size();
                numbers[symbol] = next;
                const cam::Symbol &source = m_job.image.symbols[symbol];
                names += "$" + QByteArray::number(next) + " " + QByteArray::fromStdString(source.name);
                const cam::SymbolUnit ofFile =
                    m_isInch ? cam::SymbolUnit::Mils : cam::SymbolUnit::Micrometres;
                if (source.standard && source.unit != ofFile)
                    names += source.unit == cam::SymbolUnit::Mils ? " I" : " M";
                names += "\n";
            }
            return QByteArray::number(numbers[symbol]);
        };
        for (const cam::Feature &feature : set.order) {
            const QByteArray polarity = feature.polarity == cam::Polarity::Positive ? " P 0" : " N 0";
            switch (feature.kind) {
            case cam::FeatureKind::Line: {
                const cam::Line &line = set.lines[feature.index];
                records += "L " + text(line.start) + " " + text(line.end) + " " + number(line.symbol) +
                           polarity + "\n";
                break;
            }
            case cam::FeatureKind::Arc: {
                const cam::Arc &arc = set.arcs[feature.index];
                records += "A " + text(arc.start) + " " + text(arc.end) + " " + text(arc.center) + " " +
                           number(arc.symbol) + polarity + (arc.clockwise ? " Y\n" : " N\n");
                break;
            }
            case cam::FeatureKind::Pad: {
                const cam::Pad &pad = set.pads[feature.index];
                const QByteArray symbol = pad.growth == 0.0
                                              ? number(pad.symbol)
                                              : "-1 " + number(pad.symbol) + " " + thousandths(pad.growth);
                records += "P " + text(pad.at) + " " + symbol + polarity + " " + orientation(pad) + "\n";
                break;
            }
            case cam::FeatureKind::Surface: {
                const cam::Surface &surface = set.surfaces[feature.index];
                records += "S" + polarity + "\n";
                for (std::uint32_t i = 0; i < surface.contourCount; ++i)
                    records += contour(set.contours[surface.firstContour + i]);
                records += "SE\n";
                break;
            }
            }
        }
        return unitLine() + names + records;
    }

    QByteArray profile()
    {
        chooseUnit();
        QByteArray records = unitLine() + "S P 0\n";
        for (std::size_t i = 0; i < m_job.image.profile.size(); ++i)
            records += contour(m_job.image.profile[i]);
        return records + "SE\n";
    }

    QByteArray header(const cam::StepImage &step)
    {
        chooseUnit();
        QByteArray lines =
            unitLine() + "X_DATUM=" + text(step.datum.x) + "\nY_DATUM=" + text(step.datum.y) + "\n";
        for (const cam::StepRepeat &repeat : step.repeats) {
            lines += "STEP-REPEAT {\n NAME=" +
                     QByteArray::fromStdString(m_job.image.steps[repeat.step].name).toUpper() +
                     "\n X=" + text(repeat.at.x) + "\n Y=" + text(repeat.at.y) + "\n DX=" + text(repeat.dx) +
                     "\n DY=" + text(repeat.dy) + "\n NX=" + QByteArray::number(repeat.nx) +
                     "\n NY=" + QByteArray::number(repeat.ny) +
                     "\n ANGLE=" + QByteArray::number(repeat.angle) +
                     "\n MIRROR=" + (repeat.mirror ? "YES" : "NO") + "\n}\n";
        }
        return lines;
    }

private:
    void chooseUnit() { m_isInch = m_random() % 2 == 0; }
    QByteArray unitLine() const { return m_isInch ? "UNITS=INCH\n" : "UNITS=MM\n"; }
    // Digits enough for a thousandth of a nanometre.
    QByteArray text(double nanometres) const
    {
        return QByteArray::number(nanometres / (m_isInch ? 25.4e6 : 1e6), 'f', m_isInch ? 11 : 9);
    }
    // Mils or micrometres.
    QByteArray thousandths(double nanometres) const
    {
        return QByteArray::number(nanometres / (m_isInch ? 25400.0 : 1000.0), 'f', 9);
    }
    QByteArray text(Point at) const { return text(at.x) + " " + text(at.y); }

    // 0 to 3 turn clockwise by quarters, 4 to 7 the same and then mirror; 8 and 9 by any angle.
    QByteArray orientation(const cam::Pad &pad)
    {
        const bool isQuarter = std::fmod(pad.angle, 90.0) == 0.0;
        if (isQuarter && m_random() % 3 != 0)
            return QByteArray::number(int(pad.angle / 90.0) + (pad.mirror ? 4 : 0));
        return (pad.mirror ? "9 " : "8 ") + QByteArray::number(pad.angle);
    }

    QByteArray contour(const cam::ContourView &contour) const
    {
        QByteArray lines = "OB " + text(contour.start) + (contour.isHole ? " H\n" : " I\n");
        for (const cam::Edge &edge : contour) {
            if (edge.kind == cam::EdgeKind::Line)
                lines += "OS " + text(edge.end) + "\n";
            else
                lines += "OC " + text(edge.end) + " " + text(edge.center) +
                         (edge.kind == cam::EdgeKind::ArcClockwise ? " Y\n" : " N\n");
        }
        return lines + "OE\n";
    }

    const RandomJob &m_job;
    std::mt19937 m_random;
    bool m_isInch = false;
};

// `set` without its feature `leftOut`.
cam::FeatureSet without(const cam::FeatureSet &set, std::size_t leftOut)
{
    cam::FeatureSet rest;
    for (std::size_t i = 0; i < set.order.size(); ++i) {
        if (i == leftOut)
            continue;
        const cam::Feature &feature = set.order[i];
        switch (feature.kind) {
        case cam::FeatureKind::Line:
            rest.add(set.lines[feature.index], feature.polarity);
            break;
        case cam::FeatureKind::Arc:
            rest.add(set.arcs[feature.index], feature.polarity);
            break;
        case cam::FeatureKind::Pad:
            rest.add(set.pads[feature.index], feature.polarity);
            break;
        case cam::FeatureKind::Surface: {
            const cam::Surface &surface = set.surfaces[feature.index];
            const auto first = std::uint32_t(rest.contours.size());
            for (std::uint32_t j = 0; j < surface.contourCount; ++j)
                rest.contours.add(set.contours[surface.firstContour + j], cam::Transform());
            rest.add(cam::Surface{first, surface.contourCount}, feature.polarity);
            break;
        }
        }
    }
    return rest;
}

RandomJob copyOf(const RandomJob &job)
{
    RandomJob copy;
    copy.image = testing::copyOf(job.image);
    copy.options = job.options;
    copy.seed = job.seed;
    return copy;
}

} // namespace

RandomJob randomJob(unsigned seed)
{
    return JobMaker(seed).make();
}

cam::LayerImage copyOf(const cam::LayerImage &image)
{
    cam::LayerImage copy;
    copy.job = image.job;
    copy.layer = image.layer;
    copy.context = image.context;
    copy.type = image.type;
    copy.copperRank = image.copperRank;
    copy.copperCount = image.copperCount;
    for (const cam::Symbol &symbol : image.symbols) {
        cam::Symbol same;
        same.name = symbol.name;
        same.unit = symbol.unit;
        same.standard = symbol.standard;
        if (symbol.features)
            same.features = std::make_unique<cam::FeatureSet>(*symbol.features);
        copy.symbols.push_back(std::move(same));
    }
    copy.steps = image.steps;
    copy.profile = image.profile;
    copy.datum = image.datum;
    return copy;
}

void writeJob(const RandomJob &job, const std::function<void(const QString &, const QByteArray &)> &write)
{
    JobWriter writer(job);
    QByteArray matrix;
    int column = 0;
    for (const cam::StepImage &step : job.image.steps) {
        const QString folder = "steps/" + QString::fromStdString(step.name);
        matrix += "STEP {\n COL=" + QByteArray::number(++column) +
                  "\n NAME=" + QByteArray::fromStdString(step.name).toUpper() + "\n}\n";
        write(folder + "/stephdr", writer.header(step));
        write(folder + "/layers/top/features", writer.features(step.features));
    }
    matrix += "LAYER {\n ROW=1\n CONTEXT=BOARD\n TYPE=SIGNAL\n NAME=TOP\n POLARITY=POSITIVE\n}\n";
    write("matrix/matrix", matrix);
    write("misc/info", "JOB_NAME=job\nUNITS=MM\n");
    if (!job.image.profile.isEmpty())
        write("steps/" + QString::fromStdString(job.image.top().name) + "/profile", writer.profile());
    for (const cam::Symbol &symbol : job.image.symbols) {
        if (symbol.features)
            write("symbols/" + QString::fromStdString(symbol.name) + "/features",
                  writer.features(*symbol.features));
    }
}

QString description(const RandomJob &job)
{
    const cam::ExportOptions &options = job.options;
    QString text = QString("seed %1, resize %2, negative %3%8, scale %4 %5, mirror %6, angle %7\n")
                       .arg(job.seed)
                       .arg(options.resize)
                       .arg(options.negative)
                       .arg(options.xScale)
                       .arg(options.yScale)
                       .arg(options.mirror)
                       .arg(options.angle)
                       .arg(job.image.profile.isEmpty() ? " without a profile" : "");
    writeJob(job, [&text](const QString &file, const QByteArray &bytes) {
        if (!file.startsWith("m") && !file.endsWith("profile"))
            text += file + ":\n" + bytes;
    });
    return text;
}

std::vector<RandomJob> smallerJobs(const RandomJob &job)
{
    std::vector<RandomJob> smaller;
    const cam::ExportOptions plain;
    const auto tryOptions = [&](const auto &change) {
        RandomJob one = copyOf(job);
        change(one.options);
        smaller.push_back(std::move(one));
    };
    if (job.options.angle != 0.0)
        tryOptions([](cam::ExportOptions &options) { options.angle = 0.0; });
    if (job.options.mirror)
        tryOptions([](cam::ExportOptions &options) { options.mirror = false; });
    if (job.options.xScale != 1.0 || job.options.yScale != 1.0)
        tryOptions([](cam::ExportOptions &options) { options.xScale = options.yScale = 1.0; });
    if (job.options.resize != 0.0)
        tryOptions([](cam::ExportOptions &options) { options.resize = 0.0; });
    if (job.options.negative)
        tryOptions([](cam::ExportOptions &options) { options.negative = false; });
    for (std::size_t step = 0; step < job.image.steps.size(); ++step) {
        const cam::StepImage &source = job.image.steps[step];
        for (std::size_t i = 0; i < source.repeats.size(); ++i) {
            RandomJob one = copyOf(job);
            auto &repeats = one.image.steps[step].repeats;
            repeats.erase(repeats.begin() + std::ptrdiff_t(i));
            smaller.push_back(std::move(one));
            if (source.repeats[i].nx > 1 || source.repeats[i].ny > 1) {
                one = copyOf(job);
                one.image.steps[step].repeats[i].nx = one.image.steps[step].repeats[i].ny = 1;
                smaller.push_back(std::move(one));
            }
        }
        for (std::size_t i = 0; i < source.features.order.size(); ++i) {
            RandomJob one = copyOf(job);
            one.image.steps[step].features = without(source.features, i);
            smaller.push_back(std::move(one));
        }
    }
    for (std::size_t symbol = 0; symbol < job.image.symbols.size(); ++symbol) {
        if (!job.image.symbols[symbol].features)
            continue;
        for (std::size_t i = 0; i < job.image.symbols[symbol].features->order.size(); ++i) {
            RandomJob one = copyOf(job);
            *one.image.symbols[symbol].features = without(*job.image.symbols[symbol].features, i);
            smaller.push_back(std::move(one));
        }
    }
    return smaller;
}

} // namespace testing
