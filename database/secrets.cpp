#include "database/secrets.h"

#include "support/codepage.h"

#include <algorithm>
#include <cstddef>
#include <set>
#include <utility>

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

// Whether a letter beyond ASCII, or a part of one, may have become this character on its way
// through a driver or a driver manager.
bool MayBeConverted(char character) noexcept
{
    return character == '?' || static_cast<unsigned char>(character) >= 0x80;
}

/// The ends of what the letter may stand as at `at`: itself, its three bytes of UTF-8 at most, a
/// question mark for it or for each of these, or its code cut to a byte.
void AddEnds(std::string_view text, std::size_t at, char letter, std::set<std::size_t>& ends)
{
    constexpr std::size_t kMostBytes = 3;
    const bool isAscii = support::IsAscii(std::string_view(&letter, 1));
    const auto cut = static_cast<char>(support::WideFromNarrow(letter) & 0xFF);
    if (text[at] == letter || (!isAscii && text[at] == cut))
    {
        ends.insert(at + 1);
    }
    for (std::size_t end = at;
         !isAscii && end < std::min(at + kMostBytes, text.size()) && MayBeConverted(text[end]);
         ++end)
    {
        ends.insert(end + 1);
    }
}

/// Where the secret ends that begins at `at`, however its letters were converted; the text's end
/// where a driver may have cut it; npos when none begins there.
std::size_t EndOfConverted(std::string_view text, std::size_t at, std::string_view secret)
{
    std::set<std::size_t> ends = {at};
    for (std::size_t done = 0; done < secret.size() && !ends.empty(); ++done)
    {
        if (*ends.rbegin() == text.size() && done >= kShortestBeginning)
        {
            return text.size();
        }
        std::set<std::size_t> next;
        for (const std::size_t end : ends)
        {
            if (end < text.size())
            {
                AddEnds(text, end, secret[done], next);
            }
        }
        ends = std::move(next);
    }
    return ends.empty() ? std::string_view::npos : *ends.rbegin();
}

// A driver of narrow texts takes and tells them in a code of its own.
void HideConverted(std::string& text, const std::string& secret)
{
    for (std::size_t at = 0; at < text.size(); ++at)
    {
        const std::size_t end = EndOfConverted(text, at, secret);
        if (end != std::string::npos)
        {
            text.replace(at, end - at, kHidden);
            at += kHidden.size() - 1;
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
            if (!support::IsAscii(secret))
            {
                HideConverted(text, secret);
            }
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
