#include "port/dispatch.h"

#include <algorithm>

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

// Versions of Windows' own call do not agree on what more or fewer arguments come to.
const DispatchOperation* DispatchInterface::Called(DISPID member, WORD flags,
                                                   const DISPPARAMS* parameters,
                                                   HRESULT& refusal) const
{
    const auto operation = std::find_if(m_operations.begin(), m_operations.end(),
                                        [&](const auto& each)
                                        { return static_cast<DISPID>(each.position) == member; });
    if (operation == m_operations.end() || (flags & DISPATCH_METHOD) == 0)
    {
        refusal = DISP_E_MEMBERNOTFOUND;
        return nullptr;
    }
    if (parameters == nullptr)
    {
        refusal = E_INVALIDARG;
        return nullptr;
    }
    if (parameters->cArgs != operation->parameters.size())
    {
        refusal = DISP_E_BADPARAMCOUNT;
        return nullptr;
    }
    return &*operation;
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
