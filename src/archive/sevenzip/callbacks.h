// The objects that 7-Zip's library calls back: the stream it reads an archive from, the streams it writes
// content to, and what it reports opening and extraction to. No exception may cross into the library: each is
// kept and thrown again when the library has returned.
#pragma once

#include "archive/backend.h"
#include "archive/bitexception.h"
#include "archive/infile.h"
#include "archive/sevenzip/interfaces.h"

#include <atomic>
#include <exception>
#include <memory>
#include <optional>
#include <utility>

namespace archive::sevenzip {

// The first exception of a series of calls.
class KeptException
{
public:
    // Runs `work` and returns what it does, or Abort when it throws or anything before it did.
    template <typename Work>
    Result guard(Work work) noexcept
    {
        if (m_exception)
            return Abort;
        try {
            return work();
        } catch (...) {
            m_exception = std::current_exception();
            return Abort;
        }
    }

    void rethrow()
    {
        if (m_exception)
            std::rethrow_exception(std::exchange(m_exception, nullptr));
    }

private:
    std::exception_ptr m_exception;
};

// Counting and interface queries of an object that has the interfaces `Interfaces`, each of which is its Id.
template <typename... Interfaces>
class Object : public Interfaces...
{
public:
    Count SEVENZIP_CALL AddRef() final { return ++m_count; }

    Count SEVENZIP_CALL Release() final
    {
        const Count left = --m_count;
        if (left == 0)
            delete this;
        return left;
    }

protected:
    Object() = default;
    virtual ~Object() = default;

    template <typename Interface>
    bool answer(const Guid &asked, const Guid &id, void **object)
    {
        if (!sameGuid(asked, id))
            return false;
        *object = static_cast<Interface *>(this);
        AddRef();
        return true;
    }

private:
    std::atomic<Count> m_count{1};
};

// Reads a file, and remembers where it was read last.
template <typename Root>
class FileInStream final : public Object<IInStream<Root>>
{
public:
    explicit FileInStream(const std::wstring &file) : m_file(file) {}

    Result SEVENZIP_CALL QueryInterface(const Guid &id, void **object) override
    {
        *object = nullptr;
        if (this->template answer<IInStream<Root>>(id, RootId, object) ||
            this->template answer<IInStream<Root>>(id, ISequentialInStream<Root>::Id, object) ||
            this->template answer<IInStream<Root>>(id, IInStream<Root>::Id, object))
            return Ok;
        return NoInterface;
    }

    Result SEVENZIP_CALL Read(void *data, std::uint32_t size, std::uint32_t *processed) override
    {
        std::size_t got = 0;
        const Result result = m_exception.guard([&] {
            m_lastRead = m_position;
            got = m_file.read(m_position, data, size);
            m_position += got;
            return Ok;
        });
        if (processed)
            *processed = std::uint32_t(got);
        return result;
    }

    Result SEVENZIP_CALL Seek(std::int64_t offset, std::uint32_t origin, std::uint64_t *position) override
    {
        enum Origin : std::uint32_t { Begin, Current, End };
        std::uint64_t base = 0;
        if (origin == Current)
            base = m_position;
        else if (origin == End)
            base = m_file.size();
        else if (origin != Begin)
            return InvalidFunction;
        const std::uint64_t target = base + std::uint64_t(offset); // wraps around for a negative offset
        if (std::int64_t(target) < 0 || (offset > 0 && target < base))
            return NegativeSeek;
        m_position = target;
        if (position)
            *position = target;
        return Ok;
    }

    void rethrow() { m_exception.rethrow(); }

    std::uint64_t size() const { return m_file.size(); }
    // The offset of the last read; nothing when there was none since the last call.
    std::optional<std::uint64_t> takeLastRead() { return std::exchange(m_lastRead, std::nullopt); }

private:
    InFile m_file;
    std::optional<std::uint64_t> m_lastRead;
    std::uint64_t m_position = 0;
    KeptException m_exception;
};

// Answers what opening asks about the file: 7-Zip takes a file without any entry for a tar only when its name
// ends in
// ".tar".
template <typename Root>
class OpenCallback final : public Object<IArchiveOpenCallback<Root>, IArchiveOpenVolumeCallback<Root>>
{
public:
    explicit OpenCallback(std::wstring fileName) : m_fileName(std::move(fileName)) {}

    Result SEVENZIP_CALL QueryInterface(const Guid &id, void **object) override
    {
        *object = nullptr;
        if (this->template answer<IArchiveOpenCallback<Root>>(id, RootId, object) ||
            this->template answer<IArchiveOpenCallback<Root>>(id, IArchiveOpenCallback<Root>::Id, object) ||
            this->template answer<IArchiveOpenVolumeCallback<Root>>(id, IArchiveOpenVolumeCallback<Root>::Id,
                                                                    object))
            return Ok;
        return NoInterface;
    }

    Result SEVENZIP_CALL SetTotal(const std::uint64_t *, const std::uint64_t *) override { return Ok; }
    Result SEVENZIP_CALL SetCompleted(const std::uint64_t *, const std::uint64_t *) override { return Ok; }

