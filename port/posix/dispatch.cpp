#include "port/dispatch.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

namespace port
{

namespace
{

// The object and its arguments as the machine passes them: one register or place on the stack each,
// whether numbers or pointers.
using Word = std::intptr_t;
constexpr std::size_t kMostParameters = 6;
using Words = std::array<Word, kMostParameters>;
using Entry = HRESULT (*)(void*, Word, Word, Word, Word, Word, Word);

wchar_t LowerAscii(wchar_t letter)
{
    return letter >= L'A' && letter <= L'Z' ? static_cast<wchar_t>(letter - L'A' + L'a') : letter;
}

bool EqualIgnoringCase(const wchar_t* left, const wchar_t* right)
{
    while (*left != L'\0' && LowerAscii(*left) == LowerAscii(*right))
    {
        ++left;
        ++right;
    }
    return LowerAscii(*left) == LowerAscii(*right);
}

/// False when the argument is of another type than the parameter.
bool TryWord(const VARIANTARG& argument, DispatchType type, Word& word)
{
    if (argument.vt == VT_I2 && type == DispatchType::Long)
    {
        word = argument.iVal;
        return true;
    }
    if (argument.vt != VariantTypeOf(type))
    {
        return false;
    }
    if (type == DispatchType::Long)
    {
        word = argument.lVal;
        return true;
    }
    std::memcpy(&word, &argument.byref, sizeof word);
    return true;
}

Entry EntryOf(void* object, std::uint32_t position)
{
    void** table = nullptr;
    std::memcpy(&table, object, sizeof table);
    return reinterpret_cast<Entry>(table[position]);
}

/// The answer of a call whose operation answered so.
HRESULT Answer(HRESULT result, EXCEPINFO* exception)
{
    if (SUCCEEDED(result))
    {
        return S_OK;
    }
    if (exception != nullptr)
    {
        *exception = EXCEPINFO{};
        exception->scode = result;
    }
    return DISP_E_EXCEPTION;
}

} // namespace

DispatchInterface::DispatchInterface(std::vector<DispatchOperation> operations)
    : m_operations(std::move(operations))
{
}

HRESULT DispatchInterface::GetTypeInfo(UINT /*index*/, ITypeInfo** typeInfo) const
{
    if (typeInfo == nullptr)
    {
        return E_POINTER;
    }
    *typeInfo = m_typeInfo;
    return E_NOTIMPL;
}

HRESULT DispatchInterface::GetIDsOfNames(LPOLESTR* names, UINT count, DISPID* identifiers) const
{
    if (names == nullptr || identifiers == nullptr || count == 0)
    {
        return E_INVALIDARG;
    }
    std::fill_n(identifiers, count, DISPID_UNKNOWN);
    const auto operation =
        std::find_if(m_operations.begin(), m_operations.end(),
                     [&](const auto& each) { return EqualIgnoringCase(each.name, names[0]); });
    if (operation == m_operations.end())
    {
        return DISP_E_UNKNOWNNAME;
    }
    identifiers[0] = static_cast<DISPID>(operation->position);
    HRESULT result = S_OK;
    for (UINT index = 1; index < count; ++index)
    {
        const auto& parameters = operation->parameters;
        const auto parameter = std::find_if(parameters.begin(), parameters.end(),
                                            [&](const auto& each)
                                            { return EqualIgnoringCase(each.name, names[index]); });
        if (parameter == parameters.end())
        {
            result = DISP_E_UNKNOWNNAME;
            continue;
        }
        identifiers[index] = static_cast<DISPID>(parameter - parameters.begin());
    }
    return result;
}

HRESULT DispatchInterface::Invoke(void* object, DISPID member, WORD flags, DISPPARAMS* parameters,
                                  VARIANT* result, EXCEPINFO* exception, UINT* argumentError) const
{
    HRESULT refusal = S_OK;
    const DispatchOperation* const operation = Called(member, flags, parameters, refusal);
    if (operation == nullptr)
    {
        return refusal;
    }
    if (parameters->cNamedArgs != 0)
    {
        return DISP_E_NONAMEDARGS;
    }
    const std::size_t count = operation->parameters.size();
    if (count > kMostParameters)
    {
        return DISP_E_BADPARAMCOUNT;
    }
    Words words{};
    for (std::size_t index = 0; index < count; ++index)
    {
        const std::size_t place = count - 1 - index;
        if (!TryWord(parameters->rgvarg[place], operation->parameters[index].type, words[index]))
        {
            if (argumentError != nullptr)
            {
                *argumentError = static_cast<UINT>(place);
            }
            return DISP_E_TYPEMISMATCH;
        }
    }
    if (result != nullptr)
    {
        result->vt = VT_EMPTY;
    }
    return Answer(EntryOf(object, operation->position)(object, words[0], words[1], words[2],
                                                       words[3], words[4], words[5]),
                  exception);
}

} // namespace port
