#pragma once

#include "engine/conversion_output.h"
#include "engine/order_file.h"

namespace engine
{

/// Converts French 160-character orders: transfers, direct debits and bills of exchange, several
/// remittances in one file. Raises engine::Failure when the file is none.
void ConvertCfonb160(OrderFile& file, ConversionOutput& output);

} // namespace engine
