// How the check column is drawn: one check box of the application's style and nothing else.

#include "export/delegates/checkboxdelegate.h"

#include <QApplication>
#include <QPainter>
#include <QProxyStyle>
#include <QStandardItemModel>
#include <QStyleOptionButton>
#include <QtTest>

namespace {

const QSize indicator(14, 11);

// Writes down what it is asked to draw, and draws nothing.
class RecordingStyle : public QProxyStyle
{
public:
    void drawControl(ControlElement element, const QStyleOption *option, QPainter *,
                     const QWidget *) const override
    {
        controls << element;
        states << option->state;
        rects << option->rect;
    }
    void drawPrimitive(PrimitiveElement element, const QStyleOption *, QPainter *,
                       const QWidget *) const override
    {
        primitives << element;
    }
    QRect subElementRect(SubElement element, const QStyleOption *option, const QWidget *widget) const override
    {
        if (element != SE_CheckBoxIndicator)
            return QProxyStyle::subElementRect(element, option, widget);
        // That of a box with a text or in a cell may be another one.
        isAskedPlainly = qstyleoption_cast<const QStyleOptionButton *>(option) && option->rect.isNull() &&
                         option->state == QStyle::State_None && !widget;
        return QRect(QPoint(3, 5), indicator);
    }

    mutable QList<int> controls, primitives;
    mutable QList<QStyle::State> states;
    mutable QList<QRect> rects;
    mutable bool isAskedPlainly = false;
};

} // namespace

class tst_CheckBoxPainting : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void oneBoxIsDrawn_data();
    void oneBoxIsDrawn();
    void nothingElseIsDrawn();
    void otherColumnsAreDrawnAsAnyCell();

private:
    QImage paint(int column, const QVariant &value, QStyle::State state = QStyle::State_Enabled);

    const QRect m_cell{7, 30, 31, 24};
    RecordingStyle *m_style = nullptr; // the application's
};

void tst_CheckBoxPainting::init()
{
    m_style = new RecordingStyle;
    QApplication::setStyle(m_style);
}

QImage tst_CheckBoxPainting::paint(int column, const QVariant &value, QStyle::State state)
{
    QStandardItemModel model(1, 8);
    model.setData(model.index(0, column), value, Qt::EditRole);
    QImage picture(60, 80, QImage::Format_ARGB32);
    picture.fill(Qt::magenta);
    QPainter painter(&picture);
    QStyleOptionViewItem option;
    option.rect = m_cell;
    option.state = state;
    m_style->controls.clear();
    CheckBoxDelegate().paint(&painter, option, model.index(0, column));
    return picture;
}

void tst_CheckBoxPainting::oneBoxIsDrawn_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<bool>("isOn");
    QTest::newRow("new row") << QVariant(QString()) << false;
    QTest::newRow("checked") << QVariant(true) << true;
    QTest::newRow("unchecked") << QVariant(false) << false;
}

void tst_CheckBoxPainting::oneBoxIsDrawn()
{
    QFETCH(QVariant, value);
    QFETCH(bool, isOn);
    paint(0, value);
    QCOMPARE(m_style->controls, QList<int>{QStyle::CE_CheckBox});
    const QStyle::State state = QStyle::State_Enabled | (isOn ? QStyle::State_On : QStyle::State_Off);
    QCOMPARE(m_style->states, QList<QStyle::State>{state});
    // Integer divisions: 31 / 2 - 14 / 2 = 8 and 24 / 2 - 11 / 2 = 7 from the cell's corner.
    QCOMPARE(m_style->rects, QList<QRect>{QRect(QPoint(7 + 8, 30 + 7), indicator)});
    QVERIFY(m_style->isAskedPlainly);
}

void tst_CheckBoxPainting::nothingElseIsDrawn()
{
    QImage untouched(60, 80, QImage::Format_ARGB32);
    untouched.fill(Qt::magenta);
    // Neither a background nor a selection, a focus or a disabled look.
    for (const QStyle::State state :
         {QStyle::State_Enabled | QStyle::State_Selected | QStyle::State_HasFocus | QStyle::State_MouseOver,
          QStyle::State(QStyle::State_None)}) {
        m_style->states.clear();
        QCOMPARE(paint(0, true, state), untouched);
        QCOMPARE(m_style->states, QList<QStyle::State>{QStyle::State_Enabled | QStyle::State_On});
        QVERIFY(m_style->primitives.isEmpty());
    }
}

void tst_CheckBoxPainting::otherColumnsAreDrawnAsAnyCell()
{
    paint(1, true);
    QCOMPARE(m_style->controls, QList<int>{QStyle::CE_ItemViewItem});
}

QTEST_MAIN(tst_CheckBoxPainting)
#include "tst_checkboxpainting.moc"
