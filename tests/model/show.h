#pragma once

#include "tests/model/scenario.h"

#include <iosfwd>

namespace model
{

/// A world as statements and calls, to be repeated by hand.
void showValue(const World& world, std::ostream& stream);

} // namespace model
