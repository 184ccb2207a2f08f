#include "port/com.h"

#include <cstdlib>
#include <cwchar>
#include <limits>

namespace
{

using Prefix = std::uint32_t;

Prefix* PrefixOf(BSTR text)
{
    return reinterpret_cast<Prefix*>(text) - 1;
}

} // namespace

BSTR SysAllocString(const OLECHAR* text)
{
    if (text == nullptr)
    {
        return nullptr;
    }
    const std::size_t length = std::wcslen(text);
    return length > std::numeric_limits<UINT>::max()
               ? nullptr
               : SysAllocStringLen(text, static_cast<UINT>(length));
}

BSTR SysAllocStringLen(const OLECHAR* text, UINT length)
{
    const std::size_t bytes = std::size_t{length} * sizeof(OLECHAR);
    if (bytes > std::numeric_limits<Prefix>::max())
    {
        return nullptr;
    }
    auto* const prefix =
        static_cast<Prefix*>(std::malloc(sizeof(Prefix) + bytes + sizeof(OLECHAR)));
    if (prefix == nullptr)
    {
        return nullptr;
    }
    static_assert(sizeof(Prefix) % alignof(OLECHAR) == 0, "the text stands behind its prefix");
    *prefix = static_cast<Prefix>(bytes);
    auto* const copy = reinterpret_cast<OLECHAR*>(prefix + 1);
    if (text != nullptr)
    {
        std::wmemcpy(copy, text, length);
    }
    copy[length] = L'\0';
    return copy;
}

void SysFreeString(BSTR text)
{
    if (text != nullptr)
    {
        std::free(PrefixOf(text));
    }
}

UINT SysStringLen(BSTR text)
{
    return SysStringByteLen(text) / static_cast<UINT>(sizeof(OLECHAR));
}

UINT SysStringByteLen(BSTR text)
{
    return text == nullptr ? 0 : *PrefixOf(text);
}
