#include "amounts/delimited_row.h"

#include <algorithm>
#include <new>

namespace amounts
{

namespace
{

constexpr char kLineEnd = '\n';

} // namespace

bool DelimitedRow::Keep() noexcept
{
    const std::string_view line = m_marks.Line();
    if (line.data() == m_kept.data())
    {
        return true;
    }
    try
    {
        m_kept = line;
        Look(m_kept, m_marks.Mode());
        return true;
    }
    catch (const std::bad_alloc&)
    {
        Look({}, m_marks.Mode());
        return false;
    }
}

std::size_t DelimitedRow::GetCount() const noexcept
{
    if (IsEmpty())
    {
        return 0;
    }
    const std::size_t marks = m_marks.Count();
    // Without a whole field the line is the only one; a quote that stays open begins one more.
    return m_marks.Mode() == ParseMode::Plain ? marks + 1U
                                              : std::max((marks + 1U) / 2U, std::size_t{1});
}

std::string_view DelimitedRow::GetAt(std::size_t index) const noexcept
{
    return m_marks.Mode() == ParseMode::Quoted ? FindQuoted(index) : FindPlain(index);
}

std::string_view DelimitedRow::FindPlain(std::size_t index) const noexcept
{
    const std::string_view line = m_marks.Line();
    const std::size_t separator = index == 0 ? 0 : m_marks.Find(index - 1U);
    if (separator == LineMarks::kNone)
    {
        return {};
    }
    const std::size_t start = index == 0 ? 0 : separator + 1U;
    const std::size_t end = std::min(m_marks.Find(index), line.size());
    const std::string_view field = line.substr(start, end - start);
    return field.substr(0, field.find(kLineEnd));
}

// Separators and text outside quotes are passed over, so an unquoted value is lost; escape
// characters are kept in the field.
std::string_view DelimitedRow::FindQuoted(std::size_t index) const noexcept
{
    const std::string_view line = m_marks.Line();
    const std::size_t opening = m_marks.Find(2U * index);
    const std::size_t closing =
        opening == LineMarks::kNone ? LineMarks::kNone : m_marks.Find(2U * index + 1U);
    if (closing != LineMarks::kNone)
    {
        return line.substr(opening + 1U, closing - opening - 1U);
    }
    if (index == 0)
    {
        return line; // no whole field at all: the line itself, with its end
    }
    return opening == LineMarks::kNone ? std::string_view() : line.substr(opening + 1U);
}

} // namespace amounts
