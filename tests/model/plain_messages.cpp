#include "tests/model/plain_messages.h"

#include "support/message_catalogue.h"

#include <cmath>
#include <cstdio>
#include <stdexcept>

namespace model
{

namespace
{

Text WordsOf(unsigned int number)
{
    for (std::size_t index = 0; index < support::kCatalogueSize; ++index)
    {
        if (support::kCatalogue[index].number == number)
        {
            return support::kCatalogue[index].english;
        }
    }
    throw std::logic_error("no message " + std::to_string(number));
}

Text OnOneLine(Text text)
{
    for (wchar_t& character : text)
    {
        const bool control = character < 0x20 || (character >= 0x7F && character < 0xA0);
        character = control || character == 0x2028 || character == 0x2029 ? L' ' : character;
    }
    return text;
}

/// The next `count` arguments in one text, those that are empty left out.
Text Joined(const std::vector<Text>& arguments, std::size_t& next, const std::vector<Text>& before)
{
    Text text;
    for (const Text& separator : before)
    {
        const Text argument = next < arguments.size() ? OnOneLine(arguments[next]) : Text();
        ++next;
        if (!argument.empty())
        {
            text += (text.empty() ? Text() : separator) + argument;
        }
    }
    return text;
}

Text Filled(wchar_t placeholder, const std::vector<Text>& arguments, std::size_t& next)
{
    switch (placeholder)
    {
    case support::kHolderPlaceholder:
        return Joined(arguments, next, {L"", L" ", L"/"});
    case support::kAmountPlaceholder:
        return Joined(arguments, next, {L"", L" "});
    default:
        return Joined(arguments, next, {L""});
    }
}

} // namespace

std::string SixPlaces(double amount)
{
    if (std::isnan(amount))
    {
        return "nan";
    }
    const int length = std::snprintf(nullptr, 0, "%.6f", amount);
    std::string text(static_cast<std::size_t>(length), '\0');
    std::snprintf(text.data(), text.size() + 1, "%.6f", amount);
    return text;
}

Text AmountInMessage(double amount)
{
    const std::string places = SixPlaces(amount);
    Text text(places.begin(), places.end());
    const std::size_t point = text.find(L'.');
    while (point != Text::npos && text.size() > point + 3 && text.back() == L'0')
    {
        text.pop_back();
    }
    return text == L"-0.00" ? L"0.00" : text;
}

Text Message(unsigned int number, const std::vector<Text>& arguments)
{
    const Text words = WordsOf(number);
    Text message;
    std::size_t next = 0;
    for (std::size_t index = 0; index < words.size(); ++index)
    {
        if (words[index] != L'[')
        {
            message += words[index];
            continue;
        }
        const std::size_t end = words.find(L']', index);
        const std::size_t mark = words.find(L'%', index);
        const Text value = Filled(words[mark + 1], arguments, next);
        if (!value.empty())
        {
            message += words.substr(index + 1, mark - index - 1) + value +
                       words.substr(mark + 2, end - mark - 2);
        }
        index = end;
    }
    const std::size_t first = message.find_first_not_of(L" :,");
    return first == Text::npos ? Text() : message.substr(first);
}

} // namespace model
