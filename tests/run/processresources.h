// What this process holds, for tests that see it stay the same.
#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
// The sanitizers' own header is not installed with every compiler.
extern "C" size_t __sanitizer_get_current_allocated_bytes();
#endif

// Memory in KiB: what is allocated under a sanitizer, which keeps freed memory for a while, otherwise what is
// resident.
inline long heldMemory()
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    return long(__sanitizer_get_current_allocated_bytes() / 1024);
#else
    QFile status("/proc/self/status");
    if (!status.open(QIODevice::ReadOnly))
        qFatal("/proc/self/status cannot be read");
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith("VmRSS:"))
            return line.mid(6).trimmed().split(' ').first().toLong();
    }
    qFatal("/proc/self/status has no VmRSS line");
#endif
}

inline int openFiles()
{
    return QDir("/proc/self/fd").entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System).size();
}

inline int runningThreads()
{
    return QDir("/proc/self/task").entryList(QDir::NoDotAndDotDot | QDir::Dirs).size();
}
