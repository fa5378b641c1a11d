// The cell editors one by one, on a plain table model.

#include "export/delegates/checkboxdelegate.h"
#include "export/delegates/comboboxdelegate.h"
#include "export/delegates/readonlydelegate.h"
#include "export/delegates/roratevalidatordelegate.h"
#include "export/delegates/rotatecomboxdelegete.h"
#include "export/delegates/scalevalidatordelegate.h"

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QStandardItemModel>
#include <QtTest>

#include <memory>

class tst_Delegates : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void readOnlyOpensNoEditor();
    void scaleEditorMovesTheText();
    void scaleValidatorJudges_data();
    void scaleValidatorJudges();
    void rotationIsTypedFromZeroTo360_data();
    void rotationIsTypedFromZeroTo360();
    void rotationEditorMovesTheText();
    void wordEditorStartsAtItsSecondEntry();
    void wordEditorFindsTheWord_data();
    void wordEditorFindsTheWord();
    void quarterTurnsAreChosen();
    void choiceIsStored();
    void editorsCoverTheirCell();
    void checkRectangleIsCentred_data();
    void checkRectangleIsCentred();
    void releaseIsHandledInsideTheBoxOnly();
    void otherEventsOfTheCheckColumnAreHandled();
    void otherColumnsGoToTheBase();
    void refusedTogglesAreReported();

private:
    template <typename Editor>
    std::unique_ptr<Editor> open(const QAbstractItemDelegate &delegate, int column = 4)
    {
        const QModelIndex index = m_model->index(0, column);
        std::unique_ptr<Editor> editor(
            qobject_cast<Editor *>(delegate.createEditor(&m_parent, QStyleOptionViewItem(), index)));
        if (editor)
            delegate.setEditorData(editor.get(), index);
        return editor;
    }
    QVariant value(int column = 4) const { return m_model->index(0, column).data(Qt::EditRole); }
    void setValue(const QVariant &value, int column = 4)
    {
        m_model->setData(m_model->index(0, column), value, Qt::EditRole);
    }
    bool send(CheckBoxDelegate &delegate, QEvent::Type type, Qt::MouseButton button, QPoint at,
              int column = 0)
    {
        QMouseEvent event(type, at, button, button, Qt::NoModifier);
        QStyleOptionViewItem option;
        option.rect = m_cell;
        return delegate.editorEvent(&event, m_model.get(), option, m_model->index(0, column));
    }

    QWidget m_parent;
    std::unique_ptr<QStandardItemModel> m_model;
    const QRect m_cell = QRect(100, 60, 30, 31);
};

void tst_Delegates::init()
{
    m_model = std::make_unique<QStandardItemModel>(1, 8);
}

void tst_Delegates::readOnlyOpensNoEditor()
{
    ReadOnlyDelegate delegate;
    QVERIFY(!open<QWidget>(delegate));
}

void tst_Delegates::scaleEditorMovesTheText()
{
    ScaleValidatorDelegate delegate;
    setValue("1");
    const auto editor = open<QLineEdit>(delegate);
    QVERIFY(editor);
    QCOMPARE(editor->text(), QString("1"));
    editor->setText("1.5");
    delegate.setModelData(editor.get(), m_model.get(), m_model->index(0, 4));
    QCOMPARE(value().toString(), QString("1.5"));
}

void tst_Delegates::scaleValidatorJudges_data()
{
    QTest::addColumn<int>("state");
    QTest::newRow("1") << int(QValidator::Intermediate);
    QTest::newRow("0") << int(QValidator::Intermediate);
    QTest::newRow("1.") << int(QValidator::Intermediate);
    QTest::newRow("1.0") << int(QValidator::Acceptable);
    QTest::newRow("1.9999") << int(QValidator::Acceptable);
    QTest::newRow("0.5") << int(QValidator::Acceptable);
    QTest::newRow("2") << int(QValidator::Acceptable);
    QTest::newRow("2.5") << int(QValidator::Invalid);
    QTest::newRow("2.0") << int(QValidator::Invalid);
    QTest::newRow("3") << int(QValidator::Invalid);
    QTest::newRow("1.23456") << int(QValidator::Invalid);
    QTest::newRow("-1") << int(QValidator::Invalid);
    QTest::newRow("") << int(QValidator::Intermediate);
}

