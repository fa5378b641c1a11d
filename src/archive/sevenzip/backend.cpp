// The back end over 7-Zip's own shared library.

#include "archive/backend.h"

#include "archive/localpath.h"
#include "archive/sevenzip/callbacks.h"
#include "archive/sevenzip/library.h"

#include <cstdio>

namespace archive {

namespace sevenzip {

namespace {

std::string hexadecimal(Result result)
{
    char text[16];
    std::snprintf(text, sizeof text, "0x%08X", unsigned(result));
    return text;
}

template <typename Root>
class OpenArchive final : public InArchive
{
public:
    OpenArchive(std::shared_ptr<const Library> library, const std::wstring &file, const BitInFormat &format)
        : m_library(std::move(library)), m_shownFile(utf8(file)), m_stream(new FileInStream<Root>(file)),
          m_archive(
              static_cast<IInArchive<Root> *>(m_library->createHandler(format.number, IInArchive<Root>::Id)))
    {
        const std::wstring name = file.substr(file.find_last_of(L"/\\") + 1);
        const Counted<OpenCallback<Root>> callback(new OpenCallback<Root>(name));
        const std::uint64_t onlyAtTheBegin = 0;
        const Result result = m_archive->Open(m_stream.get(), &onlyAtTheBegin, callback.get());
        m_stream->rethrow();
        if (result != Ok)
            throw BitException("\"" + m_shownFile + "\" is no " +
                               (format.number == BitFormat::Tar.number ? "tar" : "gzip") + " file (" +
                               hexadecimal(result) + ")");
    }

    ~OpenArchive() override { m_archive->Close(); }

    std::uint32_t entryCount() const override
    {
        std::uint32_t count = 0;
        check(m_archive->GetNumberOfItems(&count), "count the entries of");
        return count;
    }

    PropertyValue entryProperty(std::uint32_t index, Property property) const override
    {
        OwnedVariant value;
        check(m_archive->GetProperty(index, std::uint32_t(property), value.out()), "read the list of");
        return value.value();
    }

    PropertyValue archiveProperty(Property property) const override
    {
        OwnedVariant value;
        check(m_archive->GetArchiveProperty(std::uint32_t(property), value.out()), "read the properties of");
        return value.value();
    }

    void extract(const std::vector<std::uint32_t> &indices, EntrySink &sink) const override
    {
        if (indices.empty())
            return;
        const Counted<ExtractCallback<Root>> callback(new ExtractCallback<Root>(sink));
        const Result result =
            m_archive->Extract(indices.data(), std::uint32_t(indices.size()), 0, callback.get());
        const bool isUnfinished = callback->finish();
        m_stream->rethrow();
        check(result, "unpack");
        if (isUnfinished)
            throw BitException("the 7-Zip library did not say how the last entry ended");
    }

    // The library does not tell the place, but gives a stream of the content: where reading its first and its
    // last byte reads the file, and that these are as far apart as they must be, tells it.
    std::optional<std::uint64_t> contentOffset(std::uint32_t index, std::uint64_t size) const override
    {
        Counted<IInArchiveGetStream<Root>> streams;
        m_archive->QueryInterface(IInArchiveGetStream<Root>::Id, streams.out());
        if (!streams.get())
            return std::nullopt;
        ISequentialInStream<Root> *made = nullptr;
        if (streams->GetStream(index, &made) != Ok || !made)
            return std::nullopt;
        const Counted<ISequentialInStream<Root>> content(made);
        Counted<IInStream<Root>> seekable;
        content->QueryInterface(IInStream<Root>::Id, seekable.out());
        if (!seekable.get())
            return std::nullopt;

        const std::optional<std::uint64_t> first = placeRead(*seekable.get(), 0);
        const std::optional<std::uint64_t> last = placeRead(*seekable.get(), size - 1);
        m_stream->rethrow();
        if (!first || !last || *last < *first || *last - *first != size - 1 || *last >= m_stream->size())
            return std::nullopt;
        return first;
    }

private:
    // Where in the file the byte at `offset` of `content` is read.
    std::optional<std::uint64_t> placeRead(IInStream<Root> &content, std::uint64_t offset) const
    {
        const std::uint32_t fromTheBegin = 0;
        if (content.Seek(std::int64_t(offset), fromTheBegin, nullptr) != Ok)
            return std::nullopt;
        m_stream->takeLastRead();
        char byte = 0;
        std::uint32_t got = 0;
        if (content.Read(&byte, 1, &got) != Ok || got != 1)
            return std::nullopt;
        return m_stream->takeLastRead();
    }

    void check(Result result, const char *what) const
    {
        if (result != Ok)
            throw BitException("the 7-Zip library cannot " + std::string(what) + " \"" + m_shownFile +
                               "\" (" + hexadecimal(result) + ")");
    }

    std::shared_ptr<const Library> m_library; // outlives the objects that it made
    std::string m_shownFile;
    Counted<FileInStream<Root>> m_stream;
    Counted<IInArchive<Root>> m_archive;
};

class SevenZipBackend final : public Backend
{
public:
    explicit SevenZipBackend(const std::wstring &name) : m_library(std::make_shared<const Library>(name)) {}

    std::unique_ptr<InArchive> open(const std::wstring &file, const BitInFormat &format) const override
    {
        if (m_library->hasVirtualDestructor())
            return std::make_unique<OpenArchive<RootWithDestructor>>(m_library, file, format);
        return std::make_unique<OpenArchive<PlainRoot>>(m_library, file, format);
    }

private:
    std::shared_ptr<const Library> m_library;
};

} // namespace

} // namespace sevenzip

std::shared_ptr<const Backend> loadBackend(const std::wstring &name)
{
    return std::make_shared<const sevenzip::SevenZipBackend>(name);
}

} // namespace archive
