#include "amounts/text_line_reader.h"

#include <cstring>
#include <new>
#include <string_view>

namespace amounts
{

namespace
{

constexpr std::size_t kBlockSize = std::size_t{64} * 1024;
constexpr char kEndOfFile = 0x1A;

} // namespace

bool TextLineReader::Open(const char* path)
{
    Close();
    m_failed = false;
    try
    {
        m_block.resize(kBlockSize);
    }
    catch (const std::bad_alloc&)
    {
        return false;
    }
    m_fileEnded = !m_file.Open(path, port::OpenMode::Read);
    return !m_fileEnded;
}

// The next block; false when the file has no more. A read that fails ends the file: what was read
// before it still counts.
bool TextLineReader::LoadBlock()
{
    if (m_fileEnded)
    {
        return false;
    }
    m_next = 0;
    m_end = 0;
    const std::int64_t size = m_file.Read(m_block.data(), m_block.size());
    if (size <= 0)
    {
        m_failed = size < 0;
        m_fileEnded = true;
        return false;
    }
    m_end = static_cast<std::size_t>(size);
    if (const void* mark = std::memchr(m_block.data(), kEndOfFile, m_end); mark != nullptr)
    {
        m_end = static_cast<std::size_t>(static_cast<const char*>(mark) - m_block.data());
        m_fileEnded = true;
    }
    return m_end > 0;
}

bool TextLineReader::AtEnd()
{
    return m_next == m_end && !LoadBlock();
}

bool TextLineReader::ReadLine(std::string& line)
{
    line.clear();
    while (!AtEnd())
    {
        const std::string_view left(m_block.data() + m_next, m_end - m_next);
        const std::size_t feed = left.find('\n');
        line.append(left.substr(0, feed));
        if (feed != std::string_view::npos)
        {
            if (!line.empty() && line.back() == '\r')
            {
                line.pop_back();
            }
            line += '\n';
            m_next += feed + 1U;
            return !AtEnd();
        }
        m_next = m_end;
    }
    return false;
}

bool TextLineReader::FinishLine()
{
    while (!AtEnd())
    {
        const std::string_view left(m_block.data() + m_next, m_end - m_next);
        const std::size_t feed = left.find('\n');
        if (feed != std::string_view::npos)
        {
            m_next += feed + 1U;
            return !AtEnd();
        }
        m_next = m_end;
    }
    return false;
}

void TextLineReader::Close() noexcept
{
    m_file.Close();
    m_next = 0;
    m_end = 0;
    m_fileEnded = true;
}

} // namespace amounts
