#pragma once

#include "port/byte_mask.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace amounts
{

/// How the lines of a delimited file are split.
enum class ParseMode : std::uint32_t
{
    Plain = 1,  ///< at every separator
    Quoted = 2, ///< into their quoted stretches
};

/// The places of a line's marks: its separators in plain mode, else its quotes but for those behind
/// the escape character. The line is looked at in stretches, no further than the mark asked for;
/// who asks in ascending order passes over it once.
class LineMarks
{
public:
    static constexpr std::size_t kNone = std::string_view::npos;

    std::string_view Line() const noexcept { return m_line; }
    ParseMode Mode() const noexcept { return m_mode; }
    void SetLine(std::string_view line, ParseMode mode) noexcept
    {
        m_line = line;
        m_mode = mode;
        Restart();
    }

    /// The place of a mark by its number, from 0; kNone where there are fewer.
    std::size_t Find(std::size_t number) noexcept
    {
        if (number - m_first >= m_count && !LoadMark(number))
        {
            return kNone;
        }
        return m_stretch + m_places[number - m_first];
    }

    std::size_t Count() noexcept;

private:
    void Restart() noexcept
    {
        m_first = 0;
        m_count = 0;
        m_next = 0;
        m_escape = false;
    }
    bool LoadMark(std::size_t number) noexcept;
    bool LoadStretch() noexcept;
    std::uint64_t MarksOf(std::string_view stretch) noexcept;

    std::string_view m_line;
    ParseMode m_mode = ParseMode::Plain;
    bool m_escape = false;                                 // stands right before `m_next`
    std::size_t m_first = 0;                               // number of the stretch's first mark
    std::size_t m_count = 0;                               // of its marks
    std::size_t m_stretch = 0;                             // where it begins in the line
    std::size_t m_next = 0;                                // where the next one does
    std::array<std::uint8_t, port::kMaskWidth> m_places{}; // of its marks, from its beginning
};

} // namespace amounts
