// The interfaces of 7-Zip's library that are used here, with their operations in the order of the virtual
// tables, and no more. All are templates over their root, because the library has had two: until 23.01 the
// root had a virtual destructor on systems other than Windows, which takes two more places in every table.
#pragma once

#include "archive/sevenzip/comtypes.h"

namespace archive::sevenzip {

class PlainRoot
{
public:
    virtual Result SEVENZIP_CALL QueryInterface(const Guid &id, void **object) = 0;
    virtual Count SEVENZIP_CALL AddRef() = 0;
    virtual Count SEVENZIP_CALL Release() = 0;

protected:
    ~PlainRoot() = default; // objects delete themselves in Release()
};

class RootWithDestructor
{
public:
    virtual Result SEVENZIP_CALL QueryInterface(const Guid &id, void **object) = 0;
    virtual Count SEVENZIP_CALL AddRef() = 0;
    virtual Count SEVENZIP_CALL Release() = 0;

protected:
    virtual ~RootWithDestructor() = default; // its places in the table come here, after Release
};

// 7-Zip numbers its interfaces by group and number.
constexpr Guid interfaceId(unsigned char group, unsigned char number)
{
    return {0x23170F69, 0x40C1, 0x278A, {0, 0, 0, group, 0, number, 0, 0}};
}

constexpr Guid formatId(unsigned char format)
{
    return {0x23170F69, 0x40C1, 0x278A, {0x10, 0, 0, 0x01, 0x10, format, 0, 0}};
}

inline constexpr Guid RootId{0, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};

template <typename Root>
class ISequentialInStream : public Root
{
public:
    static constexpr Guid Id = interfaceId(3, 0x01);
    virtual Result SEVENZIP_CALL Read(void *data, std::uint32_t size, std::uint32_t *processed) = 0;

protected:
    ~ISequentialInStream() = default;
};

template <typename Root>
class IInStream : public ISequentialInStream<Root>
{
public:
    static constexpr Guid Id = interfaceId(3, 0x03);
    virtual Result SEVENZIP_CALL Seek(std::int64_t offset, std::uint32_t origin, std::uint64_t *position) = 0;

protected:
    ~IInStream() = default;
};

template <typename Root>
class ISequentialOutStream : public Root
{
public:
    static constexpr Guid Id = interfaceId(3, 0x02);
    virtual Result SEVENZIP_CALL Write(const void *data, std::uint32_t size, std::uint32_t *processed) = 0;

protected:
    ~ISequentialOutStream() = default;
};

template <typename Root>
class IArchiveOpenCallback : public Root
{
public:
    static constexpr Guid Id = interfaceId(6, 0x10);
    virtual Result SEVENZIP_CALL SetTotal(const std::uint64_t *files, const std::uint64_t *bytes) = 0;
    virtual Result SEVENZIP_CALL SetCompleted(const std::uint64_t *files, const std::uint64_t *bytes) = 0;

protected:
    ~IArchiveOpenCallback() = default;
};

template <typename Root>
class IArchiveOpenVolumeCallback : public Root
{
public:
    static constexpr Guid Id = interfaceId(6, 0x30);
    virtual Result SEVENZIP_CALL GetProperty(std::uint32_t property, Variant *value) = 0;
    virtual Result SEVENZIP_CALL GetStream(const wchar_t *name, IInStream<Root> **stream) = 0;

protected:
    ~IArchiveOpenVolumeCallback() = default;
};

template <typename Root>
class IArchiveExtractCallback : public Root
{
public:
    static constexpr Guid Id = interfaceId(6, 0x20);
    static constexpr Guid ProgressId =
        interfaceId(0, 0x05); // the interface that its first two operations make
    virtual Result SEVENZIP_CALL SetTotal(std::uint64_t total) = 0;
    virtual Result SEVENZIP_CALL SetCompleted(const std::uint64_t *completed) = 0;
    virtual Result SEVENZIP_CALL GetStream(std::uint32_t index, ISequentialOutStream<Root> **stream,
                                           std::int32_t mode) = 0;
    virtual Result SEVENZIP_CALL PrepareOperation(std::int32_t mode) = 0;
    virtual Result SEVENZIP_CALL SetOperationResult(std::int32_t result) = 0;

protected:
    ~IArchiveExtractCallback() = default;
};

template <typename Root>
class IInArchive : public Root
{
public:
    static constexpr Guid Id = interfaceId(6, 0x60);
    virtual Result SEVENZIP_CALL Open(IInStream<Root> *stream, const std::uint64_t *maxCheckStartPosition,
                                      IArchiveOpenCallback<Root> *callback) = 0;
    virtual Result SEVENZIP_CALL Close() = 0;
    virtual Result SEVENZIP_CALL GetNumberOfItems(std::uint32_t *count) = 0;
    virtual Result SEVENZIP_CALL GetProperty(std::uint32_t index, std::uint32_t property, Variant *value) = 0;
    virtual Result SEVENZIP_CALL Extract(const std::uint32_t *indices, std::uint32_t count,
                                         std::int32_t testMode, IArchiveExtractCallback<Root> *callback) = 0;
    virtual Result SEVENZIP_CALL GetArchiveProperty(std::uint32_t property, Variant *value) = 0;

protected:
    ~IInArchive() = default;
};

template <typename Root>
class IInArchiveGetStream : public Root
{
public:
    static constexpr Guid Id = interfaceId(6, 0x40);
    virtual Result SEVENZIP_CALL GetStream(std::uint32_t index, ISequentialInStream<Root> **stream) = 0;

protected:
    ~IInArchiveGetStream() = default;
};

// How decoding an entry ended, as the library reports it.
enum OperationResult : std::int32_t {
    ResultOk = 0,
    UnsupportedMethod,
    DataError,
    CrcError,
    Unavailable,
    UnexpectedDataEnd,
    DataAfterEnd,
    IsNoArchive,
    BadHeaders,
};

// Holds one count of an object.
template <typename Object>
class Counted
{
public:
    Counted() = default;
    explicit Counted(Object *object) : m_object(object) {} // takes over the caller's count
    ~Counted() { reset(); }
    Counted(const Counted &) = delete;
    Counted &operator=(const Counted &) = delete;

    Object *get() const { return m_object; }
    Object *operator->() const { return m_object; }
    void **out() { return reinterpret_cast<void **>(&m_object); }
    void reset()
    {
        if (m_object)
            m_object->Release();
        m_object = nullptr;
    }

private:
    Object *m_object = nullptr;
};

} // namespace archive::sevenzip
