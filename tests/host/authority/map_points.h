#pragma once

#include "host/authority/authority_map.h"

#include <ostream>
#include <random>

namespace testing_support
{

/// Amounts inside a cell, often at its least or its greatest.
authority::Amounts PointOf(std::mt19937_64& random, const authority::Cell& cell);

/// An order inside a cell of a map, and what the map tells of it.
struct MapPoint
{
    const authority::AuthorityMap& map;
    scratch::Order order;
    authority::Verdict told;
    std::string words; ///< which row and cell
};

MapPoint AnyPointOf(std::mt19937_64& random, const authority::AuthorityMap& map);

std::ostream& operator<<(std::ostream& stream, const MapPoint& point);

} // namespace testing_support
