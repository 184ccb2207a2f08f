#pragma once

#include "amounts/delimited_row.h"
#include "amounts/text_line_reader.h"
#include "containers/text_array.h"

#include <cstdint>
#include <string>
#include <string_view>

/// Reads a text table written by the format-conversion engine: one row per line, line 1 split at
/// every ';', every later line made of its quoted stretches. Holds one data row at a time. Failures
/// to open are told on standard error; the reader then has no row.
class TDelimitedFile
{
public:
    /// Opens, reads the header lines and makes the first data row current. `path` is Windows-1252.
    /// `oneLineHeader` 0: four header lines, otherwise one.
    TDelimitedFile(const char* path, int oneLineHeader);
    virtual ~TDelimitedFile();
    TDelimitedFile(const TDelimitedFile&) = delete;
    TDelimitedFile& operator=(const TDelimitedFile&) = delete;

    /// Reads the next line into a row of the caller's, which keeps it. Where there is none, or no
    /// memory for it, the row is empty; a line without memory is passed over.
    void ReadRow(amounts::DelimitedRow& row);
    /// Whether a further line can be read.
    bool HasMoreRows() const noexcept { return m_hasMoreRows; }

    /// The row made current by the constructor or by NextRow; its texts are valid until then, and
    /// no longer than the file.
    const amounts::DelimitedRow& CurrentRow() const noexcept { return m_currentRow; }
    /// Reads the next line into the current row, where there is one; false where there is none.
    bool NextRow();
    /// Whether a current row is there. HasMoreRows would pass over a file with one data row.
    bool HasRow() const noexcept { return !m_currentRow.IsEmpty(); }

    /// Whether the file was opened and every line so far could be read. A reader that has no
    /// further row has met the file's end only when it is.
    bool IsIntact() const noexcept { return m_intact && !m_file.HasFailed(); }

    /// Header lines passed over: 4 or 1, and 0 when the file could not be opened.
    std::int32_t GetHeaderLineCount() const noexcept { return m_headerLineCount; }
    /// Rows read, header lines included.
    std::uint32_t GetRowCounter() const noexcept { return m_rowCounter; }
    const TArray<TSimpleString>& GetFirstHeader() const noexcept { return m_firstHeader; }
    const TArray<TSimpleString>& GetSecondHeader() const noexcept { return m_secondHeader; }

    /// Closes the file: an open file cannot be deleted on Windows.
    void Close() noexcept;

private:
    bool OpenFile(const char* path);
    bool CopyFileName(const char* path);
    void ReadHeaders(bool oneLineHeader);
    void AppendRow(TArray<TSimpleString>& header);
    void ReadCurrentRow();
    std::string_view ReadLine();

    std::int32_t m_headerLineCount = 0;
    std::uint32_t m_rowCounter = 0;
    amounts::TextLineReader m_file;
    std::string m_fileName;
    amounts::ParseMode m_parseMode = amounts::ParseMode::Plain;
    bool m_hasMoreRows = false;
    bool m_intact = false; // opened, and no line was lost for want of memory
    amounts::DelimitedRow m_currentRow;
    TArray<TSimpleString> m_firstHeader;
    TArray<TSimpleString> m_secondHeader;
};
