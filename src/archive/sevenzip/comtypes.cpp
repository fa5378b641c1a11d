#include "archive/sevenzip/comtypes.h"

#include <cstdlib>
#include <cstring>

namespace archive::sevenzip {

namespace {

// Variant types in use.
enum : std::uint16_t {
    TypeEmpty = 0,
    TypeText = 8,
    TypeBool = 11,
    TypeUint32 = 19,
    TypeUint64 = 21,
    TypeFileTime = 64,
};

#ifdef _WIN32

std::uint64_t uint64Of(const Variant &variant)
{
    return variant.uhVal.QuadPart;
}

std::wstring textOf(const Variant &variant)
{
    return std::wstring(variant.bstrVal, SysStringLen(variant.bstrVal));
}

void clear(Variant &variant)
{
    PropVariantClear(&variant);
}

wchar_t *newText(const std::wstring &text)
{
    return SysAllocStringLen(text.data(), UINT(text.size()));
}

#else

std::uint64_t uint64Of(const Variant &variant)
{
    return variant.uhVal;
}

std::uint32_t *lengthOf(wchar_t *text)
{
    return reinterpret_cast<std::uint32_t *>(text) - 1;
}

std::wstring textOf(const Variant &variant)
{
    return variant.bstrVal ? std::wstring(variant.bstrVal, *lengthOf(variant.bstrVal) / sizeof(wchar_t))
                           : std::wstring();
}

void clear(Variant &variant)
{
    if (variant.vt == TypeText && variant.bstrVal)
        std::free(lengthOf(variant.bstrVal));
    variant.vt = TypeEmpty;
}

wchar_t *newText(const std::wstring &text)
{
    const std::size_t bytes = text.size() * sizeof(wchar_t);
    char *memory = static_cast<char *>(std::malloc(sizeof(std::uint32_t) + bytes + sizeof(wchar_t)));
    if (!memory)
        return nullptr;
    const std::uint32_t length = std::uint32_t(bytes);
    std::memcpy(memory, &length, sizeof length);
    std::memcpy(memory + sizeof length, text.c_str(), bytes + sizeof(wchar_t));
    return reinterpret_cast<wchar_t *>(memory + sizeof length);
}

#endif

} // namespace

OwnedVariant::~OwnedVariant()
{
    clear(m_variant);
}

PropertyValue OwnedVariant::value() const
{
    switch (m_variant.vt) {
    case TypeText:
        return textOf(m_variant);
    case TypeBool:
        return m_variant.boolVal != 0;
    case TypeUint32:
        return std::uint64_t(m_variant.ulVal);
    case TypeUint64:
        return uint64Of(m_variant);
    case TypeFileTime: // low half first, as in a 64-bit number
        return FileTime{uint64Of(m_variant)};
    default:
        return {};
    }
}

Result giveText(const std::wstring &text, Variant *out)
{
    out->bstrVal = newText(text);
    if (!out->bstrVal)
        return Abort;
    out->vt = TypeText;
    return Ok;
}

} // namespace archive::sevenzip
