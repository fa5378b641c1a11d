// Unpacks made-up tar and gzip files through 7-Zip's library: whatever they say, nothing may change outside
// the output folder, and nothing of the layer's own may stay in it.

#include "archive/archive.h"

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>

#include <unistd.h>

using namespace archive;
namespace fs = std::filesystem;

namespace {

void require(bool holds)
{
    if (!holds)
        std::abort();
}

const fs::path &workFolder()
{
    static const fs::path folder = [] {
        char name[] = "/dev/shm/fuzz_archive-XXXXXX";
        require(::mkdtemp(name));
        std::atexit([] { fs::remove_all(workFolder()); });
        return fs::path(name);
    }();
    return folder;
}

// The checksums of tar headers are set right, so that the fuzzer does not have to guess them.
std::string withChecksums(std::string bytes)
{
    for (std::size_t at = 0; at + 512 <= bytes.size(); at += 512) {
        if (bytes.compare(at + 257, 5, "ustar") != 0)
            continue;
        std::memset(&bytes[at + 148], ' ', 8);
        unsigned sum = 0;
        for (std::size_t i = 0; i < 512; ++i)
            sum += static_cast<unsigned char>(bytes[at + i]);
        std::snprintf(&bytes[at + 148], 8, "%06o", sum);
    }
    return bytes;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size == 0)
        return 0;
    const bool isTar = data[0] & 1;
    const std::string bytes(reinterpret_cast<const char *>(data) + 1, size - 1);
    const fs::path &work = workFolder();
    const fs::path file = work / "x.tar";
    const fs::path out = work / "out";
    fs::create_directory(out);
    std::ofstream(file, std::ios::binary) << (isTar ? withChecksums(bytes) : bytes);

    bool failed = false;
    try {
        const Bit7zLibrary library;
        BitExtractor(library, isTar ? BitFormat::Tar : BitFormat::GZip)
            .extract(file.wstring(), out.wstring() + L"/");
    } catch (const std::exception &) {
        failed = true;
    }

    for (const fs::directory_entry &entry : fs::directory_iterator(work))
        require(entry.path() == file || entry.path() == out);
    for (const fs::directory_entry &entry : fs::directory_iterator(out))
        require(entry.path().filename().string().compare(0, 8, ".unpack-") != 0);
    require(!failed || fs::is_empty(out));
    fs::remove_all(out);
    return 0;
}
