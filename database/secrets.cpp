#include "database/secrets.h"

#include <algorithm>
#include <cstddef>

namespace database
{

namespace
{

constexpr std::size_t kShortestHidden = 3;
// A shorter end would often be a beginning by chance.
constexpr std::size_t kShortestBeginning = 4;

constexpr std::string_view kBlanks = " \t\r\n";
constexpr std::string_view kSecretStems[] = {"pwd", "pass", "secret", "token", "credential"};

char AsciiLower(char character) noexcept
{
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a')
                                                : character;
}

bool IsKeyCharacter(char character) noexcept
{
    const char lower = AsciiLower(character);
    return (lower >= 'a' && lower <= 'z') || (lower >= '0' && lower <= '9') || lower == '_' ||
           lower == '-';
}

/// Where a value stands in a text, the marks round it left out.
struct Span
{
    std::size_t begin;
    std::size_t end;
};

/// A value without marks ends at a semicolon, a blank or a quote: whoever quotes a connection
/// string goes on behind it.
Span ValueAt(std::string_view text, std::size_t at)
{
    const char first = at < text.size() ? text[at] : '\0';
    std::string_view ends = "; \t\r\n'\"";
    std::size_t begin = at;
    if (first == '{' || first == '\'' || first == '"')
    {
        ends = first == '{' ? "}" : first == '"' ? "\"" : "'";
        ++begin;
    }
    std::size_t end = std::min(text.find_first_of(ends, begin), text.size());
    // A doubled closing mark stands for one.
    while (begin > at && end + 1 < text.size() && text[end + 1] == text[end])
    {
        end = std::min(text.find_first_of(ends, end + 2), text.size());
    }
    return {begin, end};
}

/// The next secret setting's value at or behind `from`; begins at npos when there is none.
Span NextSecretSetting(std::string_view text, std::size_t from)
{
    for (std::size_t equals = text.find('=', from); equals != std::string_view::npos;
         equals = text.find('=', equals + 1))
    {
        const std::size_t last = text.substr(0, equals).find_last_not_of(kBlanks);
        std::size_t start = last == std::string_view::npos ? 0 : last + 1;
        const std::size_t stop = start;
        while (start > 0 && IsKeyCharacter(text[start - 1]))
        {
            --start;
        }
        if (IsSecretKey(text.substr(start, stop - start)))
        {
            return ValueAt(text,
                           std::min(text.find_first_not_of(kBlanks, equals + 1), text.size()));
        }
    }
    return {std::string_view::npos, std::string_view::npos};
}

void HideAll(std::string& text, const std::string& secret)
{
    for (std::size_t at = text.find(secret); at != std::string::npos;
         at = text.find(secret, at + kHidden.size()))
    {
        text.replace(at, secret.size(), kHidden);
    }
}

void HideBeginningAtTheEnd(std::string& text, const std::string& secret)
{
    for (std::size_t length = std::min(secret.size(), text.size()); length >= kShortestBeginning;
         --length)
    {
        if (text.ends_with(std::string_view(secret).substr(0, length)))
        {
            text.replace(text.size() - length, length, kHidden);
            return;
        }
    }
}

} // namespace

bool IsSecretKey(std::string_view key)
{
    std::string lower(key);
    std::transform(lower.begin(), lower.end(), lower.begin(), AsciiLower);
    return std::any_of(std::begin(kSecretStems), std::end(kSecretStems),
                       [&lower](std::string_view stem)
                       { return lower.find(stem) != std::string::npos; });
}

std::vector<std::string> SecretSettingsIn(std::string_view text)
{
    std::vector<std::string> values;
    for (Span value = NextSecretSetting(text, 0); value.begin != std::string_view::npos;
         value = NextSecretSetting(text, value.end))
    {
        values.emplace_back(text.substr(value.begin, value.end - value.begin));
    }
    return values;
}

std::string WithoutSecrets(std::string text, const std::vector<std::string>& secrets)
{
    // The longest first: one may be the beginning of another.
    std::vector<std::string> longestFirst = secrets;
    std::sort(longestFirst.begin(), longestFirst.end(),
              [](const auto& left, const auto& right) { return left.size() > right.size(); });
    for (const std::string& secret : longestFirst)
    {
        if (secret.size() >= kShortestHidden)
        {
            HideAll(text, secret);
            HideBeginningAtTheEnd(text, secret);
        }
    }
    for (Span value = NextSecretSetting(text, 0); value.begin != std::string_view::npos;
         value = NextSecretSetting(text, value.begin + kHidden.size()))
    {
        text.replace(value.begin, value.end - value.begin, kHidden);
    }
    return text;
}

} // namespace database
