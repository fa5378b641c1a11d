// What a job says about components, nets and attributes: the files of tests/data/odb, small jobs made of
// them, the sample job, and real jobs where there are some.
#include "cam/base/error.h"
#include "cam/odb/featuresfile.h"
#include "cam/odb/stepparts.h"
#include "tests/cam/support/archive.h"
#include "tests/cam/support/jobfolder.h"
#include "tests/cam/support/messages.h"

#include <QtTest>

#include <cmath>
#include <map>
#include <set>

using namespace cam;

namespace {

constexpr double mm = 1e6, inch = 25.4e6;

QByteArray data(const QString &name)
{
    QFile file(QString(TEST_DATA) + "/odb/" + name);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("no test data %s", qPrintable(name));
    return file.readAll();
}

std::vector<Component> componentsOf(const QString &name)
{
    const std::string text = data(name).toStdString();
    LineReader lines(text);
    return readComponents(lines, name.toStdString(), LengthUnit::Inch, AttributeTypes());
}

EdaData edaOf(const QString &name)
{
    const std::string text = data(name).toStdString();
    LineReader lines(text);
    return readEdaData(lines, name.toStdString(), LengthUnit::Inch, AttributeTypes());
}

QString wordsOf(const std::vector<Attribute> &attributes)
{
    QStringList words;
    for (const Attribute &attribute : attributes)
        words << QString::fromStdString(attribute.value.empty() ? attribute.name
                                                                : attribute.name + "=" + attribute.value);
    return words.join(" | ");
}

bool isAt(Point p, double x, double y)
{
    return std::fabs(p.x - x) < 1.0 && std::fabs(p.y - y) < 1.0;
}

// To a micrometre: a key of tables.
std::pair<long long, long long> cellOf(Point p)
{
    return {std::llround(p.x / 1000.0), std::llround(p.y / 1000.0)};
}

bool isBox(const ContourPool &outline, std::size_t contour, double left, double bottom, double right,
           double top)
{
    const Box box = extent(outline[contour]);
    return isAt(box.low, left * mm, bottom * mm) && isAt(box.high, right * mm, top * mm);
}

} // namespace

class tst_Parts : public QObject
{
    Q_OBJECT

private slots:
    void componentsAreRead()
    {
        const std::vector<Component> components = componentsOf("components_every_record");
        QCOMPARE(components.size(), std::size_t(3));
        const Component &u7 = components[0];
        QCOMPARE(u7.name, std::string("U7"));
        QCOMPARE(u7.part, std::string("74HC00"));
        QCOMPARE(int(u7.package.value()), 1);
        QVERIFY(isAt(u7.at, 10.5 * mm, -2.25 * mm));
        QCOMPARE(u7.angle, 90.0);
        QVERIFY(!u7.isMirrored);
        QCOMPARE(u7.line, std::size_t(11));
        QCOMPARE(wordsOf(u7.attributes),
                 QString(".comp_height=1.75 | .comp_mount_type=smt | .comment=hand soldered"));
        QCOMPARE(wordsOf(u7.properties), QString("Manufacturer=It''s; a maker | EMPTY"));
        QCOMPARE(u7.toeprints.size(), std::size_t(2));
        QVERIFY(isAt(u7.toeprints[0].at, 9.5 * mm, -1.25 * mm));
        QCOMPARE(int(u7.toeprints[0].net.value()), 0);
        QCOMPARE(u7.toeprints[1].name, std::string("2"));
        QVERIFY(!u7.toeprints[1].net);
        QCOMPARE(components[1].part, std::string("100 Ohm 1%"));
        QVERIFY(components[1].isMirrored && components[2].isMirrored);
        QCOMPARE(wordsOf(components[1].attributes), QString(".comp_mount_type=thmt"));
    }

    void componentsAreTurnedThenMirrored_data()
    {
        QTest::addColumn<bool>("isMirrored");
        QTest::addColumn<bool>("isBottom");
        QTest::addColumn<double>("x");
        QTest::newRow("top") << false << false << 12.0;
        QTest::newRow("mirrored on the top side") << true << false << 8.0;
        QTest::newRow("bottom, which needs no mark") << false << true << 8.0;
        QTest::newRow("bottom, marked") << true << true << 8.0;
    }
    void componentsAreTurnedThenMirrored()
    {
        QFETCH(bool, isMirrored);
        QFETCH(bool, isBottom);
        QFETCH(double, x);
        Component component;
        component.at = {10.0, 20.0};
        component.angle = 90.0;
        component.isMirrored = isMirrored;
        // One to the right and two up, turned clockwise: two to the right and one down.
        const Point pin = placement(component, isBottom)({1.0, 2.0});
        QCOMPARE(pin.x, x);
        QCOMPARE(pin.y, 19.0);
    }

