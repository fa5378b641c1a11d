#include "tests/support/modalresponder.h"

#include <QAbstractButton>
#include <QApplication>
#include <QProgressDialog>

ModalResponder::ModalResponder()
{
    // The platform's own dialogs have no widgets to be filled in.
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
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
    if (!window || (!window->inherits("QDialog") && !window->inherits("QMenu")) ||
        qobject_cast<QProgressDialog *>(window)) {
        m_unanswered.invalidate();
        return;
    }
    if (m_answers.empty()) {
        failWhenNobodyAnswers(window);
        return;
    }
    m_unanswered.invalidate();
    auto answer = m_answers.front();
    m_answers.erase(m_answers.begin());
    answer(window);
}

void ModalResponder::failWhenNobodyAnswers(QWidget *window)
{
    const int patience = 20000; // milliseconds
    if (!m_unanswered.isValid())
        m_unanswered.start();
    else if (m_unanswered.elapsed() > patience)
        qFatal("nobody answers the %s \"%s\"", window->metaObject()->className(),
               qPrintable(window->windowTitle()));
}
