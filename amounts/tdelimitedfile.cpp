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
    ReadRow(m_currentRow);
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
        m_fileName.clear();
        TellFatalError("Fatal error : unable to open input file %s\n", path);
        return false;
    }
    m_hasMoreRows = true;
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
    m_parseMode = ParseMode::Quoted;
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
    ReadRow(m_currentRow);
    for (std::size_t i = 0; i < m_currentRow.GetCount(); ++i)
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
    ReadRow(m_currentRow);
    return true;
}

void TDelimitedFile::ReadRow(amounts::DelimitedRow& row)
{
    row.m_fields.clear();
    ++m_rowCounter;
    ReadLine(row.m_line);
    try
    {
        if (!row.m_line.empty())
        {
            m_parseMode == ParseMode::Plain ? SplitPlain(row) : SplitQuoted(row);
        }
    }
    catch (const std::bad_alloc&)
    {
        row.m_fields.clear();
        m_intact = false;
    }
}

// A line beyond memory reads as an empty one, which ends the caller's loop.
void TDelimitedFile::ReadLine(std::string& line)
{
    try
    {
        m_hasMoreRows = m_file.ReadLine(line);
    }
    catch (const std::bad_alloc&)
    {
        line.clear();
        m_intact = false;
        m_hasMoreRows = m_file.FinishLine();
    }
}

void TDelimitedFile::SplitPlain(amounts::DelimitedRow& row) const
{
    std::string_view line = row.m_line;
    if (line.back() == m_lineEnd)
    {
        line.remove_suffix(1);
    }
    for (;;)
    {
        const std::size_t end = line.find(m_separator);
        row.m_fields.push_back(line.substr(0, end));
        if (end == std::string_view::npos)
        {
            return;
        }
        line.remove_prefix(end + 1U);
    }
}

// Separators and text outside quotes are passed over, so an unquoted value is lost; escape
// characters are kept in the field.
void TDelimitedFile::SplitQuoted(amounts::DelimitedRow& row) const
{
    const std::string_view line = row.m_line;
    std::size_t opening = std::string_view::npos;
    for (std::size_t at = line.find(m_quote); at != std::string_view::npos;
         at = line.find(m_quote, at + 1U))
    {
        if (at > 0 && line[at - 1U] == m_escape)
        {
            continue;
        }
        if (opening == std::string_view::npos)
        {
            opening = at;
            continue;
        }
        row.m_fields.push_back(line.substr(opening + 1U, at - opening - 1U));
        opening = std::string_view::npos;
    }
    if (row.m_fields.empty())
    {
        row.m_fields.push_back(line);
    }
    else if (opening != std::string_view::npos)
    {
        row.m_fields.push_back(line.substr(opening + 1U));
    }
}

void TDelimitedFile::Close() noexcept
{
    m_file.Close();
    m_hasMoreRows = false;
}
