#pragma once

#include "support/tsimplestring.h"

#include <cstdint>

/// A failed database call. Raised as a pointer and owned by whoever catches it: call Delete().
/// Inside the library database::GuardDatabase does so.
class CDBException
{
public:
    CDBException(std::int32_t returnCode, const char* state, std::int32_t nativeError,
                 const char* first, const char* second);

    std::int32_t GetReturnCode() const noexcept { return m_returnCode; } ///< ODBC return code
    const char* GetState() const noexcept { return m_state; }            ///< SQLSTATE, 5 letters
    std::int32_t GetNativeError() const noexcept { return m_nativeError; }
    /// The driver's message with its state.
    const TSimpleString& GetFirstText() const noexcept { return m_first; }
    /// What was attempted: the operation, and the statement where there is one. No password.
    const TSimpleString& GetSecondText() const noexcept { return m_second; }
    /// The first text, or the second when the first is empty.
    const char* GetText() const noexcept;

    void Delete() noexcept { delete this; }

private:
    ~CDBException() = default;

    std::int32_t m_returnCode;
    char m_state[6];
    std::int32_t m_nativeError;
    TSimpleString m_first;
    TSimpleString m_second;
};
