#include "port/program.h"

#include "port/kernel.h"
#include "port/windows/native_text.h"

#include <algorithm>
#include <cstdio>
#include <fcntl.h>
#include <io.h>
#include <memory>
#include <shellapi.h>
#include <string_view>
#include <utility>

namespace port
{

namespace
{

struct LocalDeleter
{
    void operator()(void* memory) const noexcept { LocalFree(memory); }
};

struct EnvironmentDeleter
{
    void operator()(wchar_t* variables) const noexcept { FreeEnvironmentStringsW(variables); }
};

char ToCapital(char letter)
{
    return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - ('a' - 'A')) : letter;
}

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

std::vector<std::string> Utf8EnvironmentNames()
{
    const std::unique_ptr<wchar_t, EnvironmentDeleter> variables(GetEnvironmentStringsW());
    std::vector<std::string> names;
    for (const wchar_t* entry = variables.get(); entry != nullptr && *entry != L'\0';)
    {
        const std::wstring_view text = entry;
        // The folders of drives stand among them with names that begin with the sign itself.
        if (const std::size_t end = text.find(L'='); end != 0)
        {
            std::string name = Utf8FromNative(text.substr(0, end));
            std::transform(name.begin(), name.end(), name.begin(), ToCapital);
            names.push_back(std::move(name));
        }
        entry += text.size() + 1;
    }
    return names;
}

void UseUtf8Output()
{
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
    SetConsoleOutputCP(CP_UTF8);
}

void FailBeyondFileLimit() {}

void KeepNewFilesPrivate() {}

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

std::size_t ErrorColumns()
{
    CONSOLE_SCREEN_BUFFER_INFO info = {};
    const bool isKnown =
        GetConsoleScreenBufferInfo(GetStdHandle(STD_ERROR_HANDLE), &info) != 0 && info.dwSize.X > 0;
    return isKnown ? static_cast<std::size_t>(info.dwSize.X) : 0;
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
