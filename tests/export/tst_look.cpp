// How the layer table looks and is reached under what a host may set: a dark palette, a style sheet of its
// own, a style of its own.

#include "tests/export/opendialog.h"

#include <QApplication>
#include <QPainter>
#include <QProxyStyle>
#include <QStyleFactory>

#include <algorithm>
#include <cmath>

using namespace layer_column;
using recording_host::layer;

namespace {

QPalette darkPalette()
{
    QPalette dark(QColor(53, 53, 53), QColor(53, 53, 53));
    dark.setColor(QPalette::Base, QColor(25, 25, 25));
    for (QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        dark.setColor(role, Qt::white);
    return dark;
}

// The relative luminance of a colour, 0 to 1.
double luminance(const QColor &colour)
{
    const auto linear = [](double part) {
        return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

// From 1 (the same) to 21 (black on white); text is readable from 4.5 on. Where the strokes of a thin font
// cover few pixels wholly, a picture of such text shows less: 4 under Wine.
double contrast(const QColor &a, const QColor &b)
{
    const double first = luminance(a) + 0.05;
    const double second = luminance(b) + 0.05;
    return std::max(first, second) / std::min(first, second);
}

// The strongest contrast to `ground` that at least `pixels` of the picture have.
double contrastOf(const QImage &picture, const QColor &ground, int pixels)
{
    std::vector<double> all;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            all.push_back(contrast(picture.pixelColor(x, y), ground));
    }
    std::sort(all.rbegin(), all.rend());
    return all.at(size_t(pixels));
}

// Everything of the box that is drawn by the style, in one colour: a host's own style, of no factory.
class OwnStyle : public QProxyStyle
{
public:
    OwnStyle() : QProxyStyle(QStyleFactory::create("fusion")) {}
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex *option, QPainter *painter,
                            const QWidget *widget) const override
    {
        if (control == CC_ComboBox)
            painter->fillRect(option->rect, colour());
        else
            QProxyStyle::drawComplexControl(control, option, painter, widget);
    }
    static QColor colour() { return QColor(12, 200, 34); }
};

} // namespace

class tst_Look : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void cellsAreReadable_data();
    void cellsAreReadable();
    void aHostsStyleDrawsTheCells_data();
    void aHostsStyleDrawsTheCells();
    void tabLeavesTheTable();
    void aCellsBoxIsReachedByKeys();

private:
    QPalette m_before;
};

void tst_Look::init()
{
    recording_host::reset();
    m_before = QApplication::palette();
}

void tst_Look::cleanup()
{
    qApp->setStyleSheet(QString());
    QApplication::setStyle(QStyleFactory::create("fusion"));
    QApplication::setPalette(m_before);
}

void tst_Look::cellsAreReadable_data()
{
    QTest::addColumn<bool>("isDark");
    QTest::addColumn<QString>("sheet");
    QTest::newRow("light") << false << QString();
    QTest::newRow("dark") << true << QString();
    QTest::newRow("a dark sheet") << false << "QWidget { background: #202428; color: #e0e0e0 }";
    QTest::newRow("a light sheet on dark") << true << "QWidget { background: white; color: black }";
    QTest::newRow("a sheet for the table")
        << false << "QTableWidget { background: #202428; color: white; alternate-background-color: #303438 }";
    QTest::newRow("a sheet for boxes")
        << false << "QComboBox { background: #444; color: white; border: 1px solid red }";
    QTest::newRow("a sheet for items") << false << "QTableView::item { color: white; background: #444 }";
}