void tst_Delegates::scaleValidatorJudges()
{
    QFETCH(int, state);
    ScaleValidatorDelegate delegate;
    const auto editor = open<QLineEdit>(delegate);
    QString text = QTest::currentDataTag();
    int position = 0;
    QCOMPARE(int(editor->validator()->validate(text, position)), state);
}

void tst_Delegates::rotationIsTypedFromZeroTo360_data()
{
    QTest::addColumn<QString>("admitted");
    QTest::addColumn<bool>("complete");
    QTest::newRow("0") << "0" << true;
    QTest::newRow("360") << "360" << true;
    QTest::newRow("45") << "45" << true;
    QTest::newRow("3600") << "360" << true;
    QTest::newRow("-5") << "5" << true;
    QTest::newRow("1.5") << "15" << true;
    QTest::newRow("361") << "361" << false;
}

void tst_Delegates::rotationIsTypedFromZeroTo360()
{
    QFETCH(QString, admitted);
    QFETCH(bool, complete);
    RorateValidatorDelegate delegate;
    const auto editor = open<QLineEdit>(delegate);
    QVERIFY(editor);
    QTest::keyClicks(editor.get(), QTest::currentDataTag());
    QCOMPARE(editor->text(), admitted);
    QCOMPARE(editor->hasAcceptableInput(), complete);
}

void tst_Delegates::rotationEditorMovesTheText()
{
    RorateValidatorDelegate delegate;
    setValue("90");
    const auto editor = open<QLineEdit>(delegate);
    QCOMPARE(editor->text(), QString("90"));
    editor->setText("45");
    delegate.setModelData(editor.get(), m_model.get(), m_model->index(0, 4));
    QCOMPARE(value().toString(), QString("45"));
}

void tst_Delegates::wordEditorStartsAtItsSecondEntry()
{
    ComboBoxDelegate delegate;
    const std::unique_ptr<QWidget> editor(
        delegate.createEditor(&m_parent, QStyleOptionViewItem(), m_model->index(0, 4)));
    auto *box = qobject_cast<QComboBox *>(editor.get());
    QVERIFY(box);
    QCOMPARE(box->count(), 2);
    QCOMPARE(box->itemText(0), QString("Yes"));
    QCOMPARE(box->itemText(1), QString("No"));
    QCOMPARE(box->currentIndex(), 1);
}

void tst_Delegates::wordEditorFindsTheWord_data()
{
    QTest::addColumn<int>("index");
    QTest::newRow("Yes") << 0;
    QTest::newRow("No") << 1;
    QTest::newRow("yes") << -1;
    QTest::newRow("Ye") << -1;
}

void tst_Delegates::wordEditorFindsTheWord()
{
    QFETCH(int, index);
    ComboBoxDelegate delegate;
    setValue(QString(QTest::currentDataTag()));
    QCOMPARE(open<QComboBox>(delegate)->currentIndex(), index);
}

void tst_Delegates::quarterTurnsAreChosen()
{
    RotateComboxDelegete delegate;
    setValue("270");
    const auto box = open<QComboBox>(delegate);
    QStringList entries;
    for (int i = 0; i < box->count(); ++i)
        entries << box->itemText(i);
    QCOMPARE(entries, QStringList({"0", "90", "180", "270"}));
    QCOMPARE(box->currentIndex(), 3);
    const std::unique_ptr<QWidget> fresh(
        delegate.createEditor(&m_parent, QStyleOptionViewItem(), m_model->index(0, 4)));
    QCOMPARE(qobject_cast<QComboBox *>(fresh.get())->currentIndex(), 1);
}

void tst_Delegates::choiceIsStored()
{
    ComboBoxDelegate words;
    const auto wordBox = open<QComboBox>(words);
    wordBox->setCurrentIndex(0);
    words.setModelData(wordBox.get(), m_model.get(), m_model->index(0, 4));
    QCOMPARE(value().toString(), QString("Yes"));

    RotateComboxDelegete turns;
    const auto turnBox = open<QComboBox>(turns);
    turnBox->setCurrentIndex(2);
    turns.setModelData(turnBox.get(), m_model.get(), m_model->index(0, 4));
    QCOMPARE(value().toString(), QString("180"));
}

