#pragma once

#include "engine/conversion_output.h"
#include "engine/rows.h"

#include <cstdint>
#include <string>

namespace engine
{

/// An amount as the order file has it.
struct RawAmount
{
    std::string text;
    std::string currency;
    bool present = false;
};

/// Takes the other amount when it is larger, or when the one kept is no number: where an order has
/// two amounts, no limit is slipped under by the smaller one.
void KeepLarger(RawAmount& kept, const RawAmount& other, char separator);

/// Reads the amount into the order, with its currency. An amount that cannot be read is told as an
/// error row; the order is then left out, and false returned. One of too many digits is told, too,
/// and counts as its upper bound.
bool ReadAmount(const RawAmount& amount, char separator, ConversionOutput& output,
                std::uint64_t position, OrderRow& order);

} // namespace engine
