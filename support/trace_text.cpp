#include "support/trace_text.h"

#include "support/codepage.h"
#include "support/format.h"

#include <algorithm>

namespace
{

constexpr const char* kIndentation = "    ";

/// What the character is shown as; empty when it is shown as it is.
std::string Escape(wchar_t character)
{
    const auto value = static_cast<char32_t>(character);
    constexpr char32_t lineSeparator = 0x2028;
    constexpr char32_t paragraphSeparator = 0x2029;
    switch (value)
    {
    case '\t':
        return {};
    case '\r':
        return "\\r";
    case '\n':
        return "\\n";
    case lineSeparator:
    case paragraphSeparator:
        return support::FormatA("\\u%04X", value);
    default:
        return value < 0x20 || (value >= 0x7F && value < 0xA0) ? support::FormatA("\\x%02X", value)
                                                               : std::string();
    }
}

} // namespace

namespace support
{

std::string TraceLineText(std::wstring_view text)
{
    std::string line;
    auto shown = text.begin();
    for (auto position = text.begin(); position != text.end(); ++position)
    {
        const std::string escape = Escape(*position);
        if (!escape.empty())
        {
            line += Utf8FromWide(std::wstring_view(shown, position));
            line += escape;
            shown = position + 1;
        }
    }
    return line + Utf8FromWide(std::wstring_view(shown, text.end()));
}

std::string TraceBlockText(std::wstring_view text)
{
    std::string block;
    while (!text.empty())
    {
        const std::size_t end = std::min(text.find_first_of(L"\r\n"), text.size());
        block.append(kIndentation).append(TraceLineText(text.substr(0, end))).append("\n");
        const bool pair = text.substr(end, 2) == L"\r\n";
        text.remove_prefix(std::min(end + (pair ? 2 : 1), text.size()));
    }
    return block;
}

} // namespace support
