// The context menu of the layer table and its commands.

#include "tests/export/opendialog.h"
#include "tests/support/modalresponder.h"

#include <QContextMenuEvent>
#include <QMenu>
#include <QScreen>
#include <QWindow>

using namespace layer_column;
using recording_host::layer;

namespace {

// Right-clicks the table where there is no row, and gives the menu to `answer`.
void openMenu(const OpenDialog &dialog, const std::function<void(QMenu *)> &answer)
{
    ModalResponder responder;
    responder.expect([answer](QWidget *window) {
        auto *menu = qobject_cast<QMenu *>(window);
        if (!menu)
            qFatal("a menu was expected, but a %s was opened", window->metaObject()->className());
        answer(menu);
        menu->close();
    });
    QWidget *viewport = dialog.table()->viewport();
    const QPoint at(5, viewport->height() - 5);
    QContextMenuEvent request(QContextMenuEvent::Mouse, at, viewport->mapToGlobal(at));
    QCoreApplication::sendEvent(viewport, &request);
    QCOMPARE(responder.pending(), 0);
}

// Chooses the entry `text` as a click on it does.
void choose(const OpenDialog &dialog, const QString &text)
{
    bool isFound = false;
    openMenu(dialog, [&isFound, text](QMenu *menu) {
        for (QAction *action : menu->actions()) {
            if (action->text() != text)
                continue;
            isFound = true;
            QTest::mouseClick(menu, Qt::LeftButton, Qt::NoModifier, menu->actionGeometry(action).center());
        }
    });
    QVERIFY2(isFound, qPrintable(text));
}

const QString clearEntry = "Clear layer(Make the selected item unselected)";
const QString selectEntry = "Select all layer";
const QString boardEntry = "Board Layer";
const QString copyEntry = "Set parameters to selected layer";

} // namespace

class tst_TableCommands : public QObject
{
    Q_OBJECT

private slots:
    void init() { recording_host::reset(); }
    void menuDependsOnTheCurrentRow_data();
    void menuDependsOnTheCurrentRow();
    void everyRequestMakesAMenuOfTheTable();
    void menuOpensAtTheCursor();
    void clearUnchecksEveryRow();
    void selectChecksEveryRow();
    void clearThenSelectChecksEveryRow();
    void selectKeepsTheChecked();
    void boardLayersAreAddedToTheChoice();
    void boardLayersCheckedAlreadyStay();
    void boardContextIsComparedExactly();
    void rowsBelowASkippedRecordAreJudgedByTheirNeighbour();
    void parametersOfTheCurrentRowGoToTheChecked();
    void copiedParametersAreSeenAfterScrolling();
    void currentRowOfItsOwnGetsItsOwnValues();
    void uncheckedCurrentRowIsASourceToo();
    void firstRowCanBeTheSourceByTheSlot();
    void withoutCurrentRowNothingChanges();
    void commandsOnAnEmptyTableDoNothing();
    void closingTheDialogFromItsMenuIsSafe();
};

void tst_TableCommands::menuDependsOnTheCurrentRow_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("entries");
    QTest::newRow("none") << -1 << 4;
    QTest::newRow("first") << 0 << 3;
    QTest::newRow("second") << 1 << 4;
    QTest::newRow("last") << 5 << 4;
}

void tst_TableCommands::menuDependsOnTheCurrentRow()
{
    QFETCH(int, row);
    QFETCH(int, entries);
    OpenDialog dialog(OpenDialog::sixLayers());
    if (row >= 0)
        dialog.clickCell(row, Layer);
    QCOMPARE(dialog.table()->currentRow(), row);
    QStringList texts;
    openMenu(dialog, [&texts](QMenu *menu) {
        for (const QAction *action : menu->actions())
            texts << action->text();
    });
    QCOMPARE(texts, QStringList({clearEntry, selectEntry, boardEntry, copyEntry}).mid(0, entries));
}

void tst_TableCommands::everyRequestMakesAMenuOfTheTable()
{
    OpenDialog dialog(OpenDialog::sixLayers());
    for (int i = 1; i <= 3; ++i) {
        openMenu(dialog, [](QMenu *) {});
        QCOMPARE(dialog.table()->findChildren<QMenu *>(QString(), Qt::FindDirectChildrenOnly).size(), i);
    }
}

void tst_TableCommands::menuOpensAtTheCursor()
{
    OpenDialog dialog(OpenDialog::sixLayers());
    const QPoint cursor = dialog->mapToGlobal(QPoint(200, 200));
    // A window system may take the wish before its windows are where they will be, and then forget it.
    for (int attempt = 0; attempt < 200 && QCursor::pos() != cursor; ++attempt) {
        QCursor::setPos(cursor);
        QTest::qWait(20);
    }
    QCOMPARE(QCursor::pos(), cursor);
    QPoint corner;
    openMenu(dialog, [&corner](QMenu *menu) { corner = menu->pos(); });
    QCOMPARE(corner, cursor);
}

