// Running the command interpreter and waiting for it.
//
// On Windows the program is started through ShellExecuteExW. Elsewhere there is no "cmd": the same call
// interprets the two command lines that the plug-in uses, "/c del PATTERN..." and "/c rd /s /q FOLDER...", by
// the command interpreter's own rules, and runs nothing else. Both forms therefore do the same to the same
// file names.
#pragma once

#include <string>

namespace platform {

enum class ShowState : int { Hidden = 0, Shown = 5 }; // SW_HIDE and SW_SHOW

// `text`, in the system's 8-bit code page, as wide text.
std::wstring wideFromSystemCodePage(const std::string &text);
// The same for the calling thread's 8-bit code page. It is another one where a host has given the thread a
// locale of its own (Windows).
std::wstring wideFromThreadCodePage(const std::string &text);

// Starts `program` with `parameters` and waits for it without time limit. Whether it started is not reported.
// The process handle stays open: one handle is left for each call, where the platform has such handles.
void shellExecuteAndWait(const std::wstring &program, const std::wstring &parameters, ShowState show);

} // namespace platform
