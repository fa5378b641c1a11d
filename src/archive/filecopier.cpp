#include "archive/filecopier.h"

#include "archive/bitexception.h"
#include "archive/outfile.h"
#include "platform/thread.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>
#include <thread>

namespace archive {

namespace {

const std::size_t threadCount = 2;
const std::size_t partsAtOnce = 8;         // taken by a thread in one go; neighbours are in one folder mostly
const std::size_t bufferSize = 128 * 1024; // stays in the core's own cache

class Copier
{
public:
    Copier(const InFile &source, const std::vector<FilePart> &parts, const std::function<void()> &check)
        : m_source(source), m_parts(parts), m_check(check)
    {
    }

    void run()
    {
        std::vector<std::thread> helpers;
        for (std::size_t i = 1; i < threadCount; ++i)
            helpers.emplace_back([this] {
                const platform::BackgroundWork stepBack;
                work();
            });
        work();
        for (std::thread &helper : helpers)
            helper.join();
        if (m_error)
            std::rethrow_exception(m_error);
    }

private:
    void work() noexcept
    {
        try {
            std::vector<char> buffer(bufferSize);
            while (!m_failed) {
                const std::size_t first = m_next.fetch_add(partsAtOnce);
                if (first >= m_parts.size())
                    return;
                const std::size_t end = std::min(first + partsAtOnce, m_parts.size());
                for (std::size_t i = first; i < end && !m_failed; ++i)
                    copy(m_parts[i], buffer);
            }
        } catch (...) {
            std::lock_guard<std::mutex> lock(m_mutex);
            if (!m_error)
                m_error = std::current_exception();
            m_failed = true;
        }
    }

    void copy(const FilePart &part, std::vector<char> &buffer) const
    {
        OutFile file(part.path);
        for (std::uint64_t done = 0; done < part.size;) {
            m_check();
            const std::size_t wanted = std::size_t(std::min<std::uint64_t>(part.size - done, buffer.size()));
            const std::size_t got = m_source.read(part.offset + done, buffer.data(), wanted);
            if (got == 0)
                throw BitException("the archive ends in the middle of \"" + part.path.filename().u8string() +
                                   "\"");
            file.write(done, buffer.data(), got);
            done += got;
        }
        file.close(part.modified);
    }

    const InFile &m_source;
    const std::vector<FilePart> &m_parts;
    const std::function<void()> &m_check;
    std::atomic<std::size_t> m_next{0};
    std::atomic<bool> m_failed{false};
    std::mutex m_mutex; // guards m_error
    std::exception_ptr m_error;
};

} // namespace

void copyParts(const InFile &source, const std::vector<FilePart> &parts, const std::function<void()> &check)
{
    Copier(source, parts, check).run();
}

} // namespace archive
