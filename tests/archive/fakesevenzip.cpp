// A shared library with the entry points of 7-Zip's, whose only archive is a file of one fixed entry. It is
// built once with and once without the virtual destructor that 7-Zip's root interface used to have
// (FAKE_ROOT), and can misbehave in the ways that are named in the file it opens.

#include "archive/sevenzip/interfaces.h"

#include <atomic>
#include <cstring>
#include <string>

using namespace archive::sevenzip;
using Root = FAKE_ROOT;

namespace {

const char Content[] = "content of the fake library";

class Handler final : public IInArchive<Root>
{
public:
    Result SEVENZIP_CALL QueryInterface(const Guid &, void **object) override
    {
        *object = nullptr;
        return NoInterface;
    }
    Count SEVENZIP_CALL AddRef() override { return ++m_count; }
    Count SEVENZIP_CALL Release() override
    {
        const Count left = --m_count;
        if (left == 0)
            delete this;
        return left;
    }

    Result SEVENZIP_CALL Open(IInStream<Root> *stream, const std::uint64_t *,
                              IArchiveOpenCallback<Root> *callback) override
    {
        // Everything a handler may do with what it is given.
        char text[256] = {};
        std::uint32_t got = 0;
        std::uint64_t size = 0;
        if (stream->Seek(0, 2, &size) != Ok || stream->Seek(0, 0, nullptr) != Ok ||
            stream->Read(text, sizeof text - 1, &got) != Ok || got != size)
            return False;
        m_order = text;
        void *again = nullptr;
        if (stream->QueryInterface(IInStream<Root>::Id, &again) != Ok)
            return False;
        stream->Release();
        callback->SetTotal(nullptr, &size);
        callback->SetCompleted(nullptr, &size);
        return m_order.compare(0, 4, "fake") == 0 ? Ok : False;
    }
    Result SEVENZIP_CALL Close() override { return Ok; }
    Result SEVENZIP_CALL GetNumberOfItems(std::uint32_t *count) override
    {
        *count = 1;
        return Ok;
    }
    Result SEVENZIP_CALL GetProperty(std::uint32_t, std::uint32_t property, Variant *value) override
    {
        if (property == 3)
            return giveText(L"fake.tar", value);
        return Ok;
    }
    Result SEVENZIP_CALL Extract(const std::uint32_t *, std::uint32_t, std::int32_t,
                                 IArchiveExtractCallback<Root> *callback) override
    {
        const bool twice = has("begin twice");
        if (has("no entry"))
            return Ok;
        for (int time = 0; time < (twice ? 2 : 1); ++time) {
            ISequentialOutStream<Root> *out = nullptr;
            callback->SetTotal(sizeof Content - 1);
            Result result = callback->GetStream(has("other entry") ? 7 : 0, &out, 0);
            if (result != Ok)
                return result;
            std::uint32_t written = 0;
            callback->PrepareOperation(0);
            result = out->Write(Content, sizeof Content - 1, &written);
            out->Release();
            if (result != Ok || written != sizeof Content - 1)
                return Abort;
            if (twice || has("no end"))
                continue;
            result = callback->SetOperationResult(has("bad data") ? 2 : 0);
            if (result != Ok)
                return has("hides errors") ? Ok : result;
        }
        return has("fails at the end") ? Abort : Ok;
    }
    Result SEVENZIP_CALL GetArchiveProperty(std::uint32_t, Variant *) override { return Ok; }

private:
    virtual ~Handler() = default; // with a plain root it comes behind all of the interface's operations

    bool has(const char *word) const { return m_order.find(word) != std::string::npos; }

    std::atomic<Count> m_count{1};
    std::string m_order;
};

} // namespace

extern "C" {

__attribute__((visibility("default"))) std::uint32_t CreateObject(const Guid *, const Guid *, void **object)
{
    *object = static_cast<IInArchive<Root> *>(new Handler);
    return 0;
}

#if FAKE_TELLS
__attribute__((visibility("default"))) std::int32_t GetModuleProp(std::uint32_t property, Variant *value)
{
    if (property == 0) {
        value->vt = 19;
        value->ulVal = FAKE_TELLS - 1;
    }
    return 0;
}
#endif
}
