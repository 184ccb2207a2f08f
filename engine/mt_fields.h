#pragma once

#include "engine/line_source.h"

#include <string>
#include <vector>

namespace engine
{

/// One field of a message: its tag and its lines, the first without the tag.
struct MtField
{
    std::string tag;
    std::vector<std::string> lines;
    std::uint64_t position = 0; ///< line of the file where it starts
};

/// The fields of block 4, one by one, in constant memory; blocks round it are passed over.
class MtFieldSource
{
public:
    explicit MtFieldSource(OrderFile& file) : m_lines(file) {}

    /// False at the end of the file. Continuation lines belong to the field before them.
    bool Next(MtField& field);

    /// Line where it first showed that a block 4 is not closed by "-}", 0 for none: a block begins
    /// in another, or the file ends.
    std::uint64_t UnclosedAt() const noexcept;

    bool HasTextBehindEnd() { return m_lines.HasTextBehindEnd(); }
    std::uint64_t Number() const noexcept { return m_lines.Number(); }

private:
    bool NextTextLine(std::string& line);
    static bool SplitTag(const std::string& line, std::string& tag, std::string& rest);

    void OpenBlock() noexcept;

    LineSource m_lines;
    bool m_inBlock = false;
    std::uint64_t m_unclosedAt = 0;
    std::string m_ahead; // the line that starts the next field
    bool m_haveAhead = false;
};

} // namespace engine
