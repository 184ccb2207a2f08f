#include "port/dispatch.h"

#include <deque>
#include <utility>

namespace port
{

namespace
{

/// The operations in the form that the system reads.
class InterfaceTable
{
public:
    explicit InterfaceTable(const std::vector<DispatchOperation>& operations)
    {
        for (const DispatchOperation& operation : operations)
        {
            Add(operation);
        }
        m_data.pmethdata = m_methods.data();
        m_data.cMembers = static_cast<UINT>(m_methods.size());
    }

    INTERFACEDATA* Data() noexcept { return &m_data; }

private:
    static OLECHAR* Name(const wchar_t* name)
    {
        return const_cast<OLECHAR*>(name); // only read
    }

    void Add(const DispatchOperation& operation)
    {
        std::vector<PARAMDATA>& parameters = m_parameters.emplace_back();
        for (const DispatchParameter& parameter : operation.parameters)
        {
            parameters.push_back({Name(parameter.name), VariantTypeOf(parameter.type)});
        }
        METHODDATA method = {};
        method.szName = Name(operation.name);
        method.ppdata = parameters.data();
        method.dispid = static_cast<DISPID>(operation.position);
        method.iMeth = operation.position;
        method.cc = CC_STDCALL;
        method.cArgs = static_cast<UINT>(parameters.size());
        method.wFlags = DISPATCH_METHOD;
        method.vtReturn = VT_ERROR;
        m_methods.push_back(method);
    }

    std::deque<std::vector<PARAMDATA>> m_parameters; // of each method; do not move
    std::vector<METHODDATA> m_methods;
    INTERFACEDATA m_data = {};
};

/// What is described may be a class; calls go by the one interface that it has.
ITypeInfo* InterfaceOf(ITypeInfo* described)
{
    HREFTYPE reference = 0;
    ITypeInfo* found = nullptr;
    if (FAILED(described->GetRefTypeOfImplType(0, &reference)) ||
        FAILED(described->GetRefTypeInfo(reference, &found)))
    {
        described->AddRef();
        return described;
    }
    return found;
}

} // namespace

DispatchInterface::DispatchInterface(std::vector<DispatchOperation> operations)
    : m_operations(std::move(operations))
{
    InterfaceTable table(m_operations);
    ITypeInfo* described = nullptr;
    if (SUCCEEDED(CreateDispTypeInfo(table.Data(), LOCALE_SYSTEM_DEFAULT, &described)))
    {
        m_typeInfo = InterfaceOf(described);
        described->Release();
    }
}

HRESULT DispatchInterface::GetTypeInfo(UINT index, ITypeInfo** typeInfo) const
{
    if (typeInfo == nullptr)
    {
        return E_POINTER;
    }
    *typeInfo = nullptr;
    if (index != 0)
    {
        return DISP_E_BADINDEX;
    }
    if (m_typeInfo == nullptr)
    {
        return E_NOTIMPL;
    }
    m_typeInfo->AddRef();
    *typeInfo = m_typeInfo;
    return S_OK;
}

HRESULT DispatchInterface::GetIDsOfNames(LPOLESTR* names, UINT count, DISPID* identifiers) const
{
    return m_typeInfo == nullptr ? E_NOTIMPL
                                 : DispGetIDsOfNames(m_typeInfo, names, count, identifiers);
}

HRESULT DispatchInterface::Invoke(void* object, DISPID member, WORD flags, DISPPARAMS* parameters,
                                  VARIANT* result, EXCEPINFO* exception, UINT* argumentError) const
{
    HRESULT refusal = E_NOTIMPL;
    if (m_typeInfo == nullptr || Called(member, flags, parameters, refusal) == nullptr)
    {
        return refusal;
    }
    return DispInvoke(object, m_typeInfo, member, flags, parameters, result, exception,
                      argumentError);
}

} // namespace port
