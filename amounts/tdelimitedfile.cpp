#include "amounts/tdelimitedfile.h"

#include "support/format.h"
#include "support/oem.h"

#include <new>

namespace
{

constexpr int kHeaderGrowBy = 128;
constexpr std::int32_t kOneHeaderLine = 1;
constexpr std::int32_t kFourHeaderLines = 4;

void TellFatalError(const char* format, const char* path)
{
    try
    {
        printfCharToOem(support::FormatA(format, path).c_str());
    }
    catch (const std::bad_alloc&)
    {
        // Without memory for the sentence the reader having no row must say it all.
    }
}

} // namespace

TDelimitedFile::TDelimitedFile(const char* path, int oneLineHeader)
    : m_firstHeader(kHeaderGrowBy), m_secondHeader(kHeaderGrowBy)
{
    if (!OpenFile(path == nullptr ? "" : path))
    {
        return;
    }
    ReadHeaders(oneLineHeader != 0);
    ReadCurrentRow();
    m_headerLineCount = oneLineHeader != 0 ? kOneHeaderLine : kFourHeaderLines;
}

TDelimitedFile::~TDelimitedFile() = default;

bool TDelimitedFile::OpenFile(const char* path)
{
    if (*path == '\0')
    {
        TellFatalError("Fatal error : invalid input file %s\n", path);
        return false;
    }
    if (!CopyFileName(path))
    {
        TellFatalError("Fatal error : unable to allocate memory for file name buffer %s\n", path);
        return false;
    }
    if (!m_file.Open(path))
    {
        TellFatalError("Fatal error : unable to open input file %s\n", path);
        return false;
    }
    m_intact = true;
    return true;
}

bool TDelimitedFile::CopyFileName(const char* path)
{
    try
    {
        m_fileName = path;
        return true;
    }
    catch (const std::bad_alloc&)
    {
        return false;
    }
}

void TDelimitedFile::ReadHeaders(bool oneLineHeader)
{
    AppendRow(m_firstHeader);
    m_parseMode = amounts::ParseMode::Quoted;
    if (oneLineHeader)
    {
        return;
    }
    NextRow(); // column widths
    if (m_hasMoreRows)
    {
        AppendRow(m_secondHeader);
    }
    NextRow(); // ruler
}

void TDelimitedFile::AppendRow(TArray<TSimpleString>& header)
{
    ReadCurrentRow();
    const std::size_t count = m_currentRow.GetCount();
    for (std::size_t i = 0; i < count; ++i)
    {
        const std::string_view field = m_currentRow.GetAt(i);
        header.Add(TSimpleString(field.data(), field.size()));
    }
}

bool TDelimitedFile::NextRow()
{
    if (!m_hasMoreRows)
    {
        return false;
    }
    ReadCurrentRow();
    return true;
}

void TDelimitedFile::ReadCurrentRow()
{
    m_currentRow.Look(ReadLine(), m_parseMode);
}

void TDelimitedFile::ReadRow(amounts::DelimitedRow& row)
{
    // Its line lies where the next one is read to.
    m_intact = m_currentRow.Keep() && m_intact;
    row.Look(ReadLine(), m_parseMode);
    m_intact = row.Keep() && m_intact;
}

// A line beyond memory reads as an empty one, which ends the caller's loop.
std::string_view TDelimitedFile::ReadLine()
{
    ++m_rowCounter;
    std::string_view line;
    try
    {
        m_hasMoreRows = m_file.ReadLine(line);
    }
    catch (const std::bad_alloc&)
    {
        m_intact = false;
        m_hasMoreRows = m_file.FinishLine();
    }
    return line;
}

void TDelimitedFile::Close() noexcept
{
    m_file.Close();
    m_hasMoreRows = false;
}
