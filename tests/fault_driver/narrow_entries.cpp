#include "tests/fault_driver/text_calls.h"

using namespace fault_driver;

extern "C"
{

    SQLRETURN SQLDriverConnect(SQLHDBC handle, SQLHWND, SQLCHAR* text, SQLSMALLINT length, SQLCHAR*,
                               SQLSMALLINT, SQLSMALLINT*, SQLUSMALLINT)
    {
        return ConnectBy(handle, testing_support::OdbcText(text, length));
    }

    SQLRETURN SQLExecDirect(SQLHSTMT handle, SQLCHAR* text, SQLINTEGER length)
    {
        return ExecuteText(handle, testing_support::OdbcText(text, length));
    }

    SQLRETURN SQLGetInfo(SQLHDBC handle, SQLUSMALLINT what, SQLPOINTER value, SQLSMALLINT size,
                         SQLSMALLINT* length)
    {
        return TellInfo(handle, what, {value, size, length});
    }

    SQLRETURN SQLDescribeCol(SQLHSTMT handle, SQLUSMALLINT column, SQLCHAR* name, SQLSMALLINT size,
                             SQLSMALLINT* length, SQLSMALLINT* type, SQLULEN* columnSize,
                             SQLSMALLINT* digits, SQLSMALLINT* nullable)
    {
        return TellColumn(handle, column, {name, size, length, type, columnSize, digits, nullable});
    }

    SQLRETURN SQLGetDiagRec(SQLSMALLINT kind, SQLHANDLE handle, SQLSMALLINT number, SQLCHAR* state,
                            SQLINTEGER* native, SQLCHAR* text, SQLSMALLINT size,
                            SQLSMALLINT* length)
    {
        const testing_support::Diagnosis& diagnosis = DiagnosisOf(kind, handle);
        return number != 1 || diagnosis.state.empty()
                   ? SQL_NO_DATA
                   : testing_support::TellDiagnosis(diagnosis, {state, native, text, size, length});
    }

} // extern "C"
