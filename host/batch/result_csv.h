#pragma once

#include "host/batch/order_result.h"

#include <string>

namespace batch
{

/// The line of names. Columns are the fields of the JSON lines; one within another field has both
/// names: contract.partner.
std::string ResultNamesAsCsv();

/// One result as a row of it. What the result has not is empty; signers are separated by ; and
/// other lists, which are sentences, by a blank.
std::string ResultAsCsv(const OrderResult& result);

} // namespace batch
