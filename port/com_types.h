#pragma once

// Types and constants of port/com.h where the platform has none.

#include "port/kernel.h"

#if !defined(_WIN32)

#include <cstdint>
#include <cstring>

#define STDMETHODCALLTYPE
#define STDAPICALLTYPE

using HRESULT = std::int32_t;
using UINT = std::uint32_t;
using ULONG = std::uint32_t;
using LONG = std::int32_t;
using SHORT = std::int16_t;
using WORD = std::uint16_t;
using LCID = DWORD;
using DISPID = LONG;

/// wchar_t, as on Windows, so that wide literals and the system's wide texts pass as they stand.
/// Here it has four bytes, one code point each: an interface's texts never leave the process, and
/// UTF-16 would need a conversion at every call. The length prefix counts bytes all the same.
using OLECHAR = wchar_t;
using BSTR = OLECHAR*;
using LPOLESTR = OLECHAR*;
using LPCOLESTR = const OLECHAR*;

struct GUID
{
    std::uint32_t Data1;
    std::uint16_t Data2;
    std::uint16_t Data3;
    std::uint8_t Data4[8];
};
static_assert(sizeof(GUID) == 16);

using IID = GUID;
using CLSID = GUID;
using REFGUID = const GUID&;
using REFIID = const IID&;
using REFCLSID = const CLSID&;

inline bool operator==(REFGUID left, REFGUID right) noexcept
{
    return std::memcmp(&left, &right, sizeof(GUID)) == 0;
}

inline bool IsEqualGUID(REFGUID left, REFGUID right) noexcept
{
    return left == right;
}

inline bool IsEqualIID(REFIID left, REFIID right) noexcept
{
    return left == right;
}

inline bool IsEqualCLSID(REFCLSID left, REFCLSID right) noexcept
{
    return left == right;
}

struct IUnknown;
struct IDispatch;
struct ITypeInfo; // there are no type descriptions here; only null pointers of it

using VARTYPE = std::uint16_t;
inline constexpr VARTYPE VT_EMPTY = 0;
inline constexpr VARTYPE VT_I2 = 2;
inline constexpr VARTYPE VT_I4 = 3;
inline constexpr VARTYPE VT_BSTR = 8;
inline constexpr VARTYPE VT_DISPATCH = 9;
inline constexpr VARTYPE VT_ERROR = 10;
inline constexpr VARTYPE VT_UNKNOWN = 13;
inline constexpr VARTYPE VT_BYREF = 0x4000;

/// What late-bound calls pass: the kinds that the system's interfaces use.
struct VARIANT
{
    VARTYPE vt;
    WORD wReserved1;
    WORD wReserved2;
    WORD wReserved3;
    union
    {
        SHORT iVal;
        LONG lVal;
        BSTR bstrVal;
        IDispatch* pdispVal;
        IUnknown* punkVal;
        SHORT* piVal;
        LONG* plVal;
        BSTR* pbstrVal;
        void* byref;
    };
};
using VARIANTARG = VARIANT;

struct DISPPARAMS
{
    VARIANTARG* rgvarg; ///< the last parameter first
    DISPID* rgdispidNamedArgs;
    UINT cArgs;
    UINT cNamedArgs;
};

struct EXCEPINFO
{
    WORD wCode;
    WORD wReserved;
    BSTR bstrSource;
    BSTR bstrDescription;
    BSTR bstrHelpFile;
    DWORD dwHelpContext;
    void* pvReserved;
    HRESULT (*pfnDeferredFillIn)(EXCEPINFO*);
    HRESULT scode;
};

inline constexpr DISPID DISPID_UNKNOWN = -1;
inline constexpr WORD DISPATCH_METHOD = 0x1;