void tst_TableCommands::clearUnchecksEveryRow()
{
    OpenDialog dialog(OpenDialog::sixLayers());
    dialog.setChecked({0, 2, 5});
    choose(dialog, clearEntry);
    QCOMPARE(dialog.checkedRows(), QList<int>());
    // Rows that were not checked keep their value: empty text, not "false".
    QCOMPARE(dialog.text(1, Check), QString());
    QCOMPARE(dialog.text(2, Check), QString("false"));
}

void tst_TableCommands::selectChecksEveryRow()
{
    OpenDialog dialog(OpenDialog::sixLayers());
    choose(dialog, selectEntry);
    QCOMPARE(dialog.checkedRows(), QList<int>({0, 1, 2, 3, 4, 5}));
    QCOMPARE(dialog.table()->item(0, Check)->data(Qt::EditRole), QVariant(true));
}

void tst_TableCommands::clearThenSelectChecksEveryRow()
{
    OpenDialog dialog(OpenDialog::sixLayers());
    dialog.setChecked({1, 3});
    choose(dialog, clearEntry);
    choose(dialog, selectEntry);
    QCOMPARE(dialog.checkedRows(), QList<int>({0, 1, 2, 3, 4, 5}));
}

void tst_TableCommands::selectKeepsTheChecked()
{
    OpenDialog dialog(OpenDialog::sixLayers());
    dialog.pressCell(3, Check);
    choose(dialog, selectEntry);
    QVERIFY(dialog.isChecked(3));
}

void tst_TableCommands::boardLayersAreAddedToTheChoice()
{
    OpenDialog dialog(OpenDialog::sixLayers());
    dialog.setChecked({5}); // no board layer
    choose(dialog, boardEntry);
    QCOMPARE(dialog.checkedRows(), QList<int>({0, 1, 2, 3, 4, 5}));
}

void tst_TableCommands::boardLayersCheckedAlreadyStay()
{
    OpenDialog dialog(OpenDialog::sixLayers());
    dialog.setChecked({0, 1, 2, 3, 4});
    choose(dialog, boardEntry);
    QCOMPARE(dialog.checkedRows(), QList<int>({0, 1, 2, 3, 4}));
    QCOMPARE(dialog.text(5, Check), QString());
}

void tst_TableCommands::boardContextIsComparedExactly()
{
    OpenDialog dialog({layer("board", "SIGNAL", "a"), layer("BOARD ", "SIGNAL", "b"),
                       layer("", "SIGNAL", "c"), layer("BOARD", "ROUT", "d")});
    choose(dialog, boardEntry);
    QCOMPARE(dialog.checkedRows(), QList<int>{3});
}

void tst_TableCommands::rowsBelowASkippedRecordAreJudgedByTheirNeighbour()
{
    // Rows: top, notes, bot; the records that judge them: top, the skipped one, notes.
    OpenDialog dialog({layer("BOARD", "SIGNAL", "top"), layer("BOARD", "GDS", "skipped"),
                       layer("MISC", "DOCUMENT", "notes"), layer("BOARD", "SIGNAL", "bot")});
    QCOMPARE(dialog.table()->rowCount(), 3);
    choose(dialog, boardEntry);
    QCOMPARE(dialog.checkedRows(), QList<int>({0, 1}));
}

void tst_TableCommands::parametersOfTheCurrentRowGoToTheChecked()
{
    OpenDialog dialog(OpenDialog::sixLayers());
    dialog.combo(3, Rotate)->setCurrentText("270");
    dialog.combo(3, Mirror)->setCurrentText("Yes");
    dialog.table()->item(3, XScale)->setText("1.25");
    dialog.table()->item(3, YScale)->setText("0.5");
    dialog.combo(3, Negate)->setCurrentText("Yes");
    dialog.setChecked({1, 3, 5});
    dialog.clickCell(3, Layer);
    choose(dialog, copyEntry);
    for (int row : {1, 3, 5}) {
        QCOMPARE(dialog.combo(row, Rotate)->currentText(), QString("270"));
        QCOMPARE(dialog.combo(row, Mirror)->currentText(), QString("Yes"));
        QCOMPARE(dialog.text(row, XScale), QString("1.25"));
        QCOMPARE(dialog.text(row, YScale), QString("0.5"));
        QCOMPARE(dialog.combo(row, Negate)->currentText(), QString("Yes"));
        QVERIFY(!dialog.table()->item(row, Time));
    }
    for (int row : {0, 2, 4}) {
        QCOMPARE(dialog.combo(row, Rotate)->currentText(), QString("0"));
        QCOMPARE(dialog.combo(row, Mirror)->currentText(), QString("No"));
        QCOMPARE(dialog.text(row, XScale), QString("1"));
        QCOMPARE(dialog.text(row, YScale), QString("1"));
        QCOMPARE(dialog.combo(row, Negate)->currentText(), QString("No"));
    }
}

