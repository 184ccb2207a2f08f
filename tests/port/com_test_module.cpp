#include "tests/port/com_test_module.h"

// A module of one class.

extern "C" HRESULT DllGetClassObject(REFCLSID clsid, REFIID iid, void** object)
{
    *object = nullptr;
    if (!IsEqualCLSID(clsid, com_test::kClass))
    {
        return CLASS_E_CLASSNOTAVAILABLE;
    }
    auto* const factory = new com_test::Factory();
    const HRESULT result = factory->QueryInterface(iid, object);
    factory->Release();
    return result;
}

extern "C" HRESULT DllCanUnloadNow()
{
    return com_test::g_alive == 0 ? S_OK : S_FALSE;
}
