#pragma once

#include <cstddef>
#include <cstdint>

namespace model
{

/// A query that fails on the way: what it had read by then, and nothing behind it.
inline constexpr std::size_t kWhole = SIZE_MAX;

/// What the database refused during one call, told by whoever made it fail. A call without mishaps
/// has the default.
struct Mishaps
{
    bool notOpened = false;         ///< the session's connection
    std::size_t ruleLines = kWhole; ///< rows that the query of the rules read
    std::size_t contracts = kWhole; ///< rows that the query of the contract alone read
    // The holder look-ups of the call are numbered from 0.
    std::size_t failedLookUp = kWhole;
    std::size_t lookUpRows = 0;       ///< rows that it read
    bool laterLookUpsFail = false;    ///< without a row
    std::size_t rowsInTable = kWhole; ///< history rows that reached the table
    std::size_t rowsTold = kWhole;    ///< of these, those that the library was told of
};

} // namespace model
