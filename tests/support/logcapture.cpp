#include "tests/support/logcapture.h"

#include "tests/support/threadpriority.h"

std::vector<LogLine> LogCapture::lines() const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_lines;
}

LogLine LogCapture::find(const std::string &file, int line) const
{
    const std::vector<LogLine> all = lines();
    for (auto it = all.rbegin(); it != all.rend(); ++it) {
        if (it->file == file && it->line == line)
            return *it;
    }
    return {};
}

void LogCapture::send(google::LogSeverity severity, const char * /*fullFileName*/, const char *baseFileName,
                      int line, const google::LogMessageTime & /*time*/, const char *message, size_t length)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_lines.push_back({severity, baseFileName, line, std::string(message, length), threadPriority()});
}
