#include "host/authority/map_text.h"

#include <algorithm>

namespace authority
{

namespace
{

bool AreEqual(const AuthorityMap& map, std::size_t left, std::size_t right)
{
    return std::all_of(map.rows.begin(), map.rows.end(),
                       [&](const Row& row)
                       {
                           return row.direct[left] == row.direct[right] &&
                                  row.distributed[left] == row.distributed[right];
                       });
}

bool HasOneAxis(const AuthorityMap& map)
{
    const auto same = [&map](Band Cell::*axis)
    {
        return std::all_of(map.cells.begin(), map.cells.end(),
                           [&](const Cell& cell) { return cell.*axis == map.cells.front().*axis; });
    };
    return same(&Cell::total) || same(&Cell::largest);
}

void Erase(AuthorityMap& map, std::size_t cell)
{
    const auto at = static_cast<std::ptrdiff_t>(cell);
    map.cells[cell - 1].total.upTo = map.cells[cell].total.upTo;
    map.cells[cell - 1].largest.upTo = map.cells[cell].largest.upTo;
    map.cells.erase(map.cells.begin() + at);
    for (Row& row : map.rows)
    {
        row.direct.erase(row.direct.begin() + at);
        row.distributed.erase(row.distributed.begin() + at);
    }
}

} // namespace

AuthorityMap WithoutEqualNeighbours(AuthorityMap map)
{
    if (!HasOneAxis(map))
    {
        return map;
    }
    for (std::size_t cell = map.cells.size() - 1; cell > 0; --cell)
    {
        if (AreEqual(map, cell - 1, cell))
        {
            Erase(map, cell);
        }
    }
    return map;
}

std::string TypeInWords(const AuthorityMap& map)
{
    return map.isOtherTypes ? "Every other order type"
                            : "Order type " + std::to_string(map.kind.type);
}

std::string KeyInWords(const rulebook::ContractKey& key)
{
    return "partner " + key.vpname + ", service " + key.vfname + ", client " + key.vcname +
           ", protocol " + std::to_string(key.protocol) + ", " +
           (key.server != 0 ? "bank's side" : "requester's side");
}

std::string LargerSets(const AuthorityMap& map)
{
    if (!map.pairsDecide)
    {
        return "Three and more signers: where a certificate is shared, who else signs decides whom "
               "it serves; threes that their pairs do not tell are listed, larger sets were not "
               "asked about.";
    }
    return "Three and more signers: refused where any two of them are, else accepted where any two "
           "are, else no rule. Threes are listed where a third signature takes an acceptance away.";
}

bool IsWithoutRule(const Row& row)
{
    const auto isWithout = [](const Verdict& verdict)
    { return verdict.number == scratch::kNoRule; };
    return std::all_of(row.direct.begin(), row.direct.end(), isWithout) &&
           std::all_of(row.distributed.begin(), row.distributed.end(), isWithout);
}

const char* OutcomeOf(unsigned int verdict)
{
    switch (verdict)
    {
    case scratch::kAccepted:
        return "accepted";
    case scratch::kRefused:
        return "refused";
    default:
        return "no rule";
    }
}

} // namespace authority
