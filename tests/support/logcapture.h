// Collects the glog lines that are written while it lives, with their bytes as they are.
#pragma once

#include <glog/logging.h>

#include <mutex>
#include <string>
#include <vector>

struct LogLine
{
    google::LogSeverity severity = google::GLOG_INFO;
    std::string file; // the source file name as logged, without folders
    int line = 0;
    std::string message;    // raw bytes, without the line end
    int threadPriority = 0; // of the thread that logged it
};

class LogCapture : public google::LogSink
{
public:
    LogCapture() { google::AddLogSink(this); }
    ~LogCapture() override { google::RemoveLogSink(this); }

    // The lines so far; safe while other threads log.
    std::vector<LogLine> lines() const;

    // The newest line from `file` and `line`, or an empty record when there is none.
    LogLine find(const std::string &file, int line) const;

    void send(google::LogSeverity severity, const char *fullFileName, const char *baseFileName, int line,
              const google::LogMessageTime &time, const char *message, size_t length) override;
    using google::LogSink::send;

private:
    mutable std::mutex m_mutex;
    std::vector<LogLine> m_lines;
};
