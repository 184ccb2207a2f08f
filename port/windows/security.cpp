#include "port/windows/security.h"

#include <aclapi.h>
#include <cstddef>
#include <memory>
#include <sddl.h>
#include <string>
#include <vector>

namespace port
{

namespace
{

struct HandleCloser
{
    void operator()(HANDLE handle) const noexcept { CloseHandle(handle); }
};

struct LocalDeleter
{
    void operator()(void* memory) const noexcept { LocalFree(memory); }
};

/// A fact about the process's user; empty, with the last error set, on failure.
std::vector<std::byte> TokenFact(TOKEN_INFORMATION_CLASS kind)
{
    HANDLE token = nullptr;
    if (OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token) == 0)
    {
        return {};
    }
    const std::unique_ptr<void, HandleCloser> closer(token);
    DWORD size = 0;
    GetTokenInformation(token, kind, nullptr, 0, &size);
    std::vector<std::byte> fact(size);
    if (size == 0 || GetTokenInformation(token, kind, fact.data(), size, &size) == 0)
    {
        return {};
    }
    return fact;
}

std::wstring CurrentUserText()
{
    const std::vector<std::byte> user = TokenFact(TokenUser);
    LPWSTR text = nullptr;
    if (user.empty() || ConvertSidToStringSidW(
                            reinterpret_cast<const TOKEN_USER*>(user.data())->User.Sid, &text) == 0)
    {
        return {};
    }
    const std::unique_ptr<wchar_t, LocalDeleter> owner(text);
    return text;
}

/// Owner and full access for the user alone, inherited by what is made inside; nothing comes from
/// the folder above.
PSECURITY_DESCRIPTOR MakeOwnerOnly()
{
    const std::wstring user = CurrentUserText();
    if (user.empty())
    {
        return nullptr;
    }
    const std::wstring rules = L"O:" + user + L"D:P(A;OICI;FA;;;" + user + L")";
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    if (ConvertStringSecurityDescriptorToSecurityDescriptorW(rules.c_str(), SDDL_REVISION_1,
                                                             &descriptor, nullptr) == 0)
    {
        return nullptr;
    }
    return descriptor;
}

} // namespace

SECURITY_ATTRIBUTES* OwnerOnly()
{
    // The process has one user as long as it lives, and no destructor may run at unload.
    static SECURITY_ATTRIBUTES attributes = {sizeof attributes, MakeOwnerOnly(), FALSE};
    if (attributes.lpSecurityDescriptor == nullptr)
    {
        SetLastError(ERROR_ACCESS_DENIED);
        return nullptr;
    }
    return &attributes;
}

bool IsOwnedByCurrentUser(const wchar_t* path)
{
    PSID owner = nullptr;
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    const DWORD result = GetNamedSecurityInfoW(const_cast<wchar_t*>(path), SE_FILE_OBJECT,
                                               OWNER_SECURITY_INFORMATION, &owner, nullptr, nullptr,
                                               nullptr, &descriptor);
    const std::unique_ptr<void, LocalDeleter> keeper(descriptor);
    if (result != ERROR_SUCCESS)
    {
        SetLastError(result);
        return false;
    }
    // What an administrator makes belongs to all administrators: the token's default owner.
    const std::vector<std::byte> user = TokenFact(TokenUser);
    const std::vector<std::byte> usual = TokenFact(TokenOwner);
    const bool own =
        (!user.empty() &&
         EqualSid(owner, reinterpret_cast<const TOKEN_USER*>(user.data())->User.Sid) != 0) ||
        (!usual.empty() &&
         EqualSid(owner, reinterpret_cast<const TOKEN_OWNER*>(usual.data())->Owner) != 0);
    if (!own)
    {
        SetLastError(ERROR_INVALID_OWNER);
    }
    return own;
}

} // namespace port
