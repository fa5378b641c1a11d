// The list of layers: what is seen, in which order, and how it is chosen.
#include "workbench/layerpanel.h"

#include <QSignalSpy>
#include <QSlider>
#include <QTableWidget>
#include <QtTest>

#include <algorithm>
#include <memory>

namespace {

ORVEX::API::layer_info layer(const char *name, const char *type, const char *context = "BOARD")
{
    ORVEX::API::layer_info made;
    made.name = name;
    made.type = type;
    made.context = context;
    made.polarity = "POSITIVE";
    return made;
}

} // namespace

class tst_LayerPanel : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<LayerPanel> panel;
    QTableWidget *table = nullptr;

    QStringList shown(bool fromBelow = false) const
    {
        QStringList names;
        for (const ViewRow &row : panel->shownRows(fromBelow))
            names << row.name;
        return names;
    }
    QPoint placeOf(int row, const QString &column) const
    {
        for (int at = 0; at < table->columnCount(); ++at) {
            if (table->horizontalHeaderItem(at)->text() == column)
                return table->visualItemRect(table->item(row, at)).center();
        }
        return {};
    }
    // An eye's column has no name.
    void pressEye(int row)
    {
        QTest::mouseClick(table->viewport(), Qt::LeftButton, Qt::NoModifier, placeOf(row, ""));
    }
    void doubleClick(int row)
    {
        choose(row);
        QTest::mouseDClick(table->viewport(), Qt::LeftButton, Qt::NoModifier, placeOf(row, "Layer"));
    }
    void choose(int row)
    {
        QTest::mouseClick(table->viewport(), Qt::LeftButton, Qt::NoModifier, placeOf(row, "Layer"));
    }

