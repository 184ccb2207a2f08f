#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

class TDelimitedFile;

namespace amounts
{

/// How the lines of a delimited file are split.
enum class ParseMode : std::uint32_t
{
    Plain = 1,  ///< at every separator
    Quoted = 2, ///< into their quoted stretches
};

/// The fields of one line. They are found as they are asked for, so that a reader of three columns
/// pays for no more; whoever asks in ascending order passes over the line once. The texts live in
/// the row and are overwritten by the next one read. Not shared between threads.
class DelimitedRow
{
public:
    DelimitedRow() = default;
    // The fields are views into the row's own line.
    DelimitedRow(const DelimitedRow&) = delete;
    DelimitedRow& operator=(const DelimitedRow&) = delete;

    bool IsEmpty() const noexcept { return m_line.empty(); }
    std::size_t GetCount() const noexcept;
    /// The field, or an empty text where the row is too short.
    std::string_view GetAt(std::size_t index) const noexcept;

private:
    friend class ::TDelimitedFile;

    // How far the fields have been found.
    struct Walk
    {
        std::size_t found = 0;    // fields
        std::string_view last;    // the one found last
        std::size_t next = 0;     // where to look on in the line
        std::uint64_t quotes = 0; // before `next`, those not yet passed
        bool escape = false;      // stands right before `next`
        bool finished = false;    // there is no further field
    };

    /// The line has just been read.
    void Split(ParseMode mode) noexcept;
    bool FindNext() const noexcept;
    bool FindNextPlain() const noexcept;
    bool FindNextQuoted() const noexcept;
    bool Take(std::string_view field) const noexcept;
    bool FindQuotes() const noexcept;
    std::size_t NextQuote() const noexcept;

    std::string m_line;
    ParseMode m_mode = ParseMode::Plain;
    mutable Walk m_walk;
    mutable std::size_t m_count = std::string_view::npos; // of all fields, when it is known
};

} // namespace amounts
