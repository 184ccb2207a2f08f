#include "support/odbc_errors.h"

#include "support/checked_copy.h"

#include <algorithm>
#include <string>

namespace
{

/// Database drivers send texts with line ends.
std::string OneLine(const TSimpleString& text)
{
    std::string line(text.SafeGetString());
    std::replace_if(
        line.begin(), line.end(),
        [](char character) { return static_cast<unsigned char>(character) < ' '; }, ' ');
    return line;
}

void AppendDetail(TSimpleString& text, const TSimpleString& detail)
{
    if (!detail.IsEmpty())
    {
        text += ", ";
        text += OneLine(detail).c_str();
    }
}

} // namespace

void ODBC_PrepareStrucError(tagODBCERROR& error, const char* tag)
{
    support::TruncatingCopy(error.source, sizeof error.source, tag);
    error.number = 0;
    error.returnCode = 0;
    error.first.Empty();
    error.second.Empty();
}

TSimpleString ODBC_FormatStrucError(tagODBCERROR& error, std::uint32_t number,
                                    std::int32_t returnCode, const char* first, const char* second)
{
    error.number = number;
    error.returnCode = returnCode;
    error.first = first;
    error.second = second;
    TSimpleString text;
    text.GenerateString("%s: error %08X, return code %d", error.source, number, returnCode);
    AppendDetail(text, error.first);
    AppendDetail(text, error.second);
    return text;
}
