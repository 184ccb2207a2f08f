#pragma once

#include "port/com.h"
#include "port/dispatch.h"

#include <atomic>
#include <memory>
#include <new>

namespace engine
{

/// While one lives, the module is in use.
class ModuleReference
{
public:
    ModuleReference() noexcept { ++s_count; }
    ~ModuleReference() { --s_count; }
    ModuleReference(const ModuleReference&) = delete;
    ModuleReference& operator=(const ModuleReference&) = delete;

    /// What a caller's lock on the server counts as.
    static void Lock(bool lock) noexcept { s_count += lock ? 1 : -1; }
    static bool IsInUse() noexcept { return s_count != 0; }

private:
    static std::atomic<long> s_count;
};

/// Counts references from the maker's one on and goes with the last.
template <typename Interface>
class ComObject : public Interface
{
public:
    ComObject() = default;
    ComObject(const ComObject&) = delete;
    ComObject& operator=(const ComObject&) = delete;
    // Behind the interface's own entries in the table.
    virtual ~ComObject() = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override
    {
        if (object == nullptr)
        {
            return E_POINTER;
        }
        *object = nullptr;
        if (!Implements(iid))
        {
            return E_NOINTERFACE;
        }
        *object = static_cast<Interface*>(this);
        AddRef();
        return S_OK;
    }

    ULONG STDMETHODCALLTYPE AddRef() override { return ++m_references; }

    ULONG STDMETHODCALLTYPE Release() override
    {
        const ULONG left = --m_references;
        const std::unique_ptr<ComObject> gone(left == 0 ? this : nullptr);
        return left;
    }

protected:
    virtual bool Implements(REFIID iid) const { return IsEqualIID(iid, IID_IUnknown); }

private:
    ModuleReference m_module;
    std::atomic<ULONG> m_references{1};
};

/// A dual interface: called through its table, or by name through its dispatch entries.
template <typename Interface>
class DispatchObject : public ComObject<Interface>
{
public:
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override
    {
        return Operations().GetTypeInfoCount(count);
    }

    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID /*locale*/,
                                          ITypeInfo** typeInfo) override
    {
        return Operations().GetTypeInfo(index, typeInfo);
    }

    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID /*iid*/, LPOLESTR* names, UINT count,
                                            LCID /*locale*/, DISPID* identifiers) override
    {
        return Operations().GetIDsOfNames(names, count, identifiers);
    }

    HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID /*iid*/, LCID /*locale*/, WORD flags,
                                     DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                                     UINT* argumentError) override
    {
        return Operations().Invoke(static_cast<Interface*>(this), member, flags, parameters, result,
                                   exception, argumentError);
    }

protected:
    bool Implements(REFIID iid) const override
    {
        return IsEqualIID(iid, IID_IDispatch) || ComObject<Interface>::Implements(iid);
    }

    /// The operations that late-bound callers find.
    virtual const port::DispatchInterface& Operations() const = 0;
};

/// Makes objects of one class.
template <typename Object>
class ClassFactory final : public ComObject<IClassFactory>
{
public:
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** object) override
    {
        if (object == nullptr)
        {
            return E_POINTER;
        }
        *object = nullptr;
        if (outer != nullptr)
        {
            return CLASS_E_NOAGGREGATION;
        }
        auto* const made = new (std::nothrow) Object();
        if (made == nullptr)
        {
            return E_OUTOFMEMORY;
        }
        const HRESULT result = made->QueryInterface(iid, object);
        made->Release();
        return result;
    }

    HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override
    {
        ModuleReference::Lock(lock != FALSE);
        return S_OK;
    }

protected:
    bool Implements(REFIID iid) const override
    {
        return IsEqualIID(iid, IID_IClassFactory) || ComObject<IClassFactory>::Implements(iid);
    }
};

} // namespace engine
