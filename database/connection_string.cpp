#include "database/connection_string.h"

#include "database/secrets.h"
#include "support/casefold.h"
#include "support/numbers.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace database
{

namespace
{

constexpr std::string_view kBlanks = " \t\r\n";

std::string_view Trimmed(std::string_view text)
{
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos)
    {
        return {};
    }
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

// Keys that need no hiding. Any other one behind a password may be the rest of it, where a
// semicolon in it was not put in braces.
constexpr const char* kOpenKeys[] = {
    "DRIVER",   "DSN",     "FILEDSN", "DATABASE", "SERVER", "SERVERNAME", "HOST",
    "HOSTNAME", "PORT",    "UID",     "USER",     "SOCKET", "USERNAME",   "TIMEOUT",
    "SSLMODE",  "ENCRYPT", "CHARSET", "OPTION",   "APP",    "WSID",       "TRUSTSERVERCERTIFICATE",
};

bool IsOpenKey(const std::string& key)
{
    return std::any_of(std::begin(kOpenKeys), std::end(kOpenKeys),
                       [&key](const char* each)
                       { return support::EqualIgnoringAsciiCase(key.c_str(), each); });
}

/// Also a value that holds settings of its own, a password among them.
bool IsSecret(const std::string& key, const std::string& raw)
{
    return IsSecretKey(key) || !SecretSettingsIn(raw).empty();
}

/// Position behind the brace that closes the one at `open`; npos when none does. A doubled closing
/// brace stands for one in the value.
std::size_t BehindBraces(std::string_view text, std::size_t open)
{
    std::size_t at = open + 1;
    while (at < text.size())
    {
        if (text[at] != '}')
        {
            ++at;
        }
        else if (at + 1 < text.size() && text[at + 1] == '}')
        {
            at += 2;
        }
        else
        {
            return at + 1;
        }
    }
    return std::string_view::npos;
}

// As it stands where it needs no braces, for not every driver takes them off.
std::string InBraces(std::string_view value)
{
    if (Trimmed(value) == value && value.find_first_of(";{}=") == std::string_view::npos)
    {
        return std::string(value);
    }
    std::string raw = "{";
    for (const char letter : value)
    {
        raw += letter;
        raw += letter == '}' ? "}" : "";
    }
    return raw + "}";
}

std::string WithoutBraces(const std::string& raw)
{
    if (raw.size() < 2 || raw.front() != '{')
    {
        return raw;
    }
    std::string value;
    for (std::size_t at = 1; at + 1 < raw.size(); ++at)
    {
        value += raw[at];
        at += raw[at] == '}' ? 1 : 0;
    }
    return value;
}

} // namespace

ConnectionString::ConnectionString(std::string_view text)
{
    if (Trimmed(text).empty())
    {
        m_fault = "The connection string is empty.";
        return;
    }
    std::size_t at = 0;
    while (at < text.size() && m_fault.empty())
    {
        at = ReadEntry(text, at);
    }
    if (m_fault.empty())
    {
        CheckTarget();
    }
}

std::size_t ConnectionString::ReadEntry(std::string_view text, std::size_t at)
{
    const std::size_t equals = text.find('=', at);
    const std::size_t semicolon = text.find(';', at);
    if (semicolon < equals || equals == std::string_view::npos)
    {
        if (!Trimmed(text.substr(at, semicolon - at)).empty())
        {
            m_fault = m_entries.empty()
                          ? std::string("The connection string has no '=' in its first part; it is "
                                        "made of KEY=value parts, joined by semicolons.")
                          : "The connection string has no '=' in the part behind entry " +
                                std::to_string(m_entries.size()) +
                                "; a value with a semicolon must stand in braces.";
        }
        return semicolon == std::string_view::npos ? text.size() : semicolon + 1;
    }
    const std::string key(Trimmed(text.substr(at, equals - at)));
    if (key.empty())
    {
        m_fault = "The connection string has a '=' without a key before it.";
        return text.size();
    }
    const std::size_t start = std::min(text.find_first_not_of(kBlanks, equals + 1), text.size());
    std::size_t end = start;
    if (start < text.size() && text[start] == '{')
    {
        end = BehindBraces(text, start);
        if (end == std::string_view::npos)
        {
            // Not by its key: that may be part of a password with a semicolon.
            m_fault = "The connection string never closes the brace of the value in its part " +
                      std::to_string(m_entries.size() + 1) + ".";
            return text.size();
        }
    }
    end = std::min(text.find(';', end), text.size());
    AddEntry(key, std::string(Trimmed(text.substr(start, end - start))));
    return end + 1;
}

void ConnectionString::AddEntry(const std::string& key, const std::string& raw)
{
    Visibility visibility = Visibility::Open;
    if (IsSecret(key, raw))
    {
        visibility = Visibility::Secret;
    }
    else if (!m_entries.empty() && m_entries.back().visibility != Visibility::Open &&
             !IsOpenKey(key))
    {
        visibility = Visibility::RestOfASecret;
    }
    m_entries.push_back({key, raw, visibility});
}

void ConnectionString::CheckTarget()
{
    if (Value("DRIVER").empty() && Value("DSN").empty() && Value("FILEDSN").empty())
    {
        m_fault = "The connection string names no database: it has neither DRIVER nor DSN.";
    }
}

std::string ConnectionString::Value(std::string_view key) const
{
    const std::string wanted(key);
    for (const Entry& each : m_entries)
    {
        if (support::EqualIgnoringAsciiCase(each.key.c_str(), wanted.c_str()))
        {
            return WithoutBraces(each.raw);
        }
    }
    return {};
}

std::string ConnectionString::With(std::string_view key, std::string_view value) const
{
    const std::string wanted(key);
    std::string text;
    for (const Entry& each : m_entries)
    {
        if (!support::EqualIgnoringAsciiCase(each.key.c_str(), wanted.c_str()))
        {
            text += each.key + "=" + each.raw + ";";
        }
    }
    return text + wanted + "=" + InBraces(value) + ";";
}

bool ConnectionString::AllowsSilentReconnect() const
{
    constexpr std::int64_t kReconnect = 4194304; // of the option's bits
    const auto number = [this](const char* key) { return support::ToInt64(Value(key).c_str()); };
    return number("AUTO_RECONNECT") != 0 || (number("OPTION") & kReconnect) != 0 ||
           (number("OPTIONS") & kReconnect) != 0;
}

std::vector<std::string> ConnectionString::Secrets() const
{
    std::vector<std::string> secrets;
    for (const Entry& each : m_entries)
    {
        if (each.visibility == Visibility::RestOfASecret)
        {
            secrets.push_back(each.key + "=" + each.raw);
        }
        if (each.visibility == Visibility::Open)
        {
            continue;
        }
        const std::string value = WithoutBraces(each.raw);
        secrets.push_back(value);
        if (value.size() + 2 < each.raw.size())
        {
            // With its doubled braces, as a driver quotes it.
            secrets.push_back(each.raw.substr(1, each.raw.size() - 2));
        }
        for (std::string& inner : SecretSettingsIn(value))
        {
            secrets.push_back(std::move(inner));
        }
    }
    return secrets;
}

std::string ConnectionString::Masked() const
{
    std::string masked;
    for (const Entry& each : m_entries)
    {
        masked += each.visibility == Visibility::RestOfASecret ? "" : each.key + "=";
        masked += each.visibility == Visibility::Open ? std::string_view(each.raw) : kHidden;
        masked += ";";
    }
    return masked;
}

} // namespace database
