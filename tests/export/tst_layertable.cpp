// The layer table: its columns, its rows from the layer matrix, and what a user does in its cells.

#include "export/delegates/checkboxdelegate.h"
#include "export/delegates/comboboxdelegate.h"
#include "export/delegates/readonlydelegate.h"
#include "export/delegates/roratevalidatordelegate.h"
#include "export/delegates/scalevalidatordelegate.h"
#include "platform/gbktext.h"
#include "tests/export/opendialog.h"
#include "tests/export/wheel.h"
#include "tests/support/logcapture.h"

#include <QAbstractItemView>
#include <QHeaderView>
#include <QScrollBar>

#include <stdexcept>

using namespace layer_column;
using recording_host::layer;

namespace {

// Board layers l0, l1, ..
std::vector<ORVEX::API::layer_info> manyLayers(int count)
{
    std::vector<ORVEX::API::layer_info> layers;
    for (int i = 0; i < count; ++i)
        layers.push_back(layer("BOARD", "SIGNAL", "l" + std::to_string(i)));
    return layers;
}

const char *const choiceSheet =
    "QComboBox{background:transparent}QComboBox QAbstractItemView{selection-background-color:rgb(255, 255, "
    "255);selection-color:rgb(0, 0, 0);}QComboBox QAbstractItemView::item:selected{background-color:rgb(255, "
    "255, 255)}QComboBox QAbstractItemView::item{height:20px}";

} // namespace

class tst_LayerTable : public QObject
{
    Q_OBJECT

private slots:
    void init() { recording_host::reset(); }
    void headersAreTheColumnsWords();
    void onlyTheLayerColumnStretches();
    void columnsHaveTheirWidths();
    void viewIsSetUpForChecking();
    void columnsHaveTheirDelegates();
    void newRowHasItsDefaults();
    void nameCellHasItsClassesColor_data();
    void nameCellHasItsClassesColor();
    void namesAreUtf8();
    void gdsLayersAreNotOffered();
    void rowsBelowASkippedRecordHaveTheirComboBoxes();
    void surplusComboBoxesAreNotSeen();
    void emptyMatrixGivesAnEmptyTable();
    void failedMatrixIsLoggedAndGivesAnEmptyTable_data();
    void failedMatrixIsLoggedAndGivesAnEmptyTable();
    void cellComboBoxesHaveTheirEntriesAndSheets();
    void cellComboBoxesOpenAList_data();
    void cellComboBoxesOpenAList();
    void cellComboBoxesTakeKeys();
    void cellComboBoxesAreReadable();
    void fillingTheTableIsLogged();
    void pressAnywhereInTheCellToggles_data();
    void pressAnywhereInTheCellToggles();
    void everyMouseButtonToggles();
    void doubleClickTogglesOnce();
    void clickingTheBoxOpensNoEditor();
    void layerAndTimeCannotBeEdited();
    void scaleCellAdmitsTyping_data();
    void scaleCellAdmitsTyping();
    void incompleteScaleKeepsTheEditorOpen();
    void escapeKeepsTheOldScale();
    void checkBoxShowsItsState();
    void wheelOverAComboBoxScrollsTheTable();
    void wheelOverAFocusedComboBoxChangesNothing();
};

void tst_LayerTable::headersAreTheColumnsWords()
{
    OpenDialog dialog;
    QCOMPARE(dialog.table()->columnCount(), 8);
    QStringList headers;
    for (int column = 0; column < Count; ++column)
        headers << dialog.table()->horizontalHeaderItem(column)->text();
    QCOMPARE(headers, QStringList({"", "layer", "rotate", "Mirror", "X Scale", "Y Scale", "Negate", "Time"}));
}

void tst_LayerTable::onlyTheLayerColumnStretches()
{
    OpenDialog dialog(OpenDialog::sixLayers());
    const QHeaderView *header = dialog.table()->horizontalHeader();
    for (int column = 0; column < Count; ++column)
        QCOMPARE(header->sectionResizeMode(column),
                 column == Layer ? QHeaderView::Stretch : QHeaderView::Fixed);
    const int before = dialog.table()->columnWidth(Layer);
    dialog->resize(1000, 600);
    QTRY_COMPARE(dialog.table()->columnWidth(Layer), before + 200);
    QCOMPARE(dialog.table()->columnWidth(Time), 100);
}

