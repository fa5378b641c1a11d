// Writes a stream of files, of which the decoder gives one piece after the other, with a second thread: while
// one thread decodes, the other makes and fills files. When the decoder is faster, it writes too instead of
// waiting.
#pragma once

#include "archive/outfile.h"

#include <atomic>
#include <condition_variable>
#include <deque>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace archive {

class FileWriter
{
public:
    FileWriter();
    // Drops what is not written yet.
    ~FileWriter();
    FileWriter(const FileWriter &) = delete;
    FileWriter &operator=(const FileWriter &) = delete;

    // All of these throw the first error that any write had.
    //
    // The file must not exist, its folder must. `modified` as in OutFile::close().
    void beginFile(const std::filesystem::path &path, const std::optional<std::uint64_t> &modified);
    void write(const void *data, std::size_t size);
    void endFile();
    // Waits until every file is written and closed.
    void finish();

private:
    struct Target;
    struct Piece
    {
        std::shared_ptr<Target> target;
        std::uint64_t offset = 0;
        std::vector<char> buffer; // `used` bytes of it count
        std::size_t used = 0;
    };

    void helpUntil(std::unique_lock<std::mutex> &lock, const std::function<bool()> &isDone);
    void takeBuffer();
    void queuePiece(bool isLast);
    void writeQueued(std::unique_lock<std::mutex> &lock);
    void run();
    void writePiece(Piece &piece);
    void release(Piece &piece);
    void keepError(std::exception_ptr error);
    void throwError();

    std::shared_ptr<Target> m_current;
    Piece m_piece; // being filled

    std::mutex m_mutex; // guards what follows
    std::condition_variable m_queued;
    std::condition_variable m_released;
    std::deque<Piece> m_queue;
    std::vector<std::vector<char>> m_freeBuffers;
    std::size_t m_busy = 0; // pieces taken from the queue and not released
    bool m_stop = false;
    std::exception_ptr m_error;
    std::atomic<bool> m_failed{false}; // m_error is set

    std::thread m_thread;
};

} // namespace archive