    void netsAreRead()
    {
        const EdaData eda = edaOf("eda_every_record");
        QCOMPARE(eda.nets.size(), std::size_t(3));
        QCOMPARE(eda.nets[1].name, std::string("GND"));
        QCOMPARE(wordsOf(eda.nets[1].attributes), QString(".net_type=analog"));
        QVERIFY(eda.netOf("top", 5) == &eda.nets[0]);
        QVERIFY(eda.netOf("bottom", 0) == &eda.nets[1]);
        QVERIFY(eda.netOf("drill", 3) == &eda.nets[1]);
        QVERIFY(eda.netOf("top", 2) == &eda.nets[1]);
        QVERIFY(!eda.netOf("top", 3) && !eda.netOf("nowhere", 5));
        QVERIFY2(!eda.netOf("top", 4), "a feature of a group is no feature of a net");
    }

    void packagesAreRead()
    {
        const EdaData eda = edaOf("eda_every_record");
        QCOMPARE(eda.packages.size(), std::size_t(4));
        const Package &rect = eda.packages[0];
        QCOMPARE(rect.name, std::string("RECT"));
        QVERIFY(isAt(rect.box.low, -2 * mm, -1 * mm) && isAt(rect.box.high, 2 * mm, 1 * mm));
        QVERIFY2(rect.outline.size() == 1, "outlines of pins are not the package's");
        QVERIFY(isBox(rect.outline, 0, -2, -1, 2, 1));
        QCOMPARE(rect.pins.size(), std::size_t(2));
        QCOMPARE(rect.pins[1].name, std::string("2"));
        QVERIFY(isAt(rect.pins[1].at, 1.5 * mm, 0.25 * mm));
        QVERIFY(isBox(eda.packages[1].outline, 0, -1, -1, 1, 1));
        QCOMPARE(eda.packages[2].outline.size(), std::size_t(2));
        QVERIFY(isBox(eda.packages[2].outline, 0, -1, -1, 2, 1));
        QVERIFY(eda.packages[2].outline[1].isHole);
        QVERIFY(isBox(eda.packages[3].outline, 0, 0, -0.5, 1, 0.5));
    }

    void brokenFilesNameTheLine_data()
    {
        QTest::addColumn<QString>("expected");
        const char *rows[][2] = {
            {"components_position_is_no_number", "2: expected a number for the component's position"},
            {"components_pin_before_component", "2: expected CMP before TOP"},
            {"components_unknown_unit", "1: expected INCH or MM"},
            {"components_cut_off", "3: expected the component's angle"},
            {"components_nonsense", "2: expected the number of a package"},
            {"eda_feature_before_net", "2: expected NET before FID"},
            {"eda_feature_is_no_number", "3: expected the number of a feature"},
            {"eda_pin_before_package", "1: expected PKG before PIN"},
            {"eda_package_without_box", "1: expected a number for the package's upper right corner"},
            {"eda_cut_off_in_a_contour",
             "5: expected OE, the end of the last contour, before the end of the file"},
            {"eda_edge_outside_a_contour", "3: expected OB before OS, OC and OE"},
            {"eda_package_inside_a_contour", "6: expected OS, OC or OE inside a contour"},
            {"eda_rectangle_inside_a_contour", "6: expected OS, OC or OE inside a contour"},
            {"eda_subnet_before_net", "1: expected NET before SNT"},
        };
        for (const auto &row : rows)
            QTest::newRow(row[0]) << QString("%1:%2").arg(row[0], row[1]);
    }
    void brokenFilesNameTheLine()
    {
        QFETCH(QString, expected);
        const QString file = QTest::currentDataTag();
        QCOMPARE(messageOf([&] { file.startsWith("eda") ? void(edaOf(file)) : void(componentsOf(file)); }),
                 expected);
    }

    void featuresAreListedWithTheirAttributes()
    {
        const std::string text = data("features_with_attributes").toStdString();
        LineReader lines(text);
        QStringList found;
        const AttributeTypes types;
        listFeatures(lines, [&](const ListedFeature &feature, const AttributeTable &table) {
            found << QString("%1:%2 %3 %4%5 %6")
                         .arg(feature.source.record)
                         .arg(feature.source.line)
                         .arg(QChar(feature.kind))
                         .arg(QString::fromUtf8(feature.symbol.data(), int(feature.symbol.size())),
                              QString::fromUtf8(feature.text.data(), int(feature.text.size())),
                              wordsOf(table.read(feature.attributeField, types)));
            return true;
        });
        const QStringList expected{"0:12 P r100 .smd | .pad_usage=via | own=17",
                                   "1:14 L r100 ",
                                   "2:15 T A;=0 .string=R1; here",
                                   "3:16 P Rect50x20 .smd",
                                   "4:17 S  .string=plane",
                                   "5:23 A Rect50x20 ",
                                   "6:24 P r100 .pad_usage=9",
                                   "7:25 P  "};
        QCOMPARE(found, expected);
    }

