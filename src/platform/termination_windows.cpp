#include "platform/termination.h"

#include <csignal>
#include <windows.h>

namespace platform {

namespace {

std::function<void(int)> terminationHandler;

BOOL WINAPI takeConsoleEvent(DWORD event)
{
    terminationHandler(event == CTRL_C_EVENT ? SIGINT : event == CTRL_BREAK_EVENT ? SIGBREAK : SIGTERM);
    return TRUE;
}

} // namespace

void onTermination(std::function<void(int signal)> handler)
{
    terminationHandler = std::move(handler);
    SetConsoleCtrlHandler(takeConsoleEvent, TRUE);
}

} // namespace platform
