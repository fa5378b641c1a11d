#include "workbench/logpane.h"

#include <QCheckBox>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QPlainTextEdit>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

const int maximumLines = 5000;

QString levelName(LogRecord::Level level)
{
    switch (level) {
    case LogRecord::Debug:
        return "debug";
    case LogRecord::Information:
        return "info";
    case LogRecord::Warning:
        return "warning";
    default:
        return "error";
    }
}

QColor levelColour(LogRecord::Level level, const QPalette &palette)
{
    switch (level) {
    case LogRecord::Debug:
        return palette.color(QPalette::Disabled, QPalette::Text);
    case LogRecord::Information:
        return palette.color(QPalette::Text);
    case LogRecord::Warning:
        return QColor(176, 104, 0);
    default:
        return QColor(192, 32, 32);
    }
}

QString lineOf(const LogRecord &record)
{
    QString line = QString("%1  %2  ")
                       .arg(record.time.toString("hh:mm:ss.zzz"), levelName(record.level).leftJustified(7));
    line += record.text;
    if (!record.source.isEmpty())
        line += "  [" + record.source + "]";
    return line;
}

} // namespace

LogPane::LogPane(QWidget *parent)
    : QWidget(parent), m_text(new QPlainTextEdit), m_showDebug(new QCheckBox(tr("Debug lines")))
{
    m_text->setReadOnly(true);
    m_text->setMaximumBlockCount(maximumLines);
    m_text->setLineWrapMode(QPlainTextEdit::NoWrap);
    m_text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    m_text->setPlaceholderText(tr("Nothing has been logged yet."));
    m_showDebug->setToolTip(tr("Also show what plug-ins write to the debug stream, from now on"));

    auto *clearButton = new QToolButton;
    clearButton->setText(tr("Clear"));
    clearButton->setAutoRaise(true);
    connect(clearButton, &QToolButton::clicked, this, &LogPane::clear);

    auto *tools = new QHBoxLayout;
    tools->setContentsMargins(6, 2, 6, 2);
    tools->addWidget(m_showDebug);
    tools->addStretch();
    tools->addWidget(clearButton);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addLayout(tools);
    layout->addWidget(m_text);
}

QString LogPane::text() const
{
    return m_text->toPlainText();
}

void LogPane::append(const LogRecord &record)
{
    if (record.level == LogRecord::Debug && !m_showDebug->isChecked())
        return;
    QTextCharFormat format;
    format.setForeground(levelColour(record.level, palette()));
    m_text->setCurrentCharFormat(format);
    m_text->appendPlainText(lineOf(record));
}

void LogPane::clear()
{
    m_text->clear();
}
