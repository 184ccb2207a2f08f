#pragma once

#include "support/tsimplestring.h"

#include <cstdint>

/// An error as it is shown in traces; filled by ODBC_PrepareStrucError.
struct tagODBCERROR
{
    char source[32];
    std::uint32_t number;
    std::int32_t returnCode;
    TSimpleString first;
    TSimpleString second;
};

/// Starts an error record for one caller, named by `tag`.
void ODBC_PrepareStrucError(tagODBCERROR& error, const char* tag);

/// Fills the record and gives its text, one line: tag, error number in hexadecimal, return code,
/// and each of the two texts that is not empty.
TSimpleString ODBC_FormatStrucError(tagODBCERROR& error, std::uint32_t number,
                                    std::int32_t returnCode, const char* first, const char* second);
