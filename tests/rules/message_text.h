#pragma once

#include "support/tsimplestringw.h"

#include <string>

namespace testing_support
{

/// Stands for the currency of an amount that has none.
inline constexpr wchar_t kNone[] = L"";

/// The catalogue's text, from the arguments as the numbers' list has them.
template <typename... Arguments>
std::wstring MessageText(unsigned int number, const Arguments&... arguments)
{
    TSimpleStringW text;
    text.GenerateString(number, arguments...);
    return text.SafeGetString();
}

/// The text as a line of the journal.
template <typename... Arguments>
std::wstring MessageLine(unsigned int number, const Arguments&... arguments)
{
    return MessageText(number, arguments...) + L"\r\n";
}

} // namespace testing_support