    Result SEVENZIP_CALL GetProperty(std::uint32_t property, Variant *value) override
    {
        const std::uint32_t nameProperty = 4;
        return property == nameProperty ? giveText(m_fileName, value) : Ok;
    }

    // No archive here has further volumes.
    Result SEVENZIP_CALL GetStream(const wchar_t *, IInStream<Root> **stream) override
    {
        *stream = nullptr;
        return False;
    }

private:
    std::wstring m_fileName;
};

// What the objects of one extraction share. The library may keep any of them longer than it should.
struct Extraction
{
    explicit Extraction(EntrySink &theSink) : sink(&theSink) {}

    EntrySink *sink; // null when the extraction has ended
    KeptException exception;
    bool isOpen = false;       // an entry was begun and has not ended
    std::uint64_t entries = 0; // begun so far
};

// Passes an entry's content on to the sink.
template <typename Root>
class SinkOutStream final : public Object<ISequentialOutStream<Root>>
{
public:
    explicit SinkOutStream(std::shared_ptr<Extraction> extraction)
        : m_extraction(std::move(extraction)), m_entry(m_extraction->entries)
    {
    }

    Result SEVENZIP_CALL QueryInterface(const Guid &id, void **object) override
    {
        *object = nullptr;
        if (this->template answer<ISequentialOutStream<Root>>(id, RootId, object) ||
            this->template answer<ISequentialOutStream<Root>>(id, ISequentialOutStream<Root>::Id, object))
            return Ok;
        return NoInterface;
    }

    Result SEVENZIP_CALL Write(const void *data, std::uint32_t size, std::uint32_t *processed) override
    {
        if (processed)
            *processed = 0;
        return m_extraction->exception.guard([&] {
            if (!m_extraction->isOpen || m_extraction->entries != m_entry)
                throw BitException("the 7-Zip library wrote to an entry that had ended");
            m_extraction->sink->write(data, size);
            if (processed)
                *processed = size;
            return Ok;
        });
    }

private:
    std::shared_ptr<Extraction> m_extraction;
    std::uint64_t m_entry; // the number of the entry that this is the content of
};

// Hands the entries that the library decodes to the sink, and ends the extraction at the first that is
// damaged.
template <typename Root>
class ExtractCallback final : public Object<IArchiveExtractCallback<Root>>
{
public:
    explicit ExtractCallback(EntrySink &sink) : m_extraction(std::make_shared<Extraction>(sink)) {}

    Result SEVENZIP_CALL QueryInterface(const Guid &id, void **object) override
    {
        using Self = IArchiveExtractCallback<Root>;
        *object = nullptr;
        if (this->template answer<Self>(id, RootId, object) ||
            this->template answer<Self>(id, Self::Id, object) ||
            this->template answer<Self>(id, Self::ProgressId, object))
            return Ok;
        return NoInterface;
    }

    Result SEVENZIP_CALL SetTotal(std::uint64_t) override { return Ok; }
    Result SEVENZIP_CALL SetCompleted(const std::uint64_t *) override { return Ok; }

    Result SEVENZIP_CALL GetStream(std::uint32_t index, ISequentialOutStream<Root> **stream,
                                   std::int32_t mode) override
    {
        *stream = nullptr;
        if (mode != ModeExtract)
            return Ok;
        return m_extraction->exception.guard([&] {
            if (!m_extraction->sink || m_extraction->isOpen)
                throw BitException("the 7-Zip library began an entry before it ended the last one");
            m_extraction->sink->begin(index);
            m_extraction->isOpen = true;
            ++m_extraction->entries;
            *stream = new SinkOutStream<Root>(m_extraction);
            return Ok;
        });
    }

    Result SEVENZIP_CALL PrepareOperation(std::int32_t) override { return Ok; }

    Result SEVENZIP_CALL SetOperationResult(std::int32_t result) override
    {
        return m_extraction->exception.guard([&] {
            if (result != ResultOk)
                throw BitException(describe(result));
            if (m_extraction->isOpen) {
                m_extraction->isOpen = false;
                m_extraction->sink->end();
            }
            return Ok;
        });
    }

    // Ends the use of the sink, whatever the library still holds. Throws what any of the calls had thrown;
    // returns whether the last entry was left open.
    bool finish()
    {
        m_extraction->sink = nullptr;
        const bool wasOpen = std::exchange(m_extraction->isOpen, false);
        m_extraction->exception.rethrow();
        return wasOpen;
    }

private:
    enum Mode : std::int32_t { ModeExtract = 0 };

    static std::string describe(std::int32_t result)
    {
        switch (result) {
        case UnsupportedMethod:
            return "the archive uses a method that the 7-Zip library does not know";
        case CrcError:
            return "the content does not match its checksum";
        case Unavailable:
            return "the archive's data is not available";
        case UnexpectedDataEnd:
            return "the archive ends in the middle of the data";
        case DataAfterEnd:
            return "the archive has something else after its end";
        case IsNoArchive:
            return "the file is no archive of its format";
        case BadHeaders:
            return "the archive's headers are damaged";
        default:
            return "the archive's data is damaged";
        }
    }

    std::shared_ptr<Extraction> m_extraction;
};

} // namespace archive::sevenzip
