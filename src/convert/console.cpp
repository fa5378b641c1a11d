// The bar is taken away before a line is written, and comes back with the next progress.
#include "convert/console.h"

#include "platform/console.h"

#include <QtGlobal>

#include <cstdio>

namespace convert {

namespace {

void write(std::FILE *stream, const QByteArray &bytes)
{
    std::fputs(bytes.constData(), stream);
    std::fflush(stream);
}

void write(std::FILE *stream, const QString &text)
{
    write(stream, text.toLocal8Bit());
}

} // namespace

Console::Console()
    : m_hasBar(platform::isTerminal(stderr)),
      m_hasColours(m_hasBar && qEnvironmentVariableIsEmpty("NO_COLOR"))
{
}

Console::~Console()
{
    clearBar();
}

void Console::clearBar()
{
    if (m_bar.isEmpty())
        return;
    write(stderr, '\r' + QString(m_bar.size(), ' ') + '\r');
    m_bar.clear();
}

void Console::result(const QString &line)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    clearBar();
    write(stdout, line + '\n');
}

void Console::json(const QByteArray &line)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    clearBar();
    write(stdout, line + '\n');
}

void Console::say(const char *word, const char *colour, const QString &text)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    clearBar();
    const QString shown = m_hasColours ? QString("\x1b[%1m%2\x1b[0m").arg(colour, word) : QString(word);
    write(stderr, QString("camconvert: %1: ").arg(shown) + text + '\n');
}

void Console::progress(int done, int all)
{
    if (!m_hasBar || all == 0)
        return;
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto now = std::chrono::steady_clock::now();
    if (!m_bar.isEmpty() && now - m_shown < std::chrono::milliseconds(100))
        return;
    m_shown = now;
    constexpr int width = 40;
    const int filled = width * done / all;
    const QString bar = '[' + QString(filled, '#') + QString(width - filled, ' ') +
                        QString("] %1 of %2 layers").arg(done).arg(all);
    write(stderr, '\r' + bar.leftJustified(m_bar.size()));
    m_bar = bar;
}

} // namespace convert
