#include "host/suggestion.h"

#include <algorithm>
#include <numeric>

namespace host
{

namespace
{

// Letters to insert, remove or replace to turn one word into the other.
std::size_t EditDistance(std::string_view left, std::string_view right)
{
    std::vector<std::size_t> row(right.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 1; i <= left.size(); ++i)
    {
        std::size_t diagonal = row[0];
        row[0] = i;
        for (std::size_t j = 1; j <= right.size(); ++j)
        {
            const std::size_t replaced = diagonal + (left[i - 1] == right[j - 1] ? 0 : 1);
            diagonal = row[j];
            row[j] = std::min({row[j] + 1, row[j - 1] + 1, replaced});
        }
    }
    return row[right.size()];
}

} // namespace

std::string Nearest(std::string_view word, const std::vector<std::string>& candidates)
{
    std::string nearest;
    std::size_t best = std::max<std::size_t>(word.size() / 3, 1) + 1;
    for (const std::string& candidate : candidates)
    {
        const bool begins = word.size() >= 3 && candidate.rfind(word, 0) == 0;
        const std::size_t distance = begins ? 1 : EditDistance(word, candidate);
        if (distance < best)
        {
            best = distance;
            nearest = candidate;
        }
    }
    return nearest;
}

std::string DidYouMean(std::string_view word, const std::vector<std::string>& candidates,
                       std::string_view prefix)
{
    const std::string nearest = Nearest(word, candidates);
    if (nearest.empty())
    {
        return {};
    }
    return " Did you mean " + std::string(prefix) + nearest + "?";
}

} // namespace host
