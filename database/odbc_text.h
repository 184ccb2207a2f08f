#pragma once

#include "database/dialect.h"
#include "database/odbc.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace database
{

/// A text on its way to the driver, in the form that the dialect asks for. Its memory serves for
/// the next text too.
class OutgoingText
{
public:
    void Set(std::wstring_view text, TextCrossing crossing);
    /// Whether the text is known to be all ASCII.
    bool IsAscii() const noexcept { return m_ascii; }

    SQLRETURN ExecuteDirect(SQLHSTMT statement);
    /// Connects with the text as connection string; never opens a dialog.
    SQLRETURN Connect(SQLHDBC connection);

private:
    void SetUtf16(std::wstring_view text);

    TextCrossing m_crossing = TextCrossing::Utf16;
    bool m_ascii = false;
    // For TextCrossing::Utf16: the first m_units, and a NUL behind them. Never made shorter, for
    // what is made longer is written over first.
    std::u16string m_utf16;
    std::size_t m_units = 0;
    std::string m_utf8; // for TextCrossing::Utf8
};

/// ODBC's UTF-16 units as the language's. Both have 16 bits on every platform.
inline SQLWCHAR* OdbcUnits(char16_t* units) noexcept
{
    static_assert(sizeof(SQLWCHAR) == sizeof(char16_t));
    return reinterpret_cast<SQLWCHAR*>(units);
}

} // namespace database
