// The back end over an installed bit7z 4.x. Only its reading is used: names are checked and files written by
// this layer, as with its own back end.

#include "archive/backend.h"

#include "archive/bitexception.h"
#include "archive/format.h"
#include "archive/localpath.h"

#include <bit7z/bit7zlibrary.hpp>
#include <bit7z/bitarchivereader.hpp>
#include <bit7z/bitexception.hpp>
#include <bit7z/bitformat.hpp>

#include <cwchar>
#include <exception>
#include <filesystem>
#include <ostream>
#include <streambuf>
#include <type_traits>

namespace archive {

namespace {

// bit7z's texts are wide on Windows and UTF-8 elsewhere.
bit7z::tstring nativeText(const std::wstring &text)
{
    if constexpr (std::is_same_v<bit7z::tstring, std::wstring>)
        return bit7z::tstring(text.begin(), text.end());
    else
        return bit7z::tstring(localPath(text).u8string());
}

std::wstring wideText(const bit7z::tstring &text)
{
    if constexpr (std::is_same_v<bit7z::tstring, std::wstring>)
        return std::wstring(text.begin(), text.end());
    else
        return wideFromUtf8(std::string(text.begin(), text.end()));
}

// Where bit7z finds the library that the plug-in knows by its Windows name.
bit7z::tstring libraryPath(const std::wstring &name)
{
#ifdef _WIN32
    return nativeText(name);
#else
    return name == L"7z.dll" ? bit7z::tstring(bit7z::kDefaultLibrary) : nativeText(name);
#endif
}

const bit7z::BitInFormat &formatOf(const BitInFormat &format)
{
    return format.number == BitFormat::Tar.number
               ? static_cast<const bit7z::BitInFormat &>(bit7z::BitFormat::Tar)
               : bit7z::BitFormat::GZip;
}

PropertyValue valueOf(const bit7z::BitPropVariant &variant)
{
    if (variant.isString())
        return wideText(variant.getString());
    if (variant.isBool())
        return variant.getBool();
    if (variant.isUInt64())
        return std::uint64_t(variant.getUInt64());
    if (variant.isUInt32())
        return std::uint64_t(variant.getUInt32());
    if (variant.isFileTime()) {
        const auto time = variant.getFileTime();
        return FileTime{std::uint64_t(time.dwHighDateTime) << 32 | time.dwLowDateTime};
    }
    return {};
}

// Passes what bit7z writes on to a sink. The first exception is kept: the stream would swallow it, and bit7z
// does not bear a stream that fails, so what follows is taken and dropped until bit7z asks whether to go on.
class SinkBuffer : public std::streambuf
{
public:
    explicit SinkBuffer(EntrySink &sink) : m_sink(sink) {}

    bool hasFailed() const { return m_exception != nullptr; }
    void rethrow() const
    {
        if (m_exception)
            std::rethrow_exception(m_exception);
    }

protected:
    std::streamsize xsputn(const char *bytes, std::streamsize count) override
    {
        m_position += count;
        try {
            if (!m_exception)
                m_sink.write(bytes, std::size_t(count));
        } catch (...) {
            m_exception = std::current_exception();
        }
        return count;
    }

    int_type overflow(int_type character) override
    {
        const char byte = traits_type::to_char_type(character);
        return xsputn(&byte, 1) == 1 ? character : traits_type::eof();
    }

    // Only tells the position: bit7z asks for it to see how much was written.
    pos_type seekoff(off_type offset, std::ios_base::seekdir from, std::ios_base::openmode) override
    {
        return offset == 0 && from == std::ios_base::cur ? pos_type(m_position) : pos_type(off_type(-1));
    }

private:
    EntrySink &m_sink;
    off_type m_position = 0;
    std::exception_ptr m_exception;
};

// Runs `work` and turns what bit7z throws into this layer's exception.
template <typename Work>
auto translated(Work work) -> decltype(work())
{
    try {
        return work();
    } catch (const bit7z::BitException &error) {
        throw BitException(error.what());
    }
}

class Bit7zArchive final : public InArchive
{
public:
    Bit7zArchive(const bit7z::Bit7zLibrary &library, const std::wstring &file, const BitInFormat &format)
        : m_isGZip(format.number == BitFormat::GZip.number),
          m_reader(library, nativeText(file), formatOf(format))
    {
        const std::filesystem::path name = localPath(file).filename();
        m_inventedName = name.stem().wstring();
    }

    std::uint32_t entryCount() const override
    {
        return translated([this] { return m_reader.itemsCount(); });
    }

    PropertyValue entryProperty(std::uint32_t index, Property property) const override
    {
        return translated([&] {
            const PropertyValue value = valueOf(m_reader.itemProperty(index, bit7z::BitProperty(property)));
            // A gzip member without a name has none here, but bit7z gives it the archive's.
            const std::wstring *text = std::get_if<std::wstring>(&value);
            const bool isInvented = m_isGZip && property == Property::Path && text && *text == m_inventedName;
            return isInvented ? PropertyValue() : value;
        });
    }

    PropertyValue archiveProperty(Property property) const override
    {
        return translated([&] { return valueOf(m_reader.archiveProperty(bit7z::BitProperty(property))); });
    }

    void extract(const std::vector<std::uint32_t> &indices, EntrySink &sink) const override
    {
        for (const std::uint32_t index : indices) {
            sink.begin(index);
            SinkBuffer buffer(sink);
            std::ostream stream(&buffer);
            m_reader.setProgressCallback([&buffer](std::uint64_t) { return !buffer.hasFailed(); });
            try {
                translated([&] { m_reader.extractTo(stream, index); });
            } catch (...) {
                m_reader.setProgressCallback(nullptr);
                buffer.rethrow();
                throw;
            }
            m_reader.setProgressCallback(nullptr);
            buffer.rethrow();
            sink.end();
        }
    }

    // bit7z does not give the library's own streams.
    std::optional<std::uint64_t> contentOffset(std::uint32_t, std::uint64_t) const override
    {
        return std::nullopt;
    }

private:
    bool m_isGZip;
    mutable bit7z::BitArchiveReader m_reader; // its callback is set for an extraction
    std::wstring m_inventedName;
};

class Bit7zBackend final : public Backend
{
public:
    explicit Bit7zBackend(const std::wstring &name) : m_library(libraryPath(name)) {}

    std::unique_ptr<InArchive> open(const std::wstring &file, const BitInFormat &format) const override
    {
        try {
            return std::make_unique<Bit7zArchive>(m_library, file, format);
        } catch (const bit7z::BitException &error) {
            throw BitException("\"" + utf8(file) + "\": " + error.what());
        }
    }

private:
    bit7z::Bit7zLibrary m_library;
};

} // namespace

std::shared_ptr<const Backend> loadBackend(const std::wstring &name)
{
    return translated(
        [&]() -> std::shared_ptr<const Backend> { return std::make_shared<const Bit7zBackend>(name); });
}

} // namespace archive
