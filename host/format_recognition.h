#pragma once

#include "host/order_format.h"

#include <string>
#include <vector>

namespace host
{

/// Every format that the conversion engine reads.
const std::vector<OrderFormat>& AllOrderFormats();

/// The format that the beginning of the file shows, whatever its name. `path` is Windows-1252.
/// Reads 256 KiB at most, and nothing but this file. Raises a "could not run" Refusal when the file
/// cannot be read or shows none of the formats.
OrderFormat RecogniseOrderFormat(const std::string& path);

} // namespace host
