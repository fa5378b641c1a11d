// Turning the mouse wheel over a widget; Qt changed the event's constructor after 5.9.
#pragma once

#include <QApplication>
#include <QWheelEvent>
#include <QWidget>
#include <QtTest>

// Turns by `steps` notches, away from the user when positive, over the place `at` of `widget`.
inline void turnWheel(QWidget *widget, const QPoint &at, int steps)
{
    const QPoint angle(0, steps * 120);
#if QT_VERSION >= QT_VERSION_CHECK(5, 12, 0)
    QWheelEvent turn(at, widget->mapToGlobal(at), QPoint(), angle, Qt::NoButton, Qt::NoModifier,
                     Qt::NoScrollPhase, false);
#else
    QWheelEvent turn(at, widget->mapToGlobal(at), QPoint(), angle, angle.y(), Qt::Vertical, Qt::NoButton,
                     Qt::NoModifier);
#endif
    // As from the window system: others do not go on to the widget beneath.
    QSpontaneKeyEvent::setSpontaneous(&turn);
    qApp->notify(widget, &turn);
}

// Over its middle.
inline void turnWheel(QWidget *widget, int steps)
{
    turnWheel(widget, widget->rect().center(), steps);
}
