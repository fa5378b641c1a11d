// Finding and loading 7-Zip's shared library.
#pragma once

#include "archive/sevenzip/comtypes.h"

#include <filesystem>
#include <string>
#include <vector>

namespace archive::sevenzip {

class Library
{
public:
    // Loads the library `name`. On Windows that is a plain load. Elsewhere the name "7z.dll" stands for
    // "7z.so", and a plain name is looked for in searchFolders() and then on the loader's path; a name with
    // folders is loaded as it is. Throws BitException when it is not found or is no 7-Zip library.
    explicit Library(const std::wstring &name);
    ~Library();
    Library(const Library &) = delete;
    Library &operator=(const Library &) = delete;

    // Makes a handler of the format `number` that understands the interface `id`; throws BitException.
    void *createHandler(unsigned char number, const Guid &id) const;

    // Whether the library's interfaces have a virtual destructor: see interfaces.h.
    bool hasVirtualDestructor() const { return m_hasVirtualDestructor; }

private:
    using CreateObject = std::uint32_t(SEVENZIP_ENTRY *)(const Guid *handler, const Guid *interfaceId,
                                                         void **object);
    using GetModuleProperty = std::int32_t(SEVENZIP_ENTRY *)(std::uint32_t property, Variant *value);

    void findEntryPoints(const std::string &shownName);

    void *m_handle = nullptr;
    CreateObject m_createObject = nullptr;
    bool m_hasVirtualDestructor = false;
};

// Where a plain library name is looked for first, in this order: the folder of the module that this code is
// in, then 7-Zip's usual folders. Not used on Windows.
std::vector<std::filesystem::path> &searchFolders();

} // namespace archive::sevenzip
