// Shows the log, the newest line at the bottom, and what went wrong in a list of its own.
#pragma once

#include "workbench/logcollector.h"

#include <QVector>
#include <QWidget>

class QComboBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QStackedWidget;
class QTabBar;
class QToolButton;

class LogPane : public QWidget
{
    Q_OBJECT

public:
    explicit LogPane(QWidget *parent = nullptr);

    // The lines as they are shown.
    QString text() const;
    // Warnings and errors since the list was cleared.
    int problemCount() const { return m_problems; }

public slots:
    void append(const LogRecord &record);
    void clear();

protected:
    void changeEvent(QEvent *event) override;

private:
    void retranslate();
    bool isShown(const LogRecord &record) const;
    QString lineOf(const LogRecord &record) const;
    void addLine(QPlainTextEdit *text, const LogRecord &record);
    // Writes the lines anew, by what the filters, the language and the colours are now.
    void rebuild();
    void countProblems();

    QTabBar *m_tabs;
    QStackedWidget *m_pages;
    QPlainTextEdit *m_text;
    QPlainTextEdit *m_problemText;
    QLabel *m_levelLabel;
    QComboBox *m_level;
    QLineEdit *m_filter;
    QToolButton *m_clear;
    QVector<LogRecord> m_records; // the oldest first
    int m_problems = 0;
};
