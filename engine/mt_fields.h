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

    bool HasTextBehindEnd() { return m_lines.HasTextBehindEnd(); }
    std::uint64_t Number() const noexcept { return m_lines.Number(); }

private:
    bool NextTextLine(std::string& line);
    static bool SplitTag(const std::string& line, std::string& tag, std::string& rest);

    LineSource m_lines;
    std::string m_ahead; // the line that starts the next field
    bool m_haveAhead = false;
};

} // namespace engine
