// The module's entries in the class registry, which regsvr32 asks for.

#include "amounts/engine_interfaces.h"
#include "port/windows/class_registry.h"

namespace
{

struct Registration
{
    CLSID clsid;
    const wchar_t* description;
};

constexpr Registration kRegistrations[] = {
    {amounts::kRunClass, L"SignUtils format conversion"},
    {amounts::kWorkClass, L"SignUtils format conversion work"},
};

} // namespace

extern "C"
{

    HRESULT STDAPICALLTYPE DllUnregisterServer()
    {
        HRESULT result = S_OK;
        for (const Registration& each : kRegistrations)
        {
            const HRESULT one = port::UnregisterClassOfModule(each.clsid);
            result = FAILED(result) ? result : one;
        }
        return result;
    }

    HRESULT STDAPICALLTYPE DllRegisterServer()
    {
        for (const Registration& each : kRegistrations)
        {
            const HRESULT result = port::RegisterClassOfModule(
                each.clsid, each.description, reinterpret_cast<const void*>(&DllRegisterServer));
            if (FAILED(result))
            {
                // Half a registration would be found and fail later.
                DllUnregisterServer();
                return result;
            }
        }
        return S_OK;
    }
}