void tst_LayerTable::columnsHaveTheirWidths()
{
    OpenDialog dialog(OpenDialog::sixLayers());
    const QTableWidget *table = dialog.table();
    QCOMPARE(table->columnWidth(Check), 30);
    const int childWidth = std::make_unique<QWidget>(dialog.get())->width();
    for (int column = Rotate; column < Count; ++column)
        QCOMPARE(table->columnWidth(column), childWidth);
    QCOMPARE(table->columnWidth(Layer), table->viewport()->width() - 30 - 6 * childWidth);
}

void tst_LayerTable::viewIsSetUpForChecking()
{
    OpenDialog dialog;
    const QTableWidget *table = dialog.table();
    QVERIFY(table->verticalHeader()->isHidden());
    QCOMPARE(table->contextMenuPolicy(), Qt::CustomContextMenu);
    QVERIFY(!table->horizontalHeader()->highlightSections());
    QCOMPARE(table->selectionMode(), QAbstractItemView::NoSelection);
    QVERIFY(table->isVisible());
}

void tst_LayerTable::columnsHaveTheirDelegates()
{
    OpenDialog dialog;
    const QTableWidget *table = dialog.table();
    const auto className = [table](int column) {
        const auto *delegate = table->itemDelegateForColumn(column);
        return delegate ? QByteArray(delegate->metaObject()->className()) : QByteArray();
    };
    QCOMPARE(className(Check), QByteArray("CheckBoxDelegate"));
    QCOMPARE(className(Layer), QByteArray("ReadOnlyDelegate"));
    QCOMPARE(className(XScale), QByteArray("ScaleValidatorDelegate"));
    QCOMPARE(className(YScale), QByteArray("ScaleValidatorDelegate"));
    QCOMPARE(className(Time), QByteArray("ReadOnlyDelegate"));
    for (int column : {Rotate, Mirror, Negate})
        QCOMPARE(className(column), QByteArray());
    // Created, and on no column.
    QCOMPARE(dialog->findChildren<RorateValidatorDelegate *>(QString(), Qt::FindDirectChildrenOnly).size(),
             1);
    QCOMPARE(table->findChildren<ComboBoxDelegate *>(QString(), Qt::FindDirectChildrenOnly).size(), 1);
}

void tst_LayerTable::newRowHasItsDefaults()
{
    OpenDialog dialog({layer("BOARD", "SIGNAL", "top")});
    const QTableWidget *table = dialog.table();
    QCOMPARE(table->rowCount(), 1);
    QCOMPARE(table->item(0, Check)->text(), QString());
    QCOMPARE(table->item(0, Check)->type(), 2);
    QVERIFY(!dialog.isChecked(0));
    QCOMPARE(dialog.text(0, Layer), QString("top"));
    QCOMPARE(table->item(0, Layer)->type(), int(QTableWidgetItem::Type));
    QCOMPARE(dialog.combo(0, Rotate)->currentText(), QString("0"));
    QCOMPARE(dialog.combo(0, Mirror)->currentText(), QString("No"));
    QCOMPARE(dialog.text(0, XScale), QString("1"));
    QCOMPARE(dialog.text(0, YScale), QString("1"));
    QCOMPARE(dialog.combo(0, Negate)->currentText(), QString("No"));
    QVERIFY(!table->item(0, Time));
    QVERIFY(!table->cellWidget(0, Time));
}

