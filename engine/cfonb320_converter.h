#pragma once

#include "engine/conversion_output.h"
#include "engine/order_file.h"

namespace engine
{

/// Converts French 320-character international transfers. Raises engine::Failure when the file is
/// none.
void ConvertCfonb320(OrderFile& file, ConversionOutput& output);

} // namespace engine
