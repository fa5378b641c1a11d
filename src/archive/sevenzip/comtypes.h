// The few binary types in which 7-Zip's library speaks. On Windows they are the system's; elsewhere 7-Zip has
// its own of the same names, declared here as it lays them out: wide characters have the compiler's width (32
// bits on Linux), and a text is preceded by its length in bytes, in 32 bits.
#pragma once

#include "archive/backend.h"

#include <cstdint>
#include <string>

#ifdef _WIN32
#include <windows.h>

#include <oleauto.h>
#include <propidl.h>
#define SEVENZIP_CALL STDMETHODCALLTYPE
#define SEVENZIP_ENTRY WINAPI
#else
#define SEVENZIP_CALL
#define SEVENZIP_ENTRY
#endif

namespace archive::sevenzip {

#ifdef _WIN32

using Result = HRESULT;
using Count = ULONG;
using Guid = GUID;
using Variant = PROPVARIANT;

#else

using Result = std::int32_t;
using Count = std::uint32_t;

struct Guid
{
    std::uint32_t data1;
    std::uint16_t data2;
    std::uint16_t data3;
    unsigned char data4[8];
};

struct Variant
{
    std::uint16_t vt;
    std::uint16_t reserved[3];
    union {
        std::uint32_t ulVal;
        std::uint64_t uhVal;
        std::int16_t boolVal;
        wchar_t *bstrVal;
    };
};
static_assert(sizeof(Variant) == 16, "7-Zip's variant has 16 bytes");

#endif

inline constexpr Result Ok = 0;
inline constexpr Result False = 1;
inline constexpr Result NoInterface = Result(0x80004002u);
inline constexpr Result Abort = Result(0x80004004u);
inline constexpr Result InvalidFunction = Result(0x80030001u);
inline constexpr Result NegativeSeek = Result(0x80070083u);

inline bool sameGuid(const Guid &a, const Guid &b)
{
    const auto bytes = [](const Guid &guid) { return reinterpret_cast<const char *>(&guid); };
    return std::string(bytes(a), sizeof(Guid)) == std::string(bytes(b), sizeof(Guid));
}

// A variant with its text's memory.
class OwnedVariant
{
public:
    OwnedVariant() = default;
    ~OwnedVariant();
    OwnedVariant(const OwnedVariant &) = delete;
    OwnedVariant &operator=(const OwnedVariant &) = delete;

    Variant *out() { return &m_variant; }
    PropertyValue value() const;

private:
    Variant m_variant = {};
};

// Makes `out` a text of the caller's, who frees it.
Result giveText(const std::wstring &text, Variant *out);

} // namespace archive::sevenzip
