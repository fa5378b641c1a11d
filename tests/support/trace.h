// What the plug-in leaves for those who look for faults, in the order in which it happens: the lines of Qt's
// debug stream and of the log, and whatever a test adds about what happens in between.
//
//     "debug: true"                        qDebug() << true
//     "fileprocess.cpp:469: Export：..."    a log line of the level INFO, read as GBK
//     "ERROR Progress:139: ..."            of another level
//     "signal 10000404"                    add("signal 10000404")
#pragma once

#include <glog/logging.h>

#include <QMutex>
#include <QStringList>

#include <functional>

class Trace : public google::LogSink
{
public:
    Trace();
    ~Trace() override;

    void add(const QString &entry);
    QStringList entries() const;

    // Called for every entry before it is added, on the thread that it comes from.
    std::function<void(const QString &)> onEntry;

    // `text` as the debug stream writes it.
    static QString debug(const QString &text);

    void send(google::LogSeverity severity, const char *fullFileName, const char *baseFileName, int line,
              const google::LogMessageTime &time, const char *message, size_t length) override;
    using google::LogSink::send;

private:
    static void takeMessage(QtMsgType type, const QMessageLogContext &context, const QString &text);

    static Trace *s_active;
    QtMessageHandler m_before;
    mutable QMutex m_mutex;
    QStringList m_entries;
};
