#include "port/windows/class_registry.h"

#include <memory>
#include <string>

namespace port
{

namespace
{

constexpr REGSAM kWrite = KEY_WRITE;

struct KeyCloser
{
    void operator()(HKEY key) const noexcept { RegCloseKey(key); }
};
using Key = std::unique_ptr<HKEY__, KeyCloser>;

std::wstring ClassKeyOf(REFCLSID clsid)
{
    wchar_t text[40] = {};
    StringFromGUID2(clsid, text, static_cast<int>(std::size(text)));
    return std::wstring(L"Software\\Classes\\CLSID\\") + text;
}

std::wstring ModulePath(const void* codeInModule)
{
    HMODULE module = nullptr;
    if (GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS |
                               GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                           static_cast<LPCWSTR>(codeInModule), &module) == 0)
    {
        return {};
    }
    // A path that does not fit would name another file.
    std::wstring path(32768, L'\0');
    const DWORD length = GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size()));
    path.resize(length < path.size() ? length : 0);
    return path;
}

LSTATUS SetText(HKEY key, const wchar_t* name, const std::wstring& value)
{
    return RegSetValueExW(key, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(value.c_str()),
                          static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t)));
}

LSTATUS CreateKey(const std::wstring& name, Key& key)
{
    HKEY created = nullptr;
    const LSTATUS result =
        RegCreateKeyExW(HKEY_LOCAL_MACHINE, name.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
                        kWrite, nullptr, &created, nullptr);
    key.reset(created);
    return result;
}

LSTATUS Register(REFCLSID clsid, const wchar_t* description, const std::wstring& module)
{
    const std::wstring name = ClassKeyOf(clsid);
    Key key;
    LSTATUS result = CreateKey(name, key);
    if (result != ERROR_SUCCESS ||
        (result = SetText(key.get(), nullptr, description)) != ERROR_SUCCESS)
    {
        return result;
    }
    Key server;
    result = CreateKey(name + L"\\InprocServer32", server);
    if (result != ERROR_SUCCESS ||
        (result = SetText(server.get(), nullptr, module)) != ERROR_SUCCESS)
    {
        return result;
    }
    return SetText(server.get(), L"ThreadingModel", L"Both");
}

} // namespace

HRESULT RegisterClassOfModule(REFCLSID clsid, const wchar_t* description, const void* codeInModule)
{
    const std::wstring module = ModulePath(codeInModule);
    if (module.empty())
    {
        return E_UNEXPECTED;
    }
    return HRESULT_FROM_WIN32(static_cast<DWORD>(Register(clsid, description, module)));
}

HRESULT UnregisterClassOfModule(REFCLSID clsid)
{
    const LSTATUS result = RegDeleteTreeW(HKEY_LOCAL_MACHINE, ClassKeyOf(clsid).c_str());
    return result == ERROR_FILE_NOT_FOUND ? S_OK : HRESULT_FROM_WIN32(static_cast<DWORD>(result));
}

} // namespace port
