#pragma once

#include "support/format_argument.h"

#include <cstddef>
#include <string>

namespace support
{

enum class Language
{
    English,
    French,
};

/// SIGNUTILS_LANG: `en` (default) or `fr`; read at each call, so that a host may change it.
Language MessageLanguage();

/// The catalogue's message in the current language, one line, showing all arguments that are not
/// empty in their listed order; amounts as decimals with at least two places and as many more, up
/// to six, as the value has. An unknown number gives a text that names the number.
std::wstring Message(unsigned int number, const FormatArgument* arguments, std::size_t count);

/// The same in a language of choice.
std::wstring MessageIn(Language language, unsigned int number, const FormatArgument* arguments,
                       std::size_t count);

/// An amount as messages show it: "1000.00", "12.345".
std::wstring AmountText(double amount);

} // namespace support
