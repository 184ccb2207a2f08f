#include "database/cdbexception.h"

#include "support/checked_copy.h"

CDBException::CDBException(std::int32_t returnCode, const char* state, std::int32_t nativeError,
                           const char* first, const char* second)
    : m_returnCode(returnCode), m_state{}, m_nativeError(nativeError), m_first(first),
      m_second(second)
{
    support::TruncatingCopy(m_state, sizeof m_state, state);
}

const char* CDBException::GetText() const noexcept
{
    return m_first.IsEmpty() ? m_second.SafeGetString() : m_first.SafeGetString();
}
