// The rows of the Export dialog: which widget follows which, the widths of what has no name, the icon of the
// path warning, and the model beside the table.

#include "tests/export/opendialog.h"
#include "tests/support/exportaccess.h"
#include "tests/support/modalresponder.h"

#include <QBoxLayout>
#include <QFrame>
#include <QLabel>
#include <QStandardItemModel>

namespace {

QString nameOf(const QWidget *widget)
{
    const auto *frame = qobject_cast<const QFrame *>(widget);
    if (frame && frame->frameShape() == QFrame::VLine)
        return "|";
    if (frame && frame->frameShape() == QFrame::HLine)
        return "-";
    const auto *label = qobject_cast<const QLabel *>(widget);
    return label ? "\"" + label->text() + "\"" : widget->objectName();
}

// The widgets of `layout` in their order, those of inner layouts included; a spacer is "...".
QStringList contentOf(const QLayout *layout)
{
    QStringList names;
    for (int i = 0; i < layout->count(); ++i) {
        QLayoutItem *item = layout->itemAt(i);
        if (item->layout())
            names << contentOf(item->layout());
        else
            names << (item->widget() ? nameOf(item->widget()) : QString("..."));
    }
    return names;
}

QString lineOf(const QLayout *layout)
{
    return contentOf(layout).join(" ");
}

} // namespace

class tst_DialogRows : public QObject
{
    Q_OBJECT

private slots:
    void init() { recording_host::reset(); }
    void widgetsFollowEachOther();
    void widgetsAreSeenInThatOrder();
    void unitLabelsAreSeventyWide();
    void warningHasItsIcon();
    void scaleModelHasAnItemARowAndScale();
    void scaleModelIsNotUpdated();
};

void tst_DialogRows::widgetsFollowEachOther()
{
    OpenDialog dialog;
    const auto *all = qobject_cast<QVBoxLayout *>(dialog->layout());
    QVERIFY(all && all->count() == 3);
    const auto *top = qobject_cast<QVBoxLayout *>(all->itemAt(0)->layout());
    QVERIFY(top && top->count() == 5);
    QCOMPARE(lineOf(top->itemAt(0)->layout()), QString("PathButton | PathLineEdit"));
    QCOMPARE(nameOf(top->itemAt(1)->widget()), QString("-"));
    const QLayout *names = top->itemAt(2)->layout();
    QCOMPARE(names->count(), 2);
    QCOMPARE(lineOf(names->itemAt(0)->layout()), QString("\"Second Dir:\" | SecondDirLineEdit |"));
    QCOMPARE(lineOf(names->itemAt(1)->layout()), QString("\"Format:\" | FormatComboBox"));
    QCOMPARE(nameOf(top->itemAt(3)->widget()), QString("-"));
    QCOMPARE(
        lineOf(top->itemAt(4)->layout()),
        QString("\"Reference\" | \"X\" ReferenceXLineEdit \"um\" | \"Y\" ReferenceYLineEdit \"um\" | ..."));
    QCOMPARE(all->itemAt(1)->widget()->objectName(), QString("PNListTable"));
    QCOMPARE(lineOf(all->itemAt(2)->layout()), QString("... OKButton CancelButton"));
    for (const QLayout *row : std::initializer_list<const QLayout *>{
             top->itemAt(0)->layout(), names, top->itemAt(4)->layout(), all->itemAt(2)->layout()})
        QVERIFY(qobject_cast<const QHBoxLayout *>(row));
}

void tst_DialogRows::widgetsAreSeenInThatOrder()
{
    OpenDialog dialog;
    const auto left = [&dialog](const char *name) {
        return dialog.child<QWidget>(name)->mapTo(dialog.get(), QPoint()).x();
    };
    QVERIFY(left("PathButton") < left("PathLineEdit"));
    QVERIFY(left("SecondDirLabel") < left("SecondDirLineEdit"));
    QVERIFY(left("SecondDirLineEdit") < left("FormatLabel"));
    QVERIFY(left("FormatLabel") < left("FormatComboBox"));
    QVERIFY(left("ReferenceLabel") < left("XLabel"));
    QVERIFY(left("XLabel") < left("ReferenceXLineEdit"));
    QVERIFY(left("ReferenceXLineEdit") < left("YLabel"));
    QVERIFY(left("YLabel") < left("ReferenceYLineEdit"));
    QVERIFY(left("OKButton") < left("CancelButton"));
}

void tst_DialogRows::unitLabelsAreSeventyWide()
{
    OpenDialog dialog;
    int units = 0;
    for (const QLabel *label : dialog->findChildren<QLabel *>(QString(), Qt::FindDirectChildrenOnly)) {
        if (label->text() != "um")
            continue;
        ++units;
        QCOMPARE(label->maximumSize(), QSize(70, QWIDGETSIZE_MAX));
    }
    QCOMPARE(units, 2);
}

void tst_DialogRows::warningHasItsIcon()
{
    OpenDialog dialog;
    QLineEdit *path = dialog.edit("PathLineEdit");
    path->setFocus();
    path->setText("no such folder");
    ModalResponder user;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    user.expect([&icon](QWidget *window) {
        icon = qobject_cast<QMessageBox *>(window)->icon();
        qobject_cast<QDialog *>(window)->accept();
    });
    QTest::keyClick(path, Qt::Key_Return);
    QCOMPARE(user.pending(), 0);
    QCOMPARE(icon, QMessageBox::Warning);
}

void tst_DialogRows::scaleModelHasAnItemARowAndScale()
{
    using recording_host::layer;
    OpenDialog dialog(
        {layer("BOARD", "SIGNAL", "top"), layer("MISC", "GDS", "skipped"), layer("BOARD", "SIGNAL", "bot")});
    const QStandardItemModel *model = ExportAccess::scaleModel(*dialog.get());
    QVERIFY(model && !model->parent());
    QCOMPARE(model->rowCount(), 2);
    for (int row = 0; row < 2; ++row) {
        for (int column = 0; column < layer_column::Count; ++column) {
            const QStandardItem *item = model->item(row, column);
            const bool isScale = column == layer_column::XScale || column == layer_column::YScale;
            QCOMPARE(item != nullptr, isScale);
            if (isScale)
                QCOMPARE(item->text(), QString("1"));
        }
    }
}

void tst_DialogRows::scaleModelIsNotUpdated()
{
    OpenDialog dialog(OpenDialog::sixLayers());
    dialog.table()->item(2, layer_column::XScale)->setText("1.5");
    dialog.table()->setCurrentCell(2, layer_column::Layer);
    dialog.setChecked({1, 2});
    dialog->on_SetParamater_clicked();
    QCOMPARE(dialog.text(1, layer_column::XScale), QString("1.5"));
    const QStandardItemModel *model = ExportAccess::scaleModel(*dialog.get());
    for (int row = 0; row < 6; ++row) {
        const QStandardItem *item = model->item(row, layer_column::XScale);
        QCOMPARE(item ? item->text() : QString(), QString("1"));
    }
}

QTEST_MAIN(tst_DialogRows)
#include "tst_dialogrows.moc"
