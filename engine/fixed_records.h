#pragma once

#include "engine/conversion_output.h"
#include "engine/line_source.h"

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace engine
{

/// One record of constant length; positions count from 1, as the format's descriptions do.
class FixedRecord
{
public:
    std::string_view Zone(std::size_t position, std::size_t length) const
    {
        return std::string_view(m_text).substr(position - 1U, length);
    }
    /// A zone without the blanks at its ends.
    std::string Text(std::size_t position, std::size_t length) const;
    std::string_view Code() const { return Zone(1, 2); }
    bool IsBlank() const;

    /// Whether text stood behind its end: the zones may then not be where they belong.
    bool IsTooLong() const noexcept { return m_tooLong; }

private:
    friend class FixedRecordSource;

    std::string m_text;
    bool m_tooLong = false;
};

/// The records of a file, one by one: separated by line ends or not at all. A record whose trailing
/// blanks were stripped is filled up; one that is longer is told as an error row, and so is a line
/// that holds several, each of which is given.
class FixedRecordSource
{
public:
    /// `codes`: what records of the format begin with; it outlives the source.
    FixedRecordSource(OrderFile& file, ConversionOutput& output, std::size_t length,
                      std::span<const std::string_view> codes);

    /// False at the end; blank records are passed over.
    bool Next(FixedRecord& record);
    std::uint64_t Number() const noexcept { return m_lines.Number(); }
    /// A record code that the format does not have: an error row, but without line ends the records
    /// cannot have their length, and the file is refused.
    void TellUnknownCode(const FixedRecord& record);

private:
    bool Read(std::string& text);
    bool ReadFromLine(std::string& text);
    bool FurtherRecordFollows() const;
    /// With what something inserted pushed behind its end; behind a lost line end stands more.
    std::size_t LongestRecord() const noexcept { return m_length + m_length / 2U; }
    void Tell(Finding finding, const std::string& text);
    void TellTextBehindEnd();

    OrderFile& m_file;
    LineSource m_lines;
    ConversionOutput& m_output;
    std::size_t m_length;
    std::span<const std::string_view> m_codes;
    bool m_separated;
    bool m_splitting = false; // the line that is being read holds several records
    std::string m_line;       // what was not given of it yet
};

/// Digits alone; an empty zone gives false.
bool IsDigits(std::string_view zone);

} // namespace engine
