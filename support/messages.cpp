#include "support/messages.h"

#include "port/environment.h"
#include "support/casefold.h"
#include "support/codepage.h"
#include "support/format.h"
#include "support/message_catalogue.h"

#include <algorithm>
#include <string_view>

namespace
{

/// Turns the signs that would break or hide a line into blanks.
std::wstring OneLine(std::wstring text)
{
    constexpr char32_t lineSeparator = 0x2028;
    constexpr char32_t paragraphSeparator = 0x2029;
    std::replace_if(
        text.begin(), text.end(),
        [](wchar_t unit)
        {
            const auto character = static_cast<char32_t>(unit);
            return character < 0x20 || (character >= 0x7F && character < 0xA0) ||
                   character == lineSeparator || character == paragraphSeparator;
        },
        L' ');
    return text;
}

std::wstring ArgumentText(const FormatArgument& argument)
{
    switch (argument.kind)
    {
    case FormatArgument::Kind::Narrow:
        return OneLine(support::FormatW(L"%S", argument.narrow == nullptr ? "" : argument.narrow));
    case FormatArgument::Kind::Wide:
        return OneLine(argument.wide == nullptr ? L"" : argument.wide);
    case FormatArgument::Kind::Real:
        return support::AmountText(argument.realValue);
    case FormatArgument::Kind::Signed:
    case FormatArgument::Kind::Signed64:
        return support::FormatW(L"%I64d", argument.signedValue);
    case FormatArgument::Kind::Unsigned:
    case FormatArgument::Kind::Unsigned64:
        return support::FormatW(L"%I64u", argument.unsignedValue);
    case FormatArgument::Kind::None:
        break;
    }
    return {};
}

/// The arguments of one message, taken one after the other; empty texts past the last.
class Arguments
{
public:
    Arguments(const FormatArgument* arguments, std::size_t count) noexcept
        : m_next(arguments), m_end(arguments + count)
    {
    }

    [[nodiscard]] bool AtEnd() const noexcept { return m_next == m_end; }
    std::wstring Take() { return AtEnd() ? std::wstring() : ArgumentText(*m_next++); }

private:
    const FormatArgument* m_next;
    const FormatArgument* m_end;
};

void AppendWith(std::wstring& text, const wchar_t* separator, const std::wstring& part)
{
    if (!part.empty())
    {
        text.append(text.empty() ? L"" : separator).append(part);
    }
}

std::wstring PlaceholderText(wchar_t placeholder, Arguments& arguments)
{
    std::wstring text = arguments.Take();
    if (placeholder == support::kHolderPlaceholder)
    {
        AppendWith(text, L" ", arguments.Take());
        AppendWith(text, L"/", arguments.Take());
    }
    else if (placeholder == support::kAmountPlaceholder)
    {
        AppendWith(text, L" ", arguments.Take());
    }
    return text;
}

/// Fills one template of the catalogue; the marks are explained there.
std::wstring Fill(const wchar_t* words, Arguments& arguments)
{
    std::wstring text;
    std::size_t section = 0;
    bool filled = true;
    for (const wchar_t* position = words; *position != L'\0'; ++position)
    {
        switch (*position)
        {
        case L'[':
            section = text.size();
            break;
        case L']':
            text.resize(filled ? text.size() : section);
            break;
        case L'%':
        {
            const std::wstring value = PlaceholderText(*++position, arguments);
            filled = !value.empty();
            text.append(value);
            break;
        }
        default:
            text.push_back(*position);
            break;
        }
    }
    return text;
}

/// A message that misses its first arguments does not begin with what would separate them.
void RemoveLeadingSeparators(std::wstring& text)
{
    text.erase(0, std::min(text.find_first_not_of(L" :,"), text.size()));
}

const support::CatalogueEntry* FindEntry(unsigned int number) noexcept
{
    const auto* const end = support::kCatalogue + support::kCatalogueSize;
    const auto* const found = std::find_if(support::kCatalogue, end,
                                           [number](const support::CatalogueEntry& entry)
                                           { return entry.number == number; });
    return found == end ? nullptr : found;
}

std::wstring FilledText(support::Language language, unsigned int number, Arguments& arguments)
{
    if (const auto* const entry = FindEntry(number); entry != nullptr)
    {
        std::wstring text =
            Fill(language == support::Language::French ? entry->french : entry->english, arguments);
        RemoveLeadingSeparators(text);
        return text;
    }
    return support::FormatW(support::IsReservedNumber(number)
                                ? support::kReservedMessage[static_cast<int>(language)]
                                : support::kUnknownMessage[static_cast<int>(language)],
                            number);
}

} // namespace

namespace support
{

Language MessageLanguage()
{
    const std::string value = port::Environment("SIGNUTILS_LANG");
    return EqualIgnoringAsciiCase(value.c_str(), "fr") ? Language::French : Language::English;
}

std::wstring Message(unsigned int number, const FormatArgument* arguments, std::size_t count)
{
    return MessageIn(MessageLanguage(), number, arguments, count);
}

std::wstring MessageIn(Language language, unsigned int number, const FormatArgument* arguments,
                       std::size_t count)
{
    Arguments rest(arguments, count);
    std::wstring text = FilledText(language, number, rest);
    // What the text has no place for is shown behind it rather than lost.
    while (!rest.AtEnd())
    {
        AppendWith(text, L", ", rest.Take());
    }
    return text;
}

std::wstring AmountText(double amount)
{
    std::wstring text = FormatW(L"%.6f", amount);
    const std::size_t point = text.find(L'.');
    if (point == std::wstring::npos)
    {
        return text;
    }
    constexpr std::size_t leastPlaces = 2;
    const std::size_t significant = text.find_last_not_of(L'0');
    text.resize(std::max(point + leastPlaces, significant) + 1);
    return text == L"-0.00" ? L"0.00" : text;
}

} // namespace support
