#include "support/xml_encoding.h"

#include <algorithm>

namespace support
{

namespace
{

constexpr std::string_view kParsersEncodings[] = {
    "",      "UTF-8",    "UTF8",       "UTF-16",      "UTF-16LE",    "UTF-16BE",
    "ASCII", "US-ASCII", "ISO-8859-1", "ISO-LATIN-1", "ISO-8859-15",
};
constexpr std::string_view kWindows1252Names[] = {"WINDOWS-1252", "CP1252", "CP-1252"};

template <std::size_t Count>
bool IsIn(const std::string_view (&names)[Count], std::string_view name)
{
    return std::find(std::begin(names), std::end(names), name) != std::end(names);
}

bool IsBlank(char character)
{
    return character == ' ' || character == '\t' || character == '\r' || character == '\n';
}

void SkipBlanks(std::string_view& text)
{
    text.remove_prefix(static_cast<std::size_t>(
        std::find_if_not(text.begin(), text.end(), IsBlank) - text.begin()));
}

/// The text between the quotes that come next; empty when there are none.
std::string_view QuotedText(std::string_view text)
{
    if (text.empty() || (text.front() != '"' && text.front() != '\''))
    {
        return {};
    }
    const std::size_t end = text.find(text.front(), 1);
    return end == std::string_view::npos ? std::string_view() : text.substr(1, end - 1);
}

} // namespace

std::string DeclaredEncoding(std::string_view start)
{
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    constexpr std::string_view kOpening = "<?xml";
    constexpr std::string_view kAttribute = "encoding";
    if (start.substr(0, kByteOrderMark.size()) == kByteOrderMark)
    {
        start.remove_prefix(kByteOrderMark.size());
    }
    if (start.substr(0, kOpening.size()) != kOpening)
    {
        return {};
    }
    std::string_view rest = start.substr(0, start.find("?>"));
    const std::size_t attribute = rest.find(kAttribute);
    if (attribute == std::string_view::npos || !IsBlank(rest[attribute - 1]))
    {
        return {};
    }
    rest.remove_prefix(attribute + kAttribute.size());
    SkipBlanks(rest);
    if (rest.empty() || rest.front() != '=')
    {
        return {};
    }
    rest.remove_prefix(1);
    SkipBlanks(rest);
    std::string name(QuotedText(rest));
    std::transform(name.begin(), name.end(), name.begin(),
                   [](char letter) {
                       return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A')
                                                             : letter;
                   });
    return name;
}

XmlEncoding EncodingOf(std::string_view name)
{
    if (IsIn(kWindows1252Names, name))
    {
        return XmlEncoding::Windows1252;
    }
    return IsIn(kParsersEncodings, name) ? XmlEncoding::Parsers : XmlEncoding::Other;
}

} // namespace support
