#include "engine/fixed_records.h"

#include "engine/failure.h"
#include "support/format.h"

#include <algorithm>

namespace engine
{

namespace
{

constexpr std::size_t kLongestLine = 4096;

std::string_view TrimBlanks(std::string_view text)
{
    const std::size_t first = text.find_first_not_of(' ');
    return first == std::string_view::npos
               ? std::string_view()
               : text.substr(first, text.find_last_not_of(' ') - first + 1U);
}

} // namespace

bool IsDigits(std::string_view zone)
{
    return !zone.empty() &&
           std::all_of(zone.begin(), zone.end(), [](char c) { return c >= '0' && c <= '9'; });
}

std::string FixedRecord::Text(std::size_t position, std::size_t length) const
{
    return std::string(TrimBlanks(Zone(position, length)));
}

bool FixedRecord::IsBlank() const
{
    return TrimBlanks(m_text).empty();
}

FixedRecordSource::FixedRecordSource(OrderFile& file, ConversionOutput& output, std::size_t length,
                                     std::span<const std::string_view> codes)
    : m_file(file), m_lines(file), m_output(output), m_length(length), m_codes(codes),
      m_separated(m_lines.HasLineEndWithin(LongestRecord() + 2U))
{
}

void FixedRecordSource::Tell(Finding finding, const std::string& text)
{
    m_output.AddError(Number(), std::to_string(Number()), finding, text);
}

bool FixedRecordSource::FurtherRecordFollows() const
{
    if (m_line.size() <= LongestRecord())
    {
        return false;
    }
    const std::string_view rest = std::string_view(m_line).substr(m_length);
    return std::any_of(m_codes.begin(), m_codes.end(),
                       [&](std::string_view code) { return rest.starts_with(code); });
}

bool FixedRecordSource::ReadFromLine(std::string& text)
{
    if (!m_splitting && !m_lines.NextLine(m_line, kLongestLine))
    {
        return false;
    }
    const bool further = FurtherRecordFollows();
    if (further && !m_splitting)
    {
        Tell(Finding::RecordLength, "Line of " + std::to_string(m_line.size()) +
                                        " characters holds several records of " +
                                        std::to_string(m_length));
    }
    m_splitting = further;
    text.assign(m_line, 0, further ? m_length : m_line.size());
    m_line.erase(0, text.size());
    return true;
}

bool FixedRecordSource::Read(std::string& text)
{
    return m_separated ? ReadFromLine(text) : m_lines.NextRecord(text, m_length);
}

void FixedRecordSource::TellUnknownCode(const FixedRecord& record)
{
    const std::string code(record.Code());
    if (m_separated)
    {
        Tell(Finding::RecordMalformed, "Unknown record code " + code);
        return;
    }
    throw Failure(FailureNumber::Malformed,
                  support::FormatA("Order file %s, record %I64u: unknown record code '%s'; without "
                                   "line ends every record has %u characters",
                                   m_file.Path().c_str(), static_cast<unsigned long long>(Number()),
                                   code.c_str(), static_cast<unsigned int>(m_length)));
}

void FixedRecordSource::TellTextBehindEnd()
{
    if (m_lines.HasTextBehindEnd())
    {
        Tell(Finding::RecordOutOfPlace, "Text behind the end-of-file character is not read");
    }
}

bool FixedRecordSource::Next(FixedRecord& record)
{
    std::string& text = record.m_text;
    do
    {
        if (!Read(text))
        {
            TellTextBehindEnd();
            return false;
        }
    } while (record.IsBlank());
    m_output.SetPosition(Number());
    record.m_tooLong =
        text.size() > m_length && !TrimBlanks(std::string_view(text).substr(m_length)).empty();
    if (record.m_tooLong)
    {
        Tell(Finding::RecordLength, "Record of " + std::to_string(text.size()) +
                                        " characters instead of " + std::to_string(m_length));
    }
    text.resize(m_length, ' ');
    return true;
}

} // namespace engine
