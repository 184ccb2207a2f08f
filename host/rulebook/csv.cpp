#include "host/rulebook/csv.h"

#include "host/text.h"

#include <algorithm>

namespace rulebook
{

namespace
{

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

class CsvReader
{
public:
    CsvReader(std::string_view csv, char separator, std::string_view comment)
        : m_csv(csv), m_separator(separator), m_comment(comment)
    {
    }

    std::vector<CsvRecord> Read()
    {
        std::vector<CsvRecord> records;
        while (m_at < m_csv.size())
        {
            const bool isComment = m_csv.substr(m_at).starts_with(m_comment);
            CsvRecord record = isComment ? SkipLine() : ReadRecord();
            if (!record.text.empty())
            {
                records.push_back(std::move(record));
            }
        }
        return records;
    }

private:
    CsvRecord SkipLine()
    {
        m_at = std::min(m_csv.find('\n', m_at), m_csv.size() - 1) + 1;
        ++m_line;
        return {};
    }

    CsvRecord ReadRecord()
    {
        CsvRecord record;
        record.line = m_line;
        const std::size_t begin = m_at;
        while (ReadField(record) && m_csv[m_at] == m_separator)
        {
            ++m_at;
        }
        if (!record.fault.empty())
        {
            m_at = std::min(m_csv.find('\n', begin), m_csv.size());
        }
        record.text = m_csv.substr(begin, m_at - begin);
        m_line +=
            static_cast<std::size_t>(1 + std::count(record.text.begin(), record.text.end(), '\n'));
        m_at += m_at < m_csv.size() ? 1 : 0;
        if (record.text.ends_with('\r'))
        {
            record.text.pop_back();
        }
        if (record.fault.empty() && !host::IsUtf8(record.text))
        {
            record.fault = "The line is no UTF-8 text. Save the file as UTF-8 (\"CSV UTF-8\" in a "
                           "spreadsheet).";
        }
        return record;
    }

    // Whether something stands behind the field.
    bool ReadField(CsvRecord& record)
    {
        if (m_at < m_csv.size() && m_csv[m_at] == '"')
        {
            return ReadQuoted(record);
        }
        const std::size_t end = EndOfPlain();
        std::string_view field = m_csv.substr(m_at, end - m_at);
        m_at = end;
        if (!IsAtSeparator() && field.ends_with('\r'))
        {
            field.remove_suffix(1);
        }
        record.fields.emplace_back(field);
        return m_at < m_csv.size();
    }

    bool ReadQuoted(CsvRecord& record)
    {
        std::string field;
        for (++m_at;; ++m_at)
        {
            const std::size_t quote = m_csv.find('"', m_at);
            if (quote == std::string_view::npos)
            {
                record.fault = "A double quote is not closed.";
                return false;
            }
            field += m_csv.substr(m_at, quote - m_at);
            m_at = quote + 1;
            if (m_at == m_csv.size() || m_csv[m_at] != '"')
            {
                break;
            }
            field += '"';
        }
        m_at += m_csv.substr(m_at, 2) == "\r\n" ? 1 : 0;
        if (m_at < m_csv.size() && m_csv[m_at] != '\n' && !IsAtSeparator())
        {
            record.fault = "Something stands behind a closing double quote.";
            return false;
        }
        record.fields.push_back(std::move(field));
        return m_at < m_csv.size();
    }

    bool IsAtSeparator() const { return m_at < m_csv.size() && m_csv[m_at] == m_separator; }

    std::size_t EndOfPlain() const
    {
        const char ends[] = {m_separator, '\n', '\0'};
        return std::min(m_csv.find_first_of(std::string_view(ends, 2), m_at), m_csv.size());
    }

    std::string_view m_csv;
    char m_separator;
    std::string_view m_comment;
    std::size_t m_at = 0;
    std::size_t m_line = 1;
};

std::string_view WithoutMark(std::string_view csv)
{
    return csv.substr(csv.starts_with(kByteOrderMark) ? kByteOrderMark.size() : 0);
}

// The first line that is neither blank nor a remark, as the reader skips them.
std::string_view FirstRecordLine(std::string_view csv, std::string_view comment)
{
    for (;;)
    {
        const std::string_view line = csv.substr(0, csv.find('\n'));
        const bool isBlank = line.find_first_not_of(" \t\r") == std::string_view::npos;
        const bool isRemark = !comment.empty() && line.starts_with(comment);
        if (!isBlank && !isRemark)
        {
            return line;
        }
        if (line.size() == csv.size())
        {
            return {};
        }
        csv.remove_prefix(line.size() + 1);
    }
}

} // namespace

char SeparatorOf(std::string_view csv, std::string_view comment)
{
    const std::string_view head = FirstRecordLine(WithoutMark(csv), comment);
    const std::size_t first = head.find_first_of(";,\t");
    return first == std::string_view::npos ? ';' : head[first];
}

std::vector<CsvRecord> ReadCsv(std::string_view csv, char separator, std::string_view comment)
{
    return CsvReader(WithoutMark(csv), separator, comment).Read();
}

} // namespace rulebook
