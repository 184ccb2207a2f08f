// What the module gives to those who load it.

#include "amounts/engine_interfaces.h"
#include "engine/com_object.h"
#include "engine/run_object.h"
#include "engine/work_object.h"

#include <new>

namespace
{

template <typename Object>
HRESULT ClassObjectOf(REFIID iid, void** object)
{
    auto* const factory = new (std::nothrow) engine::ClassFactory<Object>();
    if (factory == nullptr)
    {
        return E_OUTOFMEMORY;
    }
    const HRESULT result = factory->QueryInterface(iid, object);
    factory->Release();
    return result;
}

} // namespace

extern "C"
{

    HRESULT STDAPICALLTYPE DllGetClassObject(REFCLSID clsid, REFIID iid, void** object)
    {
        if (object == nullptr)
        {
            return E_POINTER;
        }
        *object = nullptr;
        if (IsEqualCLSID(clsid, amounts::kRunClass))
        {
            return ClassObjectOf<engine::RunObject>(iid, object);
        }
        if (IsEqualCLSID(clsid, amounts::kWorkClass))
        {
            return ClassObjectOf<engine::WorkObject>(iid, object);
        }
        return CLASS_E_CLASSNOTAVAILABLE;
    }

    HRESULT STDAPICALLTYPE DllCanUnloadNow()
    {
        return engine::ModuleReference::IsInUse() ? S_FALSE : S_OK;
    }
}
