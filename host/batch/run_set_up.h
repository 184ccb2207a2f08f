#pragma once

#include "host/batch/order_judge.h"
#include "host/option_values.h"

#include <string>

namespace batch
{

/// What the orders of a run have in common, from its settings. Raises UsageRefusal for what no
/// order could be judged with; `isFolder`: all orders have the same terms unless they lie beside
/// each.
RunTerms RunTermsFrom(const host::OptionValues& values, bool isFolder, const std::string& holder);

/// Makes sure that the database answers, holds the tables and lets its history be read; warns of an
/// old schema. Raises host::Refusal with kCouldNotRun.
void RequireDatabase(const host::Connection& connection);

} // namespace batch
