#pragma once

#include "port/com.h"

#include <limits>
#include <string_view>
#include <utility>

namespace amounts
{

/// Raised when COM itself fails where no result can tell it.
struct ComFailure
{
    HRESULT result;
};

/// A BSTR of ours, freed at the end of the scope.
class ComText
{
public:
    ComText() noexcept = default;
    explicit ComText(std::wstring_view text) { Assign(text); }
    ~ComText() { SysFreeString(m_text); }
    ComText(const ComText&) = delete;
    ComText& operator=(const ComText&) = delete;

    /// Raises ComFailure with E_OUTOFMEMORY when there is no memory.
    void Assign(std::wstring_view text)
    {
        SysFreeString(std::exchange(m_text, nullptr));
        if (text.size() <= std::numeric_limits<UINT>::max())
        {
            m_text = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
        }
        if (m_text == nullptr)
        {
            throw ComFailure{E_OUTOFMEMORY};
        }
    }

    BSTR Get() const noexcept { return m_text; }
    /// Where a call stores a text that is then ours. The guard must be empty.
    BSTR* Receive() noexcept { return &m_text; }

private:
    BSTR m_text = nullptr;
};

/// An interface pointer, released at the end of the scope or before.
template <typename Interface>
class ComPointer
{
public:
    ComPointer() noexcept = default;
    ~ComPointer() { Release(); }
    ComPointer(const ComPointer&) = delete;
    ComPointer& operator=(const ComPointer&) = delete;

    HRESULT Create(REFCLSID clsid, DWORD context, REFIID iid)
    {
        void* object = nullptr;
        const HRESULT result = CoCreateInstance(clsid, nullptr, context, iid, &object);
        m_object = static_cast<Interface*>(object);
        return result;
    }

    /// The pointer is gone before the object is told, so that a raising object is not told twice.
    void Release()
    {
        if (Interface* const object = std::exchange(m_object, nullptr); object != nullptr)
        {
            object->Release();
        }
    }

    Interface* Get() const noexcept { return m_object; }
    Interface* operator->() const noexcept { return m_object; }
    bool IsNull() const noexcept { return m_object == nullptr; }

private:
    Interface* m_object = nullptr;
};

} // namespace amounts
