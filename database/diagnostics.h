#pragma once

#include "database/dialect.h"
#include "database/odbc.h"

#include <string>
#include <string_view>

namespace database
{

/// What was being done, for the second text of an exception.
struct Attempt
{
    std::string_view operation; ///< "ExecuteSQLW"
    std::wstring_view detail;   ///< the statement; never a password
};

/// Raises CDBException* with everything that the driver says of the handle's last call.
[[noreturn]] void RaiseDriverError(SQLRETURN returnCode, SQLSMALLINT kind, SQLHANDLE handle,
                                   TextCrossing crossing, const Attempt& attempt);

/// Raises CDBException* for what this room itself refuses. `text` is Windows-1252.
[[noreturn]] void RaiseRefusal(const char* state, std::string_view text, const Attempt& attempt);

} // namespace database
