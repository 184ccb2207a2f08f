#pragma once

// Late binding of a dual interface: names to numbers, numbers to positions in the interface table.

#include "port/com.h"
#include "port/export.h"

#include <cstdint>
#include <vector>

namespace port
{

/// What a parameter of an operation is.
enum class DispatchType
{
    Text,       ///< BSTR
    Long,       ///< LONG
    Object,     ///< IDispatch*
    ShortByRef, ///< SHORT*
    LongByRef,  ///< LONG*
    TextByRef,  ///< BSTR*
};

/// The type of an argument for such a parameter.
VARTYPE VariantTypeOf(DispatchType type);

struct DispatchParameter
{
    const wchar_t* name;
    DispatchType type;
};

/// One operation; it answers an HRESULT.
struct DispatchOperation
{
    const wchar_t* name;
    std::uint32_t position; ///< in the interface table; also the operation's dispatch identifier
    std::vector<DispatchParameter> parameters;
};

/// Answers the dispatch entries of one interface from the list of its operations. A failure of an
/// operation is the call's exception. Elsewhere than on
/// Windows there is no type description, and arguments must have the parameters' own types.
class SIGNUTILS_PORT_API DispatchInterface
{
public:
    explicit DispatchInterface(std::vector<DispatchOperation> operations);
    DispatchInterface(const DispatchInterface&) = delete;
    DispatchInterface& operator=(const DispatchInterface&) = delete;

    HRESULT GetTypeInfoCount(UINT* count) const;
    HRESULT GetTypeInfo(UINT index, ITypeInfo** typeInfo) const;
    HRESULT GetIDsOfNames(LPOLESTR* names, UINT count, DISPID* identifiers) const;
    HRESULT Invoke(void* object, DISPID member, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                   EXCEPINFO* exception, UINT* argumentError) const;

private:
    /// The operation that a call of these means; null with the call's answer when it means none.
    const DispatchOperation* Called(DISPID member, WORD flags, const DISPPARAMS* parameters,
                                    HRESULT& refusal) const;

    std::vector<DispatchOperation> m_operations;
    ITypeInfo* m_typeInfo = nullptr; // lives as long as the process
};

} // namespace port
