#include "workbench/windowplacer.h"

#include <QApplication>
#include <QEvent>
#include <QScreen>
#include <QWidget>
#include <QWindow>

#include <algorithm>

namespace {

// What the frame of a plain window adds: of a window that is not seen yet it is not known.
const QMargins frame(4, 32, 4, 4);

bool isPlainWindow(const QWidget &widget)
{
    return widget.isWindow() && !widget.parentWidget() &&
           (widget.windowType() == Qt::Window || widget.windowType() == Qt::Dialog);
}

} // namespace

WindowPlacer::WindowPlacer(QWidget &mainWindow) : m_mainWindow(mainWindow)
{
    QCoreApplication::instance()->installEventFilter(this);
}

QRect WindowPlacer::placed(const QSize &size, const QRect &over, const QRect &available)
{
    QRect place(QPoint(), size.boundedTo(available.size()));
    place.moveCenter(over.center());
    place.moveLeft(std::min(std::max(place.left(), available.left()), available.right() - place.width() + 1));
    place.moveTop(std::min(std::max(place.top(), available.top()), available.bottom() - place.height() + 1));
    return place;
}

bool WindowPlacer::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Show && watched->isWidgetType() && watched != &m_mainWindow) {
        auto *window = static_cast<QWidget *>(watched);
        if (isPlainWindow(*window))
            place(*window);
    }
    return QObject::eventFilter(watched, event);
}

void WindowPlacer::place(QWidget &window) const
{
    if (window.windowHandle() && m_mainWindow.windowHandle())
        window.windowHandle()->setTransientParent(m_mainWindow.windowHandle());
    const QScreen *screen = m_mainWindow.windowHandle() ? m_mainWindow.windowHandle()->screen() : nullptr;
    if (!screen)
        return;
    const QRect available = screen->availableGeometry();
    const QRect outer = window.geometry().marginsAdded(frame);
    // A window that was put somewhere stays there, as long as it can be seen whole.
    if (window.testAttribute(Qt::WA_Moved) && available.contains(window.geometry()))
        return;
    window.setGeometry(placed(outer.size(), m_mainWindow.frameGeometry(), available).marginsRemoved(frame));
}