void tst_Look::cellsAreReadable()
{
    QFETCH(bool, isDark);
    QFETCH(QString, sheet);
    if (isDark)
        QApplication::setPalette(darkPalette());
    qApp->setStyleSheet(sheet);
    const OpenDialog dialog({layer("BOARD", "SIGNAL", "signal"),
                             layer("BOARD", "SIGNAL", "inner", "NEGATIVE"),
                             layer("BOARD", "SOLDER_MASK", "mask"), layer("BOARD", "SILK_SCREEN", "silk"),
                             layer("BOARD", "SOLDER_PASTE", "paste"), layer("BOARD", "DRILL", "drill"),
                             layer("MISC", "DOCUMENT", "notes")});
    dialog.setChecked({1});
    QTest::qWait(20);
    const QImage table = dialog.table()->viewport()->grab().toImage();
    for (int row = 0; row < 7; ++row) {
        const QRect name = dialog.cell(row, Layer).adjusted(1, 1, -1, -1);
        const QColor colour = dialog.table()->item(row, Layer)->background().color();
        QCOMPARE(table.pixelColor(name.bottomRight()), colour);
        QVERIFY(contrastOf(table.copy(name), colour, 20) > 4.3);

        const QRect check = dialog.cell(row, Check).adjusted(1, 1, -1, -1);
        const QColor ground = table.pixelColor(check.topLeft());
        const double edge = contrastOf(table.copy(check), ground, 20);
        QVERIFY2(edge > 1.5, qPrintable(QString("row %1: %2").arg(row).arg(edge)));
    }
    for (int column : {Rotate, Mirror, Negate}) {
        const QRect box = dialog.cell(0, column).adjusted(4, 4, -30, -4);
        const QColor ground = table.pixelColor(box.topRight());
        const double text = contrastOf(table.copy(box), ground, 10);
        QVERIFY2(text > 3.5, qPrintable(QString("column %1: %2").arg(column).arg(text)));
        // The boxes have the ground of the cells beside them, but for a style's shading.
        QVERIFY(contrast(ground, table.pixelColor(dialog.cell(0, XScale).bottomLeft() + QPoint(3, -3))) <
                1.3);
    }
}

void tst_Look::aHostsStyleDrawsTheCells_data()
{
    QTest::addColumn<QString>("sheet");
    QTest::newRow("alone") << QString();
    QTest::newRow("with a style sheet") << "QPushButton { color: red }";
}

void tst_Look::aHostsStyleDrawsTheCells()
{
    QFETCH(QString, sheet);
    QApplication::setStyle(new OwnStyle);
    qApp->setStyleSheet(sheet);
    const OpenDialog dialog({layer("BOARD", "SIGNAL", "top")});
    for (int column : {Rotate, Mirror, Negate})
        QCOMPARE(dialog.combo(0, column)->grab().toImage().pixelColor(2, 2), OwnStyle::colour());
}

void tst_Look::tabLeavesTheTable()
{
    const OpenDialog dialog(OpenDialog::sixLayers());
    QTableWidget *table = dialog.table();
    for (int column : {Check, Layer, Rotate, XScale, Time}) {
        table->setFocus();
        table->setCurrentCell(2, column);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab); // the table, or the cell's box
        QCOMPARE(QApplication::focusWidget(), static_cast<QWidget *>(dialog.button("OKButton")));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab, Qt::ShiftModifier);
        QVERIFY(QApplication::focusWidget() == table || table->isAncestorOf(QApplication::focusWidget()));
        table->setCurrentCell(2, Layer);
        table->setFocus();
        QTest::keyClick(table, Qt::Key_Tab, Qt::ShiftModifier);
        QCOMPARE(QApplication::focusWidget(), static_cast<QWidget *>(dialog.edit("ReferenceYLineEdit")));
    }
    // All around the dialog, there is no way through the cells.
    dialog.button("CancelButton")->setFocus();
    QTest::keyClick(dialog.button("CancelButton"), Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), static_cast<QWidget *>(dialog.button("PathButton")));
}

void tst_Look::aCellsBoxIsReachedByKeys()
{
    const OpenDialog dialog(OpenDialog::sixLayers());
    QTableWidget *table = dialog.table();
    table->setFocus();
    table->setCurrentCell(2, Layer);
    QTest::keyClick(table, Qt::Key_Right);
    QTest::keyClick(table, Qt::Key_F2);
    QComboBox *box = dialog.combo(2, Rotate);
    QCOMPARE(QApplication::focusWidget(), static_cast<QWidget *>(box));
    QTest::keyClick(box, Qt::Key_Down);
    QCOMPARE(box->currentText(), QString("90"));
    QTest::keyClick(box, Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), static_cast<QWidget *>(dialog.button("OKButton")));
}

QTEST_MAIN(tst_Look)
#include "tst_look.moc"
