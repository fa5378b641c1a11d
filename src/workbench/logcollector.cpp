#include "workbench/logcollector.h"

#include "workbench/logtext.h"

#include <QMutex>
#include <QMutexLocker>

#include <cstdio>

namespace {

QtMessageHandler previousHandler = nullptr;
QMutex collectorMutex(QMutex::Recursive); // posting a message may itself log one
LogCollector *theCollector = nullptr;     // guarded by collectorMutex

LogRecord::Level levelOf(google::LogSeverity severity)
{
    if (severity >= google::GLOG_ERROR)
        return LogRecord::Error;
    return severity == google::GLOG_WARNING ? LogRecord::Warning : LogRecord::Information;
}

LogRecord::Level levelOf(QtMsgType type)
{
    switch (type) {
    case QtDebugMsg:
        return LogRecord::Debug;
    case QtInfoMsg:
        return LogRecord::Information;
    case QtWarningMsg:
        return LogRecord::Warning;
    default:
        return LogRecord::Error;
    }
}

} // namespace

LogCollector::LogCollector(QObject *parent) : QObject(parent)
{
    qRegisterMetaType<LogRecord>("LogRecord");
    google::AddLogSink(this);
    QMutexLocker lock(&collectorMutex);
    theCollector = this;
    previousHandler = qInstallMessageHandler(takeQtMessage);
}

LogCollector::~LogCollector()
{
    {
        QMutexLocker lock(&collectorMutex);
        qInstallMessageHandler(previousHandler);
        theCollector = nullptr;
    }
    google::RemoveLogSink(this);
}

void LogCollector::send(google::LogSeverity severity, const char * /*fullFileName*/, const char *baseFileName,
                        int line, const google::LogMessageTime & /*time*/, const char *message, size_t length)
{
    post({levelOf(severity), QDateTime::currentDateTime(), QString("%1:%2").arg(baseFileName).arg(line),
          decodeLogText(QByteArray(message, int(length)))});
}

void LogCollector::takeQtMessage(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if (type == QtFatalMsg && previousHandler)
        previousHandler(type, context, text);
    // The offscreen platform says this at every window.
    if (text.startsWith("This plugin does not support "))
        return;
    QMutexLocker lock(&collectorMutex);
    if (theCollector)
        theCollector->post({levelOf(type), QDateTime::currentDateTime(), QString(), text});
}

void LogCollector::post(const LogRecord &record)
{
    // Queued from every thread: the order stays, and a line that is logged while a window paints waits.
    QMetaObject::invokeMethod(this, "logged", Qt::QueuedConnection, Q_ARG(LogRecord, record));
}
