#pragma once

#include "tests/model/tables.h"

namespace model
{

/// The limit that a rule's AMOUNT stands for, in the main unit: a decimal text of unknown decimals,
/// read into units of 10^-7 and given back with six decimals.
double LimitOf(const NullableText& amount);

} // namespace model
