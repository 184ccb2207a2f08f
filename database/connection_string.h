#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace database
{

/// A connection string taken apart: KEY=value; with values in braces where they hold a semicolon.
class ConnectionString
{
public:
    explicit ConnectionString(std::string_view text);

    /// What is wrong with the text, naming no value of it; empty when it can be tried.
    const std::string& Fault() const noexcept { return m_fault; }

    /// The value of a key without its braces, empty when there is none. Case does not count.
    std::string Value(std::string_view key) const;

    /// The text with this value for the key, wherever and however often it stood before.
    std::string With(std::string_view key, std::string_view value) const;

    /// Whether it lets MariaDB's and MySQL's drivers open a lost connection anew by themselves.
    bool AllowsSilentReconnect() const;

    /// The texts that no message may show: values with and without their braces.
    std::vector<std::string> Secrets() const;

    /// The text for messages, every password masked; only for a text without a fault, because
    /// in a broken one a password may stand anywhere.
    std::string Masked() const;

private:
    enum class Visibility
    {
        Open,
        Secret,
        RestOfASecret, ///< an unknown key behind a secret: the secret may hold a semicolon
    };

    struct Entry
    {
        std::string key;
        std::string raw; ///< as it stands, braces included
        Visibility visibility = Visibility::Open;
    };

    std::size_t ReadEntry(std::string_view text, std::size_t at);
    void AddEntry(const std::string& key, const std::string& raw);
    void CheckTarget();

    std::vector<Entry> m_entries;
    std::string m_fault;
};

} // namespace database
