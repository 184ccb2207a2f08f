#include "tests/testing/platform.h"

#include "port/kernel.h"

#include <gtest/gtest.h>

#include <aclapi.h>
#include <algorithm>
#include <cstdlib>
#include <string_view>

namespace testing_support
{

namespace
{

std::wstring Wide(const std::string& utf8)
{
    const int size = MultiByteToWideChar(CP_UTF8, 0, utf8.c_str(), -1, nullptr, 0);
    std::wstring wide(static_cast<std::size_t>(size), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, utf8.c_str(), -1, wide.data(), size);
    wide.pop_back();
    return wide;
}

/// One argument as the receiving runtime takes it apart: backslashes count double before a quote.
std::wstring CommandWord(const std::wstring& argument)
{
    std::wstring word = L"\"";
    std::size_t backslashes = 0;
    for (const wchar_t unit : argument)
    {
        if (unit == L'"')
        {
            word.append(backslashes + 1, L'\\');
        }
        backslashes = unit == L'\\' ? backslashes + 1 : 0;
        word += unit;
    }
    return word.append(backslashes, L'\\') + L"\"";
}

/// A file that a child inherits; closed at the end of the scope.
class InheritedFile
{
public:
    InheritedFile(const std::string& path, DWORD access, DWORD disposition)
    {
        SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
        m_handle = CreateFileW(Wide(path).c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE,
                               &inherited, disposition, FILE_ATTRIBUTE_NORMAL, nullptr);
        EXPECT_NE(m_handle, INVALID_HANDLE_VALUE) << path << " " << GetLastError();
    }
    ~InheritedFile() { CloseHandle(m_handle); }
    InheritedFile(const InheritedFile&) = delete;
    InheritedFile& operator=(const InheritedFile&) = delete;

    HANDLE Get() const noexcept { return m_handle; }

private:
    HANDLE m_handle;
};

/// On a busy machine Wine now and then fails to start a program at all, with this one error;
/// nothing of the program has run then.
bool Start(const std::wstring& command, STARTUPINFOW& start, PROCESS_INFORMATION& process)
{
    constexpr int kAttempts = 3;
    for (int attempt = 0; attempt < kAttempts; ++attempt)
    {
        std::wstring writable = command;
        if (CreateProcessW(nullptr, writable.data(), nullptr, nullptr, TRUE, CREATE_NO_WINDOW,
                           nullptr, nullptr, &start, &process) != 0)
        {
            return true;
        }
        if (GetLastError() != ERROR_INTERNAL_ERROR)
        {
            return false;
        }
    }
    return false;
}

} // namespace

void SetVariable(const std::string& name, const char* value)
{
    // Both of the runtime and, by it, of the process; the narrow call would take another code page.
    _wputenv_s(Wide(name).c_str(), value == nullptr ? L"" : Wide(value).c_str());
}

int RunProgram(const std::string& program, const std::vector<std::string>& arguments,
               const std::string& outputFile, const std::string& errorsFile)
{
    std::wstring command = CommandWord(Wide(program));
    for (const std::string& argument : arguments)
    {
        command += L" " + CommandWord(Wide(argument));
    }
    const InheritedFile input("NUL", GENERIC_READ, OPEN_EXISTING);
    const InheritedFile output(outputFile, GENERIC_WRITE, CREATE_ALWAYS);
    const InheritedFile errors(errorsFile, GENERIC_WRITE, CREATE_ALWAYS);
    STARTUPINFOW start = {};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdInput = input.Get();
    start.hStdOutput = output.Get();
    start.hStdError = errors.Get();
    PROCESS_INFORMATION process = {};
    if (!Start(command, start, process))
    {
        ADD_FAILURE() << program << " does not start: " << GetLastError();
        return -1;
    }
    CloseHandle(process.hThread);
    DWORD status = 0;
    const bool ended = WaitForSingleObject(process.hProcess, INFINITE) == WAIT_OBJECT_0 &&
                       GetExitCodeProcess(process.hProcess, &status) != 0;
    CloseHandle(process.hProcess);
    return ended ? static_cast<int>(status) : -1;
}

bool IsForOwnerOnly(const std::string& path)
{
    PSID owner = nullptr;
    PACL rules = nullptr;
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    if (GetNamedSecurityInfoW(Wide(path).data(), SE_FILE_OBJECT,
                              OWNER_SECURITY_INFORMATION | DACL_SECURITY_INFORMATION, &owner,
                              nullptr, &rules, nullptr, &descriptor) != ERROR_SUCCESS)
    {
        ADD_FAILURE() << path << " tells nothing of its rights";
        return false;
    }
    bool forOwnerOnly = rules != nullptr && rules->AceCount > 0;
    for (DWORD index = 0; rules != nullptr && index < rules->AceCount; ++index)
    {
        void* entry = nullptr;
        GetAce(rules, index, &entry);
        auto* const allowed = static_cast<ACCESS_ALLOWED_ACE*>(entry);
        if (allowed->Header.AceType == ACCESS_ALLOWED_ACE_TYPE && allowed->Mask != 0)
        {
            // The system itself reaches everything anyway.
            forOwnerOnly =
                forOwnerOnly && (EqualSid(&allowed->SidStart, owner) != 0 ||
                                 IsWellKnownSid(&allowed->SidStart, WinLocalSystemSid) != 0);
        }
    }
    LocalFree(descriptor);
    return forOwnerOnly;
}

std::string PathForDrivers(const std::string& path)
{
    // Under Wine the driver is one of the machine's own and knows the machine's names.
    using ToMachineName = char*(CDECL*)(const wchar_t*);
    const FARPROC address =
        GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "wine_get_unix_file_name");
    const auto toMachineName = reinterpret_cast<ToMachineName>(reinterpret_cast<void*>(address));
    if (toMachineName == nullptr)
    {
        return path;
    }
    char* const name = toMachineName(Wide(path).c_str());
    if (name == nullptr)
    {
        ADD_FAILURE() << path << " has no name outside Wine";
        return path;
    }
    std::string found = name;
    HeapFree(GetProcessHeap(), 0, name);
    // The name leads over the link that stands for the machine's root; a path with "z:" inside is
    // none here.
    constexpr std::string_view kLink = "/dosdevices/z:/";
    if (const std::size_t link = found.find(kLink); link != std::string::npos)
    {
        found.replace(0, link + kLink.size(), "/");
    }
    return found;
}

} // namespace testing_support
