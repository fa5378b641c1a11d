// What a file says about the holes of a drill or rout layer.
#include "cam/gerber/fileattributes.h"
#include "tests/cam/support/layerbuilding.h"

#include <QtTest>

using namespace cam;
using namespace testing;

namespace {

// A drill layer of a board of four copper layers.
LayerImage drillLayer(Plating plating, int firstCopper, int lastCopper)
{
    LayerImage image = emptyLayer();
    image.layer = "drill_non-plated";
    image.type = "DRILL";
    image.copperRank = 0;
    image.copperCount = 4;
    image.plating = plating;
    image.firstCopper = firstCopper;
    image.lastCopper = lastCopper;
    return image;
}

QString fileFunction(const LayerImage &image)
{
    const QString attribute = QString::fromStdString(fileAttributes(image, false).at(1));
    return attribute.mid(QString("TF.FileFunction,").size());
}

} // namespace

class tst_FileAttributes : public QObject
{
    Q_OBJECT

private slots:
    // The name of the layer, "drill_non-plated", says nothing.
    void platingAndSpanComeFromTheJob_data()
    {
        QTest::addColumn<int>("plating");
        QTest::addColumn<int>("first");
        QTest::addColumn<int>("last");
        QTest::addColumn<QString>("function");
        const auto row = [](Plating plating, int first, int last, const char *function) {
            QTest::newRow(function) << int(plating) << first << last << QString(function);
        };
        row(Plating::Plated, 1, 4, "Plated,1,4,PTH,Drill");
        row(Plating::Plated, 1, 2, "Plated,1,2,Blind,Drill");
        row(Plating::Plated, 3, 4, "Plated,3,4,Blind,Drill");
        row(Plating::Plated, 2, 3, "Plated,2,3,Buried,Drill");
        row(Plating::NonPlated, 1, 4, "NonPlated,1,4,NPTH,Drill");
        row(Plating::NonPlated, 1, 2, "NonPlated,1,2,Blind,Drill");
        row(Plating::Mixed, 1, 4, "Other,drill_non-plated (plated and non-plated)");
        row(Plating::Unknown, 1, 4, "Other,drill_non-plated");
        QTest::newRow("unknown span") << int(Plating::Plated) << 0 << 0 << "Other,drill_non-plated";
    }
    void platingAndSpanComeFromTheJob()
    {
        QFETCH(int, plating);
        QFETCH(int, first);
        QFETCH(int, last);
        QFETCH(QString, function);
        QCOMPARE(fileFunction(drillLayer(Plating(plating), first, last)), function);
    }

    void holesAreDrilledAndSlotsRouted()
    {
        LayerImage image = drillLayer(Plating::Plated, 1, 4);
        FeatureSet &features = image.steps.back().features;
        Pad hole;
        hole.symbol = symbol(image, "r300");
        features.add(hole, Polarity::Positive);
        Line flash;
        flash.symbol = hole.symbol;
        features.add(flash, Polarity::Positive);
        QCOMPARE(fileFunction(image), QString("Plated,1,4,PTH,Drill"));
        Line slot;
        slot.end = at(1000, 0);
        slot.symbol = hole.symbol;
        features.add(slot, Polarity::Positive);
        QCOMPARE(fileFunction(image), QString("Plated,1,4,PTH,Mixed"));
    }

    void slotsAloneAreRouted()
    {
        LayerImage image = drillLayer(Plating::Plated, 1, 4);
        Pad slot;
        slot.symbol = symbol(image, "oval300x900");
        image.steps.back().features.add(slot, Polarity::Positive);
        QCOMPARE(fileFunction(image), QString("Plated,1,4,PTH,Rout"));
    }

    void emptyRoutLayerIsRouted()
    {
        LayerImage image = drillLayer(Plating::NonPlated, 1, 4);
        image.type = "ROUT";
        QCOMPARE(fileFunction(image), QString("NonPlated,1,4,NPTH,Rout"));
    }
};

QTEST_APPLESS_MAIN(tst_FileAttributes)
#include "tst_fileattributes.moc"
