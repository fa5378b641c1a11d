#include "archive/infile.h"

#include "archive/bitexception.h"
#include "archive/localpath.h"

#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace archive {

InFile::InFile(const std::wstring &path)
    : m_shownPath(utf8(path)),
      m_descriptor(::open(localPath(path).c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK))
{
    struct stat status = {};
    if (m_descriptor < 0 || ::fstat(m_descriptor, &status) != 0) {
        const std::string reason = std::strerror(errno);
        if (m_descriptor >= 0)
            ::close(m_descriptor);
        throw BitException("cannot open \"" + m_shownPath + "\": " + reason);
    }
    if (!S_ISREG(status.st_mode)) {
        ::close(m_descriptor);
        throw BitException("cannot open \"" + m_shownPath + "\": it is no file");
    }
    m_size = std::uint64_t(status.st_size);
}

InFile::~InFile()
{
    ::close(m_descriptor);
}

std::size_t InFile::read(std::uint64_t offset, void *data, std::size_t size) const
{
    for (;;) {
        const ssize_t got = ::pread(m_descriptor, data, size, off_t(offset));
        if (got >= 0)
            return std::size_t(got);
        if (errno != EINTR)
            throw BitException("cannot read \"" + m_shownPath + "\": " + std::strerror(errno));
    }
}

} // namespace archive
