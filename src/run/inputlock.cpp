#include "run/inputlock.h"

#include <QCoreApplication>
#include <QDialog>
#include <QEvent>

namespace {

bool isInput(const QEvent *event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::ShortcutOverride:
    case QEvent::Shortcut:
    case QEvent::InputMethod:
    case QEvent::ContextMenu:
    case QEvent::TabletPress:
    case QEvent::TabletMove:
    case QEvent::TabletRelease:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop:
        return true;
    default:
        return false;
    }
}

// Whether `object` is `window` or something in it, open popup lists and menus included. Dialogs that it has
// opened, the run's progress dialog among them, take their own input.
bool belongsTo(const QWidget *window, const QObject *object)
{
    while (object && object != window && !qobject_cast<const QDialog *>(object))
        object = object->parent();
    return object == window;
}

} // namespace

InputLock::InputLock(QWidget *window) : m_window(window)
{
    QCoreApplication::instance()->installEventFilter(this);
}

bool InputLock::eventFilter(QObject *watched, QEvent *event)
{
    return (m_window && isInput(event) && belongsTo(m_window, watched)) ||
           QObject::eventFilter(watched, event);
}
