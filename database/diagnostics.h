#pragma once

#include "database/dialect.h"
#include "database/odbc.h"

#include <string>
#include <string_view>
#include <vector>

namespace database
{

/// What was being done, for the second text of an exception.
struct Attempt
{
    std::string_view operation; ///< "ExecuteSQLW"
    std::wstring_view detail;   ///< the statement; never a password
};

struct DriverHandle
{
    SQLSMALLINT kind;
    SQLHANDLE handle;
};

/// How a driver's messages are read.
struct MessageRules
{
    TextCrossing crossing;
    const std::vector<std::string>& secrets; ///< hidden: drivers quote connection strings
};

/// Raises CDBException* with everything that the driver says of the handle's last call.
[[noreturn]] void RaiseDriverError(SQLRETURN returnCode, const DriverHandle& handle,
                                   const MessageRules& rules, const Attempt& attempt);

/// Raises CDBException* for what this room itself refuses. `text` is Windows-1252.
[[noreturn]] void RaiseRefusal(const char* state, std::string_view text, const Attempt& attempt);

} // namespace database
