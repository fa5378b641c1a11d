// Keeps the windows of plug-ins over the main window and on the screen: plug-ins open theirs without a
// parent.
#pragma once

#include <QObject>
#include <QRect>

class QWidget;

class WindowPlacer : public QObject
{
    Q_OBJECT

public:
    // From now on looks after all windows of the program but `mainWindow`, which outlives this object.
    explicit WindowPlacer(QWidget &mainWindow);

    // A window of `size` (with its frame) within `available`: in the middle of `over`, where there is room,
    // and no larger than `available`.
    static QRect placed(const QSize &size, const QRect &over, const QRect &available);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void place(QWidget &window) const;

    QWidget &m_mainWindow;
};
