#include "port/com.h"

#include "port/posix/com_apartment.h"
#include "port/posix/com_classes.h"
#include "port/posix/com_modules.h"
#include "port/posix/com_registry.h"

#include <new>

namespace
{

/// Looking for a class reads files; who asks for the last error afterwards finds an older one.
class LastErrorKeeper
{
public:
    LastErrorKeeper() : m_error(GetLastError()) {}
    ~LastErrorKeeper() { SetLastError(m_error); }
    LastErrorKeeper(const LastErrorKeeper&) = delete;
    LastErrorKeeper& operator=(const LastErrorKeeper&) = delete;

private:
    DWORD m_error;
};

/// Gives an interface back at the end of the scope.
template <typename Interface>
class Reference
{
public:
    explicit Reference(Interface* object) : m_object(object) {}
    ~Reference()
    {
        if (m_object != nullptr)
        {
            m_object->Release();
        }
    }
    Reference(const Reference&) = delete;
    Reference& operator=(const Reference&) = delete;

    Interface* operator->() const { return m_object; }
    explicit operator bool() const { return m_object != nullptr; }

private:
    Interface* m_object;
};

HRESULT FindClassObject(REFCLSID clsid, DWORD context, REFIID iid, void** object)
{
    if (const Reference<IUnknown> registered(port::RegisteredClassObject(clsid, context));
        registered)
    {
        return registered->QueryInterface(iid, object);
    }
    if ((context & CLSCTX_INPROC_SERVER) == 0)
    {
        return REGDB_E_CLASSNOTREG;
    }
    try
    {
        const std::string module = port::ModuleOfClass(clsid);
        return module.empty() ? REGDB_E_CLASSNOTREG
                              : port::ClassObjectOfModule(module, clsid, iid, object);
    }
    catch (const std::bad_alloc&)
    {
        return E_OUTOFMEMORY;
    }
}

/// Whatever a failing class leaves in the result, the caller gets null.
HRESULT Settled(HRESULT result, void** object)
{
    if (FAILED(result))
    {
        *object = nullptr;
    }
    return result;
}

} // namespace

HRESULT CoGetClassObject(REFCLSID clsid, DWORD context, void* reserved, REFIID iid, void** object)
{
    if (object == nullptr)
    {
        return E_POINTER;
    }
    *object = nullptr;
    if (reserved != nullptr)
    {
        return E_INVALIDARG; // it would name another machine
    }
    if (!port::ThreadHasApartment())
    {
        return CO_E_NOTINITIALIZED;
    }
    const LastErrorKeeper lastError;
    const port::ModuleHold modules;
    return Settled(FindClassObject(clsid, context, iid, object), object);
}

HRESULT CoCreateInstance(REFCLSID clsid, IUnknown* outer, DWORD context, REFIID iid, void** object)
{
    if (object == nullptr)
    {
        return E_POINTER;
    }
    *object = nullptr;
    // Between class object and object a module may look unused.
    const port::ModuleHold modules;
    void* found = nullptr;
    const HRESULT result = CoGetClassObject(clsid, context, nullptr, IID_IClassFactory, &found);
    if (FAILED(result))
    {
        return result;
    }
    const LastErrorKeeper lastError;
    const Reference<IClassFactory> factory(static_cast<IClassFactory*>(found));
    return Settled(factory->CreateInstance(outer, iid, object), object);
}
