#include "database/odbc_text.h"

#include "support/codepage.h"
#include "support/utf16.h"

namespace database
{

void OutgoingText::Set(std::wstring_view text, TextCrossing crossing)
{
    m_crossing = crossing;
    if (crossing == TextCrossing::Utf16)
    {
        support::Utf16FromWide(text, m_utf16);
    }
    else
    {
        support::Utf8FromWide(text, m_utf8);
    }
}

SQLRETURN OutgoingText::ExecuteDirect(SQLHSTMT statement)
{
    if (m_crossing == TextCrossing::Utf16)
    {
        return SQLExecDirectW(statement, OdbcUnits(m_utf16.data()),
                              static_cast<SQLINTEGER>(m_utf16.size()));
    }
    return SQLExecDirect(statement, reinterpret_cast<SQLCHAR*>(m_utf8.data()),
                         static_cast<SQLINTEGER>(m_utf8.size()));
}

SQLRETURN OutgoingText::Connect(SQLHDBC connection)
{
    // SQL_NTS: some drivers take the length of a connection string for bytes, others for units.
    if (m_crossing == TextCrossing::Utf16)
    {
        return SQLDriverConnectW(connection, nullptr, OdbcUnits(m_utf16.data()), SQL_NTS, nullptr,
                                 0, nullptr, SQL_DRIVER_NOPROMPT);
    }
    return SQLDriverConnect(connection, nullptr, reinterpret_cast<SQLCHAR*>(m_utf8.data()), SQL_NTS,
                            nullptr, 0, nullptr, SQL_DRIVER_NOPROMPT);
}

} // namespace database
