#include "host/option_readers.h"

#include "host/refusal.h"
#include "host/text.h"
#include "support/codepage.h"

#include <algorithm>

namespace host
{

namespace
{

constexpr std::size_t kIdentifierLength = 8;
constexpr std::size_t kMostNumberDigits = 10;

} // namespace

const OptionValue& Required(const OptionValues& values, const std::string& name,
                            const std::string& example)
{
    const OptionValue* value = values.Find(name);
    if (value == nullptr)
    {
        throw UsageRefusal("option --" + name + " is missing. Give it as " + example +
                           ", or as field " + name + " of a --config file.");
    }
    return *value;
}

void RefuseUnreadable(const OptionValue& value)
{
    if (!IsUtf8(value.text))
    {
        throw UsageRefusal(value.origin + ": the value is no UTF-8 text. Give it in UTF-8.");
    }
    if (HasControlCharacter(value.text))
    {
        throw UsageRefusal(value.origin + ": " + Quoted(value.text) +
                           " holds a control character. Remove it.");
    }
}

std::string NarrowText(const OptionValue& value)
{
    RefuseUnreadable(value);
    std::string narrow;
    if (!support::TryNarrowFromWide(support::WideFromUtf8(value.text), narrow))
    {
        throw UsageRefusal(value.origin + ": the character " +
                           Quoted(FirstWithoutNarrowPlace(value.text)) + " in " +
                           Quoted(value.text) +
                           " has no place in Windows-1252, in which identifiers and paths are "
                           "kept. Use a name of Western European letters.");
    }
    return narrow;
}

std::string OptionalNarrowText(const OptionValues& values, const std::string& name)
{
    const OptionValue* value = values.Find(name);
    return value == nullptr ? std::string() : NarrowText(*value);
}

std::string NarrowTextUpTo(const OptionValue& value, std::size_t longest)
{
    const std::string narrow = NarrowText(value);
    if (narrow.size() > longest)
    {
        throw UsageRefusal(value.origin + ": " + Quoted(value.text) + " has " +
                           std::to_string(narrow.size()) + " characters. Give at most " +
                           std::to_string(longest) + ".");
    }
    return narrow;
}

std::string ContractIdentifier(const OptionValue& value)
{
    const std::string narrow = NarrowTextUpTo(value, kIdentifierLength);
    if (narrow.empty())
    {
        throw UsageRefusal(value.origin + ": the value is empty. Give 1 to " +
                           std::to_string(kIdentifierLength) + " characters.");
    }
    if (narrow.find('\'') != std::string::npos)
    {
        throw UsageRefusal(value.origin + ": " + Quoted(value.text) +
                           " holds an apostrophe, which would change the look-up of the rules. "
                           "Give the identifier without it.");
    }
    return narrow;
}

std::uint32_t WholeNumber(const OptionValue& value, std::uint32_t largest, std::uint32_t smallest)
{
    const bool isDigits = !value.text.empty() && value.text.size() <= kMostNumberDigits &&
                          value.text.find_first_not_of("0123456789") == std::string::npos;
    std::uint64_t number = 0;
    for (const char digit : isDigits ? value.text : std::string())
    {
        number = number * 10 + static_cast<std::uint64_t>(digit - '0');
    }
    if (!isDigits || number < smallest || number > largest)
    {
        throw UsageRefusal(value.origin + ": " + Quoted(value.text) +
                           " is not a whole number from " + std::to_string(smallest) + " to " +
                           std::to_string(largest) + ". Give digits only, such as 9.");
    }
    return static_cast<std::uint32_t>(number);
}

} // namespace host
