#pragma once

#include "engine/convert.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace fuzz
{

struct ConverterCase
{
    engine::Work work;
    /// What the first block must hold, since the converter looks ahead that far.
    std::size_t lookAhead;
    /// Orders of a file that was converted, counted by a plain reading of its format.
    std::uint64_t (*countOrders)(std::string_view bytes);
};

/// Converts the bytes: at once, in small blocks, and then without writing, with a disk that fails
/// or with a file that is cut meanwhile. A finding: work files that are neither all there nor all
/// gone, that break a rule of CheckWorkFiles or depend on the blocks; an order that is neither
/// written nor told as an error; a failure whose text does not say which file and where.
void CheckConversion(const ConverterCase& converter, std::string_view bytes);

} // namespace fuzz
