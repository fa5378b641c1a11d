#include "archive/sevenzip/library.h"

#include "archive/bitexception.h"
#include "archive/localpath.h"
#include "archive/sevenzip/interfaces.h"

#ifdef _WIN32
#include <system_error>
#else
#include <dlfcn.h>
#endif

namespace archive::sevenzip {

namespace fs = std::filesystem;

namespace {

enum ModuleProperty : std::uint32_t {
    InterfaceType = 0
}; // its value is 1 with a virtual destructor, 0 without

#ifdef _WIN32

void *load(const std::wstring &name, std::string &error)
{
    // The search of the system, which begins beside the program; a message box for a broken library helps
    // nobody.
    const UINT before = SetErrorMode(SEM_FAILCRITICALERRORS);
    HMODULE handle = LoadLibraryW(name.c_str());
    const DWORD code = GetLastError();
    SetErrorMode(before);
    if (!handle)
        error = std::error_code(int(code), std::system_category()).message();
    return reinterpret_cast<void *>(handle);
}

void unload(void *handle)
{
    FreeLibrary(static_cast<HMODULE>(handle));
}

template <typename Function>
Function entryPoint(void *handle, const char *name)
{
    return reinterpret_cast<Function>(
        reinterpret_cast<void *>(GetProcAddress(static_cast<HMODULE>(handle), name)));
}

#else

void *tryLoad(const fs::path &path, std::string &error)
{
    void *handle = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!handle)
        error = ::dlerror();
    return handle;
}

void *load(const std::wstring &name, std::string &error)
{
    const std::wstring here = name == L"7z.dll" ? L"7z.so" : name;
    const fs::path path = localPath(here);
    if (!path.has_parent_path()) {
        for (const fs::path &folder : searchFolders()) {
            std::error_code unreadable;
            if (fs::exists(folder / path, unreadable))
                return tryLoad(folder / path, error);
        }
    }
    return tryLoad(path, error);
}

void unload(void *handle)
{
    ::dlclose(handle);
}

template <typename Function>
Function entryPoint(void *handle, const char *name)
{
    return reinterpret_cast<Function>(::dlsym(handle, name));
}

fs::path folderOfThisModule()
{
    Dl_info info = {};
    if (::dladdr(reinterpret_cast<void *>(&folderOfThisModule), &info) == 0 || !info.dli_fname)
        return {};
    return fs::path(info.dli_fname).parent_path();
}

#endif

std::vector<fs::path> defaultSearchFolders()
{
#ifdef _WIN32
    return {};
#else
    return {folderOfThisModule(), "/usr/lib/p7zip", "/usr/lib/7zip"};
#endif
}

} // namespace

std::vector<fs::path> &searchFolders()
{
    static std::vector<fs::path> folders = defaultSearchFolders();
    return folders;
}

Library::Library(const std::wstring &name)
{
    std::string error;
    m_handle = load(name, error);
    if (!m_handle)
        throw BitException("the 7-Zip library \"" + utf8(name) + "\" cannot be loaded: " + error);
    try {
        findEntryPoints(utf8(name));
    } catch (...) {
        unload(m_handle);
        throw;
    }
}

Library::~Library()
{
    unload(m_handle);
}

void Library::findEntryPoints(const std::string &shownName)
{
    m_createObject = entryPoint<CreateObject>(m_handle, "CreateObject");
    if (!m_createObject)
        throw BitException("\"" + shownName +
                           "\" is no 7-Zip library: it has no entry point \"CreateObject\"");
#ifndef _WIN32
    m_hasVirtualDestructor = true; // libraries that do not tell
    if (const auto moduleProperty = entryPoint<GetModuleProperty>(m_handle, "GetModuleProp")) {
        OwnedVariant type;
        m_hasVirtualDestructor = moduleProperty(InterfaceType, type.out()) == Ok &&
                                 type.value() == PropertyValue(std::uint64_t(1));
    }
#endif
}

void *Library::createHandler(unsigned char number, const Guid &id) const
{
    const Guid handler = formatId(number);
    void *object = nullptr;
    if (Result(m_createObject(&handler, &id, &object)) != Ok || !object)
        throw BitException("the 7-Zip library does not know the archive format " + std::to_string(number));
    return object;
}

} // namespace archive::sevenzip
