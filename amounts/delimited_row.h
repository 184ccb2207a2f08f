#pragma once

#include "amounts/line_marks.h"

#include <cstddef>
#include <string>
#include <string_view>

class TDelimitedFile;

namespace amounts
{

/// The fields of one line. They are found as they are asked for, so that a reader of three columns
/// pays for no more; whoever asks in ascending order passes over the line once. The texts are part
/// of the line, which the row keeps or its file holds until it reads on. Not shared between
/// threads.
class DelimitedRow
{
public:
    DelimitedRow() = default;
    // The fields may be views into the row's own memory.
    DelimitedRow(const DelimitedRow&) = delete;
    DelimitedRow& operator=(const DelimitedRow&) = delete;

    bool IsEmpty() const noexcept { return m_marks.Line().empty(); }
    /// Passes over the whole line.
    std::size_t GetCount() const noexcept;
    /// The field, or an empty text where the row is too short.
    std::string_view GetAt(std::size_t index) const noexcept;

private:
    friend class ::TDelimitedFile;

    /// Looks at the line from now on.
    void Look(std::string_view line, ParseMode mode) noexcept { m_marks.SetLine(line, mode); }
    /// Copies the line, for when its file reads on. Without memory the row is empty; false then.
    bool Keep() noexcept;
    std::string_view FindQuoted(std::size_t index) const noexcept;
    std::string_view FindPlain(std::size_t index) const noexcept;

    mutable LineMarks m_marks;
    std::string m_kept; // the line, where it is the row's own
};

} // namespace amounts