void tst_TableCommands::copiedParametersAreSeenAfterScrolling()
{
    std::vector<ORVEX::API::layer_info> layers(100, layer("BOARD", "SIGNAL", "layer"));
    OpenDialog dialog(layers);
    dialog.table()->scrollToBottom(); // every row has been on the screen
    QTest::qWait(20);
    dialog.table()->scrollToTop();
    QTest::qWait(20);
    dialog->on_SelectAll_clicked();
    dialog.combo(1, Mirror)->setCurrentText("Yes");
    dialog.clickCell(1, Layer);
    dialog->on_SetParamater_clicked();
    QTest::qWait(20);
    dialog.table()->scrollToBottom();
    QTest::qWait(20);
    const auto pictureOf = [&dialog](int row) {
        const QRect cell = dialog.combo(row, Mirror)->geometry();
        // What is on the screen, not what a new painting would give.
        return dialog->windowHandle()
            ->screen()
            ->grabWindow(dialog->winId())
            .toImage()
            .copy(cell.translated(dialog.table()->viewport()->mapTo(dialog.get(), QPoint())));
    };
    const QImage seen = pictureOf(98);
    QCOMPARE(dialog.combo(98, Mirror)->currentText(), QString("Yes"));
    dialog.combo(98, Mirror)->repaint();
    QTest::qWait(20);
    QVERIFY(!seen.isNull());
    QCOMPARE(seen, pictureOf(98));
    dialog.combo(98, Mirror)->setCurrentText("No");
    QTest::qWait(20);
    QVERIFY(seen != pictureOf(98));
}

void tst_TableCommands::currentRowOfItsOwnGetsItsOwnValues()
{
    OpenDialog dialog(OpenDialog::sixLayers());
    dialog.table()->item(2, XScale)->setText("1.5");
    QTableWidgetItem *before = dialog.table()->item(2, YScale);
    before->setData(Qt::UserRole, "old item");
    dialog.setChecked({2});
    dialog.clickCell(2, Layer);
    choose(dialog, copyEntry);
    QCOMPARE(dialog.text(2, XScale), QString("1.5"));
    // The item is a new one.
    QVERIFY(!dialog.table()->item(2, YScale)->data(Qt::UserRole).isValid());
}

void tst_TableCommands::uncheckedCurrentRowIsASourceToo()
{
    OpenDialog dialog(OpenDialog::sixLayers());
    dialog.combo(4, Rotate)->setCurrentText("90");
    dialog.setChecked({0});
    dialog.clickCell(4, Layer);
    choose(dialog, copyEntry);
    QCOMPARE(dialog.combo(0, Rotate)->currentText(), QString("90"));
    QVERIFY(!dialog.isChecked(4));
}

void tst_TableCommands::firstRowCanBeTheSourceByTheSlot()
{
    OpenDialog dialog(OpenDialog::sixLayers());
    dialog.combo(0, Rotate)->setCurrentText("180");
    dialog.setChecked({1});
    dialog.clickCell(0, Layer);
    dialog->on_SetParamater_clicked();
    QCOMPARE(dialog.combo(1, Rotate)->currentText(), QString("180"));
}

void tst_TableCommands::withoutCurrentRowNothingChanges()
{
    OpenDialog dialog(OpenDialog::sixLayers());
    dialog.combo(1, Rotate)->setCurrentText("90");
    dialog.setChecked({0, 1});
    choose(dialog, copyEntry);
    QCOMPARE(dialog.combo(0, Rotate)->currentText(), QString("0"));
    QCOMPARE(dialog.combo(1, Rotate)->currentText(), QString("90"));
    QCOMPARE(dialog.text(0, XScale), QString("1"));
}

void tst_TableCommands::commandsOnAnEmptyTableDoNothing()
{
    OpenDialog dialog;
    for (const QString &entry : {clearEntry, selectEntry, boardEntry, copyEntry})
        choose(dialog, entry);
    QCOMPARE(dialog.table()->rowCount(), 0);
}

void tst_TableCommands::closingTheDialogFromItsMenuIsSafe()
{
    OpenDialog dialog(OpenDialog::sixLayers());
    const QPointer<Export> alive(dialog.get());
    ModalResponder responder;
    responder.expect([alive](QWidget *) { delete alive.data(); });
    dialog->on_PNListTable_customContextMenuRequest(QPoint());
    QVERIFY(!alive);
}

QTEST_MAIN(tst_TableCommands)
#include "tst_tablecommands.moc"
