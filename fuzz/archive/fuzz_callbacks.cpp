// Calls the objects that 7-Zip's library calls back in made-up orders and with made-up arguments, as a
// damaged or hostile library could: the sink must see a proper sequence, and no exception may come out.

#include "fuzz/archive/fuzzinput.h"

#include "archive/sevenzip/callbacks.h"

#include <cstdio>
#include <cstdlib>
#include <vector>

#include <unistd.h>

using namespace archive;
using namespace archive::sevenzip;

namespace {

void require(bool holds)
{
    if (!holds)
        std::abort();
}

// Takes what comes and complains of disorder; throws now and then, as writing does on a full disk.
class StrictSink : public EntrySink
{
public:
    explicit StrictSink(std::uint8_t throwsAt) : m_throwsAt(throwsAt) {}

    void begin(std::uint32_t) override
    {
        require(!m_isOpen);
        step();
        m_isOpen = true;
    }
    void write(const void *data, std::size_t size) override
    {
        require(m_isOpen);
        step();
        const auto *bytes = static_cast<const std::uint8_t *>(data);
        for (std::size_t i = 0; i < size; ++i)
            m_sum += bytes[i];
    }
    void end() override
    {
        require(m_isOpen);
        step();
        m_isOpen = false;
    }

private:
    void step()
    {
        if (++m_steps == m_throwsAt)
            throw BitException("full");
    }

    std::uint8_t m_throwsAt;
    unsigned m_steps = 0;
    unsigned m_sum = 0;
    bool m_isOpen = false;
};

Guid someId(FuzzInput &input)
{
    const std::uint8_t choice = input.byte();
    return choice == 0 ? RootId : interfaceId(choice % 8, input.byte());
}

template <typename Root>
class Caller
{
public:
    Caller(FuzzInput &input, const std::wstring &file)
        : m_input(input), m_sink(input.byte()), m_extract(new ExtractCallback<Root>(m_sink)),
          m_open(new OpenCallback<Root>(L"x.tar")), m_in(new FileInStream<Root>(file))
    {
    }
    ~Caller()
    {
        for (ISequentialOutStream<Root> *stream : m_streams)
            stream->Release();
    }

    void run()
    {
        while (!m_input.isEmpty())
            call();
        try {
            m_in->rethrow();
            m_extract->finish();
        } catch (const BitException &) {
        }
    }

private:
    void call()
    {
        switch (m_input.byte() % 10) {
        case 0: {
            ISequentialOutStream<Root> *stream = nullptr;
            m_extract->GetStream(std::uint32_t(m_input.number(4)), &stream, m_input.byte() % 4);
            if (stream)
                m_streams.push_back(stream);
            break;
        }
        case 1:
            m_extract->SetOperationResult(std::int32_t(m_input.number(1)) - 2);
            break;
        case 2:
            m_extract->PrepareOperation(m_input.byte());
            break;
        case 3:
            if (!m_streams.empty()) {
                const std::vector<char> bytes(m_input.byte(), 'x');
                std::uint32_t written = 0;
                m_streams[m_input.byte() % m_streams.size()]->Write(bytes.data(), std::uint32_t(bytes.size()),
                                                                    m_input.byte() & 1 ? &written : nullptr);
                require(written <= bytes.size());
            }
            break;
        case 4: {
            std::uint64_t position = 0;
            const bool done =
                m_in->Seek(std::int64_t(m_input.number(8)), m_input.byte() % 4, &position) == Ok;
            require(!done || std::int64_t(position) >= 0);
            break;
        }
        case 5: {
            std::vector<char> bytes(m_input.byte());
            std::uint32_t got = 0;
            m_in->Read(bytes.data(), std::uint32_t(bytes.size()), &got);
            require(got <= bytes.size());
            break;
        }
        case 6: {
            OwnedVariant value;
            m_open->GetProperty(std::uint32_t(m_input.number(1)), value.out());
            break;
        }
        case 7: {
            IInStream<Root> *volume = nullptr;
            m_open->GetStream(L"volume", &volume);
            require(!volume);
            break;
        }
        case 8:
            query(m_extract.get());
            break;
        case 9:
            query(m_open.get());
            query(m_in.get());
            break;
        }
    }

    template <typename Object>
    void query(Object *object)
    {
        void *found = nullptr;
        if (object->QueryInterface(someId(m_input), &found) == Ok) {
            require(found);
            object->Release();
        } else {
            require(!found);
        }
    }

    FuzzInput &m_input;
    StrictSink m_sink;
    Counted<ExtractCallback<Root>> m_extract;
    Counted<OpenCallback<Root>> m_open;
    Counted<FileInStream<Root>> m_in;
    std::vector<ISequentialOutStream<Root> *> m_streams;
};

// A file to read from, made once.
std::wstring sampleFile()
{
    static const std::string path = [] {
        char name[] = "/tmp/fuzz_callbacks-XXXXXX";
        const int descriptor = ::mkstemp(name);
        require(descriptor >= 0 && ::write(descriptor, name, sizeof name) == long(sizeof name));
        ::close(descriptor);
        std::atexit([] { std::remove(path.c_str()); });
        return std::string(name);
    }();
    return std::wstring(path.begin(), path.end());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    FuzzInput input(data, size);
    if (input.byte() & 1)
        Caller<PlainRoot>(input, sampleFile()).run();
    else
        Caller<RootWithDestructor>(input, sampleFile()).run();
    return 0;
}