    void featuresKnowTheirRecordAndLine()
    {
        std::string text = data("features_with_attributes").toStdString();
        text.resize(text.find("P 9 9 7")); // the symbol is not listed: no file to draw
        FeaturesContext context;
        context.symbolIndex = [](std::string_view name, SymbolUnit) -> std::uint32_t {
            if (name == "rect50x20")
                throw SymbolError("cannot be drawn");
            return 0;
        };
        const Font font = parseFont("XSIZE 0.3\nYSIZE 0.3\nOFFSET 0\nCHAR A\nLINE 0 0 0.1 0.2 P R 0.012\n"
                                    "LINE 0.1 0.2 0.2 0 P S 0.012\nECHAR\n",
                                    "font");
        context.font = [&](std::string_view) -> const Font & { return font; };
        const FeatureSet set = readFeatures(text, "f", context).features;
        // The pad, the line, two strokes of the text, the surface, the last pad; what has the unknown symbol
        // draws nothing.
        const std::uint32_t records[] = {0, 1, 2, 2, 4, 6}, lines[] = {12, 14, 15, 15, 17, 24};
        QCOMPARE(set.order.size(), std::size_t(6));
        QCOMPARE(int(set.sources.size()), 6);
        for (std::uint32_t i = 0; i < 6; ++i) {
            QCOMPARE(set.sources[i].record, records[i]);
            QCOMPARE(set.sources[i].line, lines[i]);
        }
        using Range = std::pair<std::uint32_t, std::uint32_t>;
        QVERIFY(set.sources.featuresOf(0) == Range(0, 1));
        QVERIFY(set.sources.featuresOf(2) == Range(2, 4));
        QVERIFY(set.sources.featuresOf(3) == Range(0, 0));
        QVERIFY(set.sources.featuresOf(6) == Range(5, 6));
        QVERIFY(set.sources.featuresOf(7) == Range(0, 0));
    }

    void jobsDefineAttributesOfTheirOwn()
    {
        const JobFolder folder;
        folder.write("misc/userattr", "TEXT {\nNAME=own\n}\nOPTION {\nNAME=kind\nOPTIONS=one; two\n}\n");
        folder.write("misc/sysattr.fab", "no definitions at all\n");
        std::vector<std::string> failures;
        const AttributeTypes types = readAttributeTypes(Job(folder.path()), failures);
        QCOMPARE(failures.size(), std::size_t(1));
        QVERIFY(failures[0].find("sysattr.fab:1: expected") != std::string::npos);
        AttributeTable table;
        for (const char *line : {"@0 own", "@1 kind", "&4 a text"})
            QVERIFY(table.take(line));
        QCOMPARE(wordsOf(table.read("0=4,1=1", types)), QString("own=a text | kind=two"));
    }

    void brokenFilesCostNothingButThemselves()
    {
        JobFolder folder;
        folder.write("matrix/matrix", "STEP {\nCOL=1\nNAME=PCB\n}\n"
                                      "LAYER {\nROW=1\nTYPE=COMPONENT\nNAME=COMP_+_TOP\n}\n"
                                      "LAYER {\nROW=2\nTYPE=COMPONENT\nNAME=COMP_+_BOT\n}\n"
                                      "LAYER {\nROW=3\nTYPE=SIGNAL\nNAME=TOP\n}\n");
        folder.write("steps/pcb/layers/comp_+_top/components", data("components_nonsense"));
        folder.write("steps/pcb/layers/comp_+_bot/components", data("components_every_record"));
        folder.write("steps/pcb/eda/data", data("eda_cut_off_in_a_contour"));
        folder.features("$0 r100\nP 1 1 0 P 0\n");
        const Job job(folder.path());
        const StepParts parts = readStepParts(job, "PCB", AttributeTypes());
        QCOMPARE(parts.failures.size(), std::size_t(2));
        QVERIFY(parts.failures[0].find("data:5: expected OE") != std::string::npos);
        QCOMPARE(parts.sides.size(), std::size_t(2));
        QVERIFY(!parts.sides[0].isBottom && parts.sides[0].components.empty());
        QVERIFY(parts.sides[1].isBottom && parts.sides[1].components.size() == 3);
        ReadingNotes notes;
        QCOMPARE(job.readLayer("pcb", "top", notes).top().features.pads.size(), std::size_t(1));
        QVERIFY(job.readLayer("pcb", "comp_+_top", notes).top().features.isEmpty());
    }

    void aReadingCanBeCancelled()
    {
        std::string text;
        for (int i = 0; i < 10000; ++i)
            text += "CMP 0 1 2 0 N R1 X\n";
        LineReader lines(text);
        struct Enough
        {
        };
        QVERIFY_EXCEPTION_THROWN(
            readComponents(lines, "f", LengthUnit::Inch, AttributeTypes(), [] { throw Enough(); }), Enough);
    }

