// Windows: programs are started by the shell, as a user's double click would start them.
#include "platform/shell.h"

#include <windows.h>

#include <shellapi.h>

namespace platform {

namespace {

// The record is read by the shell by its size: another layout would be taken for another version of it.
static_assert(sizeof(SHELLEXECUTEINFOW) == 112, "the shell-execute record of 64-bit Windows has 112 bytes");
static_assert(int(ShowState::Hidden) == SW_HIDE && int(ShowState::Shown) == SW_SHOW,
              "the show states are passed on as they are");

std::wstring wideFrom(UINT codePage, const std::string &text)
{
    const int bytes = int(text.size());
    const int length = MultiByteToWideChar(codePage, 0, text.data(), bytes, nullptr, 0);
    std::wstring wide(size_t(length), L'\0');
    MultiByteToWideChar(codePage, 0, text.data(), bytes, &wide[0], length);
    return wide;
}

} // namespace

std::wstring wideFromSystemCodePage(const std::string &text)
{
    return wideFrom(CP_ACP, text);
}

std::wstring wideFromThreadCodePage(const std::string &text)
{
    return wideFrom(CP_THREAD_ACP, text);
}

void shellExecuteAndWait(const std::wstring &program, const std::wstring &parameters, ShowState show)
{
    SHELLEXECUTEINFOW record = {};
    record.cbSize = sizeof(record);
    record.fMask = SEE_MASK_NOCLOSEPROCESS;
    record.lpFile = program.c_str();
    record.lpParameters = parameters.c_str();
    record.nShow = int(show);
    ShellExecuteExW(&record);
    // A program that did not start has no handle, and the wait fails at once. The handle of one that did
    // stays open, on purpose: see shell.h.
    WaitForSingleObject(record.hProcess, INFINITE);
}

} // namespace platform
