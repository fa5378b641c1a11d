// Collects the log of all threads - glog's lines and Qt's debug stream - for the user-interface thread.
#pragma once

#include <glog/logging.h>

#include <QDateTime>
#include <QMetaType>
#include <QObject>
#include <QString>

struct LogRecord
{
    enum Level { Debug, Information, Warning, Error };

    Level level = Information;
    QDateTime time;
    QString source; // "file:line", empty for Qt's messages
    QString text;
};
Q_DECLARE_METATYPE(LogRecord)

class LogCollector : public QObject, private google::LogSink
{
    Q_OBJECT

public:
    // Only one may live at a time.
    explicit LogCollector(QObject *parent = nullptr);
    ~LogCollector() override;

signals:
    // Emitted in the thread of this object, in the order in which the lines were logged.
    void logged(const LogRecord &record);

private:
    void send(google::LogSeverity severity, const char *fullFileName, const char *baseFileName, int line,
              const google::LogMessageTime &time, const char *message, size_t length) override;
    using google::LogSink::send;
    void post(const LogRecord &record);
    static void takeQtMessage(QtMsgType type, const QMessageLogContext &context, const QString &text);
};
