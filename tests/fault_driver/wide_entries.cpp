// A driver that has wide entry points of its own, as those of servers have them, before one that
// has none: texts are converted here.

#include "tests/fault_driver/faults.h"
#include "tests/fault_driver/text_calls.h"

#include "support/codepage.h"
#include "support/utf16.h"

#include <sqlucode.h>

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

using namespace fault_driver;

namespace
{

std::string Utf8Of(const SQLWCHAR* text, SQLINTEGER length)
{
    std::u16string units;
    for (SQLINTEGER at = 0; length == SQL_NTS ? text[at] != 0 : at < length; ++at)
    {
        units += static_cast<char16_t>(text[at]);
    }
    return support::Utf8FromWide(support::WideFromUtf16(units));
}

/// Fills a buffer of so many letters as ODBC does, and tells the whole length times `unit`.
void TellWide(const std::string& told, SQLWCHAR* buffer, SQLSMALLINT letters, SQLSMALLINT* length,
              std::size_t unit)
{
    std::u16string units;
    support::Utf16FromWide(support::WideFromUtf8(told), units);
    if (buffer != nullptr && letters > 0)
    {
        const std::size_t count = std::min(units.size(), static_cast<std::size_t>(letters) - 1);
        std::copy_n(units.begin(), count, buffer);
        buffer[count] = 0;
    }
    if (length != nullptr)
    {
        *length = static_cast<SQLSMALLINT>(units.size() * unit);
    }
}

bool IsText(SQLUSMALLINT info)
{
    return info == SQL_DBMS_NAME || info == SQL_DBMS_VER || info == SQL_DRIVER_NAME ||
           info == SQL_DRIVER_VER || info == SQL_DRIVER_ODBC_VER;
}

} // namespace

extern "C"
{

    SQLRETURN SQLDriverConnectW(SQLHDBC handle, SQLHWND, SQLWCHAR* text, SQLSMALLINT length,
                                SQLWCHAR*, SQLSMALLINT, SQLSMALLINT*, SQLUSMALLINT)
    {
        ++TheControl().wideTexts;
        return ConnectBy(handle, Utf8Of(text, length));
    }

    SQLRETURN SQLExecDirectW(SQLHSTMT handle, SQLWCHAR* text, SQLINTEGER length)
    {
        ++TheControl().wideTexts;
        return ExecuteText(handle, Utf8Of(text, length));
    }

    // What is sent is what is run; it is not one of the calls that fail.
    SQLRETURN SQLNativeSqlW(SQLHDBC, SQLWCHAR* text, SQLINTEGER length, SQLWCHAR* native,
                            SQLINTEGER size, SQLINTEGER* nativeLength)
    {
        SQLSMALLINT told = 0;
        TellWide(Utf8Of(text, length), native, static_cast<SQLSMALLINT>(size), &told, 1);
        *nativeLength = told;
        return SQL_SUCCESS;
    }

    SQLRETURN SQLGetInfoW(SQLHDBC handle, SQLUSMALLINT what, SQLPOINTER value, SQLSMALLINT size,
                          SQLSMALLINT* length)
    {
        if (!IsText(what))
        {
            return TellInfo(handle, what, {value, size, length});
        }
        std::array<char, 256> told{};
        SQLSMALLINT toldLength = 0;
        const SQLRETURN result = TellInfo(
            handle, what, {told.data(), static_cast<SQLSMALLINT>(told.size()), &toldLength});
        // By this ending the library knows the driver of SQLite that has wide entry points.
        const std::string text = what == SQL_DRIVER_NAME ? "sqlite3odbc.dll" : told.data();
        if (SQL_SUCCEEDED(result))
        {
            TellWide(text, static_cast<SQLWCHAR*>(value),
                     static_cast<SQLSMALLINT>(size / static_cast<SQLSMALLINT>(sizeof(SQLWCHAR))),
                     length, sizeof(SQLWCHAR));
        }
        return result;
    }

    SQLRETURN SQLDescribeColW(SQLHSTMT handle, SQLUSMALLINT column, SQLWCHAR* name,
                              SQLSMALLINT size, SQLSMALLINT* length, SQLSMALLINT* type,
                              SQLULEN* columnSize, SQLSMALLINT* digits, SQLSMALLINT* nullable)
    {
        std::array<SQLCHAR, 1024> told{};
        SQLSMALLINT toldLength = 0;
        const SQLRETURN result = TellColumn(handle, column,
                                            {told.data(), static_cast<SQLSMALLINT>(told.size()),
                                             &toldLength, type, columnSize, digits, nullable});
        if (SQL_SUCCEEDED(result))
        {
            TellWide(testing_support::OdbcText(told.data(), SQL_NTS), name, size, length, 1);
        }
        return result;
    }

    SQLRETURN SQLGetDiagRecW(SQLSMALLINT kind, SQLHANDLE handle, SQLSMALLINT number,
                             SQLWCHAR* state, SQLINTEGER* native, SQLWCHAR* text, SQLSMALLINT size,
                             SQLSMALLINT* length)
    {
        const testing_support::Diagnosis& diagnosis = DiagnosisOf(kind, handle);
        if (number != 1 || diagnosis.state.empty())
        {
            return SQL_NO_DATA;
        }
        TellWide(diagnosis.state, state, 6, nullptr, 1);
        if (native != nullptr)
        {
            *native = diagnosis.native;
        }
        TellWide(diagnosis.message, text, size, length, 1);
        return SQL_SUCCESS;
    }

} // extern "C"
