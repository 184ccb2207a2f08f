#include "engine/line_source.h"

#include "engine/failure.h"
#include "support/format.h"

#include <algorithm>

namespace engine
{

namespace
{

constexpr char kEndOfFile = 0x1A;
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF"; // of UTF-8

} // namespace

bool LineSource::Load()
{
    if (m_block.empty() && !m_ended)
    {
        m_block = m_file.NextBlock();
        m_ended = m_block.empty();
        if (m_atStart && m_block.starts_with(kByteOrderMark))
        {
            m_block.remove_prefix(kByteOrderMark.size());
        }
        m_atStart = false;
        if (const std::size_t mark = m_block.find(kEndOfFile); mark != std::string_view::npos)
        {
            m_behindMark = m_block.substr(mark);
            m_block = m_block.substr(0, mark);
            m_ended = true;
            m_marked = true;
        }
    }
    return !m_block.empty();
}

bool LineSource::NextLine(std::string& line, std::size_t longest)
{
    line.clear();
    bool found = false;
    bool ended = false;
    while (!ended && Load())
    {
        found = true;
        const std::size_t feed = m_block.find('\n');
        ended = feed != std::string_view::npos;
        const std::size_t size = ended ? feed : m_block.size();
        if (line.size() + size > longest)
        {
            throw Failure(FailureNumber::NotThisFormat,
                          support::FormatA("Order file %s, line %I64u: longer than %u characters",
                                           m_file.Path().c_str(),
                                           static_cast<unsigned long long>(m_number + 1U),
                                           static_cast<unsigned int>(longest)));
        }
        line.append(m_block.substr(0, size));
        m_block.remove_prefix(ended ? size + 1U : size);
    }
    if (found)
    {
        ++m_number;
    }
    if (!line.empty() && line.back() == '\r')
    {
        line.pop_back();
    }
    return found;
}

bool LineSource::NextRecord(std::string& record, std::size_t length)
{
    record.clear();
    while (record.size() < length && Load())
    {
        if (record.empty())
        {
            const std::size_t start = std::min(m_block.find_first_not_of("\r\n"), m_block.size());
            m_block.remove_prefix(start);
        }
        const std::size_t size = std::min(length - record.size(), m_block.size());
        record.append(m_block.substr(0, size));
        m_block.remove_prefix(size);
    }
    if (record.empty())
    {
        return false;
    }
    ++m_number;
    return true;
}

bool LineSource::HasTextBehindEnd()
{
    constexpr std::string_view kPadding("\x1A\0 \t\r\n", 6);
    bool found = false;
    while (m_marked && !found && !m_behindMark.empty())
    {
        found = m_behindMark.find_first_not_of(kPadding) != std::string_view::npos;
        m_behindMark = m_file.NextBlock();
    }
    return found;
}

bool LineSource::HasLineEndWithin(std::size_t count)
{
    return Load() && m_block.substr(0, count).find('\n') != std::string_view::npos;
}

} // namespace engine
