#include "archive/outfile.h"

#include "archive/bitexception.h"

#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace archive {

namespace {

const std::uint64_t ticksPerSecond = 10000000;
const std::int64_t secondsTo1970 = 11644473600; // from 1601-01-01

struct Times
{
    explicit Times(std::uint64_t ticks)
    {
        values[0].tv_nsec = UTIME_OMIT; // last access
        values[1].tv_sec = time_t(std::int64_t(ticks / ticksPerSecond) - secondsTo1970);
        values[1].tv_nsec = long(ticks % ticksPerSecond) * 100;
    }
    timespec values[2] = {};
};

[[noreturn]] void fail(const char *what, const std::filesystem::path &path)
{
    throw BitException("cannot " + std::string(what) + " \"" + path.string() + "\": " + std::strerror(errno));
}

} // namespace

OutFile::OutFile(const std::filesystem::path &path)
    : m_path(path),
      m_descriptor(::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666))
{
    if (m_descriptor < 0)
        fail("create", path);
}

OutFile::~OutFile()
{
    if (m_descriptor >= 0)
        ::close(m_descriptor);
}

void OutFile::write(std::uint64_t offset, const void *data, std::size_t size)
{
    const char *bytes = static_cast<const char *>(data);
    while (size > 0) {
        const ssize_t written = ::pwrite(m_descriptor, bytes, size, off_t(offset));
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            fail("write", m_path);
        bytes += written;
        offset += std::uint64_t(written);
        size -= std::size_t(written);
    }
}

void OutFile::close(const std::optional<std::uint64_t> &modified)
{
    if (modified)
        ::futimens(m_descriptor, Times(*modified).values); // a file system without such times keeps its own
    const int descriptor = m_descriptor;
    m_descriptor = -1;
    if (::close(descriptor) != 0 && errno != EINTR)
        fail("write", m_path);
}

void makeFolder(const std::filesystem::path &path)
{
    if (::mkdir(path.c_str(), 0777) != 0)
        fail("create", path);
}

void setFolderTime(const std::filesystem::path &path, std::uint64_t modified)
{
    ::utimensat(AT_FDCWD, path.c_str(), Times(modified).values, AT_SYMLINK_NOFOLLOW);
}

} // namespace archive
