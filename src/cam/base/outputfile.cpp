// Buffering, and the two ways in which a file under construction ends.
#include "cam/base/outputfile.h"

#include "cam/base/error.h"

#include <system_error>
#include <utility>

namespace cam {

namespace fs = std::filesystem;

OutputFile::OutputFile(fs::path path) : m_path(std::move(path)), m_partPath(m_path), m_buffer(256 * 1024)
{
    m_partPath += ".part";
    if (!m_file.open(m_partPath, std::ios::out | std::ios::binary | std::ios::trunc))
        throw Error(m_partPath.u8string() + ": cannot be opened for writing");
}

OutputFile::~OutputFile()
{
    if (m_isCommitted)
        return;
    m_file.close();
    std::error_code ignored;
    fs::remove(m_partPath, ignored);
}

void OutputFile::commit()
{
    flush();
    if (!m_file.close())
        throw Error(m_partPath.u8string() + ": cannot be written to its end");
    std::error_code failure;
    fs::rename(m_partPath, m_path, failure);
    if (failure)
        throw Error(m_path.u8string() + ": cannot be replaced: " + failure.message());
    m_isCommitted = true;
}

void OutputFile::writeThrough(const char *bytes, std::size_t count)
{
    const auto wanted = static_cast<std::streamsize>(count);
    if (m_file.sputn(bytes, wanted) != wanted)
        throw Error(m_partPath.u8string() + ": cannot be written");
}

void OutputFile::flush()
{
    writeThrough(m_buffer.data(), m_used);
    m_used = 0;
}

} // namespace cam
