// The window that is shown while an archive is unpacked: no frame, above all others, with a bar that only
// tells that something is going on.
#pragma once

#include <QPointer>
#include <QProgressBar>
#include <QWidget>

class ProgressWindow
{
public:
    // Hidden at first. The window stays with `parent`, which deletes it, perhaps while it is in use.
    explicit ProgressWindow(QWidget *parent);

    void show() const;
    void close() const;
    void setValue(int value) const;

private:
    const QPointer<QWidget> m_window;
    const QPointer<QProgressBar> m_bar;
};