void tst_LayerTable::nameCellHasItsClassesColor_data()
{
    QTest::addColumn<QString>("context");
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("polarity");
    QTest::addColumn<QColor>("color");
    const QColor other(72, 209, 204);
    const QColor positive(255, 215, 0);
    const QColor negative(218, 165, 32);
    QTest::newRow("no board layer") << "MISC"
                                    << "SIGNAL"
                                    << "POSITIVE" << other;
    QTest::newRow("board in small letters") << "board"
                                            << "DRILL"
                                            << "POSITIVE" << other;
    QTest::newRow("board with a blank") << "BOARD "
                                        << "DRILL"
                                        << "POSITIVE" << other;
    QTest::newRow("signal") << "BOARD"
                            << "SIGNAL"
                            << "POSITIVE" << positive;
    QTest::newRow("negative signal") << "BOARD"
                                     << "SIGNAL"
                                     << "NEGATIVE" << negative;
    QTest::newRow("signal, polarity in small letters") << "BOARD"
                                                       << "SIGNAL"
                                                       << "positive" << negative;
    QTest::newRow("signal without polarity") << "BOARD"
                                             << "SIGNAL"
                                             << "" << negative;
    QTest::newRow("plane") << "BOARD"
                           << "POWER_GROUND"
                           << "POSITIVE" << positive;
    QTest::newRow("negative plane") << "BOARD"
                                    << "POWER_GROUND"
                                    << "NEGATIVE" << negative;
    QTest::newRow("mask") << "BOARD"
                          << "SOLDER_MASK"
                          << "NEGATIVE" << QColor(0, 128, 128);
    QTest::newRow("silk") << "BOARD"
                          << "SILK_SCREEN"
                          << "POSITIVE" << QColor(245, 255, 250);
    QTest::newRow("paste") << "BOARD"
                           << "SOLDER_PASTE"
                           << "POSITIVE" << QColor(255, 235, 205);
    QTest::newRow("drill") << "BOARD"
                           << "DRILL"
                           << "POSITIVE" << QColor(169, 169, 169);
    QTest::newRow("rout") << "BOARD"
                          << "ROUT"
                          << "POSITIVE" << other;
    QTest::newRow("type with a blank") << "BOARD"
                                       << "DRILL "
                                       << "POSITIVE" << other;
    QTest::newRow("type in small letters") << "BOARD"
                                           << "signal"
                                           << "POSITIVE" << other;
    QTest::newRow("gds in small letters") << "BOARD"
                                          << "gds"
                                          << "POSITIVE" << other;
}

void tst_LayerTable::nameCellHasItsClassesColor()
{
    QFETCH(QString, context);
    QFETCH(QString, type);
    QFETCH(QString, polarity);
    QFETCH(QColor, color);
    OpenDialog dialog({layer(context.toStdString(), type.toStdString(), "", polarity.toStdString())});
    QCOMPARE(dialog.table()->rowCount(), 1);
    QCOMPARE(dialog.table()->item(0, Layer)->background().color(), color);
    // And it is what the user sees.
    const QImage picture = dialog.table()->viewport()->grab().toImage();
    QCOMPARE(QColor(picture.pixel(dialog.cell(0, Layer).center())), color);
}

void tst_LayerTable::namesAreUtf8()
{
    const std::string name = "\xE5\xB1\x82-\xC3\xA4";
    OpenDialog dialog({layer("BOARD", "SIGNAL", name)});
    QCOMPARE(dialog.text(0, Layer), QString::fromUtf8(name.c_str()));
}

void tst_LayerTable::gdsLayersAreNotOffered()
{
    OpenDialog dialog({layer("BOARD", "SIGNAL", "top"), layer("MISC", "GDS", "skipped"),
                       layer("BOARD", "SIGNAL", "bot"), layer("BOARD", "GDS", "skipped too")});
    QCOMPARE(dialog.table()->rowCount(), 2);
    QCOMPARE(dialog.text(0, Layer), QString("top"));
    QCOMPARE(dialog.text(1, Layer), QString("bot"));
    QCOMPARE(dialog.text(1, XScale), QString("1"));
}

void tst_LayerTable::rowsBelowASkippedRecordHaveTheirComboBoxes()
{
    OpenDialog dialog(
        {layer("MISC", "GDS", "skipped"), layer("BOARD", "SIGNAL", "top"), layer("BOARD", "SIGNAL", "bot")});
    QCOMPARE(dialog.table()->rowCount(), 2);
    for (int row = 0; row < 2; ++row) {
        for (int column : {Rotate, Mirror, Negate})
            QVERIFY(dialog.combo(row, column));
    }
    QCOMPARE(dialog.table()->findChildren<QComboBox *>().size(), 3 * 3);
}

void tst_LayerTable::surplusComboBoxesAreNotSeen()
{
    OpenDialog dialog({layer("MISC", "GDS", "skipped"), layer("BOARD", "SIGNAL", "top")});
    const auto surplus = dialog.table()->findChildren<QComboBox *>(QString(), Qt::FindDirectChildrenOnly);
    QCOMPARE(surplus.size(), 3);
    for (const QComboBox *box : surplus)
        QVERIFY(!box->isVisible());
    QVERIFY(dialog.combo(0, Rotate)->isVisible());
    // The header is in the corner where they would be.
    QCOMPARE(dialog->childAt(dialog.table()->mapTo(dialog.get(), QPoint(15, 10))),
             dialog.table()->horizontalHeader()->viewport());
}

void tst_LayerTable::emptyMatrixGivesAnEmptyTable()
{
    OpenDialog dialog;
    QCOMPARE(dialog.table()->rowCount(), 0);
    QVERIFY(dialog.table()->findChildren<QComboBox *>().isEmpty());
}

