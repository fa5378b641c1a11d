// Answers the modal windows that the code under test opens, as a user would: it looks every few milliseconds
// for an active modal (or pop-up) window and hands it to the next waiting answer.
#pragma once

#include <QElapsedTimer>
#include <QMessageBox>
#include <QObject>
#include <QTimer>

#include <functional>
#include <vector>

class QWidget;

class ModalResponder : public QObject
{
public:
    ModalResponder();

    // The next modal window is passed to `answer`, once.
    void expect(std::function<void(QWidget *)> answer);
    // The next modal window must be a message box; its texts are kept in `boxes` and `button` is clicked.
    void expectMessageBox(QMessageBox::StandardButton button);

    struct Box
    {
        QString title;
        QString text;
        QMessageBox::StandardButtons buttons;
        Qt::WindowModality modality = Qt::NonModal;
    };
    std::vector<Box> boxes;

    // How many answers have not been asked for.
    int pending() const { return int(m_answers.size()); }

private:
    void look();
    // A window that nobody was expected to answer ends the test, instead of waiting for its time limit.
    void failWhenNobodyAnswers(QWidget *window);

    QTimer m_timer;
    QElapsedTimer m_unanswered;
    std::vector<std::function<void(QWidget *)>> m_answers;
};
