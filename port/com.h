#pragma once

// COM activation and BSTR under their Windows names. On Windows the real ones; on POSIX what the
// system needs of them: in-process servers from modules, class objects of the process itself,
// texts with a length prefix. There are no proxies: interfaces are called on the thread that has
// them, in either kind of apartment.

#include "port/kernel.h"

#if defined(_WIN32)

#include <objbase.h>
#include <oleauto.h>

#else

#include "port/com_types.h"

#include <cstddef>

/// Three entries in the table: positions 0 to 2.
struct IUnknown
{
    virtual HRESULT QueryInterface(REFIID iid, void** object) = 0;
    virtual ULONG AddRef() = 0;
    virtual ULONG Release() = 0;
};

/// Four more: positions 3 to 6. Own operations of a dual interface follow from 7.
struct IDispatch : IUnknown
{
    virtual HRESULT GetTypeInfoCount(UINT* count) = 0;
    virtual HRESULT GetTypeInfo(UINT index, LCID locale, ITypeInfo** typeInfo) = 0;
    virtual HRESULT GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID locale,
                                  DISPID* identifiers) = 0;
    virtual HRESULT Invoke(DISPID member, REFIID iid, LCID locale, WORD flags,
                           DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                           UINT* argumentError) = 0;
};

struct IClassFactory : IUnknown
{
    virtual HRESULT CreateInstance(IUnknown* outer, REFIID iid, void** object) = 0;
    virtual HRESULT LockServer(BOOL lock) = 0;
};

// What a module gives to those who load it.
extern "C"
{
    SIGNUTILS_PORT_API HRESULT DllGetClassObject(REFCLSID clsid, REFIID iid, void** object);
    /// S_OK when no object of the module lives and nobody locks it.
    SIGNUTILS_PORT_API HRESULT DllCanUnloadNow();
}

/// Copies a text that ends with a NUL; null gives null. Null when there is no memory.
SIGNUTILS_PORT_API BSTR SysAllocString(const OLECHAR* text);
/// Copies `length` characters, NULs too, and adds a terminator; with a null text they stay unset.
SIGNUTILS_PORT_API BSTR SysAllocStringLen(const OLECHAR* text, UINT length);
SIGNUTILS_PORT_API void SysFreeString(BSTR text);
/// Length in characters and in bytes, without the terminator; 0 for null, which is an empty text.
SIGNUTILS_PORT_API UINT SysStringLen(BSTR text);
SIGNUTILS_PORT_API UINT SysStringByteLen(BSTR text);

/// Initialises COM on the calling thread: S_OK the first time, S_FALSE when it was, each to be
/// matched by CoUninitialize; RPC_E_CHANGED_MODE when the thread has the other kind of apartment.
SIGNUTILS_PORT_API HRESULT CoInitialize(void* reserved);
SIGNUTILS_PORT_API HRESULT CoInitializeEx(void* reserved, DWORD model);
/// When it is the last one of the process, modules that are no longer in use are unloaded.
SIGNUTILS_PORT_API void CoUninitialize();

/// Makes an object: of a class object registered in this process for one of the contexts, else,
/// with CLSCTX_INPROC_SERVER, of the module that the class registry names. On failure `*object` is
/// null. The last error stays as it was.
SIGNUTILS_PORT_API HRESULT CoCreateInstance(REFCLSID clsid, IUnknown* outer, DWORD context,
                                            REFIID iid, void** object);
/// The class object itself, found as CoCreateInstance finds it. `reserved` is null. Its module
/// stays loaded while the module says that it is in use.
SIGNUTILS_PORT_API HRESULT CoGetClassObject(REFCLSID clsid, DWORD context, void* reserved,
                                            REFIID iid, void** object);

/// Puts a class object of the host into the process, in front of the class registry, until its
/// cookie is revoked. Any thread may use it.
SIGNUTILS_PORT_API HRESULT CoRegisterClassObject(REFCLSID clsid, IUnknown* classObject,
                                                 DWORD context, DWORD flags, DWORD* cookie);
SIGNUTILS_PORT_API HRESULT CoRevokeClassObject(DWORD cookie);

/// Unloads the modules that agree. No thread may be inside one of them, not even on its way out of
/// a last Release.
SIGNUTILS_PORT_API void CoFreeUnusedLibraries();

#endif
