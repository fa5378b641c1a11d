#include "archive/filewriter.h"

#include "platform/thread.h"

#include <algorithm>
#include <cstring>

namespace archive {

namespace {

const std::size_t bufferSize = 512 * 1024;
const std::size_t bufferCount = 16; // 8 MB between decoder and files at most

} // namespace

// A file being written. The last piece to be done closes it.
struct FileWriter::Target
{
    Target(const std::filesystem::path &thePath, const std::optional<std::uint64_t> &theTime)
        : path(thePath), modified(theTime)
    {
    }

    OutFile &opened()
    {
        std::lock_guard<std::mutex> lock(mutex);
        if (!file)
            file = std::make_unique<OutFile>(path);
        return *file;
    }

    std::filesystem::path path;
    std::optional<std::uint64_t> modified;
    std::mutex mutex; // guards the making of `file`
    std::unique_ptr<OutFile> file;
    std::atomic<std::size_t> unfinished{1}; // pieces, and one until endFile()
};

FileWriter::FileWriter() : m_freeBuffers(bufferCount), m_thread(&FileWriter::run, this) {}

FileWriter::~FileWriter()
{
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_stop = true;
        m_queue.clear();
    }
    m_queued.notify_all();
    m_thread.join();
}

void FileWriter::beginFile(const std::filesystem::path &path, const std::optional<std::uint64_t> &modified)
{
    throwError();
    m_current = std::make_shared<Target>(path, modified);
    m_piece.offset = 0;
    m_piece.used = 0;
}

void FileWriter::write(const void *data, std::size_t size)
{
    const char *bytes = static_cast<const char *>(data);
    while (size > 0) {
        if (m_piece.buffer.empty())
            takeBuffer();
        const std::size_t part = std::min(size, m_piece.buffer.size() - m_piece.used);
        std::memcpy(m_piece.buffer.data() + m_piece.used, bytes, part);
        m_piece.used += part;
        bytes += part;
        size -= part;
        if (m_piece.used == m_piece.buffer.size())
            queuePiece(false);
    }
}

void FileWriter::endFile()
{
    if (m_piece.used > 0) {
        queuePiece(true);
    } else {
        Piece nothing;
        nothing.target = m_current;
        writePiece(nothing);
    }
    m_current.reset();
    throwError();
}

void FileWriter::finish()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    helpUntil(lock, [this] { return m_queue.empty() && m_busy == 0; });
    lock.unlock();
    throwError();
}

// Writes what is queued rather than wait for the thread that does.
void FileWriter::helpUntil(std::unique_lock<std::mutex> &lock, const std::function<bool()> &isDone)
{
    while (!isDone()) {
        if (m_queue.empty())
            m_released.wait(lock);
        else
            writeQueued(lock);
    }
}

void FileWriter::takeBuffer()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    helpUntil(lock, [this] { return !m_freeBuffers.empty(); });
    m_piece.buffer = std::move(m_freeBuffers.back());
    m_freeBuffers.pop_back();
    lock.unlock();
    throwError();
    m_piece.buffer.resize(bufferSize);
}

// The last piece takes over the count that stands for the end of the file.
void FileWriter::queuePiece(bool isLast)
{
    if (!isLast)
        m_current->unfinished.fetch_add(1);
    m_piece.target = m_current;
    const std::uint64_t nextOffset = m_piece.offset + m_piece.used;
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_queue.push_back(std::move(m_piece));
    }
    m_queued.notify_one();
    m_piece = Piece();
    m_piece.offset = nextOffset;
}

void FileWriter::run()
{
    const platform::BackgroundWork stepBack;
    std::unique_lock<std::mutex> lock(m_mutex);
    for (;;) {
        m_queued.wait(lock, [this] { return m_stop || !m_queue.empty(); });
        if (m_stop)
            return;
        writeQueued(lock);
    }
}

// Takes the first piece of the queue, which must have one, and writes it while `lock` is released.
void FileWriter::writeQueued(std::unique_lock<std::mutex> &lock)
{
    Piece piece = std::move(m_queue.front());
    m_queue.pop_front();
    ++m_busy;
    lock.unlock();
    writePiece(piece);
    release(piece);
    lock.lock();
}

// Never throws: an error is kept, and after one nothing more is written.
void FileWriter::writePiece(Piece &piece)
{
    Target &target = *piece.target;
    try {
        if (!m_failed) {
            OutFile &file = target.opened();
            if (piece.used > 0)
                file.write(piece.offset, piece.buffer.data(), piece.used);
        }
        if (target.unfinished.fetch_sub(1) == 1 && target.file && !m_failed)
            target.file->close(target.modified);
    } catch (...) {
        keepError(std::current_exception());
    }
}

void FileWriter::release(Piece &piece)
{
    piece.target.reset();
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_freeBuffers.push_back(std::move(piece.buffer));
        --m_busy;
    }
    m_released.notify_one();
}

void FileWriter::keepError(std::exception_ptr error)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    if (!m_error)
        m_error = error;
    m_failed = true;
}

void FileWriter::throwError()
{
    if (!m_failed)
        return;
    std::lock_guard<std::mutex> lock(m_mutex);
    std::rethrow_exception(m_error);
}

} // namespace archive
