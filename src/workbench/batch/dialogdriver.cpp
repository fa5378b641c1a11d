#include "workbench/batch/dialogdriver.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QMenu>
#include <QProgressDialog>

namespace {

const int lookInterval = 10; // ms
const int patience = 10000;  // ms that an answered window may stay open

QWidget *waitingWindow()
{
    if (QWidget *popup = QApplication::activePopupWidget())
        return qobject_cast<QMenu *>(popup);
    QWidget *window = QApplication::activeModalWidget();
    // Nobody answers a progress window, and a plug-in's window without a nested event loop is no question.
    if (!qobject_cast<QDialog *>(window) || qobject_cast<QProgressDialog *>(window))
        return nullptr;
    return window;
}

} // namespace

DialogDriver::DialogDriver(QObject *parent) : QObject(parent)
{
    connect(&m_timer, &QTimer::timeout, this, &DialogDriver::look);
    m_timer.start(lookInterval);
}

void DialogDriver::look()
{
    QWidget *window = waitingWindow();
    if (!window || !m_answer)
        return;
    if (window != m_answered) {
        m_answered = window;
        m_sinceAnswer.start();
        QPointer<QAbstractButton> button = m_answer(window);
        // From the event loop: the press may open the next window, which this object must see.
        if (button)
            QMetaObject::invokeMethod(button, "click", Qt::QueuedConnection);
        return;
    }
    if (m_attended || m_sinceAnswer.elapsed() < patience)
        return;
    m_answered = nullptr;
    emit stuck(window->windowTitle());
    window->close();
}
