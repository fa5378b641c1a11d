// A combo box that the mouse wheel does not change: the wheel goes on to the widget beneath, so that
// scrolling a table over its cells alters no parameter.
#pragma once

#include <QComboBox>
#include <QWheelEvent>

class ComboBox : public QComboBox
{
public:
    using QComboBox::QComboBox;

protected:
    void wheelEvent(QWheelEvent *event) override { event->ignore(); }
};
