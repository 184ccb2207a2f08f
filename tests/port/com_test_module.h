#pragma once

#include "port/com.h"

#include <atomic>

// The classes of the test's module, and a class object that the tests register themselves.

namespace com_test
{

inline constexpr CLSID kClass = {
    0x5A1B2C3D, 0x0001, 0x4A00, {0x80, 0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x07}};
inline constexpr CLSID kOtherClass = {
    0x5A1B2C3D, 0x0002, 0x4A00, {0x80, 0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x07}};
inline constexpr IID kForeignInterface = {
    0x5A1B2C3D, 0x00FF, 0x4A00, {0x80, 0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x07}};

/// Objects alive that keep their module loaded.
inline std::atomic<long> g_alive = 0;

/// A reference count that ends the object; the creator holds the first reference.
template <typename Interface>
class Counted : public Interface
{
public:
    Counted() { ++g_alive; }
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;

    ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(++m_references); }
    ULONG STDMETHODCALLTYPE Release() override
    {
        const long left = --m_references;
        if (left == 0)
        {
            delete this;
        }
        return static_cast<ULONG>(left);
    }

protected:
    virtual ~Counted() { --g_alive; }

    HRESULT Answer(bool known, void** object)
    {
        *object = known ? static_cast<Interface*>(this) : nullptr;
        if (known)
        {
            AddRef();
        }
        return known ? S_OK : E_NOINTERFACE;
    }

private:
    std::atomic<long> m_references = 1;
};

class Object final : public Counted<IUnknown>
{
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override
    {
        return Answer(IsEqualIID(iid, IID_IUnknown), object);
    }
};

/// Makes objects. Like many a class it leaves rubbish in the result when it fails.
class Factory final : public Counted<IClassFactory>
{
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override
    {
        return Answer(IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, IID_IClassFactory), object);
    }
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** object) override
    {
        *object = this;
        if (outer != nullptr)
        {
            return CLASS_E_NOAGGREGATION;
        }
        auto* const made = new Object();
        const HRESULT result = made->QueryInterface(iid, object);
        made->Release();
        return result;
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override
    {
        g_alive += lock != FALSE ? 1 : -1;
        return S_OK;
    }
};

} // namespace com_test
