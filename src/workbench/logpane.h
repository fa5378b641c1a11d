// Shows the log, the newest line at the bottom.
#pragma once

#include "workbench/logcollector.h"

#include <QWidget>

class QCheckBox;
class QPlainTextEdit;

class LogPane : public QWidget
{
    Q_OBJECT

public:
    explicit LogPane(QWidget *parent = nullptr);

    // The lines as they are shown.
    QString text() const;

public slots:
    void append(const LogRecord &record);
    void clear();

private:
    QPlainTextEdit *m_text;
    QCheckBox *m_showDebug;
};
