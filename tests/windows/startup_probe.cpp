// Writes to the file named by its first argument, in UTF-8 and one to a line, how it was started: show state,
// whether the show state was given at all, working folder, command line. With "sleep" as second argument it
// waits first.
#include <windows.h>

#include <cstdio>
#include <string>

namespace {

std::string utf8(const std::wstring &text)
{
    const int length =
        WideCharToMultiByte(CP_UTF8, 0, text.c_str(), int(text.size()), nullptr, 0, nullptr, nullptr);
    std::string bytes(size_t(length), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.c_str(), int(text.size()), &bytes[0], length, nullptr, nullptr);
    return bytes;
}

} // namespace

int main(int argc, char *argv[])
{
    if (argc < 2)
        return 2;
    if (argc > 2 && std::string(argv[2]) == "sleep")
        Sleep(300);

    STARTUPINFOW startup;
    GetStartupInfoW(&startup);
    wchar_t folder[MAX_PATH];
    GetCurrentDirectoryW(MAX_PATH, folder);

    FILE *out = std::fopen(argv[1], "wb");
    if (!out)
        return 3;
    std::fprintf(out, "%d\n%d\n%s\n%s\n", int(startup.wShowWindow),
                 int((startup.dwFlags & STARTF_USESHOWWINDOW) != 0), utf8(folder).c_str(),
                 utf8(GetCommandLineW()).c_str());
    return std::fclose(out);
}
