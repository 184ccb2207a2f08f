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
        SetUtf16(text);
    }
    else
    {
        m_ascii = false;
        support::Utf8FromWide(text, m_utf8);
    }
}

void OutgoingText::SetUtf16(std::wstring_view text)
{
    if (m_utf16.size() <= text.size())
    {
        m_utf16.resize(text.size() + 1);
    }
    const char32_t bits = support::CopyUnits(text, m_utf16.data());
    m_ascii = bits < 0x80;
    m_units = text.size();
    if (bits >= support::kFirstBeyondOneUnit)
    {
        support::Utf16FromWide(text, m_utf16);
        m_units = m_utf16.size();
        m_utf16.push_back(u'\0');
    }
    m_utf16[m_units] = u'\0';
}

SQLRETURN OutgoingText::ExecuteDirect(SQLHSTMT statement)
{
    if (m_crossing == TextCrossing::Utf16)
    {
        return SQLExecDirectW(statement, OdbcUnits(m_utf16.data()),
                              static_cast<SQLINTEGER>(m_units));
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
