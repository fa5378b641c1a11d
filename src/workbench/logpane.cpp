#include "workbench/logpane.h"

#include "workbench/logreading.h"
#include "workbench/statuscolor.h"

#include <QComboBox>
#include <QEvent>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QStackedWidget>
#include <QTabBar>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

const int maximumLines = 5000;

// In the file and in bug reports the levels have these names, in every language.
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

QColor levelColor(LogRecord::Level level, const QPalette &palette)
{
    switch (level) {
    case LogRecord::Debug:
        return palette.color(QPalette::Disabled, QPalette::Text);
    case LogRecord::Information:
        return palette.color(QPalette::Text);
    case LogRecord::Warning:
        return statuscolor::warning(palette);
    default:
        return statuscolor::failure(palette);
    }
}

bool isProblem(const LogRecord &record)
{
    return record.level >= LogRecord::Warning;
}

// Columns line up in Chinese lines as well, where the system has such a font.
QFont fixedFont()
{
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    QFont::insertSubstitutions(font.family(),
                               {"WenQuanYi Micro Hei Mono", "Noto Sans Mono CJK SC", "NSimSun"});
    font.setStyleHint(QFont::Monospace);
    return font;
}

QPlainTextEdit *newText(const char *name)
{
    auto *text = new QPlainTextEdit;
    text->setObjectName(name);
    text->setReadOnly(true);
    text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    text->setMaximumBlockCount(maximumLines);
    text->setLineWrapMode(QPlainTextEdit::NoWrap);
    text->setFont(fixedFont());
    text->setFrameShape(QFrame::NoFrame);
    text->setTabChangesFocus(true);
    return text;
}

} // namespace

LogPane::LogPane(QWidget *parent)
    : QWidget(parent), m_tabs(new QTabBar), m_pages(new QStackedWidget), m_text(newText("LogText")),
      m_problemText(newText("LogProblems")), m_levelLabel(new QLabel), m_level(new QComboBox),
      m_filter(new QLineEdit), m_clear(new QToolButton)
{
    m_level->setObjectName("LogLevel");
    for (int level = LogRecord::Debug; level <= LogRecord::Error; ++level)
        m_level->addItem(QString(), level);
    m_level->setCurrentIndex(LogRecord::Information);
    m_levelLabel->setBuddy(m_level);
    m_filter->setObjectName("LogFilter");
    m_filter->setClearButtonEnabled(true);
    m_clear->setObjectName("LogClear");
    m_clear->setAutoRaise(true);
    connect(m_level, QOverload<int>::of(&QComboBox::currentIndexChanged), this, &LogPane::rebuild);
    connect(m_filter, &QLineEdit::textChanged, this, &LogPane::rebuild);
    connect(m_clear, &QToolButton::clicked, this, &LogPane::clear);

    m_tabs->setDocumentMode(true);
    m_tabs->setExpanding(false);
    m_tabs->setDrawBase(false);
    m_tabs->setUsesScrollButtons(false); // the field beside gives way
    for (QPlainTextEdit *page : {m_text, m_problemText}) {
        m_tabs->addTab(QString());
        m_pages->addWidget(page);
    }
    connect(m_tabs, &QTabBar::currentChanged, m_pages, &QStackedWidget::setCurrentIndex);
    m_filter->setMinimumWidth(8 * fontMetrics().averageCharWidth());
    m_filter->setMaximumWidth(24 * fontMetrics().averageCharWidth());
    auto *row = new QHBoxLayout;
    row->setContentsMargins(0, 0, 4, 0);
    row->setSpacing(6);
    row->addWidget(m_tabs, 0, Qt::AlignBottom);
    row->addStretch();
    row->addWidget(m_levelLabel);
    row->addWidget(m_level);
    row->addWidget(m_filter, 1);
    row->addWidget(m_clear);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addLayout(row);
    layout->addWidget(m_pages);
    retranslate();
}

QString LogPane::text() const
{
    return m_text->toPlainText();
}

void LogPane::retranslate()
{
    m_tabs->setTabText(0, tr("All lines"));
    m_text->setPlaceholderText(tr("Nothing has been logged yet."));
    m_problemText->setPlaceholderText(tr("No warnings, no errors."));
    m_levelLabel->setText(tr("From"));
    const QString levels[] = {tr("debug"), tr("information"), tr("warnings"), tr("errors")};
    for (int level = LogRecord::Debug; level <= LogRecord::Error; ++level)
        m_level->setItemText(level, levels[level]);
    m_level->setToolTip(tr("Show lines of this weight and more"));
    m_filter->setPlaceholderText(tr("Only lines with ..."));
    m_clear->setText(tr("Clear"));
    m_clear->setToolTip(tr("Forget all lines and problems"));
    rebuild();
}

void LogPane::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    else if (event->type() == QEvent::PaletteChange)
        rebuild();
    QWidget::changeEvent(event);
}

bool LogPane::isShown(const LogRecord &record) const
{
    const QString wanted = m_filter->text().trimmed();
    return record.level >= m_level->currentIndex() &&
           (wanted.isEmpty() || lineOf(record).contains(wanted, Qt::CaseInsensitive));
}

QString LogPane::lineOf(const LogRecord &record) const
{
    QString line = QString("%1  %2  ")
                       .arg(record.time.toString("hh:mm:ss.zzz"), levelName(record.level).leftJustified(7));
    line += record.text;
    // Whoever has chosen Chinese reads it; whoever reads neither knows English sooner.
    if (locale().language() != QLocale::Chinese) {
        const QString english = englishReading(record.text);
        if (!english.isEmpty())
            line += "  |  " + english;
    }
    if (!record.source.isEmpty())
        line += "  [" + record.source + "]";
    return line;
}

// Who has scrolled up reads there; otherwise the newest line stays in sight.
void LogPane::addLine(QPlainTextEdit *text, const LogRecord &record)
{
    QScrollBar *bar = text->verticalScrollBar();
    const bool isAtEnd = bar->value() >= bar->maximum();
    const int place = bar->value();
    QTextCharFormat format;
    format.setForeground(levelColor(record.level, palette()));
    text->setCurrentCharFormat(format);
    text->appendPlainText(lineOf(record));
    bar->setValue(isAtEnd ? bar->maximum() : place);
}

void LogPane::append(const LogRecord &record)
{
    if (m_records.size() >= maximumLines)
        m_records.removeFirst();
    m_records << record;
    if (isShown(record))
        addLine(m_text, record);
    if (!isProblem(record))
        return;
    addLine(m_problemText, record);
    ++m_problems;
    countProblems();
}

void LogPane::rebuild()
{
    m_text->clear();
    m_problemText->clear();
    for (const LogRecord &record : m_records) {
        if (isShown(record))
            addLine(m_text, record);
        if (isProblem(record))
            addLine(m_problemText, record);
    }
    for (QPlainTextEdit *text : {m_text, m_problemText})
        text->verticalScrollBar()->setValue(text->verticalScrollBar()->maximum());
    countProblems();
}

void LogPane::countProblems()
{
    m_tabs->setTabText(1, m_problems == 0 ? tr("Problems") : tr("Problems (%1)").arg(m_problems));
}

void LogPane::clear()
{
    m_records.clear();
    m_problems = 0;
    rebuild();
}
