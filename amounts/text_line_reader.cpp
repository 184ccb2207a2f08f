#include "amounts/text_line_reader.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace amounts
{

namespace
{

constexpr std::size_t kBlockSize = std::size_t{64} * 1024;
constexpr char kLineFeed = '\n';
constexpr char kReturn = '\r';
constexpr char kEndOfFile = 0x1A;

} // namespace

bool TextLineReader::Open(const char* path)
{
    Close();
    m_failed = false;
    m_lineEnded = false;
    try
    {
        m_block.resize(std::max(m_block.size(), kBlockSize));
    }
    catch (const std::bad_alloc&)
    {
        return false;
    }
    m_fileEnded = !m_file.Open(path, port::OpenMode::Read);
    return !m_fileEnded;
}

// Moves the line to the front of the block; doubles the block when the line fills it.
void TextLineReader::MakeRoom()
{
    if (m_line > 0)
    {
        std::memmove(m_block.data(), m_block.data() + m_line, m_end - m_line);
        m_next -= m_line;
        m_end -= m_line;
        m_line = 0;
    }
    if (m_end == m_block.size())
    {
        m_block.resize(2U * m_block.size());
    }
}

// Reads on behind the line; false when the file has no more. A read that fails ends the file: what
// was read before it still counts.
bool TextLineReader::LoadBlock()
{
    if (m_fileEnded)
    {
        return false;
    }
    MakeRoom();
    char* const start = m_block.data() + m_end;
    const std::int64_t read = m_file.Read(start, m_block.size() - m_end);
    if (read <= 0)
    {
        m_failed = read < 0;
        m_fileEnded = true;
        return false;
    }
    auto size = static_cast<std::size_t>(read);
    if (const void* mark = std::memchr(start, kEndOfFile, size); mark != nullptr)
    {
        size = static_cast<std::size_t>(static_cast<const char*>(mark) - start);
        m_fileEnded = true;
    }
    m_end += size;
    return size > 0;
}

bool TextLineReader::AtEnd()
{
    return m_next == m_end && !LoadBlock();
}

// Passes over the bytes of the block up to the line's feed.
void TextLineReader::PassOver()
{
    const char* const from = m_block.data() + m_next;
    const void* const feed = std::memchr(from, kLineFeed, m_end - m_next);
    m_lineEnded = feed != nullptr;
    m_next = m_lineEnded
                 ? static_cast<std::size_t>(static_cast<const char*>(feed) - m_block.data()) + 1U
                 : m_end;
}

bool TextLineReader::ReadLine(std::string_view& line)
{
    line = {};
    m_line = m_next;
    m_lineEnded = false;
    while (!m_lineEnded && !AtEnd())
    {
        PassOver();
    }
    std::size_t length = m_next - m_line;
    if (!m_lineEnded)
    {
        line = {m_block.data() + m_line, length};
        return false;
    }
    char* const feed = m_block.data() + m_next - 1U;
    if (length > 1U && feed[-1] == kReturn)
    {
        feed[-1] = kLineFeed;
        --length;
    }
    const bool more = !AtEnd(); // may move the line
    line = {m_block.data() + m_line, length};
    return more;
}

bool TextLineReader::FinishLine()
{
    // What is passed over need not be kept.
    for (m_line = m_next; !m_lineEnded && !AtEnd(); m_line = m_next)
    {
        PassOver();
    }
    return !AtEnd();
}

void TextLineReader::Close() noexcept
{
    m_file.Close();
    m_line = 0;
    m_next = 0;
    m_end = 0;
    m_fileEnded = true;
}

} // namespace amounts
