#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace rulebook
{

/// A line that only one of two texts has.
struct LineChange
{
    bool isAdded = false; ///< else removed
    std::string text;

    bool operator==(const LineChange&) const = default;
};

/// The fewest lines that turn one text into the other, in the order of the texts. A line that moved
/// is removed in one place and added in another.
std::vector<LineChange> ChangedLines(std::string_view before, std::string_view after);

} // namespace rulebook
