#pragma once

#include "engine/conversion_output.h"
#include "engine/order_file.h"
#include "engine/pain_fields.h"

namespace engine
{

/// Converts an ISO 20022 message of any version, bare or inside an envelope. Raises engine::Failure
/// when the file holds no such message or is no well-formed XML.
void ConvertPain(PainMessage message, OrderFile& file, ConversionOutput& output);

} // namespace engine
