#include "amounts/line_marks.h"

#include <bit>

namespace amounts
{

namespace
{

constexpr char kQuote = '"';
constexpr char kEscape = '\\';
constexpr char kSeparator = ';';

} // namespace

std::size_t LineMarks::Count() noexcept
{
    while (LoadStretch())
    {
    }
    return m_first + m_count;
}

// Makes the stretch current that holds the mark. False where there is none; the last one is then.
bool LineMarks::LoadMark(std::size_t number) noexcept
{
    if (number < m_first)
    {
        Restart();
    }
    while (number - m_first >= m_count)
    {
        if (!LoadStretch())
        {
            return false;
        }
    }
    return true;
}

bool LineMarks::LoadStretch() noexcept
{
    if (m_next >= m_line.size())
    {
        return false;
    }
    m_first += m_count;
    m_stretch = m_next;
    const std::string_view stretch = m_line.substr(m_stretch, port::kMaskWidth);
    m_next += stretch.size();
    std::size_t count = 0;
    for (std::uint64_t marks = MarksOf(stretch); marks != 0; marks &= marks - 1U)
    {
        m_places[count++] = static_cast<std::uint8_t>(std::countr_zero(marks));
    }
    m_count = count;
    return true;
}

// A bit for each character of the stretch that is a mark.
std::uint64_t LineMarks::MarksOf(std::string_view stretch) noexcept
{
    if (m_mode == ParseMode::Plain)
    {
        return port::ByteMask(stretch.data(), stretch.size(), kSeparator);
    }
    const std::uint64_t escapes = port::ByteMask(stretch.data(), stretch.size(), kEscape);
    const std::uint64_t escaped = escapes << 1U | std::uint64_t{m_escape};
    m_escape = escapes >> (port::kMaskWidth - 1U) != 0;
    return port::ByteMask(stretch.data(), stretch.size(), kQuote) & ~escaped;
}

} // namespace amounts