private slots:
    void init()
    {
        panel.reset(new LayerPanel);
        panel->resize(520, 500);
        panel->showMatrix("job", {"pcb"},
                          {layer("notes", "DOCUMENT", "MISC"), layer("silk", "SILK_SCREEN"),
                           layer("mask", "SOLDER_MASK"), layer("top", "SIGNAL"),
                           layer("inner", "POWER_GROUND"), layer("bottom", "SIGNAL"),
                           layer("mask2", "SOLDER_MASK"), layer("drill", "DRILL")});
        table = panel->findChild<QTableWidget *>();
        panel->show();
        QVERIFY(QTest::qWaitForWindowExposed(panel.get()));
    }

    void chosenLayerIsSeenAsLongAsItIsChosen()
    {
        panel->chooseFirstCopper();
        QCOMPARE(shown(), QStringList{"top"});
        QTest::keyClick(table, Qt::Key_Down);
        QCOMPARE(shown(), QStringList{"inner"});
        QCOMPARE(QString::fromStdString(panel->currentLayer()->name), QString("inner"));
    }

    // Some systems mark the chosen row of a window in the background in a light color.
    void theEyeOfTheChosenLayerIsSeen_data()
    {
        QTest::addColumn<bool>("isActive");
        QTest::newRow("window in front") << true;
        QTest::newRow("window in the background") << false;
    }
    void theEyeOfTheChosenLayerIsSeen()
    {
        QFETCH(const bool, isActive);
        QPalette palette = table->palette();
        palette.setColor(QPalette::Active, QPalette::Highlight, QColor(0, 0, 120));
        palette.setColor(QPalette::Active, QPalette::HighlightedText, Qt::white);
        palette.setColor(QPalette::Inactive, QPalette::Highlight, QColor(240, 240, 240));
        palette.setColor(QPalette::Inactive, QPalette::HighlightedText, Qt::black);
        table->setPalette(palette);
        panel->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(panel.get()));
        panel->chooseFirstCopper();
        QWidget other;
        if (!isActive) {
            other.show();
            other.activateWindow();
            QVERIFY(QTest::qWaitForWindowActive(&other));
        }
        int row = 0;
        while (!table->item(row, 0)->isSelected())
            ++row;
        const QImage eye =
            table->viewport()->grab(QRect(placeOf(row, "") - QPoint(8, 8), QSize(16, 16))).toImage();
        int darkest = 255, lightest = 0;
        for (int y = 0; y < eye.height(); ++y) {
            for (int x = 0; x < eye.width(); ++x) {
                darkest = std::min(darkest, qGray(eye.pixel(x, y)));
                lightest = std::max(lightest, qGray(eye.pixel(x, y)));
            }
        }
        QVERIFY2(lightest - darkest > 120, qPrintable(QString("%1 to %2").arg(darkest).arg(lightest)));
    }

    void openEyesStayOpen()
    {
        panel->chooseFirstCopper();
        pressEye(1);
        QCOMPARE(QString::fromStdString(panel->currentLayer()->name), QString("top")); // the choice stays
        choose(5);
        QCOMPARE(shown(), (QStringList{"bottom", "top", "silk"}));
        pressEye(5);
        QCOMPARE(shown(), (QStringList{"top", "silk"}));
        QTest::keyClick(table, Qt::Key_Space);
        QCOMPARE(shown(), (QStringList{"bottom", "top", "silk"}));
    }

    void layersLieInTheOrderOfTheMatrix()
    {
        for (int row = 0; row < 8; ++row)
            pressEye(row);
        QCOMPARE(shown(), (QStringList{"mask2", "bottom", "inner", "top", "mask", "silk", "notes", "drill"}));
        QCOMPARE(shown(true),
                 (QStringList{"notes", "silk", "mask", "top", "inner", "bottom", "mask2", "drill"}));
    }

    void presets()
    {
        panel->showPreset(LayerPanel::Preset::AllCopper);
        QCOMPARE(shown(), (QStringList{"bottom", "inner", "top"}));
        panel->showPreset(LayerPanel::Preset::TopSide);
        QCOMPARE(shown(), (QStringList{"top", "mask", "silk"}));
        panel->showPreset(LayerPanel::Preset::BottomSide);
        QCOMPARE(shown(true), (QStringList{"bottom", "mask2"}));
        panel->showPreset(LayerPanel::Preset::DrillOverCopper);
        QCOMPARE(shown(), (QStringList{"bottom", "inner", "top", "drill"}));
    }

    void doubleClickShowsOneAloneAndThenTheOthersAgain()
    {
        panel->showPreset(LayerPanel::Preset::AllCopper);
        doubleClick(5);
        QCOMPARE(shown(), QStringList{"bottom"});
        doubleClick(5);
        QCOMPARE(shown(), (QStringList{"bottom", "inner", "top"}));
    }

    void opacityIsTheChosenRows()
    {
        panel->chooseFirstCopper();
        QSignalSpy changed(panel.get(), &LayerPanel::shownChanged);
        auto *slider = panel->findChild<QSlider *>();
        slider->setFocus();
        QTest::keyClick(slider, Qt::Key_End);
        QCOMPARE(changed.count(), 1);
        QCOMPARE(panel->shownRows(false)[0].opacity, 1.0);
        choose(5);
        QCOMPARE(panel->shownRows(false)[0].opacity, 0.8);
    }

    // Two copper layers over each other are told apart.
    void copperLayersHaveColorsOfTheirOwn()
    {
        panel->showPreset(LayerPanel::Preset::AllCopper);
        const QVector<ViewRow> rows = panel->shownRows(false);
        QVERIFY(rows[0].color != rows[1].color && rows[1].color != rows[2].color &&
                rows[0].color != rows[2].color);
        QCOMPARE(rows[2].color, QColor(255, 215, 0)); // the first one has its class's
    }

    void filesStayListed()
    {
        panel->addFile("/x/top.gds", {"top.gds 1/0", "top.gds 2/0"});
        QCOMPARE(shown(), (QStringList{"top.gds 1/0", "top.gds 2/0"}));
        QCOMPARE(panel->layerCount(), 8);
        panel->showPreset(LayerPanel::Preset::AllCopper); // lies below the files
        QCOMPARE(shown(), (QStringList{"bottom", "inner", "top", "top.gds 1/0", "top.gds 2/0"}));
        panel->showMatrix("other", {"pcb"}, {layer("only", "SIGNAL")});
        QCOMPARE(panel->layerCount(), 1);
        QCOMPARE(panel->files(), QStringList{"/x/top.gds"});
        panel->addFile("/x/top.gds", {"top.gds 1/0"});
        QCOMPARE(table->rowCount(), 2);
        panel->removeFile("/x/top.gds");
        QCOMPARE(panel->files(), QStringList());
        QCOMPARE(table->rowCount(), 1);
    }
};

QTEST_MAIN(tst_LayerPanel)
#include "tst_layerpanel.moc"
