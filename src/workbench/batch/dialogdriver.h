// Answers the modal windows that a plug-in opens, as a person would: it looks every few milliseconds for a
// window that waits for an answer, hands it to the caller's function, and gives up a window that stays open.
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QTimer>

#include <functional>

class QAbstractButton;
class QWidget;

class DialogDriver : public QObject
{
    Q_OBJECT

public:
    // Returns the button to press, or null when the window has been answered otherwise.
    using Answer = std::function<QAbstractButton *(QWidget *window)>;

    explicit DialogDriver(QObject *parent = nullptr);

    // Who answers a window, from now on.
    void setAnswer(Answer answer) { m_answer = std::move(answer); }
    // Whether an answered window may stay open as long as it likes: a person is there to deal with it.
    void setAttended(bool attended) { m_attended = attended; }

signals:
    // A window did not close after its answer; it is rejected.
    void stuck(const QString &title);

private:
    void look();

    QTimer m_timer;
    Answer m_answer;
    bool m_attended = false;
    QPointer<QWidget> m_answered;
    QElapsedTimer m_sinceAnswer;
};
