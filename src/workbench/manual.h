// The user guide in a window: what F1 opens.
#pragma once

#include <QWidget>

class Manual : public QWidget
{
    Q_OBJECT

public:
    explicit Manual(QWidget *parent = nullptr);

    // Opens the window, or brings it to the front.
    static void open(QWidget *parent);

protected:
    void keyPressEvent(QKeyEvent *event) override;
};
