// Keeps all input from a window while an export runs in it. The run's progress dialog is modal, but it comes
// late and may be closed.
#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>

class InputLock : public QObject
{
    Q_OBJECT

public:
    // Begins at once and ends with this object. `window` may be deleted meanwhile.
    explicit InputLock(QWidget *window);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    const QPointer<QWidget> m_window;
};
