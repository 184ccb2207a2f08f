#include "services/event_line.h"

#include "services/event_key.h"
#include "support/codepage.h"
#include "support/format.h"

#include <cstddef>

namespace services
{

namespace
{

struct TextMember
{
    const char* start;
    std::optional<std::wstring> EventRecord::*field;
};

constexpr char kKeyStart[] = "{\"EVENTKEY\":";
constexpr char kDateTimeStart[] = ",\"DATETIME\":";
constexpr char kLevelStart[] = ",\"LEVEL\":";
constexpr TextMember kTextMembers[] = {
    {",\"SOURCE\":", &EventRecord::source},
    {",\"REFERENCE\":", &EventRecord::reference},
    {",\"AUX1\":", &EventRecord::aux1},
    {",\"AUX2\":", &EventRecord::aux2},
    {",\"TEXT\":", &EventRecord::text},
    {",\"ATTACHKIND\":", &EventRecord::attachKind},
    {",\"ATTACHPATH\":", &EventRecord::attachPath},
};
constexpr char kEnd[] = "}";
constexpr char kNull[] = "null";

constexpr std::string_view kHexDigits = "0123456789abcdef";

void AppendQuoted(std::string& line, std::string_view utf8)
{
    line += '"';
    for (const char letter : utf8)
    {
        if (letter == '"' || letter == '\\')
        {
            line += '\\';
            line += letter;
        }
        else if (static_cast<unsigned char>(letter) < 0x20)
        {
            line += support::FormatA("\\u%04x", static_cast<unsigned int>(letter));
        }
        else
        {
            line += letter;
        }
    }
    line += '"';
}

/// Takes the line apart from its start; after a first failure nothing fits any more.
class Reader
{
public:
    explicit Reader(std::string_view line) : m_rest(line) {}

    bool Take(std::string_view expected)
    {
        if (m_rest.substr(0, expected.size()) != expected)
        {
            return false;
        }
        m_rest.remove_prefix(expected.size());
        return true;
    }

    bool TakeQuoted(std::string& utf8)
    {
        if (!Take("\""))
        {
            return false;
        }
        while (!m_rest.empty() && m_rest.front() != '"')
        {
            if (!TakeCharacter(utf8))
            {
                return false;
            }
        }
        return Take("\"");
    }

    bool TakeText(std::optional<std::wstring>& text)
    {
        if (Take(kNull))
        {
            text.reset();
            return true;
        }
        std::string utf8;
        return TakeQuoted(utf8) && support::TryWideFromUtf8(utf8, text.emplace());
    }

    bool TakeLevel(std::uint16_t& level)
    {
        std::size_t digits = 0;
        std::uint32_t value = 0;
        while (digits < m_rest.size() && digits < 5 && m_rest[digits] >= '0' &&
               m_rest[digits] <= '9')
        {
            value = value * 10 + static_cast<std::uint32_t>(m_rest[digits++] - '0');
        }
        const bool leadingZero = digits > 1 && m_rest.front() == '0';
        if (digits == 0 || leadingZero || value > UINT16_MAX)
        {
            return false;
        }
        m_rest.remove_prefix(digits);
        level = static_cast<std::uint16_t>(value);
        return true;
    }

    bool AtEnd() const { return m_rest.empty(); }

private:
    bool TakeCharacter(std::string& utf8)
    {
        if (Take("\\u00"))
        {
            return TakeControl(utf8);
        }
        if (Take("\\") && !m_rest.empty() && m_rest.front() != '"' && m_rest.front() != '\\')
        {
            return false;
        }
        if (m_rest.empty() || static_cast<unsigned char>(m_rest.front()) < 0x20)
        {
            return false;
        }
        utf8 += m_rest.front();
        m_rest.remove_prefix(1);
        return true;
    }

    bool TakeControl(std::string& utf8)
    {
        const std::size_t high =
            m_rest.empty() ? std::string_view::npos : kHexDigits.find(m_rest[0]);
        const std::size_t low =
            m_rest.size() < 2 ? std::string_view::npos : kHexDigits.find(m_rest[1]);
        // A NUL would end the text, and with it the statement.
        if (high > 1 || low > 15 || high + low == 0)
        {
            return false;
        }
        utf8 += static_cast<char>(high * 16 + low);
        m_rest.remove_prefix(2);
        return true;
    }

    std::string_view m_rest;
};

/// Digits where the form has them: this text enters a statement as it stands.
bool IsDateTime(std::string_view text)
{
    constexpr std::string_view kForm = "0000-00-00 00:00:00";
    if (text.size() != kForm.size())
    {
        return false;
    }
    for (std::size_t index = 0; index < kForm.size(); ++index)
    {
        const bool digit = text[index] >= '0' && text[index] <= '9';
        if (kForm[index] == '0' ? !digit : text[index] != kForm[index])
        {
            return false;
        }
    }
    return true;
}

} // namespace

std::string EventLine(const EventRecord& event)
{
    std::string line = kKeyStart;
    AppendQuoted(line, event.key);
    line += kDateTimeStart;
    AppendQuoted(line, event.dateTime);
    line += kLevelStart;
    line += support::FormatA("%u", static_cast<unsigned int>(event.level));
    for (const TextMember& member : kTextMembers)
    {
        line += member.start;
        if (const std::optional<std::wstring>& text = event.*member.field)
        {
            AppendQuoted(line, support::Utf8FromWide(*text));
        }
        else
        {
            line += kNull;
        }
    }
    return line + kEnd + '\n';
}

std::optional<EventRecord> ReadEventLine(std::string_view line)
{
    EventRecord event;
    Reader reader(line);
    bool good = reader.Take(kKeyStart) && reader.TakeQuoted(event.key) && IsEventKey(event.key) &&
                reader.Take(kDateTimeStart) && reader.TakeQuoted(event.dateTime) &&
                IsDateTime(event.dateTime) && reader.Take(kLevelStart) &&
                reader.TakeLevel(event.level);
    for (const TextMember& member : kTextMembers)
    {
        good = good && reader.Take(member.start) && reader.TakeText(event.*member.field);
    }
    good = good && reader.Take(kEnd) && reader.AtEnd();
    return good ? std::optional(std::move(event)) : std::nullopt;
}

std::string EventLineStart(const std::string& key)
{
    return kKeyStart + ('"' + key + '"');
}

} // namespace services