void tst_LayerTable::failedMatrixIsLoggedAndGivesAnEmptyTable_data()
{
    QTest::addColumn<QString>("what");
    QTest::newRow("exception") << "no such job";
    QTest::newRow("text") << "a text";
    QTest::newRow("null text") << "a null text";
    QTest::newRow("number") << "an exception of an unknown type";
}

void tst_LayerTable::failedMatrixIsLoggedAndGivesAnEmptyTable()
{
    QFETCH(QString, what);
    const QByteArray kind = QTest::currentDataTag();
    recording_host::state().onMatrix = [kind](std::vector<ORVEX::API::layer_info> &layers) {
        layers.push_back(layer("BOARD", "SIGNAL", "half"));
        if (kind == "exception")
            throw std::runtime_error("no such job");
        if (kind == "text")
            throw "a text";
        if (kind == "null text")
            throw static_cast<const char *>(nullptr);
        throw 42;
    };
    LogCapture log;
    OpenDialog dialog(OpenDialog::sixLayers());
    QCOMPARE(dialog.table()->rowCount(), 0);
    bool isLogged = false;
    for (const LogLine &line : log.lines()) {
        if (line.severity == google::GLOG_ERROR && line.file == "Export")
            isLogged = QString::fromStdString(line.message).contains(what);
    }
    QVERIFY(isLogged);
}

void tst_LayerTable::cellComboBoxesHaveTheirEntriesAndSheets()
{
    OpenDialog dialog({layer("BOARD", "SIGNAL", "top")});
    const auto entries = [&dialog](int column) {
        QStringList texts;
        for (int i = 0; i < dialog.combo(0, column)->count(); ++i)
            texts << dialog.combo(0, column)->itemText(i);
        return texts;
    };
    QCOMPARE(entries(Rotate), QStringList({"0", "90", "180", "270"}));
    QCOMPARE(entries(Mirror), QStringList({"No", "Yes"}));
    QCOMPARE(entries(Negate), QStringList({"No", "Yes"}));
    const QString mirrorSheet = QString(choiceSheet).replace("transparent}", "transparent;}");
    QCOMPARE(dialog.combo(0, Rotate)->styleSheet(), QString(choiceSheet));
    QCOMPARE(dialog.combo(0, Mirror)->styleSheet(), mirrorSheet);
    QCOMPARE(dialog.combo(0, Negate)->styleSheet(), QString(choiceSheet));
}

void tst_LayerTable::cellComboBoxesOpenAList_data()
{
    QTest::addColumn<int>("column");
    QTest::newRow("rotate") << int(Rotate);
    QTest::newRow("mirror") << int(Mirror);
    QTest::newRow("negate") << int(Negate);
}

void tst_LayerTable::cellComboBoxesOpenAList()
{
    QFETCH(int, column);
    OpenDialog dialog(OpenDialog::sixLayers());
    QComboBox *box = dialog.combo(2, column);
    for (int round = 0; round < 2; ++round) { // the list is made for the first and kept for the second
        QTest::mouseClick(box, Qt::LeftButton);
        QTRY_VERIFY(box->view()->isVisible());
        QCOMPARE(QByteArray(box->view()->metaObject()->className()), QByteArray("QListView"));
        const QRect second = box->view()->visualRect(box->model()->index(1, 0));
        QVERIFY2(second.height() >= 20, qPrintable(QString::number(second.height())));
        QTest::mouseMove(box->view()->viewport(), second.center());
        // The list takes no click in the moment after it has opened.
        QTest::qWait(QApplication::doubleClickInterval() + 50);
        QTest::mouseClick(box->view()->viewport(), Qt::LeftButton, Qt::NoModifier, second.center());
        QCOMPARE(box->currentIndex(), 1);
        QTRY_VERIFY(!box->view()->isVisible());
    }
}

void tst_LayerTable::cellComboBoxesTakeKeys()
{
    OpenDialog dialog(OpenDialog::sixLayers());
    QComboBox *box = dialog.combo(2, Rotate);
    box->setFocus();
    QTest::keyClick(box, Qt::Key_Down);
    QCOMPARE(box->currentText(), QString("90"));
    QTest::keyClicks(box, "2");
    QCOMPARE(box->currentText(), QString("270"));
    QTest::keyClick(box, Qt::Key_Home);
    QCOMPARE(box->currentText(), QString("0"));
}

