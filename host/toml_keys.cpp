#include "host/toml_keys.h"

#include <algorithm>

namespace host
{

namespace
{

/// Counts the points between the parts of keys; those in texts and comments are none.
class KeyScan
{
public:
    explicit KeyScan(std::string_view toml) : m_toml(toml) {}

    std::size_t Run()
    {
        while (m_at < m_toml.size())
        {
            const char letter = m_toml[m_at];
            if (letter == '"' || letter == '\'')
            {
                SkipText(letter);
                continue;
            }
            if (letter == '#')
            {
                m_at = std::min(m_toml.find('\n', m_at), m_toml.size());
                continue;
            }
            if (letter == '.' && ++m_parts > kMostKeyParts)
            {
                return m_line;
            }
            if (std::string_view("\n=,[]{}").find(letter) != std::string_view::npos)
            {
                m_parts = 1;
            }
            Step();
        }
        return 0;
    }

private:
    void Step()
    {
        m_line += m_toml[m_at] == '\n' ? 1 : 0;
        ++m_at;
    }

    void SkipText(char quote)
    {
        const std::string_view rest = m_toml.substr(m_at);
        const bool isLong = rest.size() >= 3 && rest[1] == quote && rest[2] == quote;
        m_at += isLong ? 3 : 1;
        std::size_t closing = 0;
        while (m_at < m_toml.size() && closing < (isLong ? 3U : 1U))
        {
            const char letter = m_toml[m_at];
            if (letter == '\n' && !isLong)
            {
                return; // never closed: the parser refuses it
            }
            closing = letter == quote ? closing + 1 : 0;
            if (letter == '\\' && quote == '"')
            {
                Step();
            }
            if (m_at < m_toml.size())
            {
                Step();
            }
        }
        // One or two quotes before the closing ones belong to the text.
        for (int more = 0; isLong && more < 2 && m_at < m_toml.size() && m_toml[m_at] == quote;
             ++more)
        {
            Step();
        }
    }

    std::string_view m_toml;
    std::size_t m_at = 0;
    std::size_t m_line = 1;
    std::size_t m_parts = 1;
};

} // namespace

std::size_t LineOfKeyWithTooManyParts(std::string_view toml)
{
    return KeyScan(toml).Run();
}

} // namespace host
