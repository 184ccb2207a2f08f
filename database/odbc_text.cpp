#include "database/odbc_text.h"

#include "support/codepage.h"

namespace database
{

OutgoingText::OutgoingText(std::wstring_view text, TextCrossing crossing) : m_crossing(crossing)
{
    if (crossing == TextCrossing::Utf16)
    {
        m_utf16 = support::Utf16FromWide(text);
    }
    else
    {
        m_utf8 = support::Utf8FromWide(text);
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
