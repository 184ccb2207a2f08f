#include "engine/mt_fields.h"

#include <utility>

namespace engine
{

namespace
{

constexpr std::size_t kLongestLine = 1024;
// More lines than any field has: what goes beyond is not kept, so that memory stays constant.
constexpr std::size_t kMostLines = 64;

} // namespace

// Lines of block 4: what stands before "{4:" and after "-}" on a line is passed over.
bool MtFieldSource::NextTextLine(std::string& line)
{
    while (m_lines.NextLine(line, kLongestLine))
    {
        const bool closes = line.starts_with("-}");
        m_inBlock = m_inBlock && !closes;
        if (const std::size_t start = line.find("{4:"); start != std::string::npos)
        {
            line.erase(0, start + 3U);
            OpenBlock();
        }
        else if (closes || line.starts_with("{"))
        {
            continue;
        }
        if (line.empty() || line == "-")
        {
            continue;
        }
        return true;
    }
    return false;
}

void MtFieldSource::OpenBlock() noexcept
{
    if (m_inBlock && m_unclosedAt == 0)
    {
        m_unclosedAt = m_lines.Number();
    }
    m_inBlock = true;
}

std::uint64_t MtFieldSource::UnclosedAt() const noexcept
{
    return m_unclosedAt == 0 && m_inBlock ? m_lines.Number() : m_unclosedAt;
}

bool MtFieldSource::SplitTag(const std::string& line, std::string& tag, std::string& rest)
{
    if (line.empty() || line.front() != ':')
    {
        return false;
    }
    const std::size_t end = line.find(':', 1);
    if (end == std::string::npos || end < 3 || end > 4)
    {
        return false;
    }
    const std::string name = line.substr(1, end - 1U);
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    const auto isUpper = [](char c) { return c >= 'A' && c <= 'Z'; };
    if (!isDigit(name[0]) || !isDigit(name[1]) || (name.size() == 3 && !isUpper(name[2])))
    {
        return false;
    }
    tag = name;
    rest = line.substr(end + 1U);
    return true;
}

bool MtFieldSource::Next(MtField& field)
{
    field.lines.clear();
    std::string rest;
    while (!m_haveAhead)
    {
        // Text before the first field is not part of a message.
        if (!NextTextLine(m_ahead))
        {
            return false;
        }
        m_haveAhead = SplitTag(m_ahead, field.tag, rest);
    }
    SplitTag(m_ahead, field.tag, rest);
    field.position = m_lines.Number();
    field.lines.push_back(std::move(rest));
    m_haveAhead = false;
    std::string tag;
    while (NextTextLine(m_ahead))
    {
        if (SplitTag(m_ahead, tag, rest))
        {
            m_haveAhead = true;
            break;
        }
        if (field.lines.size() < kMostLines)
        {
            field.lines.push_back(m_ahead);
        }
    }
    return true;
}

} // namespace engine
