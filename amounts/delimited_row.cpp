#include "amounts/delimited_row.h"

#include "port/byte_mask.h"

#include <algorithm>
#include <bit>

namespace amounts
{

namespace
{

constexpr char kQuote = '"';
constexpr char kEscape = '\\';
constexpr char kSeparator = ';';
constexpr char kLineEnd = '\n';
constexpr std::size_t kNone = std::string_view::npos;

} // namespace

void DelimitedRow::Split(ParseMode mode) noexcept
{
    m_mode = mode;
    m_walk = Walk();
    m_count = kNone;
}

std::size_t DelimitedRow::GetCount() const noexcept
{
    if (m_count == kNone)
    {
        while (FindNext())
        {
        }
        m_count = m_walk.found;
    }
    return m_count;
}

std::string_view DelimitedRow::GetAt(std::size_t index) const noexcept
{
    if (index + 1U < m_walk.found)
    {
        m_walk = Walk();
    }
    while (m_walk.found <= index)
    {
        if (!FindNext())
        {
            return {};
        }
    }
    return m_walk.last;
}

bool DelimitedRow::FindNext() const noexcept
{
    if (m_walk.finished || m_line.empty())
    {
        return false;
    }
    return m_mode == ParseMode::Plain ? FindNextPlain() : FindNextQuoted();
}

bool DelimitedRow::Take(std::string_view field) const noexcept
{
    m_walk.last = field;
    ++m_walk.found;
    return true;
}

bool DelimitedRow::FindNextPlain() const noexcept
{
    std::string_view rest = m_line;
    if (rest.back() == kLineEnd)
    {
        rest.remove_suffix(1);
    }
    rest.remove_prefix(m_walk.next);
    const std::size_t end = rest.find(kSeparator);
    m_walk.finished = end == kNone;
    m_walk.next += end + 1U;
    return Take(rest.substr(0, end));
}

// Looks for quotes in the next stretch of the line; one behind the escape character does not count.
bool DelimitedRow::FindQuotes() const noexcept
{
    while (m_walk.quotes == 0)
    {
        if (m_walk.next >= m_line.size())
        {
            return false;
        }
        const char* const from = m_line.data() + m_walk.next;
        const std::size_t length = std::min(m_line.size() - m_walk.next, port::kMaskWidth);
        const std::uint64_t escapes = port::ByteMask(from, length, kEscape);
        const std::uint64_t escaped = escapes << 1U | std::uint64_t{m_walk.escape};
        m_walk.quotes = port::ByteMask(from, length, kQuote) & ~escaped;
        m_walk.escape = escapes >> (port::kMaskWidth - 1U) != 0;
        m_walk.next += port::kMaskWidth;
    }
    return true;
}

std::size_t DelimitedRow::NextQuote() const noexcept
{
    if (m_walk.quotes == 0 && !FindQuotes())
    {
        return kNone;
    }
    const auto position = static_cast<std::size_t>(std::countr_zero(m_walk.quotes));
    m_walk.quotes &= m_walk.quotes - 1U;
    return m_walk.next - port::kMaskWidth + position;
}

// Separators and text outside quotes are passed over, so an unquoted value is lost; escape
// characters are kept in the field.
bool DelimitedRow::FindNextQuoted() const noexcept
{
    const std::string_view line = m_line;
    const std::size_t opening = NextQuote();
    const std::size_t closing = opening == kNone ? kNone : NextQuote();
    if (closing != kNone)
    {
        return Take(line.substr(opening + 1U, closing - opening - 1U));
    }
    m_walk.finished = true;
    if (m_walk.found == 0)
    {
        return Take(line); // no field at all: the line itself, with its end
    }
    return opening != kNone && Take(line.substr(opening + 1U));
}

} // namespace amounts