void tst_LayerTable::cellComboBoxesAreReadable()
{
    OpenDialog dialog({layer("BOARD", "SIGNAL", "top")});
    const QImage picture = dialog.combo(0, Mirror)->grab().toImage();
    int dark = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            dark += qGray(picture.pixel(x, y)) < 100;
    }
    QVERIFY(dark > 10); // the text "No" and the arrow
    QVERIFY(dark < picture.width() * picture.height() / 5);
}

void tst_LayerTable::fillingTheTableIsLogged()
{
    LogCapture log;
    OpenDialog dialog(OpenDialog::sixLayers());
    const LogLine line = log.find("Export", 492);
    QCOMPARE(line.severity, google::LogSeverity(google::GLOG_INFO));
    // The Chinese texts in GBK bytes.
    const std::string expected = "Export: "
                                 "\xD2\xD1\xBB\xF1\xC8\xA1\xB5\xBC\xB3\xF6\xB2\xE3\xC1\xD0\xB1\xED\xA1\xA3"
                                 "\xC1\xCF\xBA\xC5\xA3\xBA"
                                 "Job1"
                                 "\xA3\xBB"
                                 "STEP"
                                 "\xA3\xBA"
                                 "Pcb";
    QCOMPARE(line.message, expected);
}

void tst_LayerTable::pressAnywhereInTheCellToggles_data()
{
    QTest::addColumn<bool>("left");
    QTest::addColumn<bool>("top");
    QTest::newRow("left top") << true << true;
    QTest::newRow("left bottom") << true << false;
    QTest::newRow("right top") << false << true;
    QTest::newRow("right bottom") << false << false;
}

void tst_LayerTable::pressAnywhereInTheCellToggles()
{
    QFETCH(bool, left);
    QFETCH(bool, top);
    OpenDialog dialog(OpenDialog::sixLayers());
    const QRect cell = dialog.cell(2, Check);
    const QPoint at(left ? cell.left() + 1 : cell.right() - 1, top ? cell.top() + 1 : cell.bottom() - 1);
    QWidget *viewport = dialog.table()->viewport();
    QTest::mousePress(viewport, Qt::LeftButton, Qt::NoModifier, at);
    QCOMPARE(dialog.checkedRows(), QList<int>{2}); // on the press already
    QTest::mouseRelease(viewport, Qt::LeftButton, Qt::NoModifier, at);
    QCOMPARE(dialog.checkedRows(), QList<int>{2});
    QTest::mouseClick(viewport, Qt::LeftButton, Qt::NoModifier, at);
    QCOMPARE(dialog.checkedRows(), QList<int>());
}

void tst_LayerTable::everyMouseButtonToggles()
{
    OpenDialog dialog(OpenDialog::sixLayers());
    dialog.pressCell(1, Check, Qt::RightButton);
    QCOMPARE(dialog.checkedRows(), QList<int>{1});
    dialog.pressCell(1, Check, Qt::MiddleButton);
    QCOMPARE(dialog.checkedRows(), QList<int>());
}

void tst_LayerTable::doubleClickTogglesOnce()
{
    OpenDialog dialog(OpenDialog::sixLayers());
    const QPoint at = dialog.cell(1, Check).center();
    QWidget *viewport = dialog.table()->viewport();
    dialog.clickCell(1, Check);
    QTest::mouseDClick(viewport, Qt::LeftButton, Qt::NoModifier, at);
    // The first press toggles; the double click that stands for the second press does not.
    QCOMPARE(dialog.checkedRows(), QList<int>{1});
    QVERIFY(!dialog.editor());
}

void tst_LayerTable::clickingTheBoxOpensNoEditor()
{
    OpenDialog dialog(OpenDialog::sixLayers());
    dialog.table()->setCurrentCell(1, Check);
    dialog.clickCell(1, Check);
    QTest::keyClick(dialog.table(), Qt::Key_F2);
    QTest::keyClicks(dialog.table(), "1");
    QVERIFY(!dialog.editor());
    QCOMPARE(dialog.checkedRows(), QList<int>{1});
}

void tst_LayerTable::layerAndTimeCannotBeEdited()
{
    OpenDialog dialog(OpenDialog::sixLayers());
    for (int column : {Layer, Time}) {
        dialog.clickCell(1, column);
        QTest::mouseDClick(dialog.table()->viewport(), Qt::LeftButton, Qt::NoModifier,
                           dialog.cell(1, column).center());
        QVERIFY(!dialog.editor());
        QTest::keyClicks(dialog.table(), "x");
        QVERIFY(!dialog.editor());
    }
    QCOMPARE(dialog.text(1, Layer), QString("smt"));
}

