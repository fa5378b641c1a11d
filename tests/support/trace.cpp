#include "tests/support/trace.h"

#include <QDebug>
#include <QTextCodec>

Trace *Trace::s_active = nullptr;

Trace::Trace() : m_before(nullptr)
{
    Q_ASSERT(!s_active);
    s_active = this;
    m_before = qInstallMessageHandler(&Trace::takeMessage);
    google::AddLogSink(this);
}

Trace::~Trace()
{
    google::RemoveLogSink(this);
    qInstallMessageHandler(m_before);
    s_active = nullptr;
}

void Trace::add(const QString &entry)
{
    if (onEntry)
        onEntry(entry);
    QMutexLocker lock(&m_mutex);
    m_entries << entry;
}

QStringList Trace::entries() const
{
    QMutexLocker lock(&m_mutex);
    return m_entries;
}

QString Trace::debug(const QString &text)
{
    QString line;
    QDebug(&line) << text;
    return "debug: " + line.trimmed();
}

void Trace::takeMessage(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if (type == QtDebugMsg)
        s_active->add("debug: " + text);
    else
        s_active->m_before(type, context, text);
}

void Trace::send(google::LogSeverity severity, const char * /*fullFileName*/, const char *baseFileName,
                 int line, const google::LogMessageTime & /*time*/, const char *message, size_t length)
{
    const QString level =
        severity == google::GLOG_INFO ? QString() : QString(google::GetLogSeverityName(severity)) + " ";
    const QString text = QTextCodec::codecForName("GBK")->toUnicode(message, int(length));
    add(QString("%1%2:%3: %4").arg(level, baseFileName).arg(line).arg(text));
}
