#pragma once

#include "support/format_argument.h"

#include <cstddef>
#include <string>

namespace support
{

// The formatter has the Windows runtime's meaning on both platforms: in a wide template %s takes
// wide text and %S narrow text, in a narrow one the reverse; %hs and %ls are narrow and wide in
// both. Precision and width count characters of the result (char or wchar_t); a cut never leaves
// half a surrogate pair. Conversions: d i u x X c s S f e g %, flags "-+ 0#", l, ll, h, I64.
// Always a decimal point; halves of the exact binary value round to even; inf, -inf, nan.
// A null text prints (null). An unknown conversion or an argument of the wrong kind stops the
// process in debug builds; otherwise the conversion prints nothing.

std::wstring FormatWide(const wchar_t* format, const FormatArgument* arguments, std::size_t count);
std::string FormatNarrow(const char* format, const FormatArgument* arguments, std::size_t count);

/// As FormatWide, appended to a buffer that the caller reuses.
void AppendWide(std::wstring& target, const wchar_t* format, const FormatArgument* arguments,
                std::size_t count);

template <typename... Arguments>
std::wstring FormatW(const wchar_t* format, const Arguments&... arguments)
{
    const FormatArgument list[] = {FormatArgument(), FormatArgument(arguments)...};
    return FormatWide(format, list + 1, sizeof...(Arguments));
}

template <typename... Arguments>
std::string FormatA(const char* format, const Arguments&... arguments)
{
    const FormatArgument list[] = {FormatArgument(), FormatArgument(arguments)...};
    return FormatNarrow(format, list + 1, sizeof...(Arguments));
}

} // namespace support
