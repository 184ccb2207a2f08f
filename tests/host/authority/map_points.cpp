#include "tests/host/authority/map_points.h"

#include <algorithm>

namespace testing_support
{

namespace
{

/// A point between the least and the greatest amount of a cell, often at one of them.
double Between(std::mt19937_64& random, double least, double greatest)
{
    switch (random() % 4)
    {
    case 0:
        return least;
    case 1:
        return greatest;
    default:
        return std::min(greatest, least + (std::min(greatest, least + 1e7) - least) *
                                              std::generate_canonical<double, 53>(random));
    }
}

} // namespace

authority::Amounts PointOf(std::mt19937_64& random, const authority::Cell& cell)
{
    const authority::Amounts least = authority::LeastOf(cell);
    const authority::Amounts greatest = authority::GreatestOf(cell);
    const double largest = Between(random, least.largest, greatest.largest);
    return {Between(random, std::max(least.total, largest), greatest.total), largest};
}

MapPoint AnyPointOf(std::mt19937_64& random, const authority::AuthorityMap& map)
{
    const authority::Row& row = map.rows[random() % map.rows.size()];
    const std::size_t cell = random() % map.cells.size();
    const bool isDistributed = random() % 2 == 0;
    const authority::Amounts amounts = PointOf(random, map.cells[cell]);
    return {map,
            {row.signers, amounts.total, amounts.largest, isDistributed},
            (isDistributed ? row.distributed : row.direct)[cell],
            row.label + ", " + authority::InWords(map.cells[cell])};
}

std::ostream& operator<<(std::ostream& stream, const MapPoint& point)
{
    return stream << point.words << ", VEU " << (point.order.isDistributed ? "on" : "off")
                  << ", total " << point.order.total << ", largest " << point.order.largest;
}

} // namespace testing_support