void tst_Delegates::editorsCoverTheirCell()
{
    QStyleOptionViewItem option;
    option.rect = m_cell;
    const ScaleValidatorDelegate scale;
    const RorateValidatorDelegate rotation;
    const ComboBoxDelegate word;
    const RotateComboxDelegete turn;
    for (const QAbstractItemDelegate *delegate :
         std::initializer_list<const QAbstractItemDelegate *>{&scale, &rotation, &word, &turn}) {
        const QModelIndex index = m_model->index(0, 4);
        const std::unique_ptr<QWidget> editor(delegate->createEditor(&m_parent, option, index));
        delegate->updateEditorGeometry(editor.get(), option, index);
        QCOMPARE(editor->geometry(), m_cell);
    }
}

void tst_Delegates::checkRectangleIsCentred_data()
{
    QTest::addColumn<QRect>("cell");
    QTest::newRow("even") << QRect(0, 0, 30, 30);
    QTest::newRow("odd") << QRect(0, 0, 31, 33);
    QTest::newRow("moved") << QRect(7, 300, 30, 31);
}

void tst_Delegates::checkRectangleIsCentred()
{
    QFETCH(QRect, cell);
    const QStyleOptionButton standard;
    const QSize size = QApplication::style()->subElementRect(QStyle::SE_CheckBoxIndicator, &standard).size();
    const QRect expected(cell.x() + (cell.width() / 2 - size.width() / 2),
                         cell.y() + (cell.height() / 2 - size.height() / 2), size.width(), size.height());
    QVERIFY(!size.isEmpty());
    QCOMPARE(CheckBoxDelegate::checkRect(cell), expected);
}

void tst_Delegates::releaseIsHandledInsideTheBoxOnly()
{
    CheckBoxDelegate delegate;
    const QPoint inside = CheckBoxDelegate::checkRect(m_cell).center();
    const QPoint outside = m_cell.topLeft() + QPoint(1, 1);
    QVERIFY(send(delegate, QEvent::MouseButtonRelease, Qt::LeftButton, inside));
    QVERIFY(!send(delegate, QEvent::MouseButtonRelease, Qt::LeftButton, outside));
    QVERIFY(send(delegate, QEvent::MouseButtonRelease, Qt::RightButton, outside));
    QVERIFY(!value(0).isValid()); // a release toggles nothing
}

void tst_Delegates::otherEventsOfTheCheckColumnAreHandled()
{
    CheckBoxDelegate delegate;
    QVERIFY(send(delegate, QEvent::MouseButtonDblClick, Qt::LeftButton, m_cell.center()));
    QVERIFY(send(delegate, QEvent::MouseMove, Qt::NoButton, m_cell.center()));
    QKeyEvent key(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier, " ");
    QStyleOptionViewItem option;
    QVERIFY(delegate.editorEvent(&key, m_model.get(), option, m_model->index(0, 0)));
    QVERIFY(!value(0).isValid());
    QVERIFY(send(delegate, QEvent::MouseButtonPress, Qt::LeftButton, m_cell.center()));
    QCOMPARE(value(0), QVariant(true));
    QVERIFY(send(delegate, QEvent::MouseButtonPress, Qt::LeftButton, m_cell.center()));
    QCOMPARE(value(0), QVariant(false));
}

void tst_Delegates::otherColumnsGoToTheBase()
{
    CheckBoxDelegate delegate;
    setValue("1", 3);
    QVERIFY(!send(delegate, QEvent::MouseButtonPress, Qt::LeftButton, m_cell.center(), 3));
    QCOMPARE(value(3).toString(), QString("1"));
}

void tst_Delegates::refusedTogglesAreReported()
{
    // A model that takes no value: the press is not handled then.
    struct Refusing : QStandardItemModel
    {
        Refusing() : QStandardItemModel(1, 8) {}
        bool setData(const QModelIndex &, const QVariant &, int) override { return false; }
    };
    m_model = std::make_unique<Refusing>();
    CheckBoxDelegate delegate;
    QVERIFY(!send(delegate, QEvent::MouseButtonPress, Qt::LeftButton, m_cell.center()));
}

QTEST_MAIN(tst_Delegates)
#include "tst_delegates.moc"
