#include "database/driver_letters.h"

#include "database/odbc_text.h"

#include <iterator>
#include <string>
#include <string_view>

namespace database
{

bool KeepsLetters(SQLHDBC connection)
{
    // One of Windows-1252, one whose low byte is an apostrophe, two that look like one, and one
    // beyond 16 bits: each way of converting loses some of them.
    std::u16string sent = u"SELECT '\u00E9\u0427\u02BC\uFF07\U0001F58B'";
    char16_t received[64] = {};
    SQLINTEGER length = 0;
    const SQLRETURN result =
        SQLNativeSqlW(connection, OdbcUnits(sent.data()), static_cast<SQLINTEGER>(sent.size()),
                      OdbcUnits(received), static_cast<SQLINTEGER>(std::size(received)), &length);
    return SQL_SUCCEEDED(result) &&
           std::u16string_view(received, std::size(received) - 1).starts_with(sent + u'\0');
}

} // namespace database