void tst_LayerTable::scaleCellAdmitsTyping_data()
{
    QTest::addColumn<QString>("keys");
    QTest::addColumn<QString>("admitted");
    QTest::newRow("1.25") << "1.25"
                          << "1.25";
    QTest::newRow("2") << "2"
                       << "2";
    QTest::newRow("2.5") << "2.5"
                         << "2";
    QTest::newRow("3") << "30.5"
                       << "0.5";
    QTest::newRow("five decimals") << "1.23456"
                                   << "1.2345";
    QTest::newRow("below one") << "0.0001"
                               << "0.0001";
    QTest::newRow("sign") << "-1.5"
                          << "1.5";
    QTest::newRow("two digits") << "11.5"
                                << "1.5";
}

void tst_LayerTable::scaleCellAdmitsTyping()
{
    QFETCH(QString, keys);
    QFETCH(QString, admitted);
    OpenDialog dialog(OpenDialog::sixLayers());
    for (int column : {XScale, YScale}) {
        dialog.clickCell(2, column);
        QTest::mouseDClick(dialog.table()->viewport(), Qt::LeftButton, Qt::NoModifier,
                           dialog.cell(2, column).center());
        QLineEdit *editor = dialog.editor();
        QVERIFY(editor);
        QCOMPARE(editor->text(), QString("1"));
        QCOMPARE(editor->geometry(), dialog.cell(2, column));
        editor->selectAll();
        QTest::keyClicks(editor, keys);
        QTest::keyClick(editor, Qt::Key_Return);
        QTRY_COMPARE(dialog.text(2, column), admitted);
        QTRY_VERIFY(!dialog.editor());
    }
}

void tst_LayerTable::incompleteScaleKeepsTheEditorOpen()
{
    OpenDialog dialog(OpenDialog::sixLayers());
    dialog.table()->editItem(dialog.table()->item(0, XScale));
    QLineEdit *editor = dialog.editor();
    QVERIFY(editor);
    editor->clear();
    QTest::keyClicks(editor, "1.");
    QTest::keyClick(editor, Qt::Key_Return);
    QTest::qWait(20);
    QCOMPARE(dialog.editor(), editor);
    QCOMPARE(dialog.text(0, XScale), QString("1"));
}

void tst_LayerTable::escapeKeepsTheOldScale()
{
    OpenDialog dialog(OpenDialog::sixLayers());
    dialog.table()->editItem(dialog.table()->item(0, XScale));
    QLineEdit *editor = dialog.editor();
    QVERIFY(editor);
    editor->clear();
    QTest::keyClicks(editor, "1.5");
    QTest::keyClick(editor, Qt::Key_Escape);
    QTest::qWait(20);
    QVERIFY(!dialog.editor());
    QCOMPARE(dialog.text(0, XScale), QString("1"));
}

void tst_LayerTable::checkBoxShowsItsState()
{
    OpenDialog dialog(OpenDialog::sixLayers());
    const auto picture = [&dialog] {
        return dialog.table()->viewport()->grab(dialog.cell(1, Check)).toImage();
    };
    const QImage before = picture();
    dialog.pressCell(1, Check);
    QVERIFY(picture() != before);
    dialog.pressCell(1, Check);
    QCOMPARE(picture(), before);
}

void tst_LayerTable::wheelOverAComboBoxScrollsTheTable()
{
    OpenDialog dialog(manyLayers(60));
    QScrollBar *bar = dialog.table()->verticalScrollBar();
    QVERIFY(bar->maximum() > 0);
    for (int column : {Rotate, Mirror, Negate}) {
        bar->setValue(0);
        QComboBox *box = dialog.combo(3, column);
        turnWheel(box, -1);
        QCOMPARE(box->currentIndex(), 0);
        QVERIFY(bar->value() > 0);
    }
}

void tst_LayerTable::wheelOverAFocusedComboBoxChangesNothing()
{
    OpenDialog dialog(OpenDialog::sixLayers());
    QComboBox *box = dialog.combo(0, Rotate);
    box->setFocus();
    turnWheel(box, -2);
    QCOMPARE(box->currentText(), QString("0"));
}

QTEST_MAIN(tst_LayerTable)
#include "tst_layertable.moc"