    // The pins of a package, placed as the component is, lie where the component's own records say.
    void pinsOfJobsLieWhereTheirComponentsSay_data()
    {
        QTest::addColumn<QString>("path");
        QTest::newRow("the sample") << SAMPLE_JOBS "/beacon";
#ifdef REAL_ARCHIVES
        for (const char *folder : {"", "/unread"}) {
            for (const QFileInfo &file :
                 QDir(QString(REAL_ARCHIVES) + folder).entryInfoList({"*.tgz"}, QDir::Files))
                QTest::newRow(qPrintable(file.fileName())) << file.absoluteFilePath();
        }
#endif
    }
    void pinsOfJobsLieWhereTheirComponentsSay()
    {
        QFETCH(QString, path);
        const TemporaryWorkingFolder folder;
        QString root = path;
        if (path.endsWith(".tgz")) {
            unpackArchive(path, folder.filePath("job"));
            const QStringList roots =
                QDir(folder.filePath("job")).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
            QCOMPARE(roots.size(), 1);
            root = folder.filePath("job/" + roots[0]);
        }
        const Job job(std::filesystem::u8path(root.toStdString()));
        std::vector<std::string> failures;
        const AttributeTypes types = readAttributeTypes(job, failures);
        for (const std::string &failure : failures)
            QFAIL(failure.c_str());
        int components = 0, pins = 0, apart = 0, features = 0, listed = 0, ofNets = 0, agreed = 0,
            differing = 0;
        for (const std::string &step : job.matrix().steps) {
            const StepParts parts = readStepParts(job, step, types);
            for (const std::string &failure : parts.failures)
                QFAIL(failure.c_str());
            for (const ComponentSide &side : parts.sides) {
                for (const Component &component : side.components) {
                    ++components;
                    QVERIFY(component.package && *component.package < parts.eda.packages.size());
                    const Package &package = parts.eda.packages[*component.package];
                    const Transform place = placement(component, side.isBottom);
                    for (std::size_t i = 0; i < component.toeprints.size() && i < package.pins.size(); ++i) {
                        ++pins;
                        if (distance(place(package.pins[i].at), component.toeprints[i].at) > 0.02 * mm)
                            ++apart;
                    }
                }
            }
            for (const MatrixLayer &layer : job.matrix().layers) {
                ReadingNotes notes;
                const LayerImage image = job.readLayer(step, layer.name, notes);
                const FeatureSet &set = image.top().features;
                QCOMPARE(std::size_t(set.sources.size()), set.order.size());
                std::vector<FeatureSource> sources;
                listLayerFeatures(job, step, layer.name,
                                  [&](const ListedFeature &feature, const AttributeTable &) {
                                      sources.push_back(feature.source);
                                      return true;
                                  });
                listed += int(sources.size());
                for (std::uint32_t i = 0; i < set.sources.size(); ++i) {
                    ++features;
                    const FeatureSource source = set.sources[i];
                    QVERIFY(source.record < sources.size() && sources[source.record].line == source.line);
                    const auto range = set.sources.featuresOf(source.record);
                    QVERIFY(range.first <= i && i < range.second);
                }
                // A pad on a pin is of the pin's net, which shows that features are counted as the job counts
                // them.
                std::map<std::pair<long long, long long>, std::set<const Net *>> netsAt; // of both sides
                for (const ComponentSide &side : parts.sides) {
                    for (const Component &component : side.components) {
                        for (const Toeprint &pin : component.toeprints) {
                            if (pin.net)
                                netsAt[cellOf(pin.at)].insert(&parts.eda.nets[*pin.net]);
                        }
                    }
                }
                for (std::uint32_t i = 0; i < set.order.size(); ++i) {
                    const Net *net = parts.eda.netOf(image.layer, set.sources[i].record);
                    if (set.order[i].kind != FeatureKind::Pad || !net)
                        continue;
                    const auto found = netsAt.find(cellOf(set.pads[set.order[i].index].at));
                    if (found != netsAt.end())
                        ++(found->second.count(net) > 0 ? agreed : differing);
                }
                for (const NetFeature &feature : parts.eda.features) {
                    if (parts.eda.layers[feature.layer] == image.layer) {
                        ++ofNets;
                        QVERIFY(feature.feature < sources.size());
                    }
                }
            }
        }
        qInfo("%d components, %d pins, %d of them elsewhere; %d features of %d records, %d of nets; %d pads "
              "have the net of their pin, %d another one",
              components, pins, apart, features, listed, ofNets, agreed, differing);
        QCOMPARE(apart, 0);
        QCOMPARE(differing, 0);
        QVERIFY(agreed > 0);
    }
};

QTEST_GUILESS_MAIN(tst_Parts)
#include "tst_parts.moc"
