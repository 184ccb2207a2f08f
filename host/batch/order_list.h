#pragma once

#include "host/batch/order.h"

#include <string>
#include <vector>

namespace batch
{

/// Reads a list of orders: a CSV file whose first line names the columns, or JSON lines; `file` and
/// terms of the orders by the names of the options of check. Relative paths start at the list's
/// folder. `path` is that of the list as it was given, `common` what holds for all. Raises
/// UsageRefusal that tells every problem with line, field and remedy, up to a score of them.
std::vector<Order> ReadOrderList(const host::OptionValue& path, const host::OptionValues& common);

} // namespace batch
