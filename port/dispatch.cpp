#include "port/dispatch.h"

namespace port
{

VARTYPE VariantTypeOf(DispatchType type)
{
    switch (type)
    {
    case DispatchType::Text:
        return VT_BSTR;
    case DispatchType::Long:
        return VT_I4;
    case DispatchType::Object:
        return VT_DISPATCH;
    case DispatchType::ShortByRef:
        return VT_BYREF | VT_I2;
    case DispatchType::LongByRef:
        return VT_BYREF | VT_I4;
    case DispatchType::TextByRef:
        break;
    }
    return VT_BYREF | VT_BSTR;
}

HRESULT DispatchInterface::GetTypeInfoCount(UINT* count) const
{
    if (count == nullptr)
    {
        return E_POINTER;
    }
    *count = m_typeInfo == nullptr ? 0 : 1;
    return S_OK;
}

} // namespace port
