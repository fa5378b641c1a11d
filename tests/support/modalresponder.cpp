#include "tests/support/modalresponder.h"

#include <QAbstractButton>
#include <QApplication>
#include <QProgressDialog>

ModalResponder::ModalResponder()
{
    connect(&m_timer, &QTimer::timeout, this, &ModalResponder::look);
    m_timer.start(5);
}

void ModalResponder::expect(std::function<void(QWidget *)> answer)
{
    m_answers.push_back(std::move(answer));
}

void ModalResponder::expectMessageBox(QMessageBox::StandardButton button)
{
    expect([this, button](QWidget *window) {
        auto *box = qobject_cast<QMessageBox *>(window);
        if (!box)
            qFatal("a message box was expected, but a %s was opened", window->metaObject()->className());
        boxes.push_back({box->windowTitle(), box->text(), box->standardButtons(), box->windowModality()});
        box->button(button)->click();
    });
}

void ModalResponder::look()
{
    QWidget *window = QApplication::activePopupWidget();
    if (!window)
        window = QApplication::activeModalWidget();
    // Progress windows are modal too, but nobody answers them.
    if (!window || m_answers.empty() || (!window->inherits("QDialog") && !window->inherits("QMenu")) ||
        qobject_cast<QProgressDialog *>(window))
        return;
    auto answer = m_answers.front();
    m_answers.erase(m_answers.begin());
    answer(window);
}
