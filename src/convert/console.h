// What the program says: results to the standard output, everything else to the standard error stream.
// Several threads may speak at once.
#pragma once

#include <QString>

#include <chrono>
#include <mutex>

namespace convert {

class Console
{
public:
    // Colours and the progress bar only where a person looks at the stream; NO_COLOR takes the colours away.
    Console();
    ~Console();

    void result(const QString &line);
    void json(const QByteArray &line); // UTF-8 on every system
    void warning(const QString &text) { say("warning", "33", text); }
    void error(const QString &text) { say("error", "31", text); }

    // Shows that `done` of `all` pieces of work are done; `share` of another one.
    void progress(int done, int all);

private:
    void say(const char *word, const char *colour, const QString &text);
    void clearBar();

    std::mutex m_mutex;
    const bool m_hasBar;
    const bool m_hasColours;
    QString m_bar; // as it is shown
    std::chrono::steady_clock::time_point m_shown;
};

} // namespace convert
