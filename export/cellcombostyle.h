// The style beneath the style sheets of the table's combo boxes.
//
// Their sheets ask for a transparent background. Styles that mix a combo box's shades from its background
// colour, Qt's Fusion among them, turn "transparent" into black and make the text unreadable. Here such a box
// takes the colour of the cell that it covers; everything else is drawn by the application's style.
#pragma once

#include <QApplication>
#include <QProxyStyle>
#include <QStyleFactory>
#include <QStyleOptionComboBox>

class CellComboStyle : public QProxyStyle
{
public:
    CellComboStyle() : QProxyStyle(QStyleFactory::create(QApplication::style()->objectName())) {}

    void drawComplexControl(ComplexControl control, const QStyleOptionComplex *option, QPainter *painter,
                            const QWidget *widget) const override
    {
        const auto *box = qstyleoption_cast<const QStyleOptionComboBox *>(option);
        if (control != CC_ComboBox || !box || box->palette.color(QPalette::Button).alpha() != 0) {
            QProxyStyle::drawComplexControl(control, option, painter, widget);
            return;
        }
        QStyleOptionComboBox opaque(*box);
        opaque.palette.setBrush(QPalette::Button, QApplication::palette().base());
        QProxyStyle::drawComplexControl(control, &opaque, painter, widget);
    }
};
