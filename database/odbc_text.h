#pragma once

#include "database/dialect.h"
#include "database/odbc.h"

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

    SQLRETURN ExecuteDirect(SQLHSTMT statement);
    /// Connects with the text as connection string; never opens a dialog.
    SQLRETURN Connect(SQLHDBC connection);

private:
    TextCrossing m_crossing = TextCrossing::Utf16;
    std::u16string m_utf16; // filled for TextCrossing::Utf16
    std::string m_utf8;     // filled for TextCrossing::Utf8
};

/// ODBC's UTF-16 units as the language's. Both have 16 bits on every platform.
inline SQLWCHAR* OdbcUnits(char16_t* units) noexcept
{
    static_assert(sizeof(SQLWCHAR) == sizeof(char16_t));
    return reinterpret_cast<SQLWCHAR*>(units);
}

} // namespace database
