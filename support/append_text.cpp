#include "support/append_text.h"

#include "support/code_points.h"
#include "support/codepage.h"
#include "support/format.h"
#include "support/six_places.h"

#include <charconv>
#include <cmath>
#include <string_view>

namespace support
{

namespace
{

void AppendAscii(std::wstring& target, const char* begin, const char* end)
{
    wchar_t wide[kSixPlacesSize]; // the longest that is appended
    wchar_t* to = wide;
    for (const char* each = begin; each != end; ++each)
    {
        *to++ = static_cast<wchar_t>(*each);
    }
    target.append(wide, to);
}

template <typename Number>
void AppendNumber(std::wstring& target, Number number)
{
    char digits[kSixPlacesSize];
    const char* const end = std::to_chars(digits, digits + sizeof digits, number).ptr;
    AppendAscii(target, digits, end);
}

} // namespace

void AppendCut(std::wstring& target, const wchar_t* text, std::size_t cut)
{
    const std::wstring_view whole = text == nullptr ? L"(null)" : text;
    const std::wstring_view part = whole.substr(0, cut);
    // As the formatter does where a text reaches its precision, cut or not.
    target.append(part.size() == cut ? WithoutHalfPair(part) : part);
}

void AppendCut(std::wstring& target, const char* text, std::size_t cut)
{
    const std::string_view whole = text == nullptr ? "(null)" : text;
    AppendWideFromNarrow(target, whole.substr(0, cut));
}

void AppendDecimal(std::wstring& target, std::int32_t number)
{
    AppendNumber(target, number);
}

void AppendDecimal(std::wstring& target, std::uint32_t number)
{
    AppendNumber(target, number);
}

void AppendSixPlaces(std::wstring& target, double number)
{
    char text[kSixPlacesSize];
    // The formatter shows the sign, of a null too.
    const char* const end = std::signbit(number) ? nullptr : WriteSixPlaces(number, text);
    if (end != nullptr)
    {
        AppendAscii(target, text, end);
        return;
    }
    const FormatArgument argument(number);
    AppendWide(target, L"%f", &argument, 1);
}

} // namespace support
