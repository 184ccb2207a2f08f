#include "port/class_advice.h"

#include "port/windows/native_text.h"

#include <iterator>

namespace port
{

const char* AdviceToRegister()
{
    return "Register the engine's module as administrator: regsvr32 signutils-engine.dll";
}

const char* NameOfClassRegistry()
{
    return "Windows' registry";
}

std::string ModuleNamedForClass(REFCLSID clsid)
{
    wchar_t text[40] = {};
    StringFromGUID2(clsid, text, static_cast<int>(std::size(text)));
    const std::wstring key = std::wstring(L"CLSID\\") + text + L"\\InprocServer32";
    std::wstring path(32768, L'\0');
    DWORD bytes = static_cast<DWORD>(path.size() * sizeof(wchar_t));
    const LSTATUS result = RegGetValueW(HKEY_CLASSES_ROOT, key.c_str(), nullptr, RRF_RT_REG_SZ,
                                        nullptr, path.data(), &bytes);
    return result == ERROR_SUCCESS ? FromNative(path.c_str()) : std::string();
}

} // namespace port
