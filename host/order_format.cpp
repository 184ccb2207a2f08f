#include "host/order_format.h"

#include "host/format_recognition.h"
#include "host/refusal.h"
#include "host/suggestion.h"
#include "host/text.h"
#include "support/casefold.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace host
{

namespace
{

constexpr const char* kRecognised = "auto";

bool SameName(const std::string& left, const std::string& right)
{
    return support::EqualIgnoringAsciiCase(left.c_str(), right.c_str());
}

std::string LowerCase(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
    return text;
}

// What was meant may lack its first half ("pain.001") or say its version ("pain.001.001.03").
std::string Meant(const std::string& given)
{
    const std::string word = LowerCase(given);
    std::vector<std::string> candidates = {kRecognised};
    for (const OrderFormat& format : AllOrderFormats())
    {
        if (word.starts_with(LowerCase(format.format2)))
        {
            return format.Name();
        }
        candidates.push_back(LowerCase(format.Name()));
    }
    const std::string nearest = Nearest(word, candidates);
    for (const OrderFormat& format : AllOrderFormats())
    {
        if (SameName(format.Name(), nearest))
        {
            return format.Name();
        }
    }
    return nearest;
}

OrderFormat NamedFormat(const OptionValue& value)
{
    for (const OrderFormat& format : AllOrderFormats())
    {
        if (SameName(value.text, format.Name()))
        {
            return format;
        }
    }
    const std::string meant = Meant(value.text);
    throw UsageRefusal(value.origin + ": " + Quoted(value.text) + " is no known order format." +
                       (meant.empty() ? std::string() : " Did you mean " + meant + "?") +
                       " Give one of " + KnownOrderFormats() + ", or " + kRecognised +
                       " to have it recognised from the file.");
}

// Empty when the file is to show it.
std::optional<OrderFormat> FormatNamedBy(const OptionValues& values)
{
    const OptionValue* const value = values.Find("format");
    return value == nullptr || SameName(value->text, kRecognised)
               ? std::nullopt
               : std::optional(NamedFormat(*value));
}

} // namespace

std::string KnownOrderFormats()
{
    std::string names;
    for (const OrderFormat& format : AllOrderFormats())
    {
        names += (names.empty() ? "" : ", ") + format.Name();
    }
    return names;
}

OrderFormat ReadOrderFormat(const OptionValues& values, const std::string& path)
{
    const auto named = FormatNamedBy(values);
    return named ? *named : RecogniseOrderFormat(path);
}

void RefuseUnknownFormat(const OptionValues& values)
{
    FormatNamedBy(values);
}

} // namespace host
