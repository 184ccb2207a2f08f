#pragma once

#include "tests/testing/odbc_texts.h"

#include <sql.h>
#include <sqlext.h>

#include <string>

// What the entry points with texts do, once their texts are UTF-8: the narrow and the wide ones
// have files of their own.

namespace fault_driver
{

/// Where SQLGetInfo wants its answer.
struct InfoPlace
{
    SQLPOINTER value;
    SQLSMALLINT size;
    SQLSMALLINT* length;
};

/// Where SQLDescribeCol wants its answer.
struct ColumnPlace
{
    SQLCHAR* name;
    SQLSMALLINT size;
    SQLSMALLINT* length;
    SQLSMALLINT* type;
    SQLULEN* columnSize;
    SQLSMALLINT* digits;
    SQLSMALLINT* nullable;
};

SQLRETURN ConnectBy(SQLHDBC handle, const std::string& connexion);
SQLRETURN ExecuteText(SQLHSTMT handle, std::string text);
SQLRETURN TellInfo(SQLHDBC handle, SQLUSMALLINT what, const InfoPlace& place);
SQLRETURN TellColumn(SQLHSTMT handle, SQLUSMALLINT column, const ColumnPlace& place);
/// What the handle's last call left.
const testing_support::Diagnosis& DiagnosisOf(SQLSMALLINT kind, SQLHANDLE handle);

} // namespace fault_driver
