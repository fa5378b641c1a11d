// A file read at given offsets.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace archive {

class InFile
{
public:
    // Opens the local path `path`; throws BitException, as read() does.
    explicit InFile(const std::wstring &path);
    ~InFile();
    InFile(const InFile &) = delete;
    InFile &operator=(const InFile &) = delete;

    std::uint64_t size() const { return m_size; }
    // Returns the bytes read, 0 at the end.
    std::size_t read(std::uint64_t offset, void *data, std::size_t size) const;

private:
    std::uint64_t m_size = 0;
    std::string m_shownPath;
#ifdef _WIN32
    void *m_handle;
#else
    int m_descriptor;
#endif
};

} // namespace archive
