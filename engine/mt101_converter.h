#pragma once

#include "engine/conversion_output.h"
#include "engine/order_file.h"

namespace engine
{

/// Converts SWIFT MT 101 messages, with their blocks or the bare text of block 4, several in a
/// file; each message is a remittance. Raises engine::Failure when the file holds none.
void ConvertMt101(OrderFile& file, ConversionOutput& output);

} // namespace engine