inline constexpr GUID GUID_NULL = {0, 0, 0, {0, 0, 0, 0, 0, 0, 0, 0}};
inline constexpr IID IID_NULL = GUID_NULL;
inline constexpr CLSID CLSID_NULL = GUID_NULL;
inline constexpr IID IID_IUnknown = {0x00000000, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
inline constexpr IID IID_IClassFactory = {0x00000001, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
inline constexpr IID IID_IDispatch = {0x00020400, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};

inline constexpr DWORD CLSCTX_INPROC_SERVER = 0x1;
inline constexpr DWORD CLSCTX_INPROC_HANDLER = 0x2;
inline constexpr DWORD CLSCTX_LOCAL_SERVER = 0x4;
inline constexpr DWORD CLSCTX_REMOTE_SERVER = 0x10;
inline constexpr DWORD CLSCTX_SERVER =
    CLSCTX_INPROC_SERVER | CLSCTX_LOCAL_SERVER | CLSCTX_REMOTE_SERVER;
inline constexpr DWORD CLSCTX_ALL = CLSCTX_SERVER | CLSCTX_INPROC_HANDLER;

inline constexpr DWORD COINIT_MULTITHREADED = 0x0;
inline constexpr DWORD COINIT_APARTMENTTHREADED = 0x2;

inline constexpr DWORD REGCLS_SINGLEUSE = 0; ///< serves one caller, then is not found any more
inline constexpr DWORD REGCLS_MULTIPLEUSE = 1;

inline constexpr HRESULT S_OK = 0;
inline constexpr HRESULT S_FALSE = 1;
inline constexpr HRESULT E_NOTIMPL = static_cast<HRESULT>(0x80004001U);
inline constexpr HRESULT E_NOINTERFACE = static_cast<HRESULT>(0x80004002U);
inline constexpr HRESULT E_POINTER = static_cast<HRESULT>(0x80004003U);
inline constexpr HRESULT E_ABORT = static_cast<HRESULT>(0x80004004U);
inline constexpr HRESULT E_FAIL = static_cast<HRESULT>(0x80004005U);
inline constexpr HRESULT E_UNEXPECTED = static_cast<HRESULT>(0x8000FFFFU);
inline constexpr HRESULT E_ACCESSDENIED = static_cast<HRESULT>(0x80070005U);
inline constexpr HRESULT E_OUTOFMEMORY = static_cast<HRESULT>(0x8007000EU);
inline constexpr HRESULT E_INVALIDARG = static_cast<HRESULT>(0x80070057U);
inline constexpr HRESULT DISP_E_MEMBERNOTFOUND = static_cast<HRESULT>(0x80020003U);
inline constexpr HRESULT DISP_E_TYPEMISMATCH = static_cast<HRESULT>(0x80020005U);
inline constexpr HRESULT DISP_E_UNKNOWNNAME = static_cast<HRESULT>(0x80020006U);
inline constexpr HRESULT DISP_E_NONAMEDARGS = static_cast<HRESULT>(0x80020007U);
inline constexpr HRESULT DISP_E_EXCEPTION = static_cast<HRESULT>(0x80020009U);
inline constexpr HRESULT DISP_E_BADPARAMCOUNT = static_cast<HRESULT>(0x8002000EU);
inline constexpr HRESULT CLASS_E_NOAGGREGATION = static_cast<HRESULT>(0x80040110U);
inline constexpr HRESULT CLASS_E_CLASSNOTAVAILABLE = static_cast<HRESULT>(0x80040111U);
inline constexpr HRESULT REGDB_E_CLASSNOTREG = static_cast<HRESULT>(0x80040154U);
inline constexpr HRESULT CO_E_NOTINITIALIZED = static_cast<HRESULT>(0x800401F0U);
inline constexpr HRESULT CO_E_ERRORINDLL = static_cast<HRESULT>(0x800401F9U);
inline constexpr HRESULT CO_E_SERVER_EXEC_FAILURE = static_cast<HRESULT>(0x80080005U);
inline constexpr HRESULT RPC_E_CHANGED_MODE = static_cast<HRESULT>(0x80010106U);
inline constexpr DWORD ERROR_MOD_NOT_FOUND = 126U;

constexpr HRESULT HRESULT_FROM_WIN32(DWORD error) noexcept
{
    return error == 0 ? S_OK : static_cast<HRESULT>((error & 0xFFFFU) | 0x80070000U);
}

constexpr bool SUCCEEDED(HRESULT result) noexcept
{
    return result >= 0;
}

constexpr bool FAILED(HRESULT result) noexcept
{
    return result < 0;
}

#endif
