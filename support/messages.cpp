#include "support/messages.h"

#include "port/environment.h"
#include "support/append_text.h"
#include "support/casefold.h"
#include "support/codepage.h"
#include "support/format.h"
#include "support/message_catalogue.h"

#include <algorithm>
#include <string_view>

namespace
{

// Texts of two holders with their amounts; longer ones take more memory on their way.
constexpr std::size_t kUsualLength = 256;

/// Turns the signs that would break or hide a line into blanks, from `start` on.
void KeepOneLine(std::wstring& text, std::size_t start)
{
    constexpr char32_t lineSeparator = 0x2028;
    constexpr char32_t paragraphSeparator = 0x2029;
    std::replace_if(
        text.begin() + static_cast<std::ptrdiff_t>(start), text.end(),
        [](wchar_t unit)
        {
            const auto character = static_cast<char32_t>(unit);
            if (character - 0x20 < 0x5F)
            {
                return false; // most are plain ASCII
            }
            return character < 0xA0 || character == lineSeparator ||
                   character == paragraphSeparator;
        },
        L' ');
}

void AppendFormatted(std::wstring& text, const wchar_t* format, const FormatArgument& argument)
{
    support::AppendWide(text, format, &argument, 1);
}

void AppendAmount(std::wstring& text, double amount)
{
    const std::size_t start = text.size();
    support::AppendSixPlaces(text, amount);
    const std::size_t point = text.find(L'.', start);
    if (point == std::wstring::npos)
    {
        return;
    }
    constexpr std::size_t leastPlaces = 2;
    const std::size_t significant = text.find_last_not_of(L'0');
    text.resize(std::max(point + leastPlaces, significant) + 1);
    if (text.compare(start, std::wstring::npos, L"-0.00") == 0)
    {
        text.erase(start, 1);
    }
}

void AppendArgument(std::wstring& text, const FormatArgument& argument)
{
    const std::size_t start = text.size();
    switch (argument.kind)
    {
    case FormatArgument::Kind::Narrow:
        support::AppendWideFromNarrow(text, argument.narrow == nullptr ? "" : argument.narrow);
        KeepOneLine(text, start);
        break;
    case FormatArgument::Kind::Wide:
        text.append(argument.wide == nullptr ? L"" : argument.wide);
        KeepOneLine(text, start);
        break;
    case FormatArgument::Kind::Real:
        AppendAmount(text, argument.realValue);
        break;
    case FormatArgument::Kind::Signed:
    case FormatArgument::Kind::Signed64:
        AppendFormatted(text, L"%I64d", argument.signedValue);
        break;
    case FormatArgument::Kind::Unsigned:
    case FormatArgument::Kind::Unsigned64:
        AppendFormatted(text, L"%I64u", argument.unsignedValue);
        break;
    case FormatArgument::Kind::None:
        break;
    }
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
    FormatArgument Take() { return AtEnd() ? FormatArgument() : *m_next++; }

private:
    const FormatArgument* m_next;
    const FormatArgument* m_end;
};

/// Appends the next argument; the separator stands between it and what there is from `start` on.
void AppendNext(std::wstring& text, std::size_t start, const wchar_t* separator,
                Arguments& arguments)
{
    const std::size_t before = text.size();
    text.append(before > start ? separator : L"");
    const std::size_t behind = text.size();
    AppendArgument(text, arguments.Take());
    if (text.size() == behind)
    {
        text.resize(before);
    }
}

void AppendPlaceholder(std::wstring& text, wchar_t placeholder, Arguments& arguments)
{
    const std::size_t start = text.size();
    AppendNext(text, start, L"", arguments);
    if (placeholder == support::kHolderPlaceholder)
    {
        AppendNext(text, start, L" ", arguments);
        AppendNext(text, start, L"/", arguments);
    }
    else if (placeholder == support::kAmountPlaceholder)
    {
        AppendNext(text, start, L" ", arguments);
    }
}

/// Fills one template of the catalogue; the marks are explained there.
void Fill(std::wstring& text, const wchar_t* words, Arguments& arguments)
{
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
            const std::size_t before = text.size();
            AppendPlaceholder(text, *++position, arguments);
            filled = text.size() > before;
            break;
        }
        default:
            text.push_back(*position);
            break;
        }
    }
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
        std::wstring text;
        text.reserve(kUsualLength);
        Fill(text, language == support::Language::French ? entry->french : entry->english,
             arguments);
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
        AppendNext(text, 0, L", ", rest);
    }
    return text;
}

std::wstring AmountText(double amount)
{
    std::wstring text;
    AppendAmount(text, amount);
    return text;
}

} // namespace support
