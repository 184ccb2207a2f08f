#include "port/posix/com_classes.h"

#include "port/posix/com_apartment.h"

#include <algorithm>
#include <mutex>
#include <new>
#include <vector>

namespace
{

struct Registration
{
    DWORD cookie;
    CLSID clsid;
    DWORD context;
    bool serves; ///< false after the only caller of a single-use class came
    bool singleUse;
    IUnknown* classObject;
};

struct Registrations
{
    std::mutex lock;
    std::vector<Registration> entries;
    DWORD lastCookie = 0;
};

/// Never destroyed: static objects of the host may revoke their classes.
Registrations& TheRegistrations()
{
    alignas(Registrations) static unsigned char storage[sizeof(Registrations)];
    static Registrations& registrations = *new (storage) Registrations;
    return registrations;
}

} // namespace

IUnknown* port::RegisteredClassObject(REFCLSID clsid, DWORD context)
{
    Registrations& registrations = TheRegistrations();
    const std::lock_guard<std::mutex> lock(registrations.lock);
    for (Registration& entry : registrations.entries)
    {
        if (entry.serves && entry.clsid == clsid && (entry.context & context) != 0)
        {
            entry.serves = !entry.singleUse;
            entry.classObject->AddRef();
            return entry.classObject;
        }
    }
    return nullptr;
}

HRESULT CoRegisterClassObject(REFCLSID clsid, IUnknown* classObject, DWORD context, DWORD flags,
                              DWORD* cookie)
{
    if (classObject == nullptr || cookie == nullptr || flags > REGCLS_MULTIPLEUSE)
    {
        return E_INVALIDARG;
    }
    *cookie = 0;
    if (!port::ThreadHasApartment())
    {
        return CO_E_NOTINITIALIZED;
    }
    Registrations& registrations = TheRegistrations();
    const std::lock_guard<std::mutex> lock(registrations.lock);
    try
    {
        registrations.entries.push_back({registrations.lastCookie + 1, clsid, context, true,
                                         flags == REGCLS_SINGLEUSE, classObject});
    }
    catch (const std::bad_alloc&)
    {
        return E_OUTOFMEMORY;
    }
    classObject->AddRef();
    *cookie = ++registrations.lastCookie;
    return S_OK;
}

HRESULT CoRevokeClassObject(DWORD cookie)
{
    IUnknown* revoked = nullptr;
    {
        Registrations& registrations = TheRegistrations();
        const std::lock_guard<std::mutex> lock(registrations.lock);
        const auto found =
            std::find_if(registrations.entries.begin(), registrations.entries.end(),
                         [cookie](const Registration& entry) { return entry.cookie == cookie; });
        if (found == registrations.entries.end())
        {
            return E_INVALIDARG;
        }
        revoked = found->classObject;
        registrations.entries.erase(found);
    }
    // Outside the lock: it may be the last reference, and the object's end may call back.
    revoked->Release();
    return S_OK;
}
