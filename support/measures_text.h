#pragma once

#include "support/exposition.h"
#include "support/measures.h"

namespace support
{

/// Appends all measures, as they are at this moment.
void AppendMeasures(Exposition& text, const Measures& measures);

} // namespace support
