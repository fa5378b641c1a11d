// A combo box for a table cell.
//
// Each layer has three of them, and a popup list with its window, scroll bars and style takes eight times
// what the rest of the box does. So the list is made when it is first opened.
//
// Their style sheets ask for a transparent background. Styles that mix a combo box's shades from its
// background colour, Qt's Fusion among them, turn "transparent" into black and make the text unreadable. So
// the box is drawn by the application's style itself, in the colours of the cell that it covers.
#pragma once

#include "export/combobox.h"

#include <QApplication>
#include <QListView>
#include <QPainter>
#include <QStyleOptionComboBox>

class CellComboBox : public ComboBox
{
public:
    explicit CellComboBox(QWidget *parent) : ComboBox(parent)
    {
        // Hundreds of stops between the table and the buttons below help nobody. From the keyboard a box is
        // reached as every cell is: with the arrow keys and F2.
        setFocusPolicy(Qt::ClickFocus);
    }

    void showPopup() override
    {
        if (!m_hasView) {
            m_hasView = true;
            setView(new QListView(this));
        }
        ComboBox::showPopup();
    }

protected:
    void paintEvent(QPaintEvent * /*event*/) override
    {
        QStyleOptionComboBox option;
        initStyleOption(&option);
        const QPalette cell = parentWidget()->palette();
        for (QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
            option.palette.setBrush(group, QPalette::Button, cell.brush(group, QPalette::Base));
            option.palette.setBrush(group, QPalette::Window, cell.brush(group, QPalette::Window));
            for (QPalette::ColorRole text : {QPalette::ButtonText, QPalette::Text, QPalette::WindowText})
                option.palette.setBrush(group, text, cell.brush(group, QPalette::Text));
        }
        // Without the widget, the style sheets that apply to it stay out of it.
        QPainter painter(this);
        QApplication::style()->drawComplexControl(QStyle::CC_ComboBox, &option, &painter);
        QApplication::style()->drawControl(QStyle::CE_ComboBoxLabel, &option, &painter);
    }

    void changeEvent(QEvent *event) override
    {
        // The base would make a list in order to style it. The size hint that it would forget is not asked
        // for: the cell gives the size.
        if (event->type() == QEvent::StyleChange && !m_hasView)
            QWidget::changeEvent(event); // NOLINT(bugprone-parent-virtual-call)
        else
            ComboBox::changeEvent(event);
    }

private:
    bool m_hasView = false;
};
