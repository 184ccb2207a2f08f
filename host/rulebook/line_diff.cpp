#include "host/rulebook/line_diff.h"

#include <algorithm>
#include <cstdint>

namespace rulebook
{

namespace
{

using Lines = std::vector<std::string_view>;

// Beyond it the table of the comparison takes more memory than its answer is worth.
constexpr std::size_t kMostCells = std::size_t{16} * 1024 * 1024;

Lines SplitLines(std::string_view text)
{
    Lines lines;
    while (!text.empty())
    {
        const std::size_t end = std::min(text.find('\n'), text.size());
        lines.push_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return lines;
}

// Takes what both begin or end with off them.
void CutCommon(Lines& before, Lines& after)
{
    const auto heads = std::mismatch(before.begin(), before.end(), after.begin(), after.end());
    before.erase(before.begin(), heads.first);
    after.erase(after.begin(), heads.second);
    const auto tails = std::mismatch(before.rbegin(), before.rend(), after.rbegin(), after.rend());
    before.erase(tails.first.base(), before.end());
    after.erase(tails.second.base(), after.end());
}

/// Lengths of the longest common rests of both texts, from each pair of places on.
class CommonRests
{
public:
    CommonRests(const Lines& before, const Lines& after)
        : m_width(after.size() + 1), m_lengths((before.size() + 1) * m_width)
    {
        for (std::size_t i = before.size(); i-- > 0;)
        {
            for (std::size_t j = after.size(); j-- > 0;)
            {
                m_lengths[i * m_width + j] = before[i] == after[j]
                                                 ? At(i + 1, j + 1) + 1
                                                 : std::max(At(i + 1, j), At(i, j + 1));
            }
        }
    }

    std::uint32_t At(std::size_t i, std::size_t j) const { return m_lengths[i * m_width + j]; }

private:
    std::size_t m_width;
    std::vector<std::uint32_t> m_lengths;
};

} // namespace

std::vector<LineChange> ChangedLines(std::string_view before, std::string_view after)
{
    Lines removed = SplitLines(before);
    Lines added = SplitLines(after);
    CutCommon(removed, added);
    const bool isLarge = removed.size() + 1 > kMostCells / (added.size() + 1);
    const CommonRests rests(isLarge ? Lines() : removed, isLarge ? Lines() : added);
    std::vector<LineChange> changes;
    std::size_t i = 0;
    std::size_t j = 0;
    while (i < removed.size() || j < added.size())
    {
        const bool hasBoth = i < removed.size() && j < added.size();
        if (!isLarge && hasBoth && removed[i] == added[j])
        {
            ++i;
            ++j;
        }
        else if (j == added.size() ||
                 (i < removed.size() && (isLarge || rests.At(i + 1, j) >= rests.At(i, j + 1))))
        {
            changes.push_back({false, std::string(removed[i++])});
        }
        else
        {
            changes.push_back({true, std::string(added[j++])});
        }
    }
    return changes;
}

} // namespace rulebook
