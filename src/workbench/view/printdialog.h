// How what is seen is to be printed: its scale and title; then the system's windows for the page and the
// printer.
#pragma once

#include <QDialog>

#include <memory>

class BoardView;
class NumberBox;
class QLabel;
class QLineEdit;
class QPrinter;
class QRadioButton;

class PrintDialog : public QDialog
{
    Q_OBJECT

public:
    // `view` and `printer` must outlive the dialog.
    PrintDialog(const BoardView &view, QPrinter &printer, const QString &title, QWidget *parent = nullptr);

    // How large things come out; 0: as large as the page allows.
    double factor() const;
    QString title() const;

    void accept() override;

private:
    void choosePage();
    void showLayout();

    const BoardView &m_view;
    QPrinter &m_printer;
    QRadioButton *m_fits;
    QRadioButton *m_scales;
    NumberBox *m_factor;
    QLineEdit *m_title;
    QLabel *m_layout; // what becomes of it, in words
};
