#include "port/program.h"

#include "port/kernel.h"
#include "port/windows/native_text.h"

#include <cstdio>
#include <fcntl.h>
#include <io.h>
#include <memory>
#include <shellapi.h>

namespace port
{

namespace
{

struct LocalDeleter
{
    void operator()(void* memory) const noexcept { LocalFree(memory); }
};

// Consoles before Windows 10 know no sequences and refuse.
bool TakesColours(DWORD stream)
{
    constexpr DWORD kSequences = 0x0004; // ENABLE_VIRTUAL_TERMINAL_PROCESSING
    const HANDLE console = GetStdHandle(stream);
    DWORD mode = 0;
    return GetConsoleMode(console, &mode) != 0 && SetConsoleMode(console, mode | kSequences) != 0;
}

} // namespace

std::vector<std::string> Utf8Arguments(int /*count*/, char** /*values*/)
{
    int count = 0;
    const std::unique_ptr<LPWSTR, LocalDeleter> values(
        CommandLineToArgvW(GetCommandLineW(), &count));
    std::vector<std::string> arguments;
    for (int index = 1; values != nullptr && index < count; ++index)
    {
        arguments.push_back(Utf8FromNative(values.get()[index]));
    }
    return arguments;
}

std::string Utf8Environment(const char* name)
{
    return Utf8FromNative(NativeVariable(ToNative(name).c_str()));
}

void UseUtf8Output()
{
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
    SetConsoleOutputCP(CP_UTF8);
}

bool InputIsTerminal()
{
    // The null device is a device of characters, too, but has no mode of a console.
    DWORD mode = 0;
    return GetConsoleMode(GetStdHandle(STD_INPUT_HANDLE), &mode) != 0;
}

bool ErrorIsTerminal()
{
    DWORD mode = 0;
    return GetConsoleMode(GetStdHandle(STD_ERROR_HANDLE), &mode) != 0;
}

bool OutputTakesColours()
{
    return TakesColours(STD_OUTPUT_HANDLE);
}

bool ErrorTakesColours()
{
    return TakesColours(STD_ERROR_HANDLE);
}

std::string MachineName()
{
    wchar_t name[256] = {};
    DWORD size = 256;
    return GetComputerNameExW(ComputerNameDnsHostname, name, &size) != 0 ? Utf8FromNative(name)
                                                                         : std::string();
}

bool IsProcessRunning(std::uint32_t process)
{
    const HANDLE opened = OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, process);
    if (opened == nullptr)
    {
        return process != 0 && GetLastError() == ERROR_ACCESS_DENIED;
    }
    DWORD status = 0;
    const bool isRunning = GetExitCodeProcess(opened, &status) == 0 || status == STILL_ACTIVE;
    CloseHandle(opened);
    return isRunning;
}

} // namespace port
