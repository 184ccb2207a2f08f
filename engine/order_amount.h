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

/// Takes the other amount when it is larger or no number at all: where an order has two amounts, no
/// limit is slipped under by the one that counts for less.
void KeepLarger(RawAmount& kept, const RawAmount& other, char separator);

/// Tells an amount that cannot be read as an error row. The order counts as the largest amount
/// there is: left out or at zero, it would slip under every limit, while whoever executes the file
/// may read its amount after all.
void CountAsLargest(ConversionOutput& output, std::uint64_t position, Finding finding,
                    const std::string& problem, OrderRow& order);

/// Reads the amount into the order, with its currency. One of too many digits is told and counts as
/// its upper bound, one that cannot be read as CountAsLargest says; false for the latter, which
/// control sums cannot hold.
bool ReadAmount(const RawAmount& amount, char separator, ConversionOutput& output,
                std::uint64_t position, OrderRow& order);

} // namespace engine
